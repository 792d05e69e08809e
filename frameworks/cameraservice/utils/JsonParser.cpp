#include "utils/JsonParser.h"

#include <string.h>
#include <sys/stat.h>

#include <atomic>
#include <fstream>
#include <mutex>
#include <set>
#include <sstream>

#include "utils/Env.h"
#include "utils/JsonFirstMembers.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

constexpr std::string_view kDefaultSection = "default";
// A configuration file is a few kilobytes; anything this large is a mistake, not a config.
constexpr off_t kMaxFileBytes = 16 * 1024 * 1024;

// json-c's message about the last failure, without its trailing newline.
std::string lastJsonError() {
    const char* text = vantu::jsonLastError();
    std::string error = text != nullptr ? text : "unknown error";
    while (!error.empty() && (error.back() == '\n' || error.back() == '\r')) error.pop_back();
    return error;
}

// Refuses what json-c would read badly: a huge file, or a FIFO or device it would block on.
// A path that cannot be stat'ed is left to json-c, whose message names the reason.
bool fileIsLoadable(const std::string& hostPath, std::string* why) {
    struct stat st;
    if (stat(hostPath.c_str(), &st) != 0 || S_ISDIR(st.st_mode)) return true;
    if (!S_ISREG(st.st_mode)) {
        *why = "not a regular file";
        return false;
    }
    if (st.st_size > kMaxFileBytes) {
        *why = "file of " + std::to_string(static_cast<long long>(st.st_size)) +
               " bytes is larger than the limit of " + std::to_string(kMaxFileBytes) + " bytes";
        return false;
    }
    return true;
}

const char* packageText(const char* package) {
    return package != nullptr ? package : "default";
}

std::atomic<uint64_t> gNextGeneration{1};

// The last section one thread looked up: which parser contents (by generation, so a parser
// reloaded or freed and another built at its address never matches), the package name asked
// and the section that answered it.
struct SectionMemo {
    static constexpr size_t kNameMax = 96;
    uint64_t generation = 0;
    size_t length = 0;
    char name[kNameMax];
    const void* keys = nullptr;
};
thread_local SectionMemo tSectionMemo;

}  // namespace

JsonParser::JsonParser(const char* path) {
    if (path == nullptr) {
        EXT_LOG(0, "json file pathis NULL");
        return;
    }
    parserJsonFile(path);
}

JsonParser::~JsonParser() {
    mDefault = nullptr;
    mSections.clear();
    if (mRoot != nullptr) json_object_put(mRoot);
}

void JsonParser::parserJsonFile(const char* path) {
    mGeneration = gNextGeneration.fetch_add(1, std::memory_order_relaxed);
    mDefault = nullptr;
    mSections.clear();
    if (mRoot != nullptr) json_object_put(mRoot);
    mRoot = nullptr;
    if (path == nullptr) {
        EXT_LOG(0, "json file pathis NULL");
        return;
    }

    const std::string hostPath = vantu::devicePath(path);
    std::string refused;
    if (!fileIsLoadable(hostPath, &refused)) {
        EXT_LOG(0, "Parser json file %s failed : %s", path, refused.c_str());
        return;
    }
    mRoot = json_object_from_file(hostPath.c_str());
    if (mRoot == nullptr) {
        EXT_LOG(0, "Parser json file %s failed : %s", path, lastJsonError().c_str());
        return;
    }
    if (!json_object_is_type(mRoot, json_type_object) || json_object_object_length(mRoot) == 0) {
        EXT_LOG(0, "json file %s have no content", path);
        return;
    }
    // Of several sections or keys with one name the first counts, as configuration files
    // expect; json-c alone keeps the last.
    std::ifstream file(hostPath, std::ios::binary);
    std::ostringstream text;
    if (file) text << file.rdbuf();
    vantu::keepFirstMembers(mRoot, text.str());

    json_object_object_foreach(mRoot, sectionName, section) {
        if (!json_object_is_type(section, json_type_object)) {
            EXT_LOG(0, "json file %s section %s is not an object, ignored", path, sectionName);
            continue;
        }
        KeyMap keys;
        json_object_object_foreach(section, key, value) {
            keys.emplace(key, Entry{value, true});
            if (!EXT_LOG_ON()) continue;
            switch (json_object_get_type(value)) {
                case json_type_boolean:
                    EXT_LOG(1, "%s %s: %d", sectionName, key, json_object_get_boolean(value));
                    break;
                case json_type_int:
                    EXT_LOG(1, "%s %s: %d", sectionName, key, json_object_get_int(value));
                    break;
                case json_type_double:
                    EXT_LOG(1, "%s %s: %f", sectionName, key, json_object_get_double(value));
                    break;
                case json_type_string:
                    EXT_LOG(1, "%s %s: %s", sectionName, key, json_object_get_string(value));
                    break;
                default:
                    break;
            }
        }
        mSections.emplace(sectionName, std::move(keys));
    }
    inheritDefaults();
}

void JsonParser::inheritDefaults() {
    auto d = mSections.find(kDefaultSection);
    if (d == mSections.end()) return;
    mDefault = &d->second;
    for (auto& [name, keys] : mSections) {
        if (&keys == mDefault) continue;
        for (const auto& [key, entry] : *mDefault) {
            // A value of the wrong type in the app's section still hides "default".
            if (entry.value == nullptr) continue;
            auto own = keys.find(key);
            if (own == keys.end()) {
                keys.emplace(key, Entry{entry.value, false});
            } else if (own->second.value == nullptr) {
                own->second = Entry{entry.value, false};
            }
        }
    }
}

const JsonParser::KeyMap* JsonParser::sectionFor(std::string_view package) const {
    auto s = mSections.find(package);
    return s != mSections.end() ? &s->second : mDefault;
}

const JsonParser::KeyMap* JsonParser::cachedSectionFor(std::string_view package) const {
    SectionMemo& memo = tSectionMemo;
    if (memo.generation == mGeneration && memo.length == package.size() &&
        memcmp(memo.name, package.data(), package.size()) == 0) {
        return static_cast<const KeyMap*>(memo.keys);
    }
    const KeyMap* keys = sectionFor(package);
    if (package.size() <= SectionMemo::kNameMax) {
        memo.generation = mGeneration;
        memo.length = package.size();
        memcpy(memo.name, package.data(), package.size());
        memo.keys = keys;
    }
    return keys;
}

JsonParser::Resolution JsonParser::resolve(const char* key, const char* package,
                                           json_type type) const {
    const KeyMap* keys = key != nullptr ? cachedSectionFor(packageText(package)) : nullptr;
    if (keys == nullptr) return {Origin::Missing, nullptr, false};
    auto k = keys->find(std::string_view(key));
    if (k == keys->end() || k->second.value == nullptr) return {Origin::Missing, nullptr, false};
    const bool inApp = keys != mDefault && k->second.own;
    if (json_object_get_type(k->second.value) != type) {
        return {Origin::WrongType, k->second.value, inApp};
    }
    return {inApp ? Origin::App : Origin::Default, k->second.value, inApp};
}

json_object* JsonParser::candidate(const char* getter, const char* key, const char* package,
                                   json_type type) const {
    const Resolution r = resolve(key, package, type);
    if (r.origin == Origin::WrongType) {
        EXT_LOG(0, "%s(%s, %s) type is error", getter, packageText(package), key);
        return nullptr;
    }
    return r.origin == Origin::Missing ? nullptr : r.value;
}

bool JsonParser::getBool(const char* key, const char* package, bool defaultValue) const {
    json_object* value = candidate("getBool", key, package, json_type_boolean);
    if (value == nullptr) return defaultValue;
    EXT_LOG(2, "%s(%s, %s) success", "getBool", packageText(package), key);
    return json_object_get_boolean(value) != 0;
}

int JsonParser::getInt(const char* key, const char* package, int defaultValue) const {
    json_object* value = candidate("getInt", key, package, json_type_int);
    if (value == nullptr) return defaultValue;
    EXT_LOG(2, "%s(%s, %s) success", "getInt", packageText(package), key);
    return json_object_get_int(value);
}

double JsonParser::getDouble(const char* key, const char* package, double defaultValue) const {
    json_object* value = candidate("getDouble", key, package, json_type_double);
    if (value == nullptr) return defaultValue;
    EXT_LOG(2, "%s(%s, %s) success", "getDouble", packageText(package), key);
    return json_object_get_double(value);
}

std::string JsonParser::getString(const char* key, const char* package,
                                  const std::string& defaultValue) const {
    json_object* value = candidate("getString", key, package, json_type_string);
    if (value == nullptr) return defaultValue;
    EXT_LOG(2, "%s(%s, %s) success", "getString", packageText(package), key);
    return std::string(json_object_get_string(value),
                       static_cast<size_t>(json_object_get_string_len(value)));
}

template <typename T, typename Read>
void JsonParser::appendArray(const char* getter, const char* key, const char* package,
                             json_type type, Read read, std::vector<T>& out) const {
    json_object* array = candidate(getter, key, package, json_type_array);
    if (array == nullptr) return;
    const size_t count = json_object_array_length(array);
    for (size_t i = 0; i < count; ++i) {
        json_object* element = json_object_array_get_idx(array, i);
        if (json_object_get_type(element) != type) {
            EXT_LOG(0, "%s(%s, %s) array type is error", getter, packageText(package), key);
            continue;
        }
        out.push_back(read(element));
    }
}

void JsonParser::getBoolArray(const char* key, const char* package, std::vector<bool>& out) const {
    appendArray(
        "getBoolArray", key, package, json_type_boolean,
        [](json_object* e) { return json_object_get_boolean(e) != 0; }, out);
}

void JsonParser::getIntArray(const char* key, const char* package, std::vector<int>& out) const {
    appendArray(
        "getIntArray", key, package, json_type_int,
        [](json_object* e) { return json_object_get_int(e); }, out);
}

void JsonParser::getDoubleArray(const char* key, const char* package,
                                std::vector<double>& out) const {
    appendArray(
        "getDoubleArray", key, package, json_type_double,
        [](json_object* e) { return json_object_get_double(e); }, out);
}

void JsonParser::getStringArray(const char* key, const char* package,
                                std::vector<std::string>& out) const {
    appendArray(
        "getStringArray", key, package, json_type_string,
        [](json_object* e) {
            return std::string(json_object_get_string(e),
                               static_cast<size_t>(json_object_get_string_len(e)));
        },
        out);
}

bool JsonParser::stringArrayHas(const char* key, const char* package, const char* value) const {
    json_object* array = candidate("getStringArray", key, package, json_type_array);
    if (array == nullptr) return false;
    const size_t valueLength = strlen(value);
    const size_t count = json_object_array_length(array);
    for (size_t i = 0; i < count; ++i) {
        json_object* element = json_object_array_get_idx(array, i);
        if (json_object_get_type(element) != json_type_string) {
            EXT_LOG(0, "%s(%s, %s) array type is error", "getStringArray", packageText(package),
                    key);
            continue;
        }
        if (static_cast<size_t>(json_object_get_string_len(element)) == valueLength &&
            memcmp(json_object_get_string(element), value, valueLength) == 0) {
            return true;
        }
    }
    return false;
}

// ---- The current parser and package of the process ----

namespace {

// Getters run on the host's binder, request and result threads without a lock, so the current
// parser and package are published as plain pointers through atomics. Neither is ever freed
// while the process runs: a replaced parser is retired, not destroyed (a getter on another
// thread may still be inside it), and each package name is interned once and then published by
// pointer, so a reader sees either the old or the new name, never a string being rewritten.
// Both happen once per extension object and once per distinct app, so the retained memory is
// bounded; the registry releases it when the library is unloaded.
struct Registry {
    std::mutex lock;
    std::vector<sp<JsonParser>> parsers;  // the current one last
    std::set<std::string, std::less<>> packageNames;

    ~Registry();
};

std::atomic<JsonParser*> gCurrentParser{nullptr};
std::atomic<const char*> gCurrentPackage{"default"};

Registry& registry() {
    static Registry instance;
    return instance;
}

Registry::~Registry() {
    gCurrentParser.store(nullptr, std::memory_order_release);
    gCurrentPackage.store("default", std::memory_order_release);
}

JsonParser* currentParser() {
    return gCurrentParser.load(std::memory_order_acquire);
}

const char* packageOrCurrent(const char* package) {
    return package != nullptr ? package : gCurrentPackage.load(std::memory_order_acquire);
}

}  // namespace

void initJsonParser(const char* path) {
    sp<JsonParser> parser = new JsonParser(path);
    {
        Registry& r = registry();
        std::lock_guard<std::mutex> guard(r.lock);
        r.parsers.push_back(parser);
        gCurrentParser.store(parser.get(), std::memory_order_release);
    }
    EXT_LOG(1, "initJsonParser with %s", path != nullptr ? path : "NULL");
}

void setJsonPackageName(const char* name) {
    if (name == nullptr) {
        gCurrentPackage.store("default", std::memory_order_release);
        return;
    }
    Registry& r = registry();
    std::lock_guard<std::mutex> guard(r.lock);
    auto it = r.packageNames.find(std::string_view(name));
    if (it == r.packageNames.end()) it = r.packageNames.emplace(name).first;
    gCurrentPackage.store(it->c_str(), std::memory_order_release);
}

const JsonParser* currentJsonParser() {
    return currentParser();
}

const char* getJsonPackageName() {
    return gCurrentPackage.load(std::memory_order_acquire);
}

bool getBool(const char* key, bool defaultValue, const char* package) {
    JsonParser* parser = currentParser();
    return parser != nullptr ? parser->getBool(key, packageOrCurrent(package), defaultValue)
                             : defaultValue;
}

int getInt(const char* key, int defaultValue, const char* package) {
    JsonParser* parser = currentParser();
    return parser != nullptr ? parser->getInt(key, packageOrCurrent(package), defaultValue)
                             : defaultValue;
}

double getDouble(const char* key, double defaultValue, const char* package) {
    JsonParser* parser = currentParser();
    return parser != nullptr ? parser->getDouble(key, packageOrCurrent(package), defaultValue)
                             : defaultValue;
}

std::string getString(const char* key, const std::string& defaultValue, const char* package) {
    JsonParser* parser = currentParser();
    return parser != nullptr ? parser->getString(key, packageOrCurrent(package), defaultValue)
                             : defaultValue;
}

void getBoolArray(const char* key, std::vector<bool>& out, const char* package) {
    if (JsonParser* parser = currentParser()) {
        parser->getBoolArray(key, packageOrCurrent(package), out);
    }
}

void getIntArray(const char* key, std::vector<int>& out, const char* package) {
    if (JsonParser* parser = currentParser()) {
        parser->getIntArray(key, packageOrCurrent(package), out);
    }
}

void getDoubleArray(const char* key, std::vector<double>& out, const char* package) {
    if (JsonParser* parser = currentParser()) {
        parser->getDoubleArray(key, packageOrCurrent(package), out);
    }
}

void getStringArray(const char* key, std::vector<std::string>& out, const char* package) {
    if (JsonParser* parser = currentParser()) {
        parser->getStringArray(key, packageOrCurrent(package), out);
    }
}

bool stringArrayHas(const char* key, const char* value, const char* package) {
    if (value == nullptr) return false;
    JsonParser* parser = currentParser();
    return parser != nullptr && parser->stringArrayHas(key, packageOrCurrent(package), value);
}

}  // namespace android

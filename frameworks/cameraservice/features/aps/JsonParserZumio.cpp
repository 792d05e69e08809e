#include "features/aps/JsonParserZumio.h"

#include <sys/stat.h>

#include "utils/Env.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

// The support files, the updatable copy first.
constexpr const char* kSupportFiles[] = {
    "/data/vantu/common/zumio/app_zumio_videocall_config.json",
    "/my_plinth/Zumio/app_zumio_videocall_config.json",
};

// The file lists a few dozen apps; anything this large is not a support file, and json-c would
// read all of it into memory.
constexpr off_t kMaxFileBytes = 1024 * 1024;

const char* typeRefusal(const std::string& hostPath) {
    struct stat st;
    if (stat(hostPath.c_str(), &st) != 0) return nullptr;  // json-c names the reason
    if (!S_ISREG(st.st_mode)) return "not a regular file";
    if (st.st_size > kMaxFileBytes) return "file too large";
    return nullptr;
}

std::string lastJsonError() {
    const char* text = json_util_get_last_err();
    std::string error = text != nullptr ? text : "unknown error";
    while (!error.empty() && (error.back() == '\n' || error.back() == '\r')) error.pop_back();
    return error;
}

}  // namespace

const char* JsonParserZumio::findSupportFile() {
    for (const char* path : kSupportFiles) {
        struct stat st;
        if (stat(vantu::devicePath(path).c_str(), &st) == 0) return path;
    }
    return nullptr;
}

std::unique_ptr<JsonParserZumio> JsonParserZumio::parse(const char* devicePath) {
    if (devicePath == nullptr) return nullptr;
    const nsecs_t start = vantu::monotonicNs();
    const std::string hostPath = vantu::devicePath(devicePath);
    if (const char* why = typeRefusal(hostPath)) {
        if (EXT_LOG_ON()) EXT_LOG(1, "parse json file %s failed: %s", devicePath, why);
        return nullptr;
    }
    json_object* root = json_object_from_file(hostPath.c_str());
    if (root == nullptr) {
        if (EXT_LOG_ON())
            EXT_LOG(1, "parse json file %s failed: %s", devicePath, lastJsonError().c_str());
        return nullptr;
    }
    std::unique_ptr<JsonParserZumio> parser(new JsonParserZumio(root));
    const int count = parser->contentCount();
    if (count > 0) {
        if (EXT_LOG_ON()) {
            EXT_LOG(1, "json file %s have %d content", devicePath, count);
            json_object_object_foreach(root, name, value) {
                EXT_LOG(1, "%s:%s", name, json_object_to_json_string(value));
            }
        }
    } else {
        if (EXT_LOG_ON()) EXT_LOG(1, "json file %s have no content", devicePath);
    }
    const long costMs = static_cast<long>((vantu::monotonicNs() - start) / 1000000);
    if (EXT_LOG_ON()) EXT_LOG(1, "%s:json parser cost %dms", __func__, static_cast<int>(costMs));
    return parser;
}

JsonParserZumio::~JsonParserZumio() {
    json_object_put(mRoot);
}

int JsonParserZumio::contentCount() const {
    if (!json_object_is_type(mRoot, json_type_object)) return 0;
    return json_object_object_length(mRoot);
}

bool JsonParserZumio::getString(const char* section, const char* key, std::string& value) const {
    if (section == nullptr || key == nullptr || !json_object_is_type(mRoot, json_type_object)) {
        return false;
    }
    json_object* members = nullptr;
    if (!json_object_object_get_ex(mRoot, section, &members)) return false;
    json_object* found = nullptr;
    if (!json_object_is_type(members, json_type_object) ||
        !json_object_object_get_ex(members, key, &found)) {
        if (members != nullptr && !json_object_is_type(members, json_type_object)) {
            if (EXT_LOG_ON()) EXT_LOG(1, "%s(%s, %s) type is error", __func__, section, key);
        }
        return false;
    }
    if (!json_object_is_type(found, json_type_string)) {
        if (EXT_LOG_ON()) EXT_LOG(1, "%s(%s, %s) type is error", __func__, section, key);
        return false;
    }
    value.assign(json_object_get_string(found),
                 static_cast<size_t>(json_object_get_string_len(found)));
    if (EXT_LOG_ON()) EXT_LOG(1, "%s(%s, %s) success", __func__, section, key);
    return true;
}

}  // namespace android

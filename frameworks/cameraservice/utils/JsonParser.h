/*
 * The feature configuration: "odm/etc/camera/fwk_config.json", a "default" section and one
 * section per app package, each an object of keys. A key is looked up in the app's section first
 * and then in "default"; a key found in neither, or holding a value of the wrong JSON type,
 * answers the caller's default.
 *
 * The file is loaded once, by initJsonParser() when the extension object is built, and is
 * read-only afterwards: getters take no lock and do no heap allocation for scalar keys.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_JSONPARSER_H
#define VANTU_CAMERASERVICE_UTILS_JSONPARSER_H

#include <stdint.h>
#include <string.h>
#include <utils/RefBase.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "utils/JsonC.h"

namespace android {

class JsonParser : public RefBase {
public:
    // Loads `path`, a device path resolved against the device root ("odm/etc/camera/..."). A
    // missing or malformed file logs one error and leaves the parser empty.
    explicit JsonParser(const char* path);
    ~JsonParser() override;

    JsonParser(const JsonParser&) = delete;
    JsonParser& operator=(const JsonParser&) = delete;

    void parserJsonFile(const char* path);

    bool getBool(const char* key, const char* package, bool defaultValue) const;
    int getInt(const char* key, const char* package, int defaultValue) const;
    double getDouble(const char* key, const char* package, double defaultValue) const;
    std::string getString(const char* key, const char* package,
                          const std::string& defaultValue) const;
    // Append the array's elements of the right type to `out` (which is not cleared first).
    void getBoolArray(const char* key, const char* package, std::vector<bool>& out) const;
    void getIntArray(const char* key, const char* package, std::vector<int>& out) const;
    void getDoubleArray(const char* key, const char* package, std::vector<double>& out) const;
    void getStringArray(const char* key, const char* package, std::vector<std::string>& out) const;
    // True when the string list holds `value` as a whole entry; copies nothing, so per-frame
    // hooks may ask.
    bool stringArrayHas(const char* key, const char* package, const char* value) const;

    // Where a key's value for a package comes from, as the getters decide it.
    enum class Origin {
        App,        // the package's own section
        Default,    // the "default" section
        Missing,    // in neither (or null in both): the caller's default
        WrongType,  // found, but not of the requested JSON type: the caller's default
    };
    struct Resolution {
        Origin origin;
        // The value found (App, Default, WrongType) or nullptr; owned by the parser.
        json_object* value;
        // Whether the value was found in the package's own section rather than in "default".
        bool inAppSection;
    };
    // Resolves `key` for `package` (null: "default") expecting `type`, without logging.
    Resolution resolve(const char* key, const char* package, json_type type) const;

    size_t sectionCount() const { return mSections.size(); }
    bool hasSection(const char* name) const {
        return name != nullptr && mSections.find(std::string_view(name)) != mSections.end();
    }

private:
    struct Entry {
        json_object* value;  // nullptr for a JSON null
        bool own;            // written in this section rather than taken from "default"
    };
    // Orders names by length, then by their last eight bytes as one integer, then by all bytes.
    // Package names share long prefixes ("com.") and keys share prefixes ("feature_"), so most
    // comparisons end at the length or the tail, without a memcmp. Being transparent, it lets
    // lookups take a string_view without building a std::string.
    struct NameLess {
        using is_transparent = void;
        static uint64_t tail(std::string_view s) {
            uint64_t t = 0;
            if (s.size() >= sizeof(t)) {
                memcpy(&t, s.data() + s.size() - sizeof(t), sizeof(t));
            } else {
                for (char c : s) t = (t << 8) | static_cast<unsigned char>(c);
            }
            return t;
        }
        bool operator()(std::string_view a, std::string_view b) const {
            if (a.size() != b.size()) return a.size() < b.size();
            const uint64_t ta = tail(a), tb = tail(b);
            if (ta != tb) return ta < tb;
            return memcmp(a.data(), b.data(), a.size()) < 0;
        }
    };
    using KeyMap = std::map<std::string, Entry, NameLess>;
    using SectionMap = std::map<std::string, KeyMap, NameLess>;

    // Copies into each app section the "default" values it does not set (or sets to null), so
    // that a lookup is one section search and one key search whichever section answers.
    void inheritDefaults();
    // The package's section, or "default" for a package without one.
    const KeyMap* sectionFor(std::string_view package) const;
    // sectionFor() through a per-thread memo of the last package asked: the hooks of one thread
    // ask about the same package frame after frame.
    const KeyMap* cachedSectionFor(std::string_view package) const;
    // Resolves like resolve() and logs a type error under the getter's name.
    json_object* candidate(const char* getter, const char* key, const char* package,
                           json_type type) const;
    template <typename T, typename Read>
    void appendArray(const char* getter, const char* key, const char* package, json_type type,
                     Read read, std::vector<T>& out) const;

    json_object* mRoot = nullptr;  // owns every value the maps point to
    SectionMap mSections;
    const KeyMap* mDefault = nullptr;
    // Names this parser's current contents for the per-thread memo; never reused in a process.
    uint64_t mGeneration = 0;
};

// Loads `path` into a new parser that becomes the current one.
void initJsonParser(const char* path);
// The parser the free getters use, null before initJsonParser(). Every loaded parser lives for
// the process, so its address names one loaded configuration for good.
const JsonParser* currentJsonParser();
// The package that getters called without one use; null means "default".
void setJsonPackageName(const char* name);
// The current package name ("default" until set).
const char* getJsonPackageName();

// Look `key` up for `package` (null: the current package) in the current parser. Without a
// parser the scalar getters answer their default and the array getters leave `out` untouched.
bool getBool(const char* key, bool defaultValue, const char* package = nullptr);
int getInt(const char* key, int defaultValue, const char* package = nullptr);
double getDouble(const char* key, double defaultValue, const char* package = nullptr);
std::string getString(const char* key, const std::string& defaultValue,
                      const char* package = nullptr);
void getBoolArray(const char* key, std::vector<bool>& out, const char* package = nullptr);
void getIntArray(const char* key, std::vector<int>& out, const char* package = nullptr);
void getDoubleArray(const char* key, std::vector<double>& out, const char* package = nullptr);
void getStringArray(const char* key, std::vector<std::string>& out, const char* package = nullptr);

// True when the string list `key` (for `package`; null: the current package) holds `value` as a
// whole entry.
bool stringArrayHas(const char* key, const char* value, const char* package = nullptr);

}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_JSONPARSER_H

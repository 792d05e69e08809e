/*
 * The avatar support file: a JSON object of sections, each an object of string values, read as
 * section -> key -> value ("version"/"str", "packages"/<package>, "activitys"/<activity>).
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_APS_JSONPARSERZUMIO_H
#define VANTU_CAMERASERVICE_FEATURES_APS_JSONPARSERZUMIO_H

#include <json-c/json.h>

#include <memory>
#include <string>

namespace android {

class JsonParserZumio {
public:
    // The support file that exists first, as a device path ("data/...", "my_plinth/..."), or
    // null when neither does.
    static const char* findSupportFile();
    // Parses the file at `devicePath` (logged with its member count and the time taken). Null
    // when the file is missing, unreadable, too large or not JSON; a document that is not an
    // object gives a parser without content.
    static std::unique_ptr<JsonParserZumio> parse(const char* devicePath);

    ~JsonParserZumio();
    JsonParserZumio(const JsonParserZumio&) = delete;
    JsonParserZumio& operator=(const JsonParserZumio&) = delete;

    // The string at section/key into `value`; false (and `value` untouched) when the section or
    // key is missing or holds another type.
    bool getString(const char* section, const char* key, std::string& value) const;
    // Number of top-level members.
    int contentCount() const;

private:
    explicit JsonParserZumio(json_object* root) : mRoot(root) {}
    json_object* mRoot;  // owned
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_APS_JSONPARSERZUMIO_H

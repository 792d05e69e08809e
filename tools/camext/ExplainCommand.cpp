// camext explain --package PKG [--config FILE] [--root DIR]: every key the library knows, the
// value the library resolves for PKG, and where that value comes from.
//
// Values are read with the library's own JsonParser and its getters, so the tool answers what
// the library answers.
#include <json-c/json.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Commands.h"
#include "hostctl/HostEnv.h"
#include "utils/ConfigKeys.h"
#include "utils/JsonParser.h"

namespace camext {

namespace {

using android::JsonParser;
using android::sp;
using android::vantu::ConfigKey;
using android::vantu::ConfigType;

constexpr const char kDevicePath[] = "odm/etc/camera/fwk_config.json";

void explainUsage(FILE* out) {
    fprintf(out,
            "usage: camext explain --package PKG [--config FILE] [--root DIR]\n"
            "  Lists every configuration key the library reads, where its value for the package\n"
            "  PKG comes from (PKG's own section, the \"default\" section, or the caller when\n"
            "  the key is absent, null or of a type its getter refuses) and the value. A value\n"
            "  of \"-\" means the caller keeps its current value.\n"
            "  --config FILE  the configuration file to read (a path on this machine).\n"
            "                 Default: the library's own path, %s, under the\n"
            "                 device root.\n"
            "  --root DIR     the device root (default \"/\", as on a phone).\n"
            "  Exit status: 0 listed, 1 the file could not be loaded (every key then takes the\n"
            "  caller's default, as in the library), 2 bad arguments.\n",
            kDevicePath);
}

struct Row {
    std::string key;
    std::string type;
    std::string from;
    std::string value;
    std::string note;
};

std::string jsonQuoted(const std::string& s) {
    json_object* str = json_object_new_string_len(s.data(), static_cast<int>(s.size()));
    std::string out = json_object_to_json_string_ext(str, JSON_C_TO_STRING_NOSLASHESCAPE);
    json_object_put(str);
    return out;
}

std::string number(double v) {
    char text[64];
    snprintf(text, sizeof(text), "%g", v);
    return text;
}

template <typename T, typename Format>
std::string list(const std::vector<T>& values, Format format) {
    std::string out = "[";
    for (size_t i = 0; i < values.size(); ++i) {
        if (i > 0) out += ", ";
        out += format(values[i]);
    }
    return out + "]";
}

const char* kindOf(json_object* value) {
    return json_type_to_name(json_object_get_type(value));
}

// The value the getter answers for `key`, formatted, with `appended` set to the count of list
// elements it kept.
std::string valueOf(const JsonParser& parser, const ConfigKey& key, const char* package,
                    size_t* appended) {
    const char* d = key.defaultValue;
    switch (key.type) {
        case ConfigType::Bool: {
            const bool dflt = d != nullptr && strcmp(d, "true") == 0;
            return parser.getBool(key.name, package, dflt) ? "true" : "false";
        }
        case ConfigType::Int:
            return std::to_string(parser.getInt(key.name, package, d ? atoi(d) : 0));
        case ConfigType::Double:
            return number(parser.getDouble(key.name, package, d ? atof(d) : 0.0));
        case ConfigType::String:
            return jsonQuoted(parser.getString(key.name, package, d ? d : ""));
        case ConfigType::BoolArray: {
            std::vector<bool> v;
            parser.getBoolArray(key.name, package, v);
            *appended = v.size();
            return list(v, [](bool b) { return std::string(b ? "true" : "false"); });
        }
        case ConfigType::IntArray: {
            std::vector<int> v;
            parser.getIntArray(key.name, package, v);
            *appended = v.size();
            return list(v, [](int i) { return std::to_string(i); });
        }
        case ConfigType::DoubleArray: {
            std::vector<double> v;
            parser.getDoubleArray(key.name, package, v);
            *appended = v.size();
            return list(v, number);
        }
        case ConfigType::StringArray: {
            std::vector<std::string> v;
            parser.getStringArray(key.name, package, v);
            *appended = v.size();
            return list(v, jsonQuoted);
        }
    }
    return "?";
}

Row explainKey(const JsonParser& parser, const ConfigKey& key, const char* package) {
    Row row{key.name, android::vantu::configTypeName(key.type), "", "", ""};
    const JsonParser::Resolution r =
        parser.resolve(key.name, package, android::vantu::configValueJsonType(key.type));
    size_t appended = 0;
    const std::string value = valueOf(parser, key, package, &appended);
    if (r.origin == JsonParser::Origin::Missing || r.origin == JsonParser::Origin::WrongType) {
        row.from = "caller";
        // "-": the caller passes its current value, which an absent key leaves unchanged.
        row.value = key.defaultValue != nullptr ? value : "-";
        if (r.origin == JsonParser::Origin::WrongType) {
            row.note = std::string(r.inAppSection ? package : "default") + " holds " +
                       kindOf(r.value) + ", which " + android::vantu::configGetterName(key.type) +
                       " refuses";
        }
        return row;
    }
    row.from = r.origin == JsonParser::Origin::App ? package : "default";
    row.value = value;
    if (android::vantu::isArrayType(key.type)) {
        const size_t total = json_object_array_length(r.value);
        if (appended < total) {
            row.note = std::to_string(total - appended) + " of " + std::to_string(total) +
                       " elements skipped: wrong type";
        }
    }
    return row;
}

std::string absolute(const std::string& path) {
    if (!path.empty() && path[0] == '/') return path;
    char cwd[PATH_MAX];
    if (getcwd(cwd, sizeof(cwd)) == nullptr) return path;
    return std::string(cwd) + "/" + path;
}

}  // namespace

int explainCommand(int argc, char** argv) {
    const char* package = nullptr;
    const char* config = nullptr;
    const char* root = nullptr;
    for (int i = 1; i < argc; ++i) {
        const bool hasValue = i + 1 < argc;
        if (!strcmp(argv[i], "-h") || !strcmp(argv[i], "--help")) {
            explainUsage(stdout);
            return 0;
        } else if (!strcmp(argv[i], "--package") && hasValue) {
            package = argv[++i];
        } else if (!strcmp(argv[i], "--config") && hasValue) {
            config = argv[++i];
        } else if (!strcmp(argv[i], "--root") && hasValue) {
            root = argv[++i];
        } else if (!hasValue && (!strcmp(argv[i], "--package") || !strcmp(argv[i], "--config") ||
                                 !strcmp(argv[i], "--root"))) {
            fprintf(stderr, "camext explain: %s needs a value\n", argv[i]);
            return 2;
        } else {
            fprintf(stderr, "camext explain: unexpected argument '%s'\n", argv[i]);
            explainUsage(stderr);
            return 2;
        }
    }
    if (package == nullptr || package[0] == '\0') {
        fprintf(stderr, "camext explain: --package is required\n");
        explainUsage(stderr);
        return 2;
    }

    // The library resolves its paths against the device root; a file named on the command line
    // is a path on this machine, so it is made absolute under the root "/".
    std::string path = kDevicePath;
    std::string shown;
    if (config != nullptr) {
        hostctl::setDeviceRoot("/");
        path = absolute(config);
        shown = config;
    } else {
        hostctl::setDeviceRoot(root != nullptr ? root : "/");
        shown = std::string(kDevicePath) + " under " + hostctl::deviceRoot();
    }
    sp<JsonParser> parser = new JsonParser(path.c_str());

    std::vector<Row> rows;
    for (const ConfigKey& key : android::vantu::configKeys()) {
        rows.push_back(explainKey(*parser, key, package));
    }

    Row header{"KEY", "TYPE", "FROM", "VALUE", ""};
    size_t keyWidth = header.key.size(), typeWidth = header.type.size();
    size_t fromWidth = header.from.size();
    for (const Row& r : rows) {
        keyWidth = std::max(keyWidth, r.key.size());
        typeWidth = std::max(typeWidth, r.type.size());
        fromWidth = std::max(fromWidth, r.from.size());
    }

    printf("package: %s\n", package);
    printf("config:  %s\n", shown.c_str());
    const bool loaded = parser->sectionCount() > 0;
    if (!loaded) {
        printf("note:    the file could not be loaded; every key takes the caller's default\n");
    } else if (!parser->hasSection(package)) {
        printf("note:    %s has no section of its own; values come from \"default\"\n", package);
    }
    printf("\n");
    rows.insert(rows.begin(), header);
    for (const Row& r : rows) {
        printf("%-*s  %-*s  %-*s  %s%s%s\n", static_cast<int>(keyWidth), r.key.c_str(),
               static_cast<int>(typeWidth), r.type.c_str(), static_cast<int>(fromWidth),
               r.from.c_str(), r.value.c_str(), r.note.empty() ? "" : "  # ", r.note.c_str());
    }
    return loaded ? 0 : 1;
}

}  // namespace camext

/*
 * The feature configuration file: the input is "odm/etc/camera/fwk_config.json". It is loaded
 * as the extension loads it at start-up, and every getter is asked every known key (and the
 * names the input itself uses) for a few fixed packages and one named in the input. `camext
 * lint` then checks the same text as its command does.
 *
 * What must hold whatever the file says:
 *  - a getter answers its caller's default exactly when the key is missing or of another type,
 *    and otherwise the file's value, whatever the default;
 *  - list getters append and never clear; stringArrayHas agrees with getStringArray;
 *  - a package without a section of its own sees what "default" holds;
 *  - a text json-c loads is one the lint's scanner follows, and its findings come in line order.
 *
 * Each input builds its own parser, released afterwards: the process-wide registry keeps every
 * parser loaded through initJsonParser for good (the extension loads one per process), so
 * loading through it per input would grow without bound.
 */
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <string>
#include <vector>

#include "ConfigLint.h"
#include "ConfigScanner.h"
#include "common/FuzzWorld.h"
#include "utils/ConfigKeys.h"
#include "utils/JsonC.h"
#include "utils/JsonParser.h"

namespace {

using android::JsonParser;
using Origin = JsonParser::Origin;

constexpr char kConfigPath[] = "odm/etc/camera/fwk_config.json";
// A package no input is likely to give a section of its own.
constexpr char kNoSection[] = "com.fuzz.nosection";

bool found(Origin origin) {
    return origin == Origin::App || origin == Origin::Default;
}

void checkScalars(const JsonParser& parser, const char* key, const char* package) {
    const auto b = parser.resolve(key, package, json_type_boolean);
    const bool b1 = parser.getBool(key, package, false);
    const bool b2 = parser.getBool(key, package, true);
    FUZZ_CHECK(found(b.origin) ? b1 == b2 : (!b1 && b2));

    const auto i = parser.resolve(key, package, json_type_int);
    const int i1 = parser.getInt(key, package, -7);
    const int i2 = parser.getInt(key, package, 99999);
    FUZZ_CHECK(found(i.origin) ? i1 == i2 : (i1 == -7 && i2 == 99999));

    const auto d = parser.resolve(key, package, json_type_double);
    const double d1 = parser.getDouble(key, package, 0.5);
    const double d2 = parser.getDouble(key, package, -1.5);
    if (!found(d.origin)) FUZZ_CHECK(d1 == 0.5 && d2 == -1.5);

    const auto s = parser.resolve(key, package, json_type_string);
    const std::string s1 = parser.getString(key, package, "\x01");
    const std::string s2 = parser.getString(key, package, "");
    FUZZ_CHECK(found(s.origin) ? s1 == s2 : (s1 == "\x01" && s2.empty()));

    // One value has one type: at most one scalar getter finds it.
    FUZZ_CHECK(found(b.origin) + found(i.origin) + found(d.origin) + found(s.origin) <= 1);
}

void checkLists(const JsonParser& parser, const char* key, const char* package) {
    const bool isArray = found(parser.resolve(key, package, json_type_array).origin);

    std::vector<bool> bools{true};
    parser.getBoolArray(key, package, bools);
    FUZZ_CHECK(bools[0] && (isArray || bools.size() == 1));
    std::vector<int> ints{-3};
    parser.getIntArray(key, package, ints);
    FUZZ_CHECK(ints[0] == -3 && (isArray || ints.size() == 1));
    std::vector<double> doubles{2.5};
    parser.getDoubleArray(key, package, doubles);
    FUZZ_CHECK(doubles[0] == 2.5 && (isArray || doubles.size() == 1));
    std::vector<std::string> strings{"\x02"};
    parser.getStringArray(key, package, strings);
    FUZZ_CHECK(strings[0] == "\x02" && (isArray || strings.size() == 1));

    // A list holds elements of one kind each: no element is counted twice.
    if (isArray) {
        const size_t elements = bools.size() + ints.size() + doubles.size() + strings.size() - 4;
        json_object* array = parser.resolve(key, package, json_type_array).value;
        FUZZ_CHECK(elements <= json_object_array_length(array));
    }
    for (size_t k = 1; k < strings.size(); ++k) {
        // A string with a NUL in it cannot be asked for by a C string.
        if (strings[k].find('\0') != std::string::npos) continue;
        FUZZ_CHECK(parser.stringArrayHas(key, package, strings[k].c_str()));
    }
    if (strings.size() == 1) FUZZ_CHECK(!parser.stringArrayHas(key, package, "\x02"));
}

// A package without a section answers as "default" does.
void checkFallback(const JsonParser& parser, const char* key) {
    for (json_type type : {json_type_boolean, json_type_int, json_type_string, json_type_array}) {
        const auto own = parser.resolve(key, kNoSection, type);
        const auto base = parser.resolve(key, "default", type);
        FUZZ_CHECK(own.origin == base.origin && own.value == base.value);
    }
}

void lint(const std::string& text) {
    // As `camext lint` does: json-c decides what is JSON, then the scanner follows it.
    json_object* doc = json_object_from_file(fuzzworld::hostPath(kConfigPath).c_str());
    if (doc == nullptr) return;
    json_object_put(doc);
    camext::JsonNode root;
    const camext::ScanResult scan = camext::scanJson(text, &root);
    if (!scan.ok) {
        fprintf(stderr, "scanner refused a document json-c loads: line %d: %s\n", scan.errorLine,
                scan.error.c_str());
        abort();
    }
    const std::vector<camext::LintFinding> findings = camext::lintConfig(root);
    const int lines = static_cast<int>(std::count(text.begin(), text.end(), '\n')) + 1;
    for (size_t k = 0; k < findings.size(); ++k) {
        FUZZ_CHECK(findings[k].line >= 0 && findings[k].line <= lines);
        if (k > 0) FUZZ_CHECK(findings[k - 1].line <= findings[k].line);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzzworld::useDeviceRoot();
    fuzzworld::writeDeviceFile(kConfigPath, data, size);
    android::sp<JsonParser> parser = new JsonParser(kConfigPath);

    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::vector<std::string> names = fuzzworld::quotedStrings(text, 24, 200);
    // A null package is "default" to the parser's own getters.
    std::vector<const char*> packages = {"default", "com.tencent.mm", kNoSection};
    for (const std::string& name : names) {
        if (name != "default") {
            packages.push_back(name.c_str());
            break;
        }
    }
    if (!parser->hasSection(kNoSection)) {
        for (const android::vantu::ConfigKey& key : android::vantu::configKeys()) {
            checkFallback(*parser, key.name);
        }
    }
    for (const char* package : packages) {
        for (const android::vantu::ConfigKey& key : android::vantu::configKeys()) {
            checkScalars(*parser, key.name, package);
            checkLists(*parser, key.name, package);
        }
        for (const std::string& name : names) {
            checkScalars(*parser, name.c_str(), package);
            checkLists(*parser, name.c_str(), package);
        }
    }
    parser.clear();
    lint(text);
    return 0;
}

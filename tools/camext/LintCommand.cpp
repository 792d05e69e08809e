// camext lint FILE: checks a feature configuration file the way the library will read it.
//
// Findings are printed compiler style, "FILE:LINE: error: ..." or "FILE:LINE: warning: ...".
// Exit status: 0 no errors (warnings are advice), 1 errors found, 2 the file cannot be read or
// is not JSON that json-c accepts.
#include <errno.h>
#include <json-c/json.h>
#include <limits.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>

#include "Commands.h"
#include "ConfigLint.h"
#include "ConfigScanner.h"
#include "ListLint.h"

namespace camext {

namespace {

void lintUsage(FILE* out) {
    fprintf(out,
            "usage: camext lint FILE\n"
            "  Checks a feature configuration file (fwk_config.json) as the library reads it:\n"
            "  unknown keys (with the nearest known key), values of a type the key's getter\n"
            "  refuses, nulls, nested objects, wrong array elements, sections that are not\n"
            "  objects, duplicate keys and sections (the library uses the first, json-c alone\n"
            "  the last) and empty entries of a prefix list such as privileged_app_list.\n"
            "  The downloadable lists are checked too: an XML list (root filter-conf) for its\n"
            "  version, rows with missing children, ISO rows and package names; a file named\n"
            "  updateInfo for the version, md5 and state markers of its first line.\n"
            "  Exit status: 0 clean or warnings only, 1 errors, 2 unreadable or not JSON.\n");
}

std::string trimmed(const char* text) {
    std::string s = text != nullptr ? text : "unknown error";
    while (!s.empty() && (s.back() == '\n' || s.back() == '\r')) s.pop_back();
    return s;
}

// Line at which json-c's tokener stops on `text`; `early` tells whether it ran out of text.
int jsonErrorLine(const std::string& text, bool* early) {
    json_tokener* tok = json_tokener_new();
    if (tok == nullptr) return 0;
    const int length = static_cast<int>(std::min<size_t>(text.size(), INT_MAX));
    json_object* obj = json_tokener_parse_ex(tok, text.data(), length);
    const size_t end = json_tokener_get_parse_end(tok);
    *early = json_tokener_get_error(tok) == json_tokener_continue;
    json_object_put(obj);
    json_tokener_free(tok);
    int line = 1;
    for (size_t i = 0; i < end && i < text.size(); ++i) {
        if (text[i] == '\n') ++line;
    }
    return line;
}

}  // namespace

int lintCommand(int argc, char** argv) {
    if (argc == 2 && (!strcmp(argv[1], "-h") || !strcmp(argv[1], "--help"))) {
        lintUsage(stdout);
        return 0;
    }
    if (argc != 2) {
        lintUsage(stderr);
        return 2;
    }
    const char* file = argv[1];

    std::ifstream in(file, std::ios::binary);
    std::ostringstream buffer;
    if (in) buffer << in.rdbuf();
    if (!in || in.bad()) {
        fprintf(stderr, "%s: error: cannot read the file: %s\n", file, strerror(errno));
        return 2;
    }
    const std::string text = buffer.str();
    const int listStatus = lintListFile(file, text);
    if (listStatus >= 0) return listStatus;

    // json-c decides what is JSON, with the library's own entry point and error text.
    json_object* doc = json_object_from_file(file);
    if (doc == nullptr) {
        const std::string error = trimmed(json_util_get_last_err());
        bool early = false;
        const int line = jsonErrorLine(text, &early);
        // Only a tokenizer failure can be blamed on the text; read errors name their own cause.
        early = early && error.rfind("json_tokener_parse_ex", 0) == 0;
        fprintf(stderr, "%s:%d: error: not JSON the library can load: %s%s\n", file, line,
                error.c_str(), early ? " (the document ends early or is empty)" : "");
        return 2;
    }
    json_object_put(doc);

    JsonNode root;
    const ScanResult scan = scanJson(text, &root);
    if (!scan.ok) {
        fprintf(stderr, "%s:%d: error: cannot follow the document here: %s\n", file, scan.errorLine,
                scan.error.c_str());
        return 2;
    }

    std::vector<LintFinding> findings = lintConfig(root);
    if (scan.trailingLine != 0) {
        findings.push_back(
            {scan.trailingLine, false, "text after the end of the document is ignored"});
    }
    int errors = 0;
    for (const LintFinding& f : findings) {
        printf("%s:%d: %s: %s\n", file, f.line, f.error ? "error" : "warning", f.message.c_str());
        if (f.error) ++errors;
    }
    return errors > 0 ? 1 : 0;
}

}  // namespace camext

// camext lint for "updateInfo" and the "filter-conf" XML lists. The XML is parsed by the same
// reader as the library's (no network, no DTD, no entity substitution), so a file the library
// cannot read is not well-formed here either.
#include "ListLint.h"

#include <ctype.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <string>
#include <vector>

#include "features/rus/CameraServiceRus.h"

namespace camext {

namespace {

using android::CameraServiceRus;

struct Finding {
    int line;
    std::string message;
};

std::string baseName(const char* path) {
    const char* slash = strrchr(path, '/');
    return slash != nullptr ? slash + 1 : path;
}

bool isXml(const std::string& text) {
    size_t i = 0;
    if (text.compare(0, 3, "\xEF\xBB\xBF") == 0) i = 3;  // a byte-order mark
    while (i < text.size() && isspace(static_cast<unsigned char>(text[i]))) ++i;
    return i < text.size() && text[i] == '<';
}

bool isDigits(const std::string& s, bool hex) {
    if (s.empty()) return false;
    for (unsigned char c : s) {
        if (!(hex ? isxdigit(c) : isdigit(c))) return false;
    }
    return true;
}

// An Android package name: two or more dot-separated segments of letters, digits and
// underscores, each beginning with a letter.
bool isPackageName(const std::string& name) {
    int segments = 0;
    size_t start = 0;
    while (true) {
        const size_t dot = name.find('.', start);
        const std::string segment = name.substr(start, dot - start);
        if (segment.empty() || !isalpha(static_cast<unsigned char>(segment[0]))) return false;
        for (unsigned char c : segment) {
            if (!isalnum(c) && c != '_') return false;
        }
        ++segments;
        if (dot == std::string::npos) break;
        start = dot + 1;
    }
    return segments >= 2;
}

std::string text(xmlDoc* doc, const xmlNode* node) {
    xmlChar* value = xmlNodeListGetString(doc, node->children, 0);
    std::string out = value != nullptr ? reinterpret_cast<const char*>(value) : "";
    xmlFree(value);
    return out;
}

bool isInteger(const std::string& s) {
    return isDigits(s[0] == '-' ? s.substr(1) : s, false);
}

std::string name(const xmlNode* node) {
    return reinterpret_cast<const char*>(node->name);
}

int line(const xmlNode* node) {
    return static_cast<int>(xmlGetLineNo(const_cast<xmlNode*>(node)));
}

// The children of a row element by name; a missing or repeated child is a finding.
void checkRow(xmlDoc* doc, const xmlNode* row, const std::vector<const char*>& wanted,
              std::vector<std::string>* values, std::vector<Finding>* findings) {
    for (const char* child : wanted) {
        int count = 0;
        std::string value;
        for (const xmlNode* n = xmlFirstElementChild(const_cast<xmlNode*>(row)); n != nullptr;
             n = xmlNextElementSibling(const_cast<xmlNode*>(n))) {
            if (name(n) == child) {
                if (count++ == 0) value = text(doc, n);
            }
        }
        if (count == 0) {
            findings->push_back(
                {line(row), name(row) + " has no " + child + ": the library stops reading here"});
        } else if (count > 1) {
            findings->push_back({line(row), name(row) + " has " + std::to_string(count) + " " +
                                                child + " elements; only the first is read"});
        }
        values->push_back(value);
    }
}

std::vector<Finding> lintXml(xmlDoc* doc) {
    std::vector<Finding> findings;
    const xmlNode* root = xmlDocGetRootElement(doc);
    if (root == nullptr) return {{1, "the document has no root element"}};
    if (name(root) != "filter-conf") {
        findings.push_back({line(root), "the root element is " + name(root) + ", not filter-conf"});
        return findings;
    }
    bool version = false;
    const xmlNode* lastIsoRow = nullptr;
    std::string lastIsoValue;
    for (const xmlNode* n = xmlFirstElementChild(const_cast<xmlNode*>(root)); n != nullptr;
         n = xmlNextElementSibling(const_cast<xmlNode*>(n))) {
        const std::string element = name(n);
        std::vector<std::string> values;
        if (element == "version") {
            version = true;
        } else if (element == "PackageFilterList") {
            checkRow(doc, n, {"PackageIndex", "PackageName"}, &values, &findings);
            const std::string& package = values[1];
            if (!package.empty() && !isPackageName(package)) {
                findings.push_back({line(n), "\"" + package + "\" is not a package name"});
            }
            if (package.size() >= CameraServiceRus::kValueSize) {
                findings.push_back({line(n),
                                    "the package name is longer than 63 characters; "
                                    "the library cuts it"});
            }
        } else if (element == "IsoIntensityList") {
            const size_t before = findings.size();
            checkRow(doc, n, {"IsoValue", "LowLevel", "HighLevel"}, &values, &findings);
            if (findings.size() == before) {
                for (const std::string& v : values) {
                    if (!isInteger(v)) {
                        findings.push_back({line(n), "\"" + v + "\" is not an integer"});
                    }
                }
            }
            lastIsoRow = n;
            lastIsoValue = values[0];
        } else {
            findings.push_back({line(n), "unknown element " + element + " (ignored)"});
        }
    }
    if (!version) findings.push_back({line(root), "filter-conf has no version"});
    if (lastIsoRow != nullptr && lastIsoValue != "-1") {
        findings.push_back({line(lastIsoRow),
                            "the last IsoIntensityList row must have IsoValue "
                            "-1 (any higher ISO)"});
    }
    return findings;
}

// The first line: version:<text>,md5:<32 hex digits>,state:<digit>, then a newline.
std::vector<Finding> lintUpdateInfo(const std::string& content) {
    const size_t newline = content.find('\n');
    if (content.empty()) return {{1, "the file is empty"}};
    const std::string first = content.substr(0, newline);
    std::vector<Finding> findings;
    const size_t version = first.find("version:");
    const size_t md5 =
        version == std::string::npos ? first.find("md5:") : first.find("md5:", version);
    const size_t state = md5 == std::string::npos ? first.find("state:") : first.find("state:", md5);
    if (version == std::string::npos) findings.push_back({1, "no \"version:\" marker"});
    if (md5 == std::string::npos) findings.push_back({1, "no \"md5:\" marker after the version"});
    if (state == std::string::npos) findings.push_back({1, "no \"state:\" marker after the md5"});
    if (!findings.empty()) return findings;
    if (version != 0) findings.push_back({1, "the line does not begin with \"version:\""});
    const std::string versionText =
        first.substr(version + 8, first.find(',', version) - version - 8);
    if (versionText.empty()) findings.push_back({1, "the version text is empty"});
    if (first.find(',', version) + 1 != md5) {
        findings.push_back({1, "the version text must run up to \",md5:\""});
    }
    const std::string md5Text = first.substr(md5 + 4, first.find(',', md5) - md5 - 4);
    if (md5Text.size() != 32 || !isDigits(md5Text, true)) {
        findings.push_back({1, "the md5 is \"" + md5Text + "\", not 32 hexadecimal digits"});
    }
    if (first.find(',', md5) + 1 != state) {
        findings.push_back({1, "the md5 must be followed by \",state:\""});
    }
    const std::string stateText = first.substr(state + 6);
    if (stateText.size() != 1 || !isdigit(static_cast<unsigned char>(stateText[0]))) {
        findings.push_back({1, "the state is \"" + stateText + "\", not one digit"});
    }
    if (newline == std::string::npos) findings.push_back({1, "the line does not end in a newline"});
    return findings;
}

int report(const char* file, std::vector<Finding> findings, FILE* out) {
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding& a, const Finding& b) { return a.line < b.line; });
    for (const Finding& f : findings) {
        fprintf(out, "%s:%d: error: %s\n", file, f.line, f.message.c_str());
    }
    return findings.empty() ? 0 : 1;
}

}  // namespace

int lintListFile(const char* file, const std::string& content, FILE* out, FILE* err) {
    if (baseName(file) == "updateInfo") return report(file, lintUpdateInfo(content), out);
    if (!isXml(content)) return -1;
    xmlResetLastError();
    CameraServiceRus::Doc doc = CameraServiceRus::readFile(file);
    if (doc == nullptr) {
        const xmlError* error = xmlGetLastError();
        std::string message = error != nullptr && error->message != nullptr ? error->message : "";
        while (!message.empty() && message.back() == '\n') message.pop_back();
        fprintf(err, "%s:%d: error: not well-formed XML: %s\n", file,
                error != nullptr ? error->line : 0, message.c_str());
        return 2;
    }
    return report(file, lintXml(doc.get()), out);
}

}  // namespace camext

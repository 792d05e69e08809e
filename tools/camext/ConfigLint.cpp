#include "ConfigLint.h"

#include <ctype.h>
#include <errno.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <map>
#include <utility>

#include "utils/ConfigKeys.h"

namespace camext {

namespace {

using android::vantu::ConfigKey;
using android::vantu::ConfigType;
using Kind = JsonNode::Kind;

// Edit distance with adjacent transpositions ("enalbe" is one edit from "enable").
size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::vector<size_t>> d(a.size() + 1, std::vector<size_t>(b.size() + 1));
    for (size_t i = 0; i <= a.size(); ++i) d[i][0] = i;
    for (size_t j = 0; j <= b.size(); ++j) d[0][j] = j;
    for (size_t i = 1; i <= a.size(); ++i) {
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + cost});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
            }
        }
    }
    return d[a.size()][b.size()];
}

std::string lower(std::string_view s) {
    std::string out(s);
    for (char& c : out) c = static_cast<char>(tolower(static_cast<unsigned char>(c)));
    return out;
}

Kind elementKind(ConfigType type) {
    switch (type) {
        case ConfigType::Bool:
        case ConfigType::BoolArray:
            return Kind::Bool;
        case ConfigType::Int:
        case ConfigType::IntArray:
            return Kind::Int;
        case ConfigType::Double:
        case ConfigType::DoubleArray:
            return Kind::Double;
        case ConfigType::String:
        case ConfigType::StringArray:
            return Kind::String;
    }
    return Kind::Null;
}

bool outsideIntRange(const JsonNode& node) {
    errno = 0;
    const long long v = strtoll(node.text.c_str(), nullptr, 10);
    return errno == ERANGE || v > 2147483647LL || v < -2147483648LL;
}

// Lists whose entries the library matches as package-name prefixes (isPrivilegedApp).
bool isPrefixList(std::string_view key) {
    return key == "privileged_app_list";
}

std::string quoted(std::string_view s) {
    return "\"" + std::string(s) + "\"";
}

class Linter {
public:
    std::vector<LintFinding> run(const JsonNode& root) {
        if (root.kind != Kind::Object) {
            error(root.line, std::string("the document is ") + kindName(root.kind) +
                                 ", not an object of sections: the library loads nothing");
        } else if (root.members.empty()) {
            error(root.line, "the document has no sections: the library loads nothing");
        } else {
            sections(root);
        }
        std::stable_sort(mFindings.begin(), mFindings.end(),
                         [](const LintFinding& a, const LintFinding& b) { return a.line < b.line; });
        return std::move(mFindings);
    }

private:
    void error(int line, std::string message) { mFindings.push_back({line, true, message}); }
    void warning(int line, std::string message) { mFindings.push_back({line, false, message}); }

    // json-c alone keeps the last of several members with one name; the library takes the
    // first, as the shipped reader did, so a file that relies on either is misread somewhere.
    void duplicates(const JsonNode& object, const char* what) {
        std::map<std::string, int> first;
        for (const JsonMember& m : object.members) {
            auto [it, fresh] = first.emplace(m.key, m.line);
            if (!fresh) {
                warning(m.line, std::string("duplicate ") + what + " " + quoted(m.key) +
                                    " (first at line " + std::to_string(it->second) +
                                    "): the library uses the first, at line " +
                                    std::to_string(it->second) +
                                    ", and ignores this one; json-c alone would keep the last");
            }
        }
    }

    void sections(const JsonNode& root) {
        duplicates(root, "section");
        bool hasDefault = false;
        for (const JsonMember& section : root.members) {
            if (section.key == "default") hasDefault = true;
            if (section.value.kind != Kind::Object) {
                std::string message = "section " + quoted(section.key) + " is " +
                                      kindName(section.value.kind) +
                                      ", not an object: the library ignores it";
                if (android::vantu::findConfigKey(section.key) != nullptr) {
                    message += " (a key belongs inside \"default\" or an app's section)";
                }
                error(section.line, message);
                continue;
            }
            keys(section);
        }
        if (!hasDefault) {
            warning(root.line,
                    "no \"default\" section: a key missing from an app's section takes the "
                    "caller's default");
        }
    }

    void keys(const JsonMember& section) {
        const bool isDefault = section.key == "default";
        duplicates(section.value, "key");
        for (const JsonMember& m : section.value.members) {
            const ConfigKey* key = android::vantu::findConfigKey(m.key);
            if (m.value.kind == Kind::Null) {
                warning(m.line, quoted(m.key) + " is null: " +
                                    (isDefault ? "the caller's default applies"
                                               : "the \"default\" section's value applies"));
                continue;
            }
            if (key == nullptr) {
                unknownKey(m);
                continue;
            }
            value(m, *key, isDefault);
        }
    }

    void unknownKey(const JsonMember& m) {
        if (const char* near = suggestConfigKey(m.key)) {
            error(m.line, "unknown key " + quoted(m.key) + "; did you mean " + quoted(near) + "?");
        } else if (m.value.kind == Kind::Object) {
            warning(m.line, quoted(m.key) + " holds a nested object, which no getter reads");
        } else {
            warning(m.line, "unknown key " + quoted(m.key) + ": no feature reads it");
        }
    }

    void value(const JsonMember& m, const ConfigKey& key, bool isDefault) {
        const bool array = android::vantu::isArrayType(key.type);
        const Kind wanted = array ? Kind::Array : elementKind(key.type);
        const char* getter = android::vantu::configGetterName(key.type);
        if (m.value.kind != wanted) {
            error(m.line, quoted(m.key) + " is read as " + android::vantu::configTypeName(key.type) +
                              " but holds " + kindName(m.value.kind) + ": " + getter +
                              " refuses it and answers the caller's default" +
                              (isDefault ? "" : ", not the \"default\" section's value"));
            return;
        }
        if (!array) {
            if (wanted == Kind::Int && outsideIntRange(m.value)) {
                warning(m.line, quoted(m.key) + " = " + m.value.text +
                                    " is outside the int range: getInt clamps it");
            }
            return;
        }
        const Kind element = elementKind(key.type);
        for (size_t i = 0; i < m.value.elements.size(); ++i) {
            const JsonNode& e = m.value.elements[i];
            if (e.kind != element) {
                error(e.line, "element " + std::to_string(i) + " of " + quoted(m.key) + " is " +
                                  kindName(e.kind) + ": " + getter + " skips it");
            } else if (element == Kind::String && e.text.empty() && isPrefixList(m.key)) {
                warning(e.line, "element " + std::to_string(i) + " of " + quoted(m.key) +
                                    " is empty: as a package prefix it matches every package "
                                    "(the library skips it)");
            } else if (element == Kind::Int && outsideIntRange(e)) {
                warning(e.line, "element " + std::to_string(i) + " of " + quoted(m.key) +
                                    " is outside the int range: getIntArray clamps it");
            }
        }
    }

    std::vector<LintFinding> mFindings;
};

}  // namespace

std::vector<LintFinding> lintConfig(const JsonNode& root) {
    return Linter().run(root);
}

const char* suggestConfigKey(std::string_view name) {
    const std::string folded = lower(name);
    const size_t limit = 2 + name.size() / 8;
    const ConfigKey* best = nullptr;
    std::pair<size_t, size_t> bestDistance;
    for (const ConfigKey& key : android::vantu::configKeys()) {
        // The distance is at least the difference in length, so a key that much longer or
        // shorter cannot be suggested; skipping it keeps a long unknown name cheap to check.
        const size_t length = strlen(key.name);
        if ((length > name.size() ? length - name.size() : name.size() - length) > limit) continue;
        // Case is compared last, so "limit_intelligent_eviction" finds its key at once.
        const std::pair<size_t, size_t> d{editDistance(folded, lower(key.name)),
                                          editDistance(name, key.name)};
        if (best == nullptr || d < bestDistance) {
            best = &key;
            bestDistance = d;
        }
    }
    return best != nullptr && bestDistance.first <= limit ? best->name : nullptr;
}

}  // namespace camext

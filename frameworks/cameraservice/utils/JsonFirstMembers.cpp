#include "utils/JsonFirstMembers.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace android {
namespace vantu {

namespace {

// One member of an object as written: its quoted key and its value's text.
struct Member {
    std::string_view key;
    std::string_view value;
};

// Finds the members of an object in JSON text as json-c's default parser accepts it (comments,
// single-quoted strings, trailing commas). It only delimits values; json-c reads them.
class MemberScanner {
public:
    explicit MemberScanner(std::string_view text) : mText(text) {}

    // White space and comments from `p` on.
    void blank(size_t& p) const {
        while (p < mText.size()) {
            const char c = mText[p];
            if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v') {
                ++p;
            } else if (c == '/' && p + 1 < mText.size() && mText[p + 1] == '/') {
                while (p < mText.size() && mText[p] != '\n') ++p;
            } else if (c == '/' && p + 1 < mText.size() && mText[p + 1] == '*') {
                const size_t end = mText.find("*/", p + 2);
                p = end == std::string_view::npos ? mText.size() : end + 2;
            } else {
                return;
            }
        }
    }

    // The members of the object that begins at `p`; false when the text there is not one.
    bool members(size_t p, std::vector<Member>* out) const {
        if (p >= mText.size() || mText[p] != '{') return false;
        ++p;
        blank(p);
        while (p < mText.size() && mText[p] != '}') {
            const size_t keyStart = p;
            if (!isQuote(mText[p]) || !skipString(p)) return false;
            const std::string_view key = mText.substr(keyStart, p - keyStart);
            blank(p);
            if (p >= mText.size() || mText[p] != ':') return false;
            ++p;
            blank(p);
            const size_t valueStart = p;
            if (!skipValue(p)) return false;
            out->push_back({key, mText.substr(valueStart, p - valueStart)});
            blank(p);
            if (p < mText.size() && mText[p] == ',') {
                ++p;
                blank(p);
            } else if (p >= mText.size() || mText[p] != '}') {
                return false;
            }
        }
        return p < mText.size();
    }

    size_t offsetOf(std::string_view part) const {
        return static_cast<size_t>(part.data() - mText.data());
    }

private:
    static bool isQuote(char c) { return c == '"' || c == '\''; }

    bool skipString(size_t& p) const {
        const char quote = mText[p++];
        while (p < mText.size() && mText[p] != quote) p += mText[p] == '\\' ? 2 : 1;
        if (p >= mText.size()) return false;
        ++p;
        return true;
    }

    // Objects and arrays by their brackets alone: the document already parsed as a whole.
    bool skipValue(size_t& p) const {
        if (p >= mText.size()) return false;
        if (isQuote(mText[p])) return skipString(p);
        if (mText[p] != '{' && mText[p] != '[') {
            const size_t start = p;
            while (p < mText.size() &&
                   std::string_view(",}] \t\n\r\f\v/").find(mText[p]) == std::string_view::npos) {
                ++p;
            }
            return p > start;
        }
        int depth = 0;
        while (p < mText.size()) {
            const char c = mText[p];
            if (isQuote(c)) {
                if (!skipString(p)) return false;
                continue;
            }
            if (c == '/') {
                const size_t before = p;
                blank(p);
                if (p != before) continue;
            }
            ++p;
            if (c == '{' || c == '[') ++depth;
            if ((c == '}' || c == ']') && --depth == 0) return true;
        }
        return false;
    }

    std::string_view mText;
};

// json-c's reading of one value's text; false when json-c refuses it.
bool parseValue(std::string_view text, json_object** value) {
    enum json_tokener_error error = json_tokener_success;
    *value = json_tokener_parse_verbose(std::string(text).c_str(), &error);
    return error == json_tokener_success;
}

bool decodeKey(std::string_view quoted, std::string* key) {
    json_object* value = nullptr;
    if (!parseValue(quoted, &value)) return false;
    const bool isString = json_object_is_type(value, json_type_string);
    if (isString) *key = json_object_get_string(value);
    json_object_put(value);
    return isString;
}

// Replaces the value of each member of `object` that `members` names more than once by the
// first one's; the first occurrence of each name in `firsts`.
int keepFirsts(json_object* object, const std::vector<Member>& members,
               std::map<std::string, size_t>* firsts) {
    std::set<std::string> repeated;
    for (size_t i = 0; i < members.size(); ++i) {
        std::string key;
        if (!decodeKey(members[i].key, &key)) return 0;
        if (!firsts->emplace(key, i).second) repeated.insert(key);
    }
    int replaced = 0;
    for (const std::string& key : repeated) {
        json_object* value = nullptr;
        if (!parseValue(members[firsts->at(key)].value, &value)) continue;
        json_object_object_add(object, key.c_str(), value);
        ++replaced;
    }
    return replaced;
}

}  // namespace

int keepFirstMembers(json_object* root, std::string_view text) {
    if (!json_object_is_type(root, json_type_object)) return 0;
    const MemberScanner scanner(text);
    size_t start = 0;
    scanner.blank(start);
    std::vector<Member> sections;
    if (!scanner.members(start, &sections)) return 0;
    std::map<std::string, size_t> firstSections;
    int replaced = keepFirsts(root, sections, &firstSections);

    for (const auto& [name, index] : firstSections) {
        json_object* section = nullptr;
        if (!json_object_object_get_ex(root, name.c_str(), &section) ||
            !json_object_is_type(section, json_type_object)) {
            continue;
        }
        std::vector<Member> keys;
        if (!scanner.members(scanner.offsetOf(sections[index].value), &keys)) continue;
        std::map<std::string, size_t> firstKeys;
        replaced += keepFirsts(section, keys, &firstKeys);
    }
    return replaced;
}

}  // namespace vantu
}  // namespace android

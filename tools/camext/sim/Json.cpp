#include "sim/Json.h"

#include <ctype.h>
#include <json-c/json.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace camext {
namespace sim {

namespace {

Json fromJsonC(json_object* o) {
    switch (json_object_get_type(o)) {
        case json_type_null:
            return Json();
        case json_type_boolean:
            return Json(static_cast<bool>(json_object_get_boolean(o)));
        case json_type_int:
            return Json(static_cast<long long>(json_object_get_int64(o)));
        case json_type_double:
            return Json(json_object_get_double(o));
        case json_type_string:
            return Json(std::string(json_object_get_string(o),
                                    static_cast<size_t>(json_object_get_string_len(o))));
        case json_type_array: {
            Json a = Json::array();
            size_t n = json_object_array_length(o);
            for (size_t i = 0; i < n; ++i) a.push(fromJsonC(json_object_array_get_idx(o, i)));
            return a;
        }
        case json_type_object: {
            Json obj = Json::object();
            json_object_object_foreach(o, key, value) {
                obj.set(key, fromJsonC(value));
            }
            return obj;
        }
    }
    return Json();
}

// Line and column (1-based) of byte `offset` of `text`.
std::string position(const std::string& text, size_t offset) {
    size_t line = 1, column = 1;
    for (size_t i = 0; i < offset && i < text.size(); ++i) {
        if (text[i] == '\n') {
            ++line;
            column = 1;
        } else {
            ++column;
        }
    }
    return "line " + std::to_string(line) + " column " + std::to_string(column);
}

}  // namespace

Json Json::array(std::vector<Json> items) {
    Json j;
    j.mType = Type::Array;
    j.mItems = std::move(items);
    return j;
}

Json Json::object(std::vector<Member> members) {
    Json j;
    j.mType = Type::Object;
    for (auto& m : members) j.set(m.first, std::move(m.second));
    return j;
}

Json Json::parse(const std::string& text, std::string* error) {
    json_tokener* tok = json_tokener_new();
    if (tok == nullptr) {
        if (error) *error = "out of memory";
        return Json();
    }
    // Strict: trailing commas and other leniencies would hide typos in scenario files.
    json_tokener_set_flags(tok, JSON_TOKENER_STRICT);
    json_object* root = json_tokener_parse_ex(tok, text.c_str(), static_cast<int>(text.size()));
    json_tokener_error err = json_tokener_get_error(tok);
    size_t end = json_tokener_get_parse_end(tok);
    if (err == json_tokener_continue) {
        // A number that ends the text is complete only once json-c reads past it: give it the
        // terminator. Whatever else is still open stays an unexpected end.
        root = json_tokener_parse_ex(tok, "", 1);
        err = json_tokener_get_error(tok) == json_tokener_success ? json_tokener_success
                                                                  : json_tokener_continue;
        end = text.size();
    }
    Json result;
    if (err == json_tokener_continue) {
        if (error) *error = position(text, text.size()) + ": unexpected end of the file";
    } else if (err != json_tokener_success) {
        if (error) *error = position(text, end) + ": " + json_tokener_error_desc(err);
    } else {
        size_t i = end;
        while (i < text.size() && isspace(static_cast<unsigned char>(text[i]))) ++i;
        if (i < text.size()) {
            if (error) *error = position(text, i) + ": text after the end of the JSON value";
        } else {
            result = fromJsonC(root);
            if (error) error->clear();
        }
    }
    if (root) json_object_put(root);
    json_tokener_free(tok);
    return result;
}

const char* Json::typeName() const {
    switch (mType) {
        case Type::Null:
            return "null";
        case Type::Bool:
            return "bool";
        case Type::Int:
            return "integer";
        case Type::Double:
            return "number";
        case Type::String:
            return "string";
        case Type::Array:
            return "array";
        case Type::Object:
            return "object";
    }
    return "?";
}

int64_t Json::asInt() const {
    if (mType == Type::Int) return mInt;
    if (mType == Type::Double && std::isfinite(mDouble)) return static_cast<int64_t>(mDouble);
    if (mType == Type::Bool) return mBool ? 1 : 0;
    return 0;
}

double Json::asDouble() const {
    if (mType == Type::Double) return mDouble;
    if (mType == Type::Int) return static_cast<double>(mInt);
    return 0;
}

Json& Json::push(Json v) {
    if (mType != Type::Array) *this = array();
    mItems.push_back(std::move(v));
    return mItems.back();
}

const Json* Json::find(const std::string& key) const {
    for (const auto& m : mMembers) {
        if (m.first == key) return &m.second;
    }
    return nullptr;
}

const Json& Json::operator[](const std::string& key) const {
    static const Json kNull;
    const Json* v = find(key);
    return v ? *v : kNull;
}

Json& Json::set(const std::string& key, Json v) {
    if (mType != Type::Object) *this = object();
    for (auto& m : mMembers) {
        if (m.first == key) {
            m.second = std::move(v);
            return m.second;
        }
    }
    mMembers.emplace_back(key, std::move(v));
    return mMembers.back().second;
}

Json& Json::member(const std::string& key) {
    if (mType != Type::Object) *this = object();
    for (auto& m : mMembers) {
        if (m.first == key) return m.second;
    }
    mMembers.emplace_back(key, Json());
    return mMembers.back().second;
}

std::string quote(const std::string& s) {
    std::string out = "\"";
    for (unsigned char c : s) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                if (c < 0x20) {
                    char buf[8];
                    snprintf(buf, sizeof(buf), "\\u%04x", c);
                    out += buf;
                } else {
                    out += static_cast<char>(c);
                }
        }
    }
    return out + "\"";
}

void Json::dumpTo(std::string* out) const {
    switch (mType) {
        case Type::Null:
            *out += "null";
            break;
        case Type::Bool:
            *out += mBool ? "true" : "false";
            break;
        case Type::Int:
            *out += std::to_string(mInt);
            break;
        case Type::Double: {
            if (!std::isfinite(mDouble)) {
                *out += "null";
                break;
            }
            // Whole numbers as "30.0"; others as the shortest text that reads back the same.
            char buf[40];
            if (mDouble == std::floor(mDouble) && std::fabs(mDouble) < 1e15) {
                snprintf(buf, sizeof(buf), "%.1f", mDouble);
            } else {
                for (int precision = 1; precision <= 17; ++precision) {
                    snprintf(buf, sizeof(buf), "%.*g", precision, mDouble);
                    if (strtod(buf, nullptr) == mDouble) break;
                }
            }
            std::string text = buf;
            if (text.find_first_of(".eEn") == std::string::npos) text += ".0";
            *out += text;
            break;
        }
        case Type::String:
            *out += quote(mString);
            break;
        case Type::Array: {
            *out += '[';
            for (size_t i = 0; i < mItems.size(); ++i) {
                if (i) *out += ", ";
                mItems[i].dumpTo(out);
            }
            *out += ']';
            break;
        }
        case Type::Object: {
            *out += '{';
            for (size_t i = 0; i < mMembers.size(); ++i) {
                if (i) *out += ", ";
                *out += quote(mMembers[i].first);
                *out += ": ";
                mMembers[i].second.dumpTo(out);
            }
            *out += '}';
            break;
        }
    }
}

std::string Json::dump() const {
    std::string out;
    dumpTo(&out);
    return out;
}

bool Json::operator==(const Json& other) const {
    if (isNumber() && other.isNumber()) {
        if (mType == Type::Int && other.mType == Type::Int) return mInt == other.mInt;
        return asDouble() == other.asDouble();
    }
    if (mType != other.mType) return false;
    switch (mType) {
        case Type::Null:
            return true;
        case Type::Bool:
            return mBool == other.mBool;
        case Type::String:
            return mString == other.mString;
        case Type::Array:
            return mItems == other.mItems;
        case Type::Object: {
            if (mMembers.size() != other.mMembers.size()) return false;
            for (const auto& m : mMembers) {
                const Json* o = other.find(m.first);
                if (o == nullptr || !(*o == m.second)) return false;
            }
            return true;
        }
        default:
            return false;
    }
}

}  // namespace sim
}  // namespace camext

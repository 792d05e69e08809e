// A small JSON value for the simulator: scenario files are read into it once (through json-c),
// and step records travel from the scenario process to the report as its compact text.
#pragma once

#include <stdint.h>

#include <string>
#include <utility>
#include <vector>

namespace camext {
namespace sim {

class Json {
public:
    enum class Type { Null, Bool, Int, Double, String, Array, Object };
    using Member = std::pair<std::string, Json>;

    Json() = default;
    Json(std::nullptr_t) {}
    Json(bool b) : mType(Type::Bool), mBool(b) {}
    Json(int v) : mType(Type::Int), mInt(v) {}
    Json(long v) : mType(Type::Int), mInt(v) {}
    Json(long long v) : mType(Type::Int), mInt(v) {}
    Json(unsigned v) : mType(Type::Int), mInt(v) {}
    Json(unsigned long v) : mType(Type::Int), mInt(static_cast<int64_t>(v)) {}
    Json(unsigned long long v) : mType(Type::Int), mInt(static_cast<int64_t>(v)) {}
    Json(double v) : mType(Type::Double), mDouble(v) {}
    Json(const char* s) : mType(Type::String), mString(s ? s : "") {}
    Json(std::string s) : mType(Type::String), mString(std::move(s)) {}

    static Json array(std::vector<Json> items = {});
    static Json object(std::vector<Member> members = {});

    // Parses JSON text; on a syntax error returns null and sets `error` ("line 3 column 7: ...").
    static Json parse(const std::string& text, std::string* error);

    Type type() const { return mType; }
    bool isNull() const { return mType == Type::Null; }
    bool isBool() const { return mType == Type::Bool; }
    bool isInt() const { return mType == Type::Int; }
    bool isNumber() const { return mType == Type::Int || mType == Type::Double; }
    bool isString() const { return mType == Type::String; }
    bool isArray() const { return mType == Type::Array; }
    bool isObject() const { return mType == Type::Object; }
    // "null", "bool", "integer", "number", "string", "array", "object".
    const char* typeName() const;

    bool asBool() const { return mType == Type::Bool && mBool; }
    int64_t asInt() const;
    double asDouble() const;
    const std::string& asString() const { return mString; }

    // Arrays.
    const std::vector<Json>& items() const { return mItems; }
    std::vector<Json>& items() { return mItems; }
    size_t size() const { return mType == Type::Object ? mMembers.size() : mItems.size(); }
    Json& push(Json v);

    // Objects (members keep the file's order).
    const std::vector<Member>& members() const { return mMembers; }
    const Json* find(const std::string& key) const;
    bool has(const std::string& key) const { return find(key) != nullptr; }
    // The member's value, or null when absent.
    const Json& operator[](const std::string& key) const;
    // Adds or replaces a member.
    Json& set(const std::string& key, Json v);
    // The member, added as null when absent (an object is made of a non-object first).
    Json& member(const std::string& key);

    // Compact text, integers as integers, strings escaped.
    std::string dump() const;

    bool operator==(const Json& other) const;
    bool operator!=(const Json& other) const { return !(*this == other); }

private:
    void dumpTo(std::string* out) const;

    Type mType = Type::Null;
    bool mBool = false;
    int64_t mInt = 0;
    double mDouble = 0;
    std::string mString;
    std::vector<Json> mItems;
    std::vector<Member> mMembers;
};

// Quotes and escapes `s` as a JSON string.
std::string quote(const std::string& s);

}  // namespace sim
}  // namespace camext

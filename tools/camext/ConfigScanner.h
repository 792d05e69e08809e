// A JSON scanner that keeps what json-c throws away: the line of every key and value, every
// duplicate key, and text after the document. It accepts what json-c's default (non-strict)
// parser accepts: comments, single quotes, trailing commas, any-case literals, NaN, Infinity.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace camext {

struct JsonMember;

struct JsonNode {
    // Number kinds follow json-c: a '.', 'e' or 'E', NaN or Infinity makes a double.
    enum class Kind { Object, Array, String, Int, Double, Bool, Null };

    Kind kind = Kind::Null;
    int line = 0;
    // String: the decoded text; numbers and literals: the text as written.
    std::string text;
    std::vector<JsonMember> members;  // Object, in document order, duplicates kept
    std::vector<JsonNode> elements;   // Array
};

struct JsonMember {
    std::string key;
    int line = 0;
    JsonNode value;
};

struct ScanResult {
    bool ok = false;
    int errorLine = 0;
    std::string error;
    // Line of the first text after the document, 0 when there is none.
    int trailingLine = 0;
};

ScanResult scanJson(std::string_view text, JsonNode* root);

// "an object", "an integer", "null", ...
const char* kindName(JsonNode::Kind kind);

}  // namespace camext

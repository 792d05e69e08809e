#include "ConfigScanner.h"

#include <ctype.h>
#include <string.h>
#include <strings.h>

namespace camext {

namespace {

// json-c refuses documents nested deeper than 32; this bound only protects the stack.
constexpr int kMaxDepth = 64;

class Scanner {
public:
    explicit Scanner(std::string_view text) : mText(text) {}

    ScanResult run(JsonNode* root) {
        ScanResult result;
        skipBlank();
        if (!value(root, 0)) {
            result.errorLine = mErrorLine;
            result.error = mError;
            return result;
        }
        skipBlank();
        if (mPos < mText.size()) result.trailingLine = mLine;
        result.ok = mError.empty();
        result.errorLine = mErrorLine;
        result.error = mError;
        return result;
    }

private:
    bool fail(const std::string& what) {
        if (mError.empty()) {
            mError = what;
            mErrorLine = mLine;
        }
        return false;
    }

    bool atEnd() const { return mPos >= mText.size(); }
    char peek(size_t ahead = 0) const {
        return mPos + ahead < mText.size() ? mText[mPos + ahead] : '\0';
    }
    void advance() {
        if (mText[mPos] == '\n') ++mLine;
        ++mPos;
    }

    // White space and the comments json-c skips.
    void skipBlank() {
        while (!atEnd()) {
            const char c = peek();
            if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v') {
                advance();
            } else if (c == '/' && peek(1) == '/') {
                while (!atEnd() && peek() != '\n') advance();
            } else if (c == '/' && peek(1) == '*') {
                advance();
                advance();
                while (!atEnd() && !(peek() == '*' && peek(1) == '/')) advance();
                if (atEnd()) return;
                advance();
                advance();
            } else {
                return;
            }
        }
    }

    bool value(JsonNode* node, int depth) {
        if (depth > kMaxDepth) return fail("nested too deeply");
        node->line = mLine;
        if (atEnd()) return fail("unexpected end of the document");
        const char c = peek();
        if (c == '{') return object(node, depth);
        if (c == '[') return array(node, depth);
        if (c == '"' || c == '\'') {
            node->kind = JsonNode::Kind::String;
            return string(&node->text);
        }
        if (c == '-' || isdigit(static_cast<unsigned char>(c))) return number(node);
        return literal(node);
    }

    bool object(JsonNode* node, int depth) {
        node->kind = JsonNode::Kind::Object;
        advance();
        skipBlank();
        while (!atEnd() && peek() != '}') {
            JsonMember member;
            member.line = mLine;
            if (peek() != '"' && peek() != '\'') return fail("a quoted key was expected");
            if (!string(&member.key)) return false;
            skipBlank();
            if (peek() != ':') return fail("':' was expected after a key");
            advance();
            skipBlank();
            if (!value(&member.value, depth + 1)) return false;
            node->members.push_back(std::move(member));
            skipBlank();
            if (peek() == ',') {
                advance();
                skipBlank();
            } else if (peek() != '}') {
                return fail("',' or '}' was expected");
            }
        }
        if (atEnd()) return fail("unexpected end of the document inside an object");
        advance();
        return true;
    }

    bool array(JsonNode* node, int depth) {
        node->kind = JsonNode::Kind::Array;
        advance();
        skipBlank();
        while (!atEnd() && peek() != ']') {
            JsonNode element;
            if (!value(&element, depth + 1)) return false;
            node->elements.push_back(std::move(element));
            skipBlank();
            if (peek() == ',') {
                advance();
                skipBlank();
            } else if (peek() != ']') {
                return fail("',' or ']' was expected");
            }
        }
        if (atEnd()) return fail("unexpected end of the document inside an array");
        advance();
        return true;
    }

    static void appendUtf8(std::string* out, unsigned code) {
        if (code < 0x80) {
            out->push_back(static_cast<char>(code));
        } else if (code < 0x800) {
            out->push_back(static_cast<char>(0xC0 | (code >> 6)));
            out->push_back(static_cast<char>(0x80 | (code & 0x3F)));
        } else if (code < 0x10000) {
            out->push_back(static_cast<char>(0xE0 | (code >> 12)));
            out->push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
            out->push_back(static_cast<char>(0x80 | (code & 0x3F)));
        } else {
            out->push_back(static_cast<char>(0xF0 | (code >> 18)));
            out->push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
            out->push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
            out->push_back(static_cast<char>(0x80 | (code & 0x3F)));
        }
    }

    bool hex4(unsigned* code) {
        *code = 0;
        for (int i = 0; i < 4; ++i) {
            const char h = peek();
            if (!isxdigit(static_cast<unsigned char>(h))) return fail("bad \\u escape");
            *code = *code * 16 + (isdigit(static_cast<unsigned char>(h))
                                      ? h - '0'
                                      : (tolower(static_cast<unsigned char>(h)) - 'a' + 10));
            advance();
        }
        return true;
    }

    bool string(std::string* out) {
        const char quote = peek();
        advance();
        while (!atEnd() && peek() != quote) {
            if (peek() != '\\') {
                out->push_back(peek());
                advance();
                continue;
            }
            advance();
            if (atEnd()) break;
            const char e = peek();
            advance();
            switch (e) {
                case 'b':
                    out->push_back('\b');
                    break;
                case 'f':
                    out->push_back('\f');
                    break;
                case 'n':
                    out->push_back('\n');
                    break;
                case 'r':
                    out->push_back('\r');
                    break;
                case 't':
                    out->push_back('\t');
                    break;
                case 'u': {
                    unsigned code = 0;
                    if (!hex4(&code)) return false;
                    if (code >= 0xD800 && code < 0xDC00 && peek() == '\\' && peek(1) == 'u') {
                        advance();
                        advance();
                        unsigned low = 0;
                        if (!hex4(&low)) return false;
                        if (low >= 0xDC00 && low < 0xE000) {
                            code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
                        } else {
                            appendUtf8(out, code);
                            code = low;
                        }
                    }
                    appendUtf8(out, code);
                    break;
                }
                default:
                    out->push_back(e);
                    break;
            }
        }
        if (atEnd()) return fail("unterminated string");
        advance();
        return true;
    }

    bool number(JsonNode* node) {
        const size_t start = mPos;
        bool isDouble = false;
        if (peek() == '-') advance();
        // After a minus sign json-c also takes a fraction without its integer part: "-.5".
        const bool bareFraction = peek() == '.' && mPos + 1 < mText.size() &&
                                  isdigit(static_cast<unsigned char>(mText[mPos + 1]));
        if (!bareFraction && !isdigit(static_cast<unsigned char>(peek()))) {
            // "-Infinity" and "-NaN" are doubles to json-c.
            if (!literal(node)) return false;
            if (node->kind != JsonNode::Kind::Double) return fail("a number was expected");
            node->text = "-" + node->text;
            return true;
        }
        while (!atEnd()) {
            const char c = peek();
            if (isdigit(static_cast<unsigned char>(c))) {
                advance();
            } else if (c == '.' || c == 'e' || c == 'E' ||
                       ((c == '+' || c == '-') &&
                        (mText[mPos - 1] == 'e' || mText[mPos - 1] == 'E'))) {
                isDouble = true;
                advance();
            } else {
                break;
            }
        }
        node->kind = isDouble ? JsonNode::Kind::Double : JsonNode::Kind::Int;
        node->text = std::string(mText.substr(start, mPos - start));
        return true;
    }

    bool literal(JsonNode* node) {
        // json-c ends a literal as soon as it is complete: "truex" is true followed by "x",
        // which is an error inside a document and ignored text after one.
        static constexpr struct {
            const char* word;
            JsonNode::Kind kind;
        } kLiterals[] = {{"true", JsonNode::Kind::Bool},
                         {"false", JsonNode::Kind::Bool},
                         {"null", JsonNode::Kind::Null},
                         {"nan", JsonNode::Kind::Double},
                         {"infinity", JsonNode::Kind::Double}};
        const std::string_view rest = mText.substr(mPos);
        for (const auto& literal : kLiterals) {
            const size_t length = strlen(literal.word);
            if (rest.size() >= length && strncasecmp(rest.data(), literal.word, length) == 0) {
                node->text = std::string(rest.substr(0, length));
                node->kind = literal.kind;
                for (size_t k = 0; k < length; ++k) advance();
                return true;
            }
        }
        const size_t start = mPos;
        while (!atEnd() && isalpha(static_cast<unsigned char>(peek()))) advance();
        const std::string word(mText.substr(start, mPos - start));
        return fail(word.empty() ? "a value was expected" : "unknown word '" + word + "'");
    }

    std::string_view mText;
    size_t mPos = 0;
    int mLine = 1;
    std::string mError;
    int mErrorLine = 0;
};

}  // namespace

ScanResult scanJson(std::string_view text, JsonNode* root) {
    *root = JsonNode();
    return Scanner(text).run(root);
}

const char* kindName(JsonNode::Kind kind) {
    switch (kind) {
        case JsonNode::Kind::Object:
            return "an object";
        case JsonNode::Kind::Array:
            return "an array";
        case JsonNode::Kind::String:
            return "a string";
        case JsonNode::Kind::Int:
            return "an integer";
        case JsonNode::Kind::Double:
            return "a double";
        case JsonNode::Kind::Bool:
            return "a boolean";
        case JsonNode::Kind::Null:
            return "null";
    }
    return "?";
}

}  // namespace camext

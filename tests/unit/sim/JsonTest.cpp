// The simulator's JSON value: scenario files are read through it and step records travel as
// its text, so syntax errors must point at the spot and text must read back unchanged.
#include <gtest/gtest.h>

#include "sim/Json.h"

namespace {

using camext::sim::Json;

TEST(SimJsonParse, SyntaxErrorNamesLineAndColumn) {
    std::string error;
    Json v = Json::parse("{\n  \"a\": 1,\n  \"b\": ?\n}", &error);
    EXPECT_TRUE(v.isNull());
    EXPECT_EQ(0u, error.find("line 3 column")) << error;
}

TEST(SimJsonParse, RefusesLeniencesThatHideTypos) {
    for (const char* text : {"[1, 2,]", "{\"a\": 1,}", "{\"a\": 1} x", "", "[1"}) {
        std::string error;
        Json::parse(text, &error);
        EXPECT_FALSE(error.empty()) << text;
    }
}

TEST(SimJsonParse, KeepsIntegersApartFromNumbersAndMembersInOrder) {
    std::string error;
    Json v = Json::parse(R"({"z": 3, "a": 3.0, "m": 9007199254740993, "n": -0.5})", &error);
    ASSERT_TRUE(error.empty()) << error;
    EXPECT_TRUE(v["z"].isInt());
    EXPECT_FALSE(v["a"].isInt());
    EXPECT_EQ(9007199254740993LL, v["m"].asInt());  // beyond a double's exact integers
    ASSERT_EQ(4u, v.members().size());
    EXPECT_EQ("z", v.members()[0].first);
    EXPECT_EQ("n", v.members()[3].first);
}

// A value that is a bare number ends with the text; json-c needs a terminator to see that.
TEST(SimJsonParse, ReadsANumberThatEndsTheText) {
    for (const char* text : {"7", "-1.5", "7\n", "1e3"}) {
        std::string error;
        const Json v = Json::parse(text, &error);
        EXPECT_TRUE(error.empty()) << text << ": " << error;
        EXPECT_TRUE(v.isNumber()) << text;
    }
    std::string error;
    Json::parse("[7", &error);
    EXPECT_NE(std::string::npos, error.find("unexpected end of the file")) << error;
}

TEST(SimJsonText, DumpReadsBackTheSameValue) {
    Json v = Json::object({{"text", "quote \" slash \\ line\n tab\t bell\x07 é"},
                           {"whole", 30.0},
                           {"tenth", 0.1},
                           {"tiny", 1e-7},
                           {"huge", 1e20},
                           {"int", -2147483648LL},
                           {"list", Json::array({Json(), true, Json::object()})}});
    std::string error;
    Json back = Json::parse(v.dump(), &error);
    ASSERT_TRUE(error.empty()) << v.dump();
    EXPECT_EQ(v, back) << v.dump();
    // A whole double stays a double in the text, so it does not read back as an integer.
    EXPECT_NE(std::string::npos, v.dump().find("\"whole\": 30.0")) << v.dump();
    EXPECT_FALSE(back["whole"].isInt());
}

TEST(SimJsonCompare, NumbersCompareByValueAndObjectsIgnoreOrder) {
    EXPECT_EQ(Json(3), Json(3.0));
    EXPECT_NE(Json(3), Json(3.5));
    EXPECT_NE(Json(1), Json(true));
    EXPECT_EQ(Json::object({{"a", 1}, {"b", 2}}), Json::object({{"b", 2}, {"a", 1}}));
    EXPECT_NE(Json::object({{"a", 1}}), Json::object({{"a", 1}, {"b", 2}}));
    EXPECT_NE(Json::array({1, 2}), Json::array({2, 1}));
}

TEST(SimJsonBuild, SetReplacesAndMemberAddsOnce) {
    Json o = Json::object();
    o.set("k", 1);
    o.set("k", 2);
    o.member("list").push("a");
    o.member("list").push("b");
    EXPECT_EQ(2u, o.size());
    EXPECT_EQ(2, o["k"].asInt());
    EXPECT_EQ(Json::array({"a", "b"}), o["list"]);
    EXPECT_TRUE(o["absent"].isNull());
}

}  // namespace

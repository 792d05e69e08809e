// The host property store keeps Android's limits and parsing rules, which the library's
// policies depend on (empty means unset, 91-character values, strict integers).
#include <cutils/properties.h>
#include <gtest/gtest.h>

#include <string>

#include "hostctl/Properties.h"

namespace {

class PropertiesTest : public ::testing::Test {
protected:
    void SetUp() override { hostctl::clearProperties(); }
    void TearDown() override { hostctl::clearProperties(); }
};

TEST_F(PropertiesTest, MissingOrEmptyValueYieldsDefault) {
    char buf[PROPERTY_VALUE_MAX];
    EXPECT_EQ(3, property_get("a.b", buf, "def"));
    EXPECT_STREQ("def", buf);
    hostctl::setProperty("a.b", "");
    EXPECT_EQ(3, property_get("a.b", buf, "def"));
    EXPECT_STREQ("def", buf);
    EXPECT_EQ(0, property_get("a.b", buf, nullptr));
    EXPECT_STREQ("", buf);
}

TEST_F(PropertiesTest, LongValuesAreCutAndRefused) {
    std::string v91(91, 'x');
    std::string v92(92, 'y');
    EXPECT_EQ(0, property_set("p.ok", v91.c_str()));
    EXPECT_GT(0, property_set("p.long", v92.c_str()));
    char buf[PROPERTY_VALUE_MAX];
    EXPECT_EQ(91, property_get("p.ok", buf, ""));
    hostctl::setProperty("p.raw", std::string(200, 'z'));
    EXPECT_EQ(91, property_get("p.raw", buf, ""));
    EXPECT_EQ(91, property_get("p.none", buf, v92.c_str()));
}

TEST_F(PropertiesTest, ReadOnlyPropertiesAreSetOnce) {
    EXPECT_EQ(0, property_set("ro.x", "1"));
    EXPECT_GT(0, property_set("ro.x", "2"));
    EXPECT_EQ(0, property_set("persist.x", "1"));
    EXPECT_EQ(0, property_set("persist.x", "2"));
}

TEST_F(PropertiesTest, IntegersInferBaseAndRejectJunk) {
    struct {
        const char* text;
        int32_t expected;
    } cases[] = {{"42", 42},        {"0x10", 16},      {"010", 8},         {"-7", -7},
                 {"12abc", -1},     {"", -1},          {"2147483647", 2147483647},
                 {"2147483648", -1}, {"abc", -1},       {" 5", 5}};
    for (const auto& c : cases) {
        hostctl::setProperty("i", c.text);
        EXPECT_EQ(c.expected, property_get_int32("i", -1)) << "'" << c.text << "'";
    }
    hostctl::setProperty("i", "9223372036854775808");
    EXPECT_EQ(-5, property_get_int64("i", -5));
}

TEST_F(PropertiesTest, BooleansFollowAndroidWords) {
    const char* yes[] = {"1", "y", "yes", "true", "on"};
    const char* no[] = {"0", "n", "no", "false", "off"};
    for (const char* v : yes) {
        hostctl::setProperty("b", v);
        EXPECT_EQ(1, property_get_bool("b", 0)) << v;
    }
    for (const char* v : no) {
        hostctl::setProperty("b", v);
        EXPECT_EQ(0, property_get_bool("b", 1)) << v;
    }
    hostctl::setProperty("b", "True");
    EXPECT_EQ(7, property_get_bool("b", 7));
}

TEST_F(PropertiesTest, PropertyFileLoadsNameValueLines) {
    char path[] = "/tmp/camext-props-XXXXXX";
    int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    std::string text = "# comment\n\nro.board.platform = kona\nvendor.x=a=b\n";
    ASSERT_EQ(static_cast<ssize_t>(text.size()), write(fd, text.data(), text.size()));
    close(fd);
    std::string error;
    EXPECT_TRUE(hostctl::loadPropertyFile(path, &error)) << error;
    auto all = hostctl::properties();
    EXPECT_EQ("kona", all["ro.board.platform"]);
    EXPECT_EQ("a=b", all["vendor.x"]);
    unlink(path);
    EXPECT_FALSE(hostctl::loadPropertyFile(path, &error));
}

}  // namespace

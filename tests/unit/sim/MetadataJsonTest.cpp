// Metadata as scenarios write it: names resolved through the provider's vendor tags, values
// written with the entry's type and read back the same way, diffs named as Android names them.
#include <gtest/gtest.h>

#include "hostctl/VendorTags.h"
#include "sim/MetadataJson.h"

namespace {

using namespace camext::sim;

class SimMetadataJson : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(
            hostctl::installVendorTags(hostctl::libraryVendorTags(), kVendorId, true, false));
    }
    void TearDown() override { hostctl::clearVendorTags(); }

    static constexpr uint64_t kVendorId = 7;
    TagSpace space{kVendorId};
};

Json parse(const std::string& text) {
    std::string error;
    Json v = Json::parse(text, &error);
    EXPECT_TRUE(error.empty()) << error;
    return v;
}

TEST_F(SimMetadataJson, EveryTypeReadsBackAsWritten) {
    const Json entries = parse(R"({
        "android.control.aeMode": 3,
        "com.vantu.packageName": "com.whatsapp",
        "android.control.aeTargetFpsRange": [15, 30],
        "android.lens.focalLength": 4.71,
        "android.sensor.exposureTime": 33000000000,
        "com.vantu.device.state": 4294967297,
        "android.sensor.baseGainFactor": [1, 3]})");
    android::CameraMetadata md = newMetadata(space);
    std::string error;
    ASSERT_TRUE(writeEntries(space, entries, &md, &error)) << error;
    const Json back = readEntries(space, md);
    EXPECT_EQ(Json::array({3}), back["android.control.aeMode"]);
    EXPECT_EQ(Json::array({99, 111, 109, 46, 119, 104, 97, 116, 115, 97, 112, 112, 0}),
              back["com.vantu.packageName"]);
    EXPECT_EQ(Json::array({15, 30}), back["android.control.aeTargetFpsRange"]);
    EXPECT_EQ(Json::array({4.71}), back["android.lens.focalLength"]);
    EXPECT_EQ(Json::array({33000000000LL}), back["android.sensor.exposureTime"]);
    EXPECT_EQ(Json::array({4294967297LL}), back["com.vantu.device.state"]);
    EXPECT_EQ(Json::array({1, 3}), back["android.sensor.baseGainFactor"]);
    EXPECT_EQ(7u, back.size());
}

TEST_F(SimMetadataJson, ValuesThatDoNotFitTheTypeAreRefusedByName) {
    struct Case {
        const char* entries;
        const char* text;
    } cases[] = {
        {R"({"android.control.aeTargetFpsRange": "15"})", "only for a byte tag"},
        {R"({"android.control.aeMode": 256})", "byte tag"},
        {R"({"android.control.aeMode": 1.5})", "byte tag"},
        {R"({"android.sensor.baseGainFactor": [1, 2, 3]})", "pairs"},
        {R"({"com.vantu.no.such": 1})", "unknown tag \"com.vantu.no.such\""},
    };
    for (const auto& c : cases) {
        android::CameraMetadata md = newMetadata(space);
        std::string error;
        EXPECT_FALSE(writeEntries(space, parse(c.entries), &md, &error)) << c.entries;
        EXPECT_NE(std::string::npos, error.find(c.text)) << c.entries << ": " << error;
    }
}

TEST_F(SimMetadataJson, VendorNamesResolveOnlyForTheProviderThatDeclaresThem) {
    uint32_t tag;
    int type;
    EXPECT_TRUE(findTag(space, "com.vantu.device.state", &tag, &type, nullptr));
    EXPECT_EQ("com.vantu.device.state", tagName(space, tag));
    std::string why;
    EXPECT_FALSE(findTag(TagSpace{kVendorId + 1}, "com.vantu.device.state", &tag, &type, &why));
    EXPECT_NE(std::string::npos, why.find("vendor tags")) << why;
}

TEST_F(SimMetadataJson, DiffListsChangedAddedAndRemovedEntriesWithEnumNames) {
    const Json before = parse(R"({"android.flash.mode": [0], "android.control.aeMode": [1],
                                  "com.vantu.packageName": [97, 0]})");
    const Json after = parse(R"({"android.flash.mode": [2], "android.control.aeMode": [1],
                                 "android.control.afTrigger": [0]})");
    const Json diff = diffEntries(space, before, after);
    ASSERT_EQ(3u, diff.size()) << diff.dump();
    EXPECT_EQ("android.flash.mode", diff.items()[0]["tag"].asString());
    EXPECT_EQ("OFF", diff.items()[0]["before_name"].asString());
    EXPECT_EQ("TORCH", diff.items()[0]["after_name"].asString());
    // Text of a byte tag shows as text; a removed entry's after side is null.
    EXPECT_EQ(Json("a"), diff.items()[1]["before"]);
    EXPECT_TRUE(diff.items()[1]["after"].isNull());
    EXPECT_EQ("android.control.afTrigger", diff.items()[2]["tag"].asString());
    EXPECT_TRUE(diff.items()[2]["before"].isNull());
}

}  // namespace

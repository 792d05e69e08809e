// The XML list reader: what it takes from good lists, and that hostile files (malformed, deep,
// huge, entity-laden, oversized names) end in a clean refusal or a cut value, never a crash, a
// fetch or an expansion.
#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "features/rus/CameraServiceRus.h"
#include "support/TestSupport.h"

namespace android {
namespace {

class CameraServiceRusTest : public ::testing::Test {
protected:
    // Writes `text` as the list file and parses it.
    CameraServiceRus::Doc parse(const std::string& text) {
        root.writeFile("/data/.camera/list", text);
        return CameraServiceRus::readFile(root.hostPath("/data/.camera/list").c_str());
    }

    testsupport::TempDeviceRoot root;
};

std::string row(const std::string& index, const std::string& name) {
    return "<PackageFilterList><PackageIndex>" + index + "</PackageIndex><PackageName>" + name +
           "</PackageName></PackageFilterList>";
}

TEST_F(CameraServiceRusTest, ReadsVersionPackagesAndIsoRowsInDocumentOrder) {
    auto doc = parse("<?xml version=\"1.0\"?><filter-conf><version>42</version>" +
                     row("1", "com.a.b") + row("2", "com.c.d") +
                     "<IsoIntensityList><IsoValue>1000</IsoValue><LowLevel>40</LowLevel>"
                     "<HighLevel>46</HighLevel></IsoIntensityList>"
                     "<IsoIntensityList><IsoValue>-1</IsoValue><LowLevel>11</LowLevel>"
                     "<HighLevel>16</HighLevel></IsoIntensityList></filter-conf>");
    ASSERT_NE(doc, nullptr);
    const xmlNode* rootNode = xmlDocGetRootElement(doc.get());
    ASSERT_TRUE(CameraServiceRus::nodeMatches(rootNode, "filter-conf"));

    char version[CameraServiceRus::kValueSize];
    ASSERT_TRUE(CameraServiceRus::getVersion(doc.get(), rootNode, version));
    EXPECT_STREQ(version, "42");

    std::vector<String8> names;
    ASSERT_TRUE(CameraServiceRus::getPackageList(doc.get(), rootNode, &names));
    ASSERT_EQ(names.size(), 2u);
    EXPECT_STREQ(names[0].string(), "com.a.b");
    EXPECT_STREQ(names[1].string(), "com.c.d");

    std::vector<CameraServiceRus::MotorCtrlEntry> entries;
    ASSERT_TRUE(CameraServiceRus::getMotorCtrlList(doc.get(), rootNode, &entries));
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_STREQ(entries[1].index, "2");
    EXPECT_STREQ(entries[1].name, "com.c.d");

    std::vector<int32_t> iso;
    ASSERT_TRUE(CameraServiceRus::getIsoIntensityList(doc.get(), rootNode, &iso));
    EXPECT_EQ(iso, (std::vector<int32_t>{1000, 40, 46, -1, 11, 16}));
}

// The shipped lists are read by prefix: a node matches when the requested name begins with it.
TEST_F(CameraServiceRusTest, MatchesNodesWhoseNameBeginsTheRequestedName) {
    auto doc = parse("<filter><ver>1</ver></filter>");
    ASSERT_NE(doc, nullptr);
    const xmlNode* rootNode = xmlDocGetRootElement(doc.get());
    EXPECT_TRUE(CameraServiceRus::nodeMatches(rootNode, "filter-conf"));
    EXPECT_FALSE(CameraServiceRus::nodeMatches(rootNode, "filte"));
    char version[CameraServiceRus::kValueSize];
    EXPECT_TRUE(CameraServiceRus::getVersion(doc.get(), rootNode, version));
    EXPECT_STREQ(version, "1");
}

TEST_F(CameraServiceRusTest, RowsWithMissingChildrenStopTheRead) {
    auto doc = parse("<filter-conf>" + row("1", "com.a.b") +
                     "<PackageFilterList><PackageIndex>2</PackageIndex></PackageFilterList>"
                     "<IsoIntensityList><IsoValue>5</IsoValue></IsoIntensityList></filter-conf>");
    ASSERT_NE(doc, nullptr);
    const xmlNode* rootNode = xmlDocGetRootElement(doc.get());
    char version[CameraServiceRus::kValueSize];
    EXPECT_FALSE(CameraServiceRus::getVersion(doc.get(), rootNode, version));
    std::vector<String8> names;
    EXPECT_FALSE(CameraServiceRus::getPackageList(doc.get(), rootNode, &names));
    EXPECT_EQ(names.size(), 1u);
    std::vector<CameraServiceRus::MotorCtrlEntry> entries;
    EXPECT_FALSE(CameraServiceRus::getMotorCtrlList(doc.get(), rootNode, &entries));
    std::vector<int32_t> iso;
    EXPECT_FALSE(CameraServiceRus::getIsoIntensityList(doc.get(), rootNode, &iso));
}

TEST_F(CameraServiceRusTest, RefusesFilesThatAreNotWellFormed) {
    EXPECT_EQ(parse(""), nullptr);
    EXPECT_EQ(parse("not xml at all"), nullptr);
    EXPECT_EQ(parse("<filter-conf><version>1</version>"), nullptr);
    EXPECT_EQ(parse(std::string("<filter-conf>\0</filter-conf>", 27)), nullptr);
    EXPECT_EQ(CameraServiceRus::readFile(root.hostPath("/data/.camera/absent").c_str()), nullptr);
}

TEST_F(CameraServiceRusTest, RefusesNestingTenThousandDeep) {
    std::string text = "<filter-conf>";
    for (int i = 0; i < 10000; ++i) text += "<a>";
    for (int i = 0; i < 10000; ++i) text += "</a>";
    text += "</filter-conf>";
    EXPECT_EQ(parse(text), nullptr);
}

TEST_F(CameraServiceRusTest, RefusesATextNodeOfFiftyMegabytes) {
    std::string text = "<filter-conf><version>";
    text.append(50u << 20, '7');
    text += "</version></filter-conf>";
    EXPECT_EQ(parse(text), nullptr);
}

// External entities are never fetched and internal ones never expanded: the value holds the
// reference as written, and a billion-laughs document costs nothing.
TEST_F(CameraServiceRusTest, NeverFetchesOrExpandsEntities) {
    root.writeFile("/data/secret", "SECRET");
    auto doc = parse("<?xml version=\"1.0\"?><!DOCTYPE filter-conf [<!ENTITY x SYSTEM \"file://" +
                     root.hostPath("/data/secret") +
                     "\"><!ENTITY web SYSTEM \"http://127.0.0.1:1/x\">]>"
                     "<filter-conf><version>&x;</version>" +
                     row("1", "&web;") + "</filter-conf>");
    ASSERT_NE(doc, nullptr);
    const xmlNode* rootNode = xmlDocGetRootElement(doc.get());
    char version[CameraServiceRus::kValueSize];
    ASSERT_TRUE(CameraServiceRus::getVersion(doc.get(), rootNode, version));
    EXPECT_EQ(strstr(version, "SECRET"), nullptr);
    std::vector<String8> names;
    EXPECT_TRUE(CameraServiceRus::getPackageList(doc.get(), rootNode, &names));

    std::string laughs = "<?xml version=\"1.0\"?><!DOCTYPE filter-conf [<!ENTITY l0 \"lol\">";
    for (int i = 1; i < 10; ++i) {
        laughs += "<!ENTITY l" + std::to_string(i) + " \"";
        for (int j = 0; j < 10; ++j) laughs += "&l" + std::to_string(i - 1) + ";";
        laughs += "\">";
    }
    laughs += "]><filter-conf><version>&l9;</version></filter-conf>";
    auto bomb = parse(laughs);
    if (bomb != nullptr) {
        char value[CameraServiceRus::kValueSize];
        CameraServiceRus::getVersion(bomb.get(), xmlDocGetRootElement(bomb.get()), value);
        EXPECT_LT(strlen(value), CameraServiceRus::kValueSize);
        EXPECT_EQ(strstr(value, "lollol"), nullptr);
    }
}

TEST_F(CameraServiceRusTest, CutsLongValuesAndReadsTenThousandPackages) {
    const std::string longName(300, 'n');
    std::string text = "<filter-conf><version>1</version>" + row(longName, "com." + longName);
    for (int i = 0; i < 10000; ++i) text += row(std::to_string(i), "com.app.p" + std::to_string(i));
    text += "</filter-conf>";
    auto doc = parse(text);
    ASSERT_NE(doc, nullptr);
    std::vector<CameraServiceRus::MotorCtrlEntry> entries;
    ASSERT_TRUE(
        CameraServiceRus::getMotorCtrlList(doc.get(), xmlDocGetRootElement(doc.get()), &entries));
    ASSERT_EQ(entries.size(), 10001u);
    EXPECT_EQ(strlen(entries[0].index), CameraServiceRus::kValueSize - 1);
    EXPECT_EQ(strlen(entries[0].name), CameraServiceRus::kValueSize - 1);
    EXPECT_STREQ(entries[10000].name, "com.app.p9999");
}

}  // namespace
}  // namespace android

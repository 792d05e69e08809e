// camext lint on the downloadable lists, run as built: each fault is reported at its line with
// exit status 1, a file that is not well-formed with 2, a good list with 0.
#include <gtest/gtest.h>

#include <string>

#include "support/CamextTool.h"
#include "support/TestSupport.h"

namespace {

using testsupport::ToolRun;

class ListLintTest : public ::testing::Test {
protected:
    void SetUp() override {
        tool = testsupport::camextPath();
        if (tool.empty()) GTEST_SKIP() << "camext is not built in " << CAMEXT_BUILD_DIR;
    }

    ToolRun lint(const std::string& text, const std::string& name) {
        scratch.writeFile("/data/.camera/" + name, text);
        return testsupport::runCamext("lint '" + scratch.hostPath("/data/.camera/" + name) + "'",
                                      scratch.path());
    }

    std::string tool;
    testsupport::TempDeviceRoot scratch;
};

constexpr char kGoodList[] =
    "<?xml version=\"1.0\"?>\n"
    "<filter-conf>\n"
    "  <version>20230101</version>\n"
    "  <PackageFilterList><PackageIndex>1</PackageIndex>"
    "<PackageName>com.rio.app</PackageName></PackageFilterList>\n"
    "  <IsoIntensityList><IsoValue>1000</IsoValue><LowLevel>40</LowLevel>"
    "<HighLevel>46</HighLevel></IsoIntensityList>\n"
    "  <IsoIntensityList><IsoValue>-1</IsoValue><LowLevel>11</LowLevel>"
    "<HighLevel>16</HighLevel></IsoIntensityList>\n"
    "</filter-conf>\n";

TEST_F(ListLintTest, AcceptsAGoodListAndUpdateInfo) {
    ToolRun r = lint(kGoodList, "camera_hardware_rio_applist");
    EXPECT_EQ(r.status, 0) << r.out << r.err;
    EXPECT_EQ(r.out, "");
    r = lint("version:1690000000,md5:0123456789abcdef0123456789ABCDEF,state:1\n", "updateInfo");
    EXPECT_EQ(r.status, 0) << r.out << r.err;
}

TEST_F(ListLintTest, NamesTheLineOfEachFaultOfAList) {
    const ToolRun r = lint(
        "<filter-conf>\n"
        "<PackageFilterList><PackageIndex>1</PackageIndex></PackageFilterList>\n"
        "<PackageFilterList><PackageIndex>2</PackageIndex><PackageName>not a package"
        "</PackageName></PackageFilterList>\n"
        "<IsoIntensityList><IsoValue>1000</IsoValue><LowLevel>40</LowLevel></IsoIntensityList>\n"
        "</filter-conf>\n",
        "camera_hardware_motorctrl_applist");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find(":1: error: filter-conf has no version"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find(":2: error: PackageFilterList has no PackageName"), std::string::npos)
        << r.out;
    EXPECT_NE(r.out.find(":3: error: \"not a package\" is not a package name"), std::string::npos)
        << r.out;
    EXPECT_NE(r.out.find(":4: error: IsoIntensityList has no HighLevel"), std::string::npos)
        << r.out;
    EXPECT_NE(r.out.find(":4: error: the last IsoIntensityList row must have IsoValue -1"),
              std::string::npos)
        << r.out;
}

TEST_F(ListLintTest, FlagsAWrongRootAndOverlongNames) {
    ToolRun r = lint("<filter><version>1</version></filter>", "list");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find(":1: error: the root element is filter, not filter-conf"), std::string::npos)
        << r.out;
    r = lint(
        "<filter-conf><version>1</version><PackageFilterList><PackageIndex>1</PackageIndex>"
        "<PackageName>com." +
            std::string(300, 'a') + "</PackageName></PackageFilterList></filter-conf>",
        "list");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find("longer than 63 characters"), std::string::npos) << r.out;
}

TEST_F(ListLintTest, RefusesXmlThatIsNotWellFormed) {
    const ToolRun r = lint("<filter-conf>\n<version>1</version>\n<oops>\n</filter-conf>", "list");
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("not well-formed XML"), std::string::npos) << r.err;
}

TEST_F(ListLintTest, ChecksTheMarkersOfUpdateInfo) {
    ToolRun r = lint("x", "updateInfo");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find("updateInfo:1: error: no \"version:\" marker"), std::string::npos) << r.out;
    r = lint("version:1690000000,md5:1234,state:12", "updateInfo");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find("not 32 hexadecimal digits"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("not one digit"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("does not end in a newline"), std::string::npos) << r.out;
    r = lint("", "updateInfo");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find("updateInfo:1: error: the file is empty"), std::string::npos) << r.out;
}

}  // namespace

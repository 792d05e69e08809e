// The magnetic torch's ISO table, its downloaded list gated by updateInfo, and the sensor client's
// reading of events.
#include <gtest/gtest.h>
#include <math.h>

#include <string>
#include <vector>

#include "features/rio/MagneticSensor.h"
#include "features/rio/MagneticSensorManger.h"
#include "hostctl/Properties.h"
#include "hostctl/Services.h"
#include "support/TestSupport.h"

namespace android {
namespace {

constexpr char kBuildDate[] = "1690000000";

std::string updateInfo(const std::string& version) {
    return "version:" + version + ",md5:0123456789abcdef0123456789abcdef,state:1\n";
}

std::string isoList(const std::vector<std::vector<int>>& rows) {
    std::string text = "<filter-conf><version>1</version>";
    for (const auto& r : rows) {
        text += "<IsoIntensityList><IsoValue>" + std::to_string(r[0]) + "</IsoValue><LowLevel>" +
                std::to_string(r[1]) + "</LowLevel><HighLevel>" + std::to_string(r[2]) +
                "</HighLevel></IsoIntensityList>";
    }
    return text + "</filter-conf>";
}

class MagneticTorchTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        hostctl::setProperty("ro.build.date.utc", kBuildDate);
        manager = MagnecticSensorManager::getInstance(nullptr);
        ASSERT_NE(manager, nullptr);
        // No list: the built-in table.
        manager->parseRIOWhiteAppList();
    }
    void TearDown() override { hostctl::clearProperties(); }

    // Installs a downloaded list for this build and reads it.
    bool download(const std::string& list, const std::string& info = updateInfo(kBuildDate)) {
        root.writeFile("/data/.camera/updateInfo", info);
        root.writeFile("/data/.camera/camera_hardware_rio_applist", list);
        return manager->parseRIOWhiteAppList();
    }

    testsupport::TempDeviceRoot root;
    sp<MagnecticSensorManager> manager;
};

TEST_F(MagneticTorchTest, BuiltInTableByIsoAndRequestedLevel) {
    EXPECT_EQ(manager->torchIntensityAdapter(999, 50), 40);
    EXPECT_EQ(manager->torchIntensityAdapter(999, 100), 46);
    EXPECT_EQ(manager->torchIntensityAdapter(1000, 50), 30);
    EXPECT_EQ(manager->torchIntensityAdapter(3999, 100), 40);
    EXPECT_EQ(manager->torchIntensityAdapter(4000, 50), 11);
    EXPECT_EQ(manager->torchIntensityAdapter(4000, 100), 16);
    // Only exactly 100 selects the high column.
    EXPECT_EQ(manager->torchIntensityAdapter(500, 99), 40);
    EXPECT_EQ(manager->torchIntensityAdapter(500, 101), 40);
    EXPECT_EQ(manager->torchIntensityAdapter(500, 0), 0);
    EXPECT_EQ(manager->torchIntensityAdapter(-5, 100), 46);
}

TEST_F(MagneticTorchTest, FileTableReplacesTheBuiltInOne) {
    ASSERT_TRUE(download(isoList({{800, 50, 60}, {-1, 20, 25}})));
    EXPECT_EQ(manager->torchIntensityAdapter(799, 100), 60);
    EXPECT_EQ(manager->torchIntensityAdapter(800, 100), 25);
    EXPECT_EQ(manager->torchIntensityAdapter(6400, 1), 20);
}

TEST_F(MagneticTorchTest, FileTableWithoutClosingRowAnswersZeroAboveIt) {
    ASSERT_TRUE(download(isoList({{800, 50, 60}})));
    EXPECT_EQ(manager->torchIntensityAdapter(100, 1), 50);
    EXPECT_EQ(manager->torchIntensityAdapter(900, 1), 0);
}

// A table that is not whole rows falls back to the built-in one.
TEST_F(MagneticTorchTest, TableOfFourValuesUsesTheBuiltInOne) {
    ASSERT_TRUE(download(isoList({{800, 50, 60}})));
    std::vector<int32_t> map = manager->isoIntensityMap();
    ASSERT_EQ(map.size(), 3u);
    // A second row cut short after its IsoValue leaves four values.
    EXPECT_FALSE(
        download("<filter-conf><version>1</version><IsoIntensityList><IsoValue>800"
                 "</IsoValue><LowLevel>50</LowLevel><HighLevel>60</HighLevel>"
                 "</IsoIntensityList><IsoIntensityList><IsoValue>900</IsoValue>"
                 "</IsoIntensityList></filter-conf>"));
    EXPECT_EQ(manager->isoIntensityMap().size(), 4u);
    EXPECT_EQ(manager->torchIntensityAdapter(500, 100), 46);
}

TEST_F(MagneticTorchTest, UpdateInfoMustNameThisBuild) {
    EXPECT_TRUE(download(isoList({{-1, 1, 2}})));
    EXPECT_FALSE(download(isoList({{-1, 1, 2}}), updateInfo("1680000000")));
    EXPECT_TRUE(manager->isoIntensityMap().empty());
    // Markers missing or out of order, one byte, no newline at all.
    EXPECT_FALSE(download(isoList({{-1, 1, 2}}), "x"));
    EXPECT_FALSE(download(isoList({{-1, 1, 2}}), ""));
    EXPECT_FALSE(download(isoList({{-1, 1, 2}}), "md5:0,version:1690000000,state:1\n"));
    EXPECT_FALSE(download(isoList({{-1, 1, 2}}), "version:1690000000,state:1\n"));
    EXPECT_FALSE(download(isoList({{-1, 1, 2}}), "version:16900000001,md5:0,state:1\n"));
    EXPECT_FALSE(download(isoList({{-1, 1, 2}}), "version:1690000000,md5:0,state:1"));
    EXPECT_TRUE(download(isoList({{-1, 1, 2}}), "version:1690000000,md5:0,state:1\r\n"));
    EXPECT_FALSE(
        download(isoList({{-1, 1, 2}}), "version:" + std::string(200, '1') + ",md5:0,state:1\n"));
}

TEST_F(MagneticTorchTest, HostileListsLeaveTheDefaults) {
    EXPECT_FALSE(download(""));
    EXPECT_FALSE(download("not xml"));
    EXPECT_FALSE(download("<other-root/>"));
    EXPECT_TRUE(manager->whiteList().empty());
    EXPECT_EQ(manager->torchIntensityAdapter(500, 100), 46);
}

class RecordingListener : public IMagneticEventListener {
public:
    void onNotify(bool isNear) override { told.push_back(isNear); }
    std::vector<bool> told;
};

TEST(MagneticSensorTest, OnlyExactlyOneIsNearAndNaNIsAway) {
    hostctl::resetServices();
    ASSERT_TRUE(hostctl::startService(hostctl::kSensorsService));
    hostctl::setProperty("ro.vantu.flashlight.rio.switch", "persist.vendor.rio.switch");
    sp<RecordingListener> listener = new RecordingListener();
    sp<MagneticSensor> sensor = new MagneticSensor(listener);
    ASSERT_EQ(sensor->init(), 1);
    ASSERT_EQ(sensor->sensorEnable(1), 1);
    EXPECT_EQ(sensor->state(), MagneticSensor::STATE_ENABLED);

    EXPECT_EQ(hostctl::deliverMagneticEvent(NAN), 1);
    EXPECT_EQ(hostctl::deliverMagneticEvent(0.999f), 1);
    EXPECT_TRUE(listener->told.empty());
    EXPECT_EQ(hostctl::deliverMagneticEvent(1.0f), 1);
    EXPECT_EQ(hostctl::deliverMagneticEvent(NAN), 1);
    EXPECT_EQ(listener->told, (std::vector<bool>{true, false}));

    // Disabled: no events reach the listener.
    ASSERT_EQ(sensor->sensorEnable(0), 1);
    hostctl::SensorEventSpec late;
    late.data[3] = 1.0f;
    late.evenIfDisabled = true;
    EXPECT_EQ(hostctl::deliverSensorEvent(late), 1);
    EXPECT_EQ(listener->told.size(), 2u);

    ASSERT_EQ(sensor->sensorEnable(1), 1);
    EXPECT_EQ(hostctl::deliverMagneticEvent(1.0f), 1);
    // The service dies: the accessory counts as away and the sensor is uninitialised.
    EXPECT_TRUE(hostctl::killService(hostctl::kSensorsService));
    EXPECT_EQ(sensor->state(), MagneticSensor::STATE_UNINITIALISED);
    EXPECT_EQ(listener->told, (std::vector<bool>{true, false, true, false}));
    EXPECT_EQ(sensor->sensorEnable(1), -1);
    sensor->uninit();
    hostctl::resetServices();
    hostctl::clearProperties();
}

}  // namespace
}  // namespace android

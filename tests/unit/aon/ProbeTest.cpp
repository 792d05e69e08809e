// The probe of the media devices for the front sensor, and the power requests, on devices that
// report odd things.
#include <hostctl/Services.h>
#include <string.h>

#include "AONTestSupport.h"

namespace {

using namespace android;
using aontest::AONTest;
using aontest::camReqMgr;
using aontest::sensor;

std::vector<std::string> mediaCalls() {
    std::vector<std::string> out;
    for (const auto& c : hostctl::serviceCallsOf(hostctl::kMediaService)) out.push_back(c.text());
    return out;
}

using ProbeTest = AONTest;

TEST_F(ProbeTest, StopsAtTheFirstMissingMediaDevice) {
    // media1 is missing: media2, which has the front sensor, is never opened.
    hostctl::MediaDevice other;
    other.number = 0;
    other.model = "uvcvideo";
    hostctl::setMediaDevices({other, camReqMgr(2, {sensor("imx471", 1801)})});
    EXPECT_EQ(0, ext->getAONcamdev());
    EXPECT_EQ(kAONNoFrontCamera, static_cast<uint16_t>(CamFrontIndex));
    EXPECT_STREQ("", CamSubDeV[0]);
    EXPECT_EQ(0, hostctl::openMediaDescriptors());
}

TEST_F(ProbeTest, SearchesOnlyTheRequestManagerAmongSeveralDevices) {
    hostctl::MediaDevice other = camReqMgr(0, {sensor("decoy", 1801)});
    other.model = "cam-req-mgr-devnode-2";
    hostctl::MediaEntity notSensor = sensor("csiphy0", 1801);
    notSensor.type = 0x20000;
    hostctl::setMediaDevices(
        {other, camReqMgr(1, {notSensor, sensor("imx766", 1800), sensor("imx471", 1801)})});
    ext->getAONcamdev();
    EXPECT_STREQ("/dev/imx766", CamSubDeV[0]);
    EXPECT_STREQ("/dev/imx471", CamSubDeV[1]);
    EXPECT_EQ(1, static_cast<uint16_t>(CamFrontIndex));
    EXPECT_EQ(0, hostctl::openMediaDescriptors());
}

TEST_F(ProbeTest, LongEntityNamesAreCutAndTerminatedInTheirEntry) {
    const std::string name32(32, 'a');
    const std::string name300(300, 'b');
    hostctl::setMediaDevices({camReqMgr(0, {sensor(name32, 1800), sensor(name300, 1801)})});
    ext->getAONcamdev();
    EXPECT_EQ("/dev/" + std::string(31, 'a'), CamSubDeV[0]);
    EXPECT_EQ("/dev/" + std::string(31, 'b'), CamSubDeV[1]);
    EXPECT_STREQ("", CamSubDeV[2]);
    // The cut node is the one the device answers on.
    ASSERT_EQ(1, static_cast<uint16_t>(CamFrontIndex));
    sp<hostctl::HostBinder> app = hostctl::createBinder("aon-long", aontest::kCallbackDescriptor);
    hostctl::clearServiceCalls();
    EXPECT_EQ(OK, open(app));
    EXPECT_EQ(std::vector<std::string>{"powerUp(/dev/" + std::string(31, 'b') + ")"}, mediaCalls());
}

TEST_F(ProbeTest, KeepsTheFirstFiveSensorsAndAsksOnlyThem) {
    std::vector<hostctl::MediaEntity> sensors;
    for (int i = 0; i < 8; ++i) sensors.push_back(sensor("s" + std::to_string(i), 1810 + i));
    sensors[6].position = 1801;  // the front sensor is beyond the table
    hostctl::setMediaDevices({camReqMgr(0, sensors)});
    ext->getAONcamdev();
    for (int i = 0; i < kAONMaxSubDevices; ++i) {
        EXPECT_EQ("/dev/s" + std::to_string(i), CamSubDeV[i]);
    }
    // The loose end: the last code written stays, and names no entry.
    EXPECT_EQ(1814, static_cast<uint16_t>(CamFrontIndex));

    sp<hostctl::HostBinder> app = hostctl::createBinder("aon-five", aontest::kCallbackDescriptor);
    hostctl::clearServiceCalls();
    EXPECT_NE(OK, open(app));
    EXPECT_EQ(AON_OPEN, static_cast<int32_t>(gAONStatus));
    EXPECT_TRUE(mediaCalls().empty());
    EXPECT_EQ(std::vector<std::string>{"onOpened"}, aontest::callbackCalls(*app));
}

TEST_F(ProbeTest, BinderOfAnotherInterfaceIsCalledAsACallback) {
    probeFront();
    sp<hostctl::HostBinder> other = hostctl::createBinder("not-aon", "android.hardware.camera");
    EXPECT_EQ(OK, open(other));
    EXPECT_EQ(AON_OPEN, static_cast<int32_t>(gAONStatus));
    ASSERT_EQ(1u, other->transactions().size());
    EXPECT_EQ(aontest::kCallbackDescriptor, other->transactions()[0].interfaceName);
    EXPECT_EQ(OK, ext->closeAON());
    EXPECT_EQ(0, hostctl::openMediaDescriptors());
}

TEST_F(ProbeTest, OpenAndCloseWithoutFrontSensorProbeAgain) {
    hostctl::setMediaDevices({});
    sp<hostctl::HostBinder> app = hostctl::createBinder("aon-none", aontest::kCallbackDescriptor);
    EXPECT_EQ(OK, open(app));
    EXPECT_EQ(AON_IDLE, static_cast<int32_t>(gAONStatus));
    // The device appears: the next close finds nothing yet but its probe finds the sensor.
    hostctl::setMediaDevices({camReqMgr(0, {sensor("imx471", 1801)})});
    EXPECT_EQ(OK, ext->closeAON());
    EXPECT_EQ(0, static_cast<uint16_t>(CamFrontIndex));
    EXPECT_EQ((std::vector<std::string>{"onError(-1)", "onError(-1)"}),
              aontest::callbackCalls(*app));
    EXPECT_EQ(nullptr, mAONHECallback.get());
}

}  // namespace

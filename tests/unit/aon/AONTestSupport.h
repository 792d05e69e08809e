/*
 * Helpers of the always-on camera tests: an extension built on a fresh device root, media
 * devices described in a line, and the calls an app's callback binder received.
 */
#pragma once

#include <gtest/gtest.h>
#include <hostctl/Binder.h>
#include <hostctl/MediaDevices.h>
#include <hostctl/Properties.h>
#include <string.h>

#include <string>
#include <vector>

#include "CameraServiceExtImpl.h"
#include "support/TestSupport.h"

namespace aontest {

constexpr char kCallbackDescriptor[] = "android.hardware.IAONHECallbacks";

inline hostctl::MediaEntity sensor(const std::string& name, uint16_t position) {
    hostctl::MediaEntity e;
    e.name = name;
    e.position = position;
    return e;
}

inline hostctl::MediaDevice camReqMgr(int number, std::vector<hostctl::MediaEntity> entities) {
    hostctl::MediaDevice d;
    d.number = number;
    d.entities = std::move(entities);
    return d;
}

// The calls `binder` received as "onOpened", "onError(3)", ...
inline std::vector<std::string> callbackCalls(const hostctl::HostBinder& binder) {
    static const char* const kNames[] = {"?", "onOpened", "onClosed", "onError", "onHEDetected"};
    std::vector<std::string> out;
    for (const auto& t : binder.transactions()) {
        std::string name = t.code <= 4 ? kNames[t.code] : "?";
        if (t.code == 3 && t.payloadOffset + 4 <= t.data.size()) {
            int32_t arg = 0;
            memcpy(&arg, t.data.data() + t.payloadOffset, sizeof(arg));
            name += "(" + std::to_string(arg) + ")";
        }
        out.push_back(name);
    }
    return out;
}

// A fresh device root, no media devices and the always-on state idle for each test.
class AONTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        hostctl::clearMediaDevices();
        ext = new android::CameraServiceExtImpl();
        android::gAONStatus = android::AON_IDLE;
    }
    void TearDown() override {
        // Drops any callback still held before the next test.
        android::gAONStatus = android::AON_NORMAL_CLIENT;
        ext->closeAON();
        android::gAONStatus = android::AON_IDLE;
        hostctl::clearMediaDevices();
        hostctl::clearBinders();
        hostctl::clearProperties();
    }

    // Probes a front sensor "imx471" at entity 2 of /dev/media0.
    void probeFront() {
        hostctl::setMediaDevices({camReqMgr(0, {sensor("imx766", 1800), sensor("imx471", 1801)})});
        ASSERT_EQ(0, ext->getAONcamdev());
        ASSERT_EQ(1, static_cast<uint16_t>(android::CamFrontIndex));
    }

    android::status_t open(const android::sp<hostctl::HostBinder>& app) {
        android::sp<android::IBinder> binder = app;
        return ext->openAON(binder);
    }

    testsupport::TempDeviceRoot root;
    android::sp<android::CameraServiceExtImpl> ext;
};

}  // namespace aontest

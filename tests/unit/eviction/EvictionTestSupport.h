/*
 * Helpers of the eviction tests: an extension whose client state a test may set, host clients
 * placed in its slots, and a device root with the configuration the test writes.
 */
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CameraServiceExtImpl.h"
#include "hostctl/CameraHost.h"
#include "hostctl/Properties.h"
#include "support/TestSupport.h"

namespace evictiontest {

// The feature managers stay off: the tests look at the eviction state only.
constexpr char kQuietDefaults[] = R"("feature_auth_enable": false, "feature_aps_enable": false,
    "feature_motor_enable": false, "feature_rio_enable": false, "feature_zumio_enable": false)";

// Any extension class with the client state opened to the test.
template <typename Ext>
class Exposed : public Ext {
public:
    void armFreeDom(bool on) { this->mFreeDomEviction = on; }
    bool freeDomArmed() const { return this->mFreeDomEviction; }
    bool waitPending() const { return this->mDisconnectWaitPending; }
    int32_t lastCameraId() const { return this->mLastCameraId; }
};

class EvictionTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
        writeConfig("");
    }
    void TearDown() override {
        for (auto& client : mClients) client->setOnDisconnect(nullptr);
        mClients.clear();
        hostctl::clearProperties();
    }

    // Writes the configuration: `extraDefaults` are further members of the "default" section,
    // `sections` further sections (both JSON text without the surrounding braces).
    void writeConfig(const std::string& extraDefaults, const std::string& sections = "") {
        std::string text = std::string("{\"default\": {") + kQuietDefaults +
                           (extraDefaults.empty() ? "" : ", " + extraDefaults) + "}" +
                           (sections.empty() ? "" : ", " + sections) + "}";
        mRoot.writeFile(android::kFwkConfigPath, text);
    }

    // A client of `package` open on camera `id` in the extension's slot table; when `ext` is
    // given, disconnecting it runs the server's close sequence on that extension.
    android::sp<hostctl::HostCameraClient> occupy(android::CameraServiceExtImpl& ext, int id,
                                                  const char* package, bool closeOnDisconnect) {
        android::sp<hostctl::HostCameraClient> client = new hostctl::HostCameraClient(
            android::String8::format("%d", id), android::String16(package), 10100, 5000);
        if (closeOnDisconnect) {
            android::CameraServiceExtImpl* target = &ext;
            client->setOnDisconnect([target](hostctl::HostCameraClient& c) {
                target->beforeDisconnect(false, false, c.cameraId());
                target->afterDisconnect(c.cameraId(), c.getPackageName(), nullptr);
            });
        }
        ext.storeClient(id, client);
        mClients.push_back(client);
        return client;
    }

    testsupport::TempDeviceRoot mRoot;
    std::vector<android::sp<hostctl::HostCameraClient>> mClients;
};

}  // namespace evictiontest

/*
 * Helpers of the transaction tests: an extension whose state a test can see and whose optional
 * managers it can supply, and parcels written as the maker's callers write them.
 */
#pragma once

#include <binder/Parcel.h>
#include <gtest/gtest.h>
#include <hostctl/Binder.h>
#include <utils/String16.h>

#include <mutex>
#include <set>
#include <string>

#include "CameraServiceExtImpl.h"
#include "hostctl/Properties.h"
#include "support/TestSupport.h"
#include "utils/JsonParser.h"

namespace transacttest {

constexpr char kSystemCamera[] = "android.permission.SYSTEM_CAMERA";

class TransactExtension : public android::CameraServiceExtImpl {
public:
    int32_t apkUid() const { return mAPKUid; }
    int32_t apkPid() const { return mAPKPid; }
    std::set<int32_t> privilegedUids() {
        std::lock_guard<std::mutex> lock(mPrivilegedUidsLock);
        return mPrivilegedUids;
    }
    bool disconnectingClients() const { return mDisconnectClients; }
    bool aonProbed() const { return mAONDevProbed; }
    bool hasAuthManager() const { return mAuthAppManager != nullptr; }
    void setConnectStatus(bool connected) { mConnectStatus = connected; }

    // The avatar feature with its switch, as the avatar manager would bring it.
    void giveZumioManager(bool zumioEnable, int32_t aps2Zumio) {
        mZumioManager = new android::ZumioManager();
        mZumioEnable = zumioEnable;
        mSupportAps2Zumio = aps2Zumio;
    }
    android::sp<android::MagnecticSensorManager> giveMagneticManager() {
        mMagneticSensorManager = new android::MagnecticSensorManager();
        return mMagneticSensorManager;
    }
};

// A parcel as the maker's callers write it: the interface token first unless told otherwise.
class Call {
public:
    explicit Call(bool token = true) {
        if (token) mData.writeInterfaceToken(android::String16("android.hardware.camera"));
    }
    Call& i32(int32_t v) {
        mData.writeInt32(v);
        return *this;
    }
    Call& str(const char* s) {
        mData.writeString16(android::String16(s));
        return *this;
    }
    Call& binder(const android::sp<android::IBinder>& b) {
        mData.writeStrongBinder(b);
        return *this;
    }
    const android::Parcel& data() {
        mData.setDataPosition(0);
        return mData;
    }

private:
    android::Parcel mData;
};

// A fresh device root and property store, and an extension built on them, for each test.
class TransactTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        hostctl::clearPermissions();
        hostctl::clearPermissionChecks();
    }
    void TearDown() override {
        hostctl::clearProperties();
        hostctl::clearPermissions();
        hostctl::clearPermissionChecks();
        hostctl::clearBinders();
    }

    void writeConfig(const std::string& json) { mRoot.writeFile(android::kFwkConfigPath, json); }
    // Builds the extension with the debug log switch on, so information lines can be checked.
    android::sp<TransactExtension> makeExtension() {
        hostctl::setProperty("persist.camera.assert.panic", "true");
        return new TransactExtension();
    }

    testsupport::TempDeviceRoot mRoot;
};

}  // namespace transacttest

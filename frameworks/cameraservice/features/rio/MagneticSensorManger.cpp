#include "features/rio/MagneticSensorManger.h"

#include <binder/IInterface.h>
#include <binder/IPCThreadState.h>
#include <cutils/properties.h>
#include <stdio.h>
#include <string.h>
#include <system/camera_metadata.h>
#include <utils/String16.h>

#include <algorithm>

#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/MetadataEntries.h"
#include "utils/VantuLog.h"
#include "utils/VendorTagLookup.h"

namespace android {

namespace {

constexpr char kTorchIntensityTag[] = "com.vantu.control.torch.intensity";
constexpr char kCallerPackageTag[] = "com.vantu.caller.package.name";
// The operating mode of a picture-in-picture session (0x802C).
constexpr int kPipOperatingMode = 32812;
// Callers that open the system camera on the user's behalf rather than as a third-party app.
constexpr const char* kSystemCallers[] = {
    "com.android.launcher",    "com.dorvel.quicksearchbox",
    "com.ekta.quicksearchbox", "com.google.android.googlequicksearchbox",
    "com.dorvel.speechassist", "com.vantu.gesture",
    "com.vantu.appplatform",   "android",
    "com.market.heydemo",      "com.android.systemui",
};

}  // namespace

sp<MagnecticSensorManager> MagnecticSensorManager::getInstance(CameraServiceExtImpl* owner) {
    if (!getBool("feature_rio_enable", true, nullptr)) return nullptr;
    static std::mutex sLock;
    static sp<MagnecticSensorManager> sInstance;  // lives for the process
    std::lock_guard<std::mutex> guard(sLock);
    if (sInstance == nullptr) {
        sInstance = new MagnecticSensorManager(owner);
    } else if (owner != nullptr) {
        sInstance->mOwner.bind(owner);
    }
    return sInstance;
}

MagnecticSensorManager::MagnecticSensorManager(CameraServiceExtImpl* owner) : mOwner(owner) {
    mListener = new MagneticListener(this);
    mSensor = new MagneticSensor(mListener);
}

uint64_t MagnecticSensorManager::vendorId() const {
    CameraServiceExtImpl* const owner = mOwner.get();
    return owner != nullptr ? owner->getVendorId() : static_cast<uint64_t>(-1);
}

status_t MagnecticSensorManager::addListener(const sp<hardware::ICameraServiceListener>& listener) {
    const int pid = IPCThreadState::self()->getCallingPid();
    std::lock_guard<std::mutex> guard(mLock);
    mListeners[pid] = listener;
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "[RIO-Torch] %s: Add listener of Pid %d, Listener size: %d", __func__, pid,
                static_cast<int>(mListeners.size()));
    }
    return OK;
}

status_t MagnecticSensorManager::removeListener(const sp<hardware::ICameraServiceListener>& listener) {
    // The same listener is the same binder, whichever proxy object carries it.
    const sp<IBinder> binder = listener != nullptr ? IInterface::asBinder(listener) : nullptr;
    std::lock_guard<std::mutex> guard(mLock);
    for (auto it = mListeners.begin(); it != mListeners.end();) {
        const sp<IBinder> held = it->second != nullptr ? IInterface::asBinder(it->second) : nullptr;
        it = held == binder ? mListeners.erase(it) : std::next(it);
    }
    return OK;
}

void MagnecticSensorManager::initCameraInfos(sp<CameraProviderManager> manager) {
    if (manager == nullptr) return;
    std::map<int, uint8_t> facing;
    for (const std::string& id : manager->getCameraDeviceIds()) {
        CameraMetadata info;
        if (manager->getCameraCharacteristics(id, false, &info) != OK) continue;
        camera_metadata_entry_t entry = info.find(ANDROID_LENS_FACING);
        const int cameraId = cameraIdToInt(String8(id.c_str()));
        if (entry.count > 0 && cameraId >= 0) facing[cameraId] = entry.data.u8[0];
    }
    std::lock_guard<std::mutex> guard(mInfoLock);
    mFacing.swap(facing);
}

bool MagnecticSensorManager::isFrontFacing(int cameraId) {
    std::lock_guard<std::mutex> guard(mInfoLock);
    auto it = mFacing.find(cameraId);
    return it != mFacing.end() && it->second == ANDROID_LENS_FACING_FRONT;
}

bool MagnecticSensorManager::whiteListEmpty() {
    std::lock_guard<std::mutex> guard(mInfoLock);
    return mWhiteList.empty();
}

bool MagnecticSensorManager::inWhiteList(const char* packageName) {
    std::lock_guard<std::mutex> guard(mInfoLock);
    for (const String8& name : mWhiteList) {
        if (strcmp(name.string(), packageName) == 0) return true;
    }
    return false;
}

std::vector<String8> MagnecticSensorManager::whiteList() {
    std::lock_guard<std::mutex> guard(mInfoLock);
    return mWhiteList;
}

std::vector<int32_t> MagnecticSensorManager::isoIntensityMap() {
    std::lock_guard<std::mutex> guard(mInfoLock);
    return mIsoIntensityMap;
}

void MagnecticSensorManager::init(const String8& apkName) {
    mRequestedTorchIntensity = 0;
    mLastTorchIntensity = 0;
    mTorchIntensityTag = 0;
    mCurrentIso = 6400;
    char systemCamera[PROPERTY_VALUE_MAX] = {0};
    property_get("ro.vantu.system.camera.name", systemCamera, "");
    bool enabled = strcmp(apkName.string(), systemCamera) == 0;
    if (!whiteListEmpty()) {
        enabled = enabled || inWhiteList(apkName.string());
    } else {
        enabled = enabled || getBool("app_enable_rio", false, apkName.string());
    }
    const int32_t forced = property_get_int32("vendor.debug.is.rioapk", -1);
    if (forced != -1) enabled = forced != 0;
    mIsEnableRIOApp = enabled;
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "[RIO-Torch] %s: Apk: %s, isEnableRIOApp:%d", __func__, apkName.string(),
                enabled ? 1 : 0);
    }
    mDebug = property_get_int32("vendor.debug.magnet.enable", -1);
}

void MagnecticSensorManager::updateParams(const CameraMetadata& sessionParams, int cameraId,
                                          int operatingMode) {
    mIsPIPScene = operatingMode == kPipOperatingMode;
    checkIs3rdCallSysCamera(sessionParams);
    const bool front = isFrontFacing(cameraId);
    const bool rioSwitch = isEnableRIOSitch();
    if (EXT_LOG_ON()) {
        EXT_LOG(1,
                "[RIO-Torch] %s: isFrontFacing:%d, isEnableRIOApp:%d, isEnableRIOSitch:%d, "
                "isNotPIPScene:%d, isNot3rdCallSysCamera:%d",
                __func__, front ? 1 : 0, mIsEnableRIOApp ? 1 : 0, rioSwitch ? 1 : 0,
                mIsPIPScene ? 0 : 1, mIs3rdCallSysCamera ? 0 : 1);
    }
    if (front && mIsEnableRIOApp && !mIs3rdCallSysCamera && !mIsPIPScene) {
        mSensor->init();
        mSensor->sensorEnable(isEnableRIOSitch() ? 1 : 0);
        getTorchIntensityTag();
    }
}

bool MagnecticSensorManager::isEnableRIOSitch() {
    // property_get always fills the buffer, the empty default included.
    char name[PROPERTY_VALUE_MAX];
    property_get("ro.vantu.flashlight.rio.switch", name, "");
    if (name[0] == '\0') return false;
    return property_get_int32(name, -1) == 1;
}

void MagnecticSensorManager::checkIs3rdCallSysCamera(const CameraMetadata& sessionParams) {
    mIs3rdCallSysCamera = false;
    uint32_t tag = 0;
    if (!vantu::findVendorTag(kCallerPackageTag, vendorId(), &tag)) {
        if (EXT_LOG_ON()) EXT_LOG(1, "%s: Unknown tag %s, ignoring", __func__, kCallerPackageTag);
        return;
    }
    camera_metadata_ro_entry_t entry = sessionParams.find(tag);
    if (entry.count == 0) return;
    char caller[128] = {0};
    memcpy(caller, entry.data.u8, std::min<size_t>(entry.count, sizeof(caller) - 1));
    bool thirdParty = true;
    char systemCamera[PROPERTY_VALUE_MAX] = {0};
    property_get("ro.vantu.system.camera.name", systemCamera, "");
    if (strcmp(caller, systemCamera) == 0) thirdParty = false;
    for (const char* name : kSystemCallers) {
        if (strcmp(caller, name) == 0) thirdParty = false;
    }
    if (!whiteListEmpty()) {
        if (inWhiteList(caller)) thirdParty = false;
    } else if (getBool("app_enable_rio", false, "default")) {
        // Asked at the configuration's global level, not for the caller.
        thirdParty = false;
    }
    mIs3rdCallSysCamera = thirdParty;
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "[RIO-Torch] %s: caller apkName:%s, is3rdCallSysCamera: %d", __func__, caller,
                thirdParty ? 1 : 0);
    }
}

void MagnecticSensorManager::getTorchIntensityTag() {
    uint32_t tag = 0;
    if (!vantu::findVendorTag(kTorchIntensityTag, vendorId(), &tag)) {
        EXT_LOG(0, "[RIO-Torch] %s: Unknown tag com.vantu.control.torch.intensity, ignoring",
                __func__);
        tag = 0;
    }
    mTorchIntensityTag = tag;
    if (EXT_LOG_ON()) EXT_LOG(1, "[RIO-Torch] %s: mTorchIntensityTag 0x%x", __func__, tag);
}

void MagnecticSensorManager::checkNeedEnableMagneticSensor() {
    // Runs per request: plain flag stores, and the session's own flags before the camera's
    // facing (a look-up under a lock), which most sessions never need.
    mLastRIOSwitch.store(mRIOSwitch.load(std::memory_order_relaxed), std::memory_order_relaxed);
    const bool current = isEnableRIOSitch();
    mRIOSwitch.store(current, std::memory_order_relaxed);
    if (!mIsEnableRIOApp || mIs3rdCallSysCamera || mIsPIPScene) return;
    CameraServiceExtImpl* const owner = mOwner.get();
    const int cameraId = owner != nullptr ? owner->getLastCameraId() : -1;
    if (isFrontFacing(cameraId)) {
        mSensor->sensorEnable(current ? 1 : 0);
        if (current != mLastRIOSwitch && mIsNear) {
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "[RIO-Torch] %s: RIOSwitch:%d->%d", __func__, mLastRIOSwitch ? 1 : 0,
                        current ? 1 : 0);
            }
            broadcastTorchFakeStatus(current ? 2 : 1);
        }
    }
}

void MagnecticSensorManager::parseResult(CameraMetadata& result) {
    camera_metadata_entry_t iso = result.find(ANDROID_SENSOR_SENSITIVITY);
    if (iso.count == 0) return;
    int32_t value = iso.data.i32[0];
    camera_metadata_entry_t boost = result.find(ANDROID_CONTROL_POST_RAW_SENSITIVITY_BOOST);
    if (boost.count > 0) {
        value = static_cast<int32_t>(static_cast<int64_t>(value) * boost.data.i32[0] / 100);
    }
    mCurrentIso = value;
}

void MagnecticSensorManager::setTorchIntensity(CameraMetadata& request, uint32_t requestCount) {
    const uint32_t tag = mTorchIntensityTag;
    if (tag == 0) return;
    const int32_t requested = mRequestedTorchIntensity;
    // The first ten requests always carry the value; later ones only when it changed.
    if (requestCount >= 10 && mLastTorchIntensity == requested) return;
    mLastTorchIntensity = requested;
    int32_t value = torchIntensityAdapter(mCurrentIso, requested);
    const int32_t forced = property_get_int32("camera.debug.torch.intensity", -1);
    if (forced != -1) value = forced;
    vantu::eraseEntries(request, tag);
    if (request.update(tag, &value, 1) != OK) {
        EXT_LOG(0, "[RIO-Torch] %s: updatea torchIntensityTag failed, ignoring", __func__);
    } else if (EXT_LOG_ON()) {
        EXT_LOG(1, "[RIO-Torch] %s: update torchIntensity (%d) sucessed!", __func__, value);
    }
}

bool MagnecticSensorManager::isTorchIntensityChanged() {
    return mLastTorchIntensity != mRequestedTorchIntensity;
}

int32_t MagnecticSensorManager::torchIntensityAdapter(int32_t iso, int32_t requested) {
    if (requested == 0) return 0;
    static constexpr int32_t kBuiltIn[] = {1000, 40, 46, 4000, 30, 40, -1, 11, 16};
    int32_t chosen = 0;
    {
        std::lock_guard<std::mutex> guard(mInfoLock);
        const bool useFile = !mIsoIntensityMap.empty() && mIsoIntensityMap.size() % 3 == 0;
        const int32_t* rows = useFile ? mIsoIntensityMap.data() : kBuiltIn;
        const size_t count = useFile ? mIsoIntensityMap.size() : sizeof(kBuiltIn) / sizeof(int32_t);
        for (size_t i = 0; i + 2 < count; i += 3) {
            if (rows[i] == -1 || rows[i] > iso) {
                if (rows[i] == -1) {
                    EXT_LOG(0, "[RIO-Torch] %s: Current Iso(%d) is out of range of the intensityMap",
                            "operator()", iso);
                }
                chosen = requested == 100 ? rows[i + 2] : rows[i + 1];
                break;
            }
        }
    }
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "[RIO-Torch] %s: Current Iso(%d), torchIntensity: %d->%d ", __func__, iso,
                requested, chosen);
    }
    return chosen;
}

void MagnecticSensorManager::onMagnetSensorNotify(int status) {
    mIsNear = status == 2;
    broadcastTorchFakeStatus(status);
}

void MagnecticSensorManager::broadcastTorchFakeStatus(int status) {
    char cameraId[16];
    snprintf(cameraId, sizeof(cameraId), "%d", property_get_int32("camera.debug.torch.id", -1));
    std::lock_guard<std::mutex> guard(mLock);
    const int pid = mRioListenerPid;
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "[RIO-Torch] %s: cameraId: %s, status:%d, mRioListenerPid:%d", __func__,
                cameraId, status, pid);
    }
    if (pid == 0) {
        EXT_LOG(0, "[RIO-Torch] %s: No Rio listenser (no process called SET_RIO_CLIENT_INFO)",
                __func__);
        return;
    }
    auto it = mListeners.find(pid);
    if (it == mListeners.end() || it->second == nullptr) return;
    // A listener whose process died answers with a failed status; nothing more to do.
    it->second->onTorchStatusChanged(status, String16(cameraId)).isOk();
}

void MagnecticSensorManager::uninit(int cameraId) {
    if (!isFrontFacing(cameraId)) return;
    mLastTorchIntensity = 0;
    mSensor->uninit();
}

void MagnecticSensorManager::setRioClientPid(int pid) {
    mRioListenerPid.store(pid, std::memory_order_relaxed);
}

int MagnecticSensorManager::getRioClientPid() const {
    return mRioListenerPid.load(std::memory_order_relaxed);
}

void MagnecticSensorManager::setTorchIntensity(int32_t intensity) {
    mRequestedTorchIntensity.store(intensity, std::memory_order_relaxed);
}

int32_t MagnecticSensorManager::getTorchIntensity() const {
    return mRequestedTorchIntensity.load(std::memory_order_relaxed);
}

}  // namespace android

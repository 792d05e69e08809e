/*
 * Vendor tags written into session parameters and capture requests: the client's identity, the
 * fold state, per-app flash and autofocus fixes, and the check of camera-SDK apps.
 */
#include <string.h>
#include <utils/CameraThreadState.h>

#include <cinttypes>

#include "CameraServiceExtImpl.h"
#include "utils/MetadataEntries.h"
#include "utils/RequestSwitches.h"
#include "utils/VantuLog.h"
#include "utils/VendorTagLookup.h"

namespace android {

namespace {

// Present in the session parameters of an app that drives the maker's camera SDK.
constexpr char kSdkPackageTag[] = "com.vantu.is.sdk.camera.package";
constexpr char kDeviceStateTag[] = "com.vantu.device.state";
// The request hook's name in the lines of the fixes it shares with the chip classes.
constexpr char kPrepareHook[] = "onPrepareHalRequestsUpdateMetadata";

bool isWhatsApp(const char* package) {
    return strcmp(package, "com.whatsapp") == 0 || strcmp(package, "com.whatsapp.w4b") == 0;
}

// The answer of afterEndConfigure to an SDK app that is not authorised; `line` is where the
// refusal was decided.
binder::Status refuseUnauthorisedSdkApp(const String8& package, int line) {
    const String8 message =
        String8::format("The %s uses cameraUnit but authentication fails.", package.c_str());
    EXT_LOG(0, "%s: %s", "afterEndConfigure", message.c_str());
    return binder::Status::fromServiceSpecificError(
        1, String8::format("%s:%d: %s", "afterEndConfigure", line, message.c_str()));
}

}  // namespace

binder::Status CameraServiceExtImpl::afterEndConfigure(const CameraMetadata& sessionParams,
                                                       void* client, unsigned long vendorId,
                                                       String8 cameraId) {
    // The meta stream serves again from the new configuration; its first results are not ready.
    {
        std::lock_guard<std::mutex> table(mMetaStreamInfosLock);
        const ssize_t metaIndex = mMetaStreamInfos.indexOfKey(cameraIdToInt(cameraId));
        if (metaIndex >= 0) {
            MetaStreamInfo& info = mMetaStreamInfos.editValueAt(metaIndex);
            std::unique_lock<std::mutex> metaLock;
            if (info.mLock != nullptr) metaLock = std::unique_lock<std::mutex>(*info.mLock);
            info.mDisabled = false;
            info.mCountdown = 2;
        }
    }

    const String8 package = currentPackageName();
    // Without the manager every configuration is refused, also of apps that do not use the SDK.
    if (mAuthAppManager == nullptr) {
        EXT_LOG(0, "%s: mAuthAppManager is NULL", __func__);
        return refuseUnauthorisedSdkApp(package, __LINE__);
    }
    uint32_t tag = 0;
    if (!vantu::findVendorTag(kSdkPackageTag, vendorId, &tag)) {
        if (EXT_LOG_ON()) {
            EXT_LOG(1, "%s: Unknown tag com.vantu.is.sdk.camera.package, ignoring ", __func__);
        }
        return binder::Status::ok();
    }
    if (!sessionParams.exists(tag)) {
        if (EXT_LOG_ON()) EXT_LOG(1, "%s: %s not using cameraunit.", __func__, package.c_str());
        return binder::Status::ok();
    }

    const int uid = CameraThreadState::getCallingUid();
    const int pid = CameraThreadState::getCallingPid();
    bool authed = mAuthAppManager->isAuthedClient(uid, package, false, false);
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "%s isAuthedApp: %d, uid: %d, pid: %d, client: %p", __func__, authed, uid, pid,
                client);
    }
    // The authorising component may still be on its way: give it one short wait.
    if (!authed) authed = mAuthAppManager->wait(uid, package, false, false);
    if (!authed) return refuseUnauthorisedSdkApp(package, __LINE__);
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "%s: %s uses cameraUnit and passes authentication.", __func__, package.c_str());
    }
    return binder::Status::ok();
}

CameraServiceExtImpl::RequestApp CameraServiceExtImpl::classifyRequestAppLocked() const {
    // The held name keeps its storage, so an equal pointer means the same package.
    if (mRequestAppName.string() != mCurrentPackageName.string()) {
        mRequestAppName = mCurrentPackageName;
        mRequestAppSwitchesPackage = nullptr;
        mRequestAppIsSwitchesPackage = false;
        // Out of line: the check above is all that most calls do.
        const auto classify = [](const char* package) __attribute__((noinline)) {
            if (isWhatsApp(package)) return RequestApp::kWhatsApp;
            if (strcmp(package, "com.facebook.orca") == 0) return RequestApp::kMessenger;
            if (strcmp(package, "com.facebook.katana") == 0) return RequestApp::kFacebook;
            if (strcmp(package, "com.snapchat.android") == 0) return RequestApp::kSnapchat;
            if (strcmp(package, "com.skype.raider") == 0) return RequestApp::kSkype;
            return RequestApp::kOther;
        };
        mRequestApp = classify(mRequestAppName.string());
    }
    return mRequestApp;
}

void CameraServiceExtImpl::storeCurrentPackageName(const String8& package) {
    std::lock_guard<std::mutex> lock(mClientNameLock);
    mCurrentPackageName = package;
    mClientNameGeneration.fetch_add(1, std::memory_order_release);
}

CameraServiceExtImpl::RequestApp CameraServiceExtImpl::currentRequestApp() const {
    // The generation wraps after 2^24 changes; a reader would have to sleep through exactly
    // that many to take a stale class.
    constexpr uint32_t kValid = 0x80;
    const uint32_t generation = mClientNameGeneration.load(std::memory_order_acquire) & 0xFFFFFF;
    const uint32_t cached = mRequestAppCache.load(std::memory_order_acquire);
    if ((cached & kValid) != 0 && (cached >> 8) == generation) {
        return static_cast<RequestApp>(cached & 0x7F);
    }
    std::lock_guard<std::mutex> lock(mClientNameLock);
    const RequestApp app = classifyRequestAppLocked();
    // Writers bump the generation under the lock, so it names the package just classified.
    const uint32_t current = mClientNameGeneration.load(std::memory_order_relaxed) & 0xFFFFFF;
    mRequestAppCache.store(current << 8 | kValid | static_cast<uint32_t>(app),
                           std::memory_order_release);
    return app;
}

CameraServiceExtImpl::RequestApp CameraServiceExtImpl::currentRequestApp(
    const vantu::RequestSwitches& switches, bool* rejectsStopPreview) const {
    RequestApp app;
    {
        std::lock_guard<std::mutex> lock(mClientNameLock);
        app = classifyRequestAppLocked();
        // Both names keep their storage, so equal pointers give the same answer as before.
        if (switches.package != mRequestAppSwitchesPackage) {
            mRequestAppSwitchesPackage = switches.package;
            mRequestAppIsSwitchesPackage = switches.package != nullptr &&
                                           strcmp(switches.package, mRequestAppName.string()) == 0;
        }
        if (mRequestAppIsSwitchesPackage) {
            *rejectsStopPreview = switches.rejectStopPreview;
            return app;
        }
    }
    // The switches answer for another package (the configuration's package moved on): look up.
    *rejectsStopPreview = vantu::rejectsStopPreview(switches, currentPackageName().string());
    return app;
}

bool CameraServiceExtImpl::IsNewRequest(bool newRequest, bool flag) {
    checkNeedEnableMagneticSensor();
    const bool torchChanged = isTorchIntensityChanged();
    const bool result = newRequest || torchChanged;
    const vantu::RequestSwitches switches = vantu::requestSwitches();

    // The host's `flag` only gates the forcing rules; what it stands for is the host's business.
    if (switches.flashEnable && mLastAFtrigger != 0 &&
        currentRequestApp() == RequestApp::kWhatsApp && flag) {
        if (EXT_LOG_ON()) {
            EXT_LOG(1,
                    "%s: mLastAFtrigger is not ANDROID_CONTROL_AF_TRIGGER_IDLE, set newRequest "
                    "true",
                    __func__);
        }
        return true;
    }
    if (switches.foldEnable && !isSystemCameraPkgName(currentPackageName().string()) &&
        mDeviceStateChanged) {
        mDeviceStateChanged = false;
        // The trigger is printed after it was cleared, so the line always shows 0.
        if (EXT_LOG_ON()) {
            EXT_LOG(1, "%s: New request device state for 0x%" PRIx64 " trigger %d", __func__,
                    static_cast<uint64_t>(mDeviceState), static_cast<bool>(mDeviceStateChanged));
        }
        return true;
    }
    return result;
}

void CameraServiceExtImpl::applyThirdPartyFlashAfFixes(CameraMetadata& request) {
    const RequestApp app = currentRequestApp();
    if (app == RequestApp::kWhatsApp && mLastAFtrigger != 0) {
        if (EXT_LOG_ON()) {
            EXT_LOG(1,
                    "%s: mLastAFtrigger is not ANDROID_CONTROL_AF_TRIGGER_IDLE, Send AfTriggerIdle "
                    "To HAL",
                    kPrepareHook);
        }
        mLastAFtrigger = 0;
        vantu::setByte(request, ANDROID_CONTROL_AF_TRIGGER, ANDROID_CONTROL_AF_TRIGGER_IDLE);
    }
    uint8_t aeMode = 0;
    if (app == RequestApp::kMessenger &&
        vantu::firstByte(request, ANDROID_CONTROL_AE_MODE, &aeMode) &&
        aeMode == ANDROID_CONTROL_AE_MODE_ON_ALWAYS_FLASH) {
        const uint8_t single = ANDROID_FLASH_MODE_SINGLE;
        request.update(ANDROID_FLASH_MODE, &single, 1);
        if (EXT_LOG_ON()) {
            EXT_LOG(1,
                    "%s: %s set ae_mode to ON_ALWAYS_FLASH(3), enforce it's flash_mode to "
                    "SINGLE(1)",
                    kPrepareHook, "com.facebook.orca");
        }
    }
}

void CameraServiceExtImpl::disableFrontCameraTouchAE(CameraMetadata& request, const char* platform,
                                                     const char* alsoExempt) {
    if (mLastCameraId != 1) return;
    const String8 package = currentPackageName();
    char systemCamera[PROPERTY_VALUE_MAX] = {0};
    property_get("ro.vantu.system.camera.name", systemCamera, "");
    if (strcmp(package.string(), systemCamera) == 0 ||
        strcmp(package.string(), "android.camera.cts") == 0 ||
        strcmp(package.string(), "com.android.cts.verifier") == 0 ||
        (alsoExempt != nullptr && strcmp(package.string(), alsoExempt) == 0)) {
        return;
    }
    camera_metadata_entry regions = request.find(ANDROID_CONTROL_AE_REGIONS);
    if (regions.count == 0 || regions.type != TYPE_INT32 || regions.data.i32 == nullptr) return;
    // A region is five values (xmin, ymin, xmax, ymax, weight); a short entry is zeroed as far
    // as it goes and no further.
    const size_t values = regions.count < 5 ? regions.count : 5;
    memset(regions.data.i32, 0, values * sizeof(int32_t));
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "%s: %s disable front camera touch AE function of 3rd APK for %s", kPrepareHook,
                package.string(), platform);
    }
}

void CameraServiceExtImpl::onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                              uint32_t frameNumber) {
    setTorchIntensity(request, frameNumber);
    const vantu::RequestSwitches switches = vantu::requestSwitches();
    if (switches.flashEnable) applyThirdPartyFlashAfFixes(request);

    if (mTorchDisabled) {
        const uint8_t flashOff = ANDROID_FLASH_MODE_OFF;
        const uint8_t aeOn = ANDROID_CONTROL_AE_MODE_ON;
        request.update(ANDROID_FLASH_MODE, &flashOff, 1);
        request.update(ANDROID_CONTROL_AE_MODE, &aeOn, 1);
    }

    if (switches.foldEnable) {
        if (!isSystemCameraPkgName(currentPackageName().string())) {
            // Resolved on first need and kept; while the provider does not know the tag every
            // request tries again.
            uint32_t tag = mDeviceStateTag;
            if (tag == 0) {
                if (vantu::findVendorTag(kDeviceStateTag, mVendorId, &tag)) {
                    mDeviceStateTag = tag;
                } else {
                    tag = 0;
                    if (EXT_LOG_ON()) {
                        EXT_LOG(1, "%s: Unknown tag com.vantu.device.state, ignoring", __func__);
                    }
                }
            }
            const int64_t state = static_cast<int64_t>(static_cast<uint64_t>(mDeviceState));
            if (tag != 0) {
                vantu::eraseEntries(request, tag);
                request.update(tag, &state, 1);
            }
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "%s: Process device state for 0x%" PRIx64 " tag 0x%x", __func__,
                        static_cast<uint64_t>(state), tag);
            }
        }
    }

    // Left locked: the server locks the same settings for the HAL right after this hook and
    // unlocks them once the request is sent, which releases this lock as well.
    UpdateParamForSpecial3rdIssue(request.getAndLock(), frameNumber);
}

}  // namespace android

#include "features/aps/APSInterface.h"

#include <cutils/properties.h>
#include <dlfcn.h>
#include <link.h>
#include <stdlib.h>
#include <string.h>
#include <vndksupport/linker.h>

#include <algorithm>

#include "CameraServiceExtImpl.h"
#include "utils/Env.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

// dlerror() may answer null (a symbol that resolves to a null address); the messages print it.
const char* lastDlError() {
    const char* why = dlerror();
    return why != nullptr ? why : "(null)";
}

struct CodeSearch {
    uintptr_t address;
    bool found;
    bool executable;
};

int findSegment(struct dl_phdr_info* info, size_t, void* data) {
    auto* search = static_cast<CodeSearch*>(data);
    for (ElfW(Half) i = 0; i < info->dlpi_phnum; ++i) {
        const ElfW(Phdr)& ph = info->dlpi_phdr[i];
        if (ph.p_type != PT_LOAD) continue;
        const uintptr_t start = info->dlpi_addr + ph.p_vaddr;
        if (search->address >= start && search->address - start < ph.p_memsz) {
            search->found = true;
            search->executable = (ph.p_flags & PF_X) != 0;
            return 1;
        }
    }
    return 0;
}

}  // namespace

sp<APSInterface> APSInterface::getInstance(CameraServiceExtImpl* owner) {
    if (!getBool("feature_aps_enable", true, nullptr)) return nullptr;
    // First called from the extension object's constructor, before any other thread runs.
    static sp<APSInterface> instance;
    if (instance == nullptr) {
        instance = new APSInterface(owner);
        instance->loadAPSLib();
    } else {
        instance->setOwner(owner);
    }
    return instance;
}

APSInterface::APSInterface(CameraServiceExtImpl* owner) : mOwner(owner) {}

APSInterface::~APSInterface() {
    if (mAPSLibHandle != nullptr) android_unload_sphal_library(mAPSLibHandle);
    mAPSLibHandle = nullptr;
}

bool APSInterface::isCodeAddress(const void* address) {
    CodeSearch search{reinterpret_cast<uintptr_t>(address), false, false};
    if (address == nullptr) return false;
    dl_iterate_phdr(findSegment, &search);
    return search.found && search.executable;
}

bool APSInterface::bindSymbol(const char* name, void** out) {
    dlerror();
    void* symbol = dlsym(mAPSLibHandle, name);
    if (symbol == nullptr) {
        EXT_LOG(0, "%s cannot find symbol %s %s", "loadAPSLib", name, lastDlError());
        return false;
    }
    // Calling a data symbol would jump into data; such a library is treated as lacking the entry.
    if (!isCodeAddress(symbol)) {
        EXT_LOG(0, "%s cannot find symbol %s %s", "loadAPSLib", name, "symbol is not code");
        return false;
    }
    *out = symbol;
    return true;
}

void APSInterface::loadAPSLib() {
    if (mAPSLibHandle != nullptr) return;
    const std::string path = vantu::devicePath(kLibraryPath);
    mAPSLibHandle = android_load_sphal_library(path.c_str(), RTLD_LAZY);
    if (mAPSLibHandle == nullptr) {
        EXT_LOG(0, "%s dlopen libfwk.aps.interface.so fail error %s", __func__, lastDlError());
        return;
    }

    // The binding order is the library's; a missing required entry stops it, and the pointers
    // bound before it keep their values.
    void* symbol = nullptr;
    bool ok = bindSymbol("createAPSInstance", &symbol);
    if (ok) createAPSInstance = reinterpret_cast<CreateAPSInstanceFn>(symbol);
    ok = ok && bindSymbol("destoryAPSInstance", &symbol);
    if (ok) destoryAPSInstance = reinterpret_cast<DestoryAPSInstanceFn>(symbol);
    ok = ok && bindSymbol("initAPS", &symbol);
    if (ok) initAPS = reinterpret_cast<InitAPSFn>(symbol);
    ok = ok && bindSymbol("uninitAPS", &symbol);
    if (ok) uninitAPS = reinterpret_cast<UninitAPSFn>(symbol);
    ok = ok && bindSymbol("addPreviewFrameToAPS", &symbol);
    if (ok) addPreviewFrameToAPS = reinterpret_cast<FrameToAPSFn>(symbol);
    // Still capture through the engine is optional: an older library lacks it.
    if (ok && bindSymbol("APSProcessCaptureFrames", &symbol)) {
        APSProcessCaptureFrames = reinterpret_cast<FrameToAPSFn>(symbol);
    }
    ok = ok && bindSymbol("hardwarewbufferMemcpy", &symbol);
    if (ok) hardwarewbufferMemcpy = reinterpret_cast<HardwarewbufferMemcpyFn>(symbol);
    ok = ok && bindSymbol("isAPSFeatureSupport", &symbol);
    if (ok) isAPSFeatureSupportFn = reinterpret_cast<IsAPSFeatureSupportFn>(symbol);

    if (!ok) {
        android_unload_sphal_library(mAPSLibHandle);
        mAPSLibHandle = nullptr;
        return;
    }
    if (EXT_LOG_ON()) EXT_LOG(1, "%s load libfwk.aps.interface.so succeed!", __func__);
}

bool APSInterface::isFullyBound() const {
    return mAPSLibHandle != nullptr && createAPSInstance != nullptr &&
           destoryAPSInstance != nullptr && initAPS != nullptr && uninitAPS != nullptr &&
           addPreviewFrameToAPS != nullptr && hardwarewbufferMemcpy != nullptr &&
           isAPSFeatureSupportFn != nullptr && APSProcessCaptureFrames != nullptr;
}

bool APSInterface::isAPSFeatureSupport(const char* featureName) {
    if (mAPSLibHandle == nullptr || isAPSFeatureSupportFn == nullptr) return false;
    APSParamList outParams;
    return isAPSFeatureSupportFn(featureName != nullptr ? featureName : "", &outParams);
}

bool APSInterface::buildApkPropName(char (&name)[kApkPropNameSize], const char* prefix,
                                    const char* packageName) {
    if (prefix == nullptr || packageName == nullptr || packageName[0] == '\0') return false;
    const size_t prefixLength = strnlen(prefix, kApkPropNameSize);
    const size_t packageLength = strlen(packageName);
    if (prefixLength >= kApkPropNameSize || kApkPropNameSize - prefixLength <= packageLength) {
        return false;
    }
    snprintf(name, kApkPropNameSize, "%s%s", prefix, packageName);
    return true;
}

bool APSInterface::isSupportActivity(const char* /*isOpenPos*/, const char* packageName,
                                     const char* activityName, const char* propValue) {
    const char* activity = activityName != nullptr ? activityName : "";
    if (stringArrayHas("app_disable_fb_activity", activity, packageName)) {
        if (EXT_LOG_ON()) EXT_LOG(1, "disable fb activity white list: %s", activity);
        return false;
    }
    if (propValue == nullptr) return true;

    static constexpr char kActivityKey[] = "activityName";
    const char* begin = strstr(propValue, kActivityKey);
    const char* end = begin != nullptr ? strstr(begin, "fbParam") : nullptr;
    if (begin == nullptr || end == nullptr) return true;
    begin += sizeof(kActivityKey) - 1;
    if (end < begin) return true;

    char member[kApkPropNameSize];
    const size_t length = std::min<size_t>(end - begin, sizeof(member) - 1);
    memcpy(member, begin, length);
    member[length] = '\0';
    char* rest = nullptr;
    const char* token = strtok_r(member, ",\":", &rest);
    if (token != nullptr && strstr(activity, token) == nullptr) {
        if (EXT_LOG_ON()) {
            EXT_LOG(1, "%s ActivityName: %s does not need APS Process", __func__, activity);
        }
        return false;
    }
    return true;
}

void APSInterface::updateAPSSwitch() {
    if (mNeedAPSProcess) return;
    if (mAPSLibHandle == nullptr) {
        if (EXT_LOG_ON()) EXT_LOG(1, "%s mAPSLibHandle is NULL", __func__);
        return;
    }

    // The read-only property names the property that holds the beauty switch.
    char beautySwitchName[PROPERTY_VALUE_MAX];
    char beautySwitch[PROPERTY_VALUE_MAX];
    property_get("ro.vantu.camera.video.beauty.switch", beautySwitchName, "0");
    property_get(beautySwitchName, beautySwitch, "0");
    bool fbEnable = atoi(beautySwitch) > 0;

    char platform[PROPERTY_VALUE_MAX];
    property_get("ro.board.platform", platform, "qcom");
    CameraServiceExtImpl* const owner = mOwner.get();
    int32_t fwkBeauty = owner != nullptr ? static_cast<int32_t>(owner->mFwkBeauty) : 0;
    if (strcmp(platform, "lahaina") != 0 && strncmp(platform, "atoll", 5) != 0 && fwkBeauty == 0) {
        property_get(beautySwitchName, beautySwitch, "0");
        fbEnable = beautySwitch[0] == '1';
        if (fbEnable) fwkBeauty = 1;
    } else if (fwkBeauty == 0) {
        fwkBeauty = 1;
    }
    if (owner != nullptr) owner->mFwkBeauty = fwkBeauty;
    if (EXT_LOG_ON()) EXT_LOG(1, "%s , fbEnable %d", __func__, fbEnable);

    const String8 package = owner != nullptr ? owner->currentPackageName() : String8("");
    const String8 activity = owner != nullptr ? owner->currentActivityName() : String8("");
    char prefix[PROPERTY_VALUE_MAX];
    property_get("ro.vantu.camera.video_beauty.prefix", prefix, "0");
    buildApkPropName(mApkPropName, prefix, package.c_str());

    char propValue[PROPERTY_VALUE_MAX];
    property_get(mApkPropName, propValue, "-1");

    const int32_t cameraId = owner != nullptr ? static_cast<int32_t>(owner->mLastCameraId) : -1;
    bool activitySupport = true;
    bool need = false;
    if (cameraId == 1 && strcmp(propValue, "-1") != 0) {
        const char* isOpen = strstr(propValue, "isOpen");
        int openDigit = -1;
        for (const char* p = isOpen; p != nullptr && *p != '\0'; ++p) {
            if (*p >= '0' && *p <= '9') {
                openDigit = *p - '0';
                break;
            }
        }
        activitySupport = isSupportActivity(isOpen, package.c_str(), activity.c_str(), propValue);
        need = isOpen != nullptr && fbEnable && activitySupport && openDigit == 1;
    }

    // The avatar runs in the engine whatever the beauty settings say.
    if (owner != nullptr && owner->mZumioManager != nullptr &&
        owner->mZumioManager->getZumioEnable() && owner->mFwkZumio != 0) {
        need = true;
    }
    mNeedAPSProcess = need;

    const uint32_t bit = 1u << (static_cast<uint32_t>(cameraId) % 32);
    uint32_t mask = static_cast<uint32_t>(static_cast<int32_t>(mAPSCameraMask));
    mask = need ? (mask | bit) : (mask & ~bit);
    mAPSCameraMask = static_cast<int32_t>(mask);

    if (EXT_LOG_ON()) {
        EXT_LOG(1,
                "%s mNeedAPSProcess %d, mApkPropName: %s, prop value: %s, platform: %s, "
                "activityName: %s, activitysupport: %d",
                __func__, need, mApkPropName, propValue, platform, activity.c_str(),
                activitySupport);
    }
}

bool APSInterface::setUpEngine(const APSStreamConfig& config) {
    if (!isFullyBound()) return false;
    APSParamList outParams;
    void* instance = nullptr;
    if (!createAPSInstance(&APSInterface::apsDataCallback, this, &instance)) {
        EXT_LOG(0, "%s createAPSInstance fail", __func__);
        return false;
    }
    mAPSInstance = instance;
    outParams.clear();
    if (!initAPS(mAPSInstance, &config, &outParams)) {
        EXT_LOG(0, "%s initAPS fail", __func__);
        return false;
    }
    return true;
}

void APSInterface::destory() {
    if (mAPSLibHandle == nullptr || destoryAPSInstance == nullptr) return;
    APSParamList outParams;
    destoryAPSInstance(&outParams);
    mAPSInstance = nullptr;
}

void APSInterface::uninit() {
    if (mAPSLibHandle == nullptr || uninitAPS == nullptr) return;
    APSParamList outParams;
    uninitAPS(&outParams);
}

// Processed frames come back with the buffer path, which owns the frame records; without it
// the engine's data has nowhere to go, so it is only noted.
void APSInterface::apsDataCallback(void* cookie, void* data) {
    if (EXT_LOG_ON()) EXT_LOG(1, "%s cookie %p data %p", __func__, cookie, data);
}

// The buffer path takes buffers only while the engine holds frames; frames are not held yet,
// so the server handles every buffer and result itself.
bool APSInterface::returnOutputBuffers(camera3::CaptureOutputStates&,
                                       const camera3::camera_stream_buffer*, size_t,
                                       const camera3::InFlightRequest&, long, bool) {
    return false;
}

bool APSInterface::sendCaptureResult(camera3::CaptureOutputStates&, CameraMetadata&,
                                     CaptureResultExtras&, CameraMetadata&, uint32_t, bool, bool,
                                     bool, const std::set<std::string>&,
                                     const std::vector<PhysicalCaptureResultInfo>&, long) {
    return false;
}

bool APSInterface::checkToRemoveInFlightReqest(camera3::CaptureOutputStates&, size_t) {
    return false;
}

}  // namespace android

/*
 * The per-app beauty property: the input (after a first byte of choices) is the value of the
 * property the frame-processing switch reads for the current app ("ro.vantu.camera.
 * video_beauty.prefix" followed by the package). Both stream-configuration hooks run, as the
 * server calls them, with the fake frame-processing library in place, so the switch reads the
 * value while the engine is set up.
 *
 * The first byte: bit 0 camera 1 (else 0), bit 1 the beauty switch on, bit 2 platform "lahaina"
 * (else "kona"), bit 3 the avatar switched on, bits 4-5 the app, bits 6-7 the activity.
 *
 * What must hold whatever the value says: processing is on exactly when the avatar runs, or for
 * camera 1 with the beauty switch on, "isOpen" in the value with 1 as the first digit after it
 * and the value's activity matching; the camera's bit of the mask follows the switch; the
 * property name is the prefix and the package.
 */
#include <cutils/properties.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <string>

#include "CameraServiceExtImpl.h"
#include "common/FuzzWorld.h"
#include "device3/Camera3OutputStreamInterface.h"
#include "features/aps/APSInterface.h"
#include "features/aps/ZumioManager.h"
#include "hostctl/Properties.h"
#include "hostctl/Services.h"

namespace {

using android::APSInterface;
using android::String16;
using android::String8;

constexpr char kPrefix[] = "persist.fb.";
constexpr char kSwitchName[] = "persist.vantu.beauty";
constexpr const char* kPackages[] = {"com.tencent.mm", "com.whatsapp", "com.ss.android.ugc.aweme",
                                     "us.zoom.videomeetings"};
constexpr const char* kActivities[] = {"com.tencent.mm.plugin.voip.ui.VideoActivity",
                                       "MainActivity", "com.tencent.mm.DisabledActivity",
                                       "com.zoom.MeetingActivity"};

class BeautyExtension : public android::CameraServiceExtImpl {
public:
    void setCamera(int32_t id) { mLastCameraId = id; }
    APSInterface* aps() const { return mApsInterface.get(); }
    android::ZumioManager* zumio() const { return mZumioManager.get(); }
    int32_t fwkZumio() const { return mFwkZumio; }
};

BeautyExtension* gExt = nullptr;

// The first digit after "isOpen", or -1.
int openDigit(const char* value) {
    const char* isOpen = strstr(value, "isOpen");
    for (const char* p = isOpen; p != nullptr && *p != '\0'; ++p) {
        if (*p >= '0' && *p <= '9') return *p - '0';
    }
    return -1;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    if (gExt != nullptr) return 0;
    fuzzworld::quietLogs();
    fuzzworld::useDeviceRoot();
    const char config[] = R"({"default": {"feature_aps_enable": true, "feature_auth_enable": false,
        "feature_motor_enable": false, "feature_rio_enable": false},
        "com.tencent.mm": {"app_disable_fb_activity": ["com.tencent.mm.DisabledActivity"]}})";
    fuzzworld::writeDeviceFile("odm/etc/camera/fwk_config.json", config, strlen(config));
    std::string error;
    if (!hostctl::installApsLibrary(fuzzworld::hostPath(APSInterface::kLibraryPath), {}, &error)) {
        fprintf(stderr, "beauty_property harness: %s\n", error.c_str());
        abort();
    }
    hostctl::setProperty("ro.vantu.camera.video_beauty.prefix", kPrefix);
    hostctl::setProperty("ro.vantu.camera.video.beauty.switch", kSwitchName);
    gExt = new BeautyExtension();
    gExt->incStrong(nullptr);
    if (gExt->aps() == nullptr || !gExt->aps()->isFullyBound() || gExt->zumio() == nullptr) {
        fprintf(stderr, "beauty_property harness: the frame-processing library is not bound\n");
        abort();
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    LLVMFuzzerInitialize(nullptr, nullptr);
    const uint8_t choices = size > 0 ? data[0] : 0;
    std::string value =
        size > 0 ? std::string(reinterpret_cast<const char*>(data) + 1, size - 1) : std::string();
    // A property holds a C string.
    value = value.substr(0, value.find('\0'));

    const int32_t camera = (choices & 1) ? 1 : 0;
    const bool beautyOn = (choices & 2) != 0;
    const char* package = kPackages[(choices >> 4) & 3];
    const char* activity = kActivities[(choices >> 6) & 3];
    hostctl::setProperty(kSwitchName, beautyOn ? "1" : "0");
    hostctl::setProperty("ro.board.platform", (choices & 4) ? "lahaina" : "kona");
    hostctl::setProperty(std::string(kPrefix) + package, value);
    gExt->zumio()->setZumioEnable((choices & 8) != 0, false);
    gExt->setCurrentPackageName(String16(package));
    gExt->setActivityName(String16((std::string(package) + "/" + activity).c_str()));
    gExt->setCamera(camera);

    const android::CameraMetadata params;
    android::camera3::StreamSet streams;
    const String8 cameraId(std::to_string(camera).c_str());
    gExt->beforeConfigureStreamsLocked(params, 1, cameraId, streams, 0);
    gExt->afterConfigureStreamsLocked(params, 1, params, streams, cameraId);

    APSInterface* aps = gExt->aps();
    const bool need = aps->getNeedAPSProcess();
    // The value as the switch reads it, and the decision its rules make of it.
    char read[PROPERTY_VALUE_MAX];
    property_get((std::string(kPrefix) + package).c_str(), read, "-1");
    const String8 activityNow = gExt->currentActivityName();
    const bool fromValue =
        camera == 1 && strcmp(read, "-1") != 0 && beautyOn && openDigit(read) == 1 &&
        APSInterface::isSupportActivity(strstr(read, "isOpen"), package, activityNow.c_str(), read);
    const bool avatar = (choices & 8) != 0 && gExt->fwkZumio() != 0;
    FUZZ_CHECK(need == (fromValue || avatar));
    FUZZ_CHECK(((aps->getAPSCameraMask() >> camera) & 1) == (need ? 1 : 0));
    FUZZ_CHECK(strnlen(aps->getApkPropName(), APSInterface::kApkPropNameSize) <
               APSInterface::kApkPropNameSize);
    FUZZ_CHECK(std::string(aps->getApkPropName()) == std::string(kPrefix) + package);

    // Put back: the next input starts without the avatar, the engine or recorded calls.
    gExt->zumio()->setZumioEnable(false, false);
    hostctl::setProperty(std::string(kPrefix) + package, "");
    hostctl::clearServiceCalls();
    return 0;
}

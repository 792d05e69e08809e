/*
 * The bridge to the separately deployed frame-processing library (APS): loading it, the per-app
 * processing switch, and the buffers and results it holds back while it processes frames.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_APS_APSINTERFACE_H
#define VANTU_CAMERASERVICE_FEATURES_APS_APSINTERFACE_H

#include <camera/CameraMetadata.h>
#include <camera/CaptureResult.h>
#include <stddef.h>
#include <stdint.h>
#include <utils/RefBase.h>
#include <utils/StrongPointer.h>

#include <set>
#include <string>
#include <vector>

#include "device3/Camera3OutputUtils.h"
#include "device3/Camera3StreamInterface.h"
#include "device3/InFlightRequest.h"
#include "utils/OwnerLink.h"
#include "utils/Relaxed.h"

struct AHardwareBuffer;

namespace android {

class CameraServiceExtImpl;

// One option the library reports back: most entry points fill a list of them as an extra output.
struct params_key_value_t {
    std::string key;
    std::string value;
};
using APSParamList = std::vector<params_key_value_t>;

// What initAPS is told of the configuration just made. The deployed engine also needs the
// preview and capture stream sizes and formats; they come with the buffer path, which hands the
// engine each stream's buffers, so the set-up only names the session.
struct APSStreamConfig {
    int32_t cameraId;
    int32_t fwkBeauty;
    int32_t fwkZumio;
    int32_t supportAps2Zumio;
};

class APSInterface : public RefBase {
public:
    // The library's file under the device root.
    static constexpr char kLibraryPath[] = "odm/lib64/libAlgoProcess.so";
    // Size of mApkPropName, the per-app property name, terminator included.
    static constexpr size_t kApkPropNameSize = 92;

    // The entry points, as the library exports them (C symbols). Lists and configuration
    // records cross as plain pointers: the library's declarations use void* for them.
    typedef void (*APSDataCallback)(void* cookie, void* data);
    typedef bool (*CreateAPSInstanceFn)(APSDataCallback callback, void* cookie, void** instance);
    typedef bool (*DestoryAPSInstanceFn)(void* outParams);
    typedef bool (*InitAPSFn)(void* instance, const void* streamConfig, void* outParams);
    typedef bool (*UninitAPSFn)(void* outParams);
    typedef bool (*FrameToAPSFn)(const void* frame, const void* streamBuffer, int32_t count,
                                 AHardwareBuffer* buffer, int32_t fwkBeauty, void* instance,
                                 void* output, void* outParams);
    typedef bool (*HardwarewbufferMemcpyFn)(AHardwareBuffer* dst, AHardwareBuffer* src);
    typedef bool (*IsAPSFeatureSupportFn)(const char* feature, void* outParams);

    // The process-wide interface, or null when "feature_aps_enable" is false. The extension
    // object (`owner`) takes it at construction and holds it for the life of the process; the
    // first call creates it and loads the library. A later call (only a test builds a second
    // extension object) makes the caller the owner, so the interface never reads a gone one.
    static sp<APSInterface> getInstance(CameraServiceExtImpl* owner);

    // Tests build their own instances; the extension uses getInstance.
    explicit APSInterface(CameraServiceExtImpl* owner);
    ~APSInterface() override;

    // Opens the library and binds its eight entry points (see the comments in the source).
    void loadAPSLib();
    // The handle and all eight entry points are bound. Every user of the engine tests this,
    // although loading succeeds without "APSProcessCaptureFrames".
    bool isFullyBound() const;
    // The library's answer for a feature name ("com.vantu.fwkBeauty", "com.vantu.fwkZumio");
    // false without a library.
    bool isAPSFeatureSupport(const char* featureName);
    // Decides whether frames of the current app and camera go through the engine.
    void updateAPSSwitch();
    // Whether the per-app property value `propValue` lets `activityName` of `packageName` be
    // processed; `isOpenPos` is where "isOpen" was found in it (unused by the decision).
    static bool isSupportActivity(const char* isOpenPos, const char* packageName,
                                  const char* activityName, const char* propValue);
    // Writes `prefix` + `packageName` into `name` when the package is not empty and the two fit
    // (92 minus the prefix length exceeds the package length); true when written. Otherwise
    // `name` keeps its contents.
    static bool buildApkPropName(char (&name)[kApkPropNameSize], const char* prefix,
                                 const char* packageName);
    // Whether `address` lies in an executable segment of a loaded object: a symbol of the
    // library that names data is not an entry point.
    static bool isCodeAddress(const void* address);

    // Creates the engine instance for a new stream configuration and initialises it; the owner
    // calls it after the configuration when the library is fully bound.
    bool setUpEngine(const APSStreamConfig& config);
    // Releases the engine instance; called before each stream configuration.
    void destory();
    // Releases the engine's resources when a client disconnects.
    void uninit();

    // The engine hands processed data back through this; `cookie` is the interface.
    static void apsDataCallback(void* cookie, void* data);

    bool getNeedAPSProcess() const { return mNeedAPSProcess; }
    void setNeedAPSProcess(bool need) { mNeedAPSProcess = need; }
    int32_t getAPSCameraMask() const { return mAPSCameraMask; }
    const char* getApkPropName() const { return mApkPropName; }
    void setOwner(CameraServiceExtImpl* owner) { mOwner.bind(owner); }
    void releaseOwner(CameraServiceExtImpl* owner) { mOwner.release(owner); }

    // The buffer path of the extension's hooks of the same names: true when the engine took the
    // buffers, holds the result back, or still needs the in-flight request.
    bool returnOutputBuffers(camera3::CaptureOutputStates& states,
                             const camera3::camera_stream_buffer* outputBuffers, size_t numBuffers,
                             const camera3::InFlightRequest& request, long timestamp,
                             bool timestampIncreasing);
    bool sendCaptureResult(camera3::CaptureOutputStates& states, CameraMetadata& pendingMetadata,
                           CaptureResultExtras& resultExtras, CameraMetadata& collectedPartialResult,
                           uint32_t frameNumber, bool reprocess, bool zslStillCapture,
                           bool rotateAndCropAuto, const std::set<std::string>& cameraIdsWithZoom,
                           const std::vector<PhysicalCaptureResultInfo>& physicalMetadatas,
                           long requestTimeNs);
    bool checkToRemoveInFlightReqest(camera3::CaptureOutputStates& states, size_t index);

private:
    // Fills `out` with the symbol's address when it names code; logs and answers false when not.
    bool bindSymbol(const char* name, void** out);

    vantu::OwnerLink<CameraServiceExtImpl> mOwner;  // not owned
    void* mAPSLibHandle = nullptr;
    CreateAPSInstanceFn createAPSInstance = nullptr;
    DestoryAPSInstanceFn destoryAPSInstance = nullptr;
    InitAPSFn initAPS = nullptr;
    UninitAPSFn uninitAPS = nullptr;
    FrameToAPSFn addPreviewFrameToAPS = nullptr;
    HardwarewbufferMemcpyFn hardwarewbufferMemcpy = nullptr;
    IsAPSFeatureSupportFn isAPSFeatureSupportFn = nullptr;
    FrameToAPSFn APSProcessCaptureFrames = nullptr;
    // Read by the buffer path on the result thread while the configuration thread evaluates it.
    vantu::Relaxed<bool> mNeedAPSProcess{false};
    vantu::Relaxed<int32_t> mAPSCameraMask{0};
    char mApkPropName[kApkPropNameSize] = {};
    // The engine instance of the current stream configuration, null when none. Made and
    // released on the configuration thread only.
    void* mAPSInstance = nullptr;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_APS_APSINTERFACE_H

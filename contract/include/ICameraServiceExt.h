/*
 * The hook interface between Android 13's camera server and the extension library.
 *
 * The camera server obtains one ICameraServiceExt from the library's factory at start-up and
 * calls it at fixed points of its own work. The order of the virtual operations below is the
 * binary contract with the server: the server calls each hook through its vtable slot, so a
 * hook is never moved, inserted or removed. New platform-specific virtuals of an implementation
 * go after the last slot (closeAON).
 *
 * Threads: "binder thread" is one of the server's binder threads serving an app's call;
 * "configuration thread" the thread that runs a device's stream configuration; "request thread"
 * a device's request thread; "result thread" the thread that delivers a device's results and
 * buffers. Hooks never throw; a failure degrades to the documented default.
 *
 * afterDisconnect tells the server that the torch of a camera is available again through the
 * server's own CameraProviderManager::StatusListener::onTorchStatusChanged(cameraId, status).
 */
#ifndef VANTU_CONTRACT_ICAMERASERVICEEXT_H
#define VANTU_CONTRACT_ICAMERASERVICEEXT_H

#include <android/hardware/ICameraServiceListener.h>
#include <binder/IBinder.h>
#include <binder/Parcel.h>
#include <binder/Status.h>
#include <camera/CameraMetadata.h>
#include <camera/CameraParameters2.h>
#include <camera/CaptureResult.h>
#include <stddef.h>
#include <stdint.h>
#include <system/camera_metadata.h>
#include <utils/Errors.h>
#include <utils/RefBase.h>
#include <utils/String16.h>
#include <utils/String8.h>
#include <utils/Vector.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "CameraService.h"
#include "api1/client2/Parameters.h"
#include "common/CameraProviderManager.h"
#include "device3/Camera3OutputStreamInterface.h"
#include "device3/Camera3OutputUtils.h"
#include "device3/Camera3StreamInterface.h"
#include "device3/InFlightRequest.h"

namespace android {

// Reference counted through RefBase as a virtual base, so that the interface's own vtable starts
// with its destructor (slots 0 and 1) and afterConnect is slot 2.
class ICameraServiceExt : public virtual RefBase {
public:
    // Slots 0, 1. The server never deletes the extension object; it lives for the process.
    virtual ~ICameraServiceExt() {}

    // Slot 2. Binder thread, after a client connected and the server opened the device. Records
    // the client (package, uid, pid, camera id, vendor id, API level). Always returns true.
    virtual bool afterConnect(const String8& cameraId, const String16& clientPackageName,
                              bool systemNativeClient, sp<CameraService::BasicClient> client,
                              void* device, unsigned long vendorId, int apiLevel) = 0;
    // Slot 3. Configuration thread, when a stream configuration ends. A service-specific error
    // refuses the configuration (an app using the maker's camera SDK without authorisation).
    virtual binder::Status afterEndConfigure(const CameraMetadata& sessionParams, void* client,
                                             unsigned long vendorId, String8 cameraId) = 0;
    // Slot 4. Binder thread, for a transaction code the server does not know (10001-10014 are
    // the library's). Returns the transaction status; INVALID_OPERATION for unknown codes.
    virtual status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply,
                                uint32_t flags) = 0;
    // Slot 5. Binder thread, when the server decides whether a uid gets privileged treatment.
    virtual bool isPrivilegedApp(int uid) = 0;
    // Slot 6. Binder thread: true when the uid was announced as a system camera app.
    virtual bool isSystemCameraUid(int uid) = 0;
    // Slot 7. Binder thread: true when the announced app is the camera compatibility test.
    virtual bool isCtsCamera() = 0;
    // Slot 8. Binder thread: whether the server arms its framework watchdog timers.
    virtual bool isEnableFwkTimer() = 0;
    // Slot 9. Binder thread, before the server returns a camera's static characteristics to an
    // app; edits them in place. Always returns OK.
    virtual status_t getCameraCharacteristics(const String16& cameraId, CameraMetadata* info) = 0;
    // Slot 10. Binder thread, before the server opens a camera for a client. Returns 0 to admit,
    // 4 when the camera is disabled by policy, 7 when eviction refused the client. Writes the
    // bare package back into clientPackageName, which the server relies on.
    virtual int32_t beforeConnect(const String8& cameraId, const String16& clientPackageName,
                                  bool systemNativeClient) = 0;
    // Slot 11. Binder thread, before a compatibility-test client is admitted: disconnects every
    // other client.
    virtual void clearNonCTSClient(const String16& clientPackageName) = 0;
    // Slot 12. Binder thread, whenever the server's current client package changes.
    virtual void setCurrentPackageName(const String16& packageName) = 0;
    // Slot 13. Binder thread, before the torch of a camera is switched. Returns 0 to allow, 3 for
    // a test app on an auxiliary camera, 4 when the torch is disabled by policy.
    virtual status_t beforeSetTorchMode(const String8& cameraId, bool enabled) = 0;
    // Slot 14. Binder thread: true when the shutter sound must not be played for the current app.
    virtual bool checkNotPlaySound() = 0;
    // Slot 15. Binder thread, after a client disconnected. Clears the client state.
    virtual void afterDisconnect(String8 cameraId, String16 clientPackageName,
                                 sp<CameraService> service) = 0;
    // Slot 16. Binder thread, when a client is added to or removed from the server's client list.
    virtual void onClientChange(String8 cameraId, const sp<CameraService::BasicClient>& client,
                                bool added) = 0;
    // Slot 17. Server start-up thread, once the camera providers are enumerated.
    virtual void initCameraInfos(sp<CameraProviderManager> manager) = 0;
    // Slot 18. Binder thread, when an app registers a camera service listener. Returns a status.
    virtual status_t addListener(const sp<hardware::ICameraServiceListener>& listener) = 0;
    // Slot 19. Binder thread, when an app removes its camera service listener.
    virtual status_t removeListener(const sp<hardware::ICameraServiceListener>& listener) = 0;
    // Slot 20. Binder thread, during eviction: true when the camera supports explorer mode for
    // the package.
    virtual bool isSupportExplorer(const String8& cameraId, const String8& packageName) = 0;
    // Slot 21. Binder thread, during eviction: the resource cost the server is to use.
    virtual int OverrideCost(const String8& cameraId, const String8& packageName, int cost) = 0;
    // Slot 22. Binder thread, before the server waits for evicted clients: may lengthen the
    // wait (nanoseconds, in/out) given the server's default.
    virtual void modifyWaitDuration(long& duration, long defaultDuration) = 0;
    // Slot 23. Result thread, before a result's metadata goes to the app; edits it in place.
    // True when the result may be delivered now.
    virtual bool beforeMetadataSendToApp(CaptureResult* result, uint32_t frameNumber,
                                         camera3::CaptureOutputStates& states) = 0;
    // Slot 24. Result thread, when output buffers return from the camera HAL. True when the
    // library took the buffers over (the server must not return them itself).
    virtual bool returnOutputBuffers(camera3::CaptureOutputStates& states,
                                     const camera3::camera_stream_buffer* outputBuffers,
                                     size_t numBuffers, const camera3::InFlightRequest& request,
                                     long timestamp, bool timestampIncreasing) = 0;
    // Slot 25. Result thread, before a complete result is queued for the app. True when the
    // library holds the result back (the server must not send it itself).
    virtual bool sendCaptureResult(camera3::CaptureOutputStates& states,
                                   CameraMetadata& pendingMetadata,
                                   CaptureResultExtras& resultExtras,
                                   CameraMetadata& collectedPartialResult, uint32_t frameNumber,
                                   bool reprocess, bool zslStillCapture, bool rotateAndCropAuto,
                                   const std::set<std::string>& cameraIdsWithZoom,
                                   const std::vector<PhysicalCaptureResultInfo>& physicalMetadatas,
                                   long requestTimeNs) = 0;
    // Slot 26. Result thread, before the server removes a finished in-flight request. True when
    // the library still needs it (the server keeps it).
    virtual bool checkToRemoveInFlightReqest(camera3::CaptureOutputStates& states, size_t index) = 0;
    // Slot 27. Result thread, with each result's metadata (read only in practice).
    virtual void parseResult(CameraMetadata& result) = 0;
    // Slot 28. Configuration thread, before the streams go to the camera HAL; may edit the
    // session parameters and take streams out of the set.
    virtual void beforeConfigureStreamsLocked(const CameraMetadata& sessionParams, size_t vendorId,
                                              String8 cameraId, camera3::StreamSet& streams,
                                              int operatingMode) = 0;
    // Slot 29. Configuration thread: sets the flag (in/out) when the app may not reconfigure.
    virtual void forbid3rdPartyAppReconfigureStream(bool& forbid) = 0;
    // Slot 30. Configuration thread, after the camera HAL configured the streams.
    virtual void afterConfigureStreamsLocked(const CameraMetadata& sessionParams, size_t vendorId,
                                             const CameraMetadata& deviceInfo,
                                             camera3::StreamSet& streams, String8 cameraId) = 0;
    // Slot 31. Binder thread, when an app flushes a device. Returns the library's flush result.
    virtual status_t flush(String8 cameraId) = 0;
    // Slot 32. Request thread, per request: true makes the server send the request's settings to
    // the HAL again although the app did not change them.
    virtual bool IsNewRequest(bool newRequest, bool settingsOverride) = 0;
    // Slot 33. Request thread, per request, before it goes to the camera HAL; edits the settings.
    virtual void onPrepareHalRequestsUpdateMetadata(CameraMetadata& request,
                                                    uint32_t frameNumber) = 0;
    // Slot 34. Request thread, after a batch of requests went to the camera HAL.
    virtual void afterSendRequestsBatch(const camera_metadata* settings, String8 cameraId) = 0;
    // Slot 35. Request thread, per request: writes the torch intensity tag when it changed.
    virtual void setTorchIntensity(CameraMetadata& request, uint32_t requestCount) = 0;
    // Slot 36. Request thread, per request: follows the magnetic accessory's switch.
    virtual void checkNeedEnableMagneticSensor() = 0;
    // Slot 37. Binder thread, when the device's fold state changes.
    virtual void notifyDeviceStateChange(uint64_t state) = 0;
    // Slot 38. Request thread: true when the requested torch intensity differs from the applied.
    virtual bool isTorchIntensityChanged() = 0;
    // Slot 39. Configuration thread: the JPEG buffer size to allocate for a calculated size and
    // the device's maximum.
    virtual ssize_t calculateJpegBufferSize(long calculatedSize, long maxJpegBufferSize) = 0;
    // Slot 40. Configuration thread, per output stream: may set the use-monotonic-timestamp flag
    // (in/out) from the stream's consumer usage.
    virtual void updateUseMonoTimestamp(bool& useMonoTimestamp, size_t consumerUsage) = 0;
    // Slot 41. Binder thread, when a client starts to disconnect; fromDisconnectAll marks the
    // server's disconnect of every client, keepMetaStream leaves the meta stream as it is. False
    // tells the server that the extension ignored this call.
    virtual bool beforeDisconnect(bool fromDisconnectAll, bool keepMetaStream,
                                  const String8& cameraId) = 0;
    // Slot 42. Binder thread: the server marks a disconnect in progress (true) or finished.
    virtual void setDoingDisconnect(bool doing) = 0;
    // Slot 43. API1 client thread: true when an autofocus trigger must be sent once.
    virtual bool checkToTriggerAFOnceForAPI1(camera2::Parameters::focusMode_t focusMode,
                                             bool afInMotion) = 0;
    // Slot 44. API1 client thread: true when a preview callback stream must be added.
    virtual bool checkToAddPreviewCallbackForAPI1() = 0;
    // Slot 45. API1 client thread: true when stopPreview must be refused for now (the app just
    // switched the torch).
    virtual bool IsRejectStopPreview() = 0;
    // Slot 46. API1 client thread: true when an error of setParameters is to be ignored.
    virtual bool checkToSetParametersIgnoreErrorForAPI1(camera2::Parameters& params,
                                                        const String8& paramString) = 0;
    // Slot 47. API1 client thread: true when a face AE trigger must be forced.
    virtual bool checkToForceTriggerFaceAEForAPI1() = 0;
    // Slot 48. API1 client thread: may change the preview size (in/out).
    virtual void adjustPreviewSizeForAPI1(int& width, int& height) = 0;
    // Slot 49. API1 client thread, while building the parameters: may edit the preview and video
    // size lists and the chosen sizes.
    virtual void updatePreviewAndVideoSizeForAPI1(CameraParameters2& params, int cameraId,
                                                  Vector<Size>& previewSizes, int& previewWidth,
                                                  int& previewHeight, Vector<Size>& videoSizes,
                                                  int& videoWidth, int& videoHeight) = 0;
    // Slot 50. API1 client thread: may change the flash mode (in/out).
    virtual void updateFlashModeForAPI1(CameraParameters2& params,
                                        camera2::Parameters::flashMode_t& flashMode) = 0;
    // Slot 51. API1 client thread: may edit the picture size list; the function gives a size's
    // minimum frame duration.
    virtual void getPictureSizeForAPI1(Vector<Size>& sizes,
                                       std::function<long(Size)> getMinFrameDuration,
                                       int cameraId) = 0;
    // Slot 52. Server thread, when the camera providers are enumerated again. Returns OK.
    virtual status_t enumerateProviders() = 0;
    // Slot 53. Binder thread, when a binder the server watches died.
    virtual void binderDied(const wp<IBinder>& who) = 0;
    // Slot 54. API1 client thread: may change the preview fps range and fps (in/out).
    virtual void setPreviewFpsRangeForAPI1(int& minFps, int& maxFps, int& previewFps,
                                           int& cameraId) = 0;
    // Slot 55. API1 client thread: may repair an invalid fps range (in/out).
    virtual void adjustInvalidFpsForAPI1(int& minFps, int& maxFps) = 0;
    // Slot 56. API1 client thread: may change the preview fps range (in/out).
    virtual void adjustPreviewFpsForAPI1(int& minFps, int& maxFps) = 0;
    // Slot 57. API1 client thread: true when zero-shutter-lag is used for the current app.
    virtual bool checkUseZeroShutterLagForAPI1() = 0;
    // Slot 58. API1 client thread: true when the size (width, height, at a format and camera)
    // is offered to the app.
    virtual bool checkIfAddSizeForAPI1(int width, int height, int format, int cameraId) = 0;
    // Slot 59. API1 client thread: may change the reported fields of view (out).
    virtual void adjustFOVForAPI1(int cameraId, float* horizontalFov, float* verticalFov,
                                  float focalLength, float sensorWidth, float sensorHeight,
                                  float arrayWidth, float arrayHeight) = 0;
    // Slot 60. Binder thread, when an app creates an output surface: may cap its size (in/out).
    virtual void filterSurfaceConfig(int& width, int& height) = 0;
    // Slot 61. Server thread, when a provider registers: true for the virtual camera provider.
    virtual bool isVirtualCameraProvider(const std::string& name) = 0;
    // Slot 62. Calling thread: sets the calling thread's static scheduling class.
    virtual void SetStaticUxthread(int value) = 0;
    // Slot 63. Calling thread: raises (1) or lowers the calling thread's scheduling class.
    virtual void SetUxthread(unsigned int enable) = 0;
    // Slot 64. Configuration thread: whether display synchronisation may be used.
    virtual bool allowDisplaySync() { return true; }
    // Slot 65. Request thread: true when the WeChat request time-out applies.
    virtual bool isWeChatRequestTimeOut() = 0;
    // Slot 66. Binder thread: whether several windows may use cameras at once.
    virtual bool isMultiWinCameraSupport() = 0;
    // Slot 67. Configuration thread: may set a transform on the streams for third-party apps.
    virtual void setTransformForThirdApp(const CameraMetadata& sessionParams,
                                         camera3::StreamSet& streams) = 0;
    // Slot 68. Result thread: may change a buffer's transform (in/out) for a stream.
    virtual void getTransformForThirdApp(int& transform, int streamId) = 0;
    // Slot 69. Binder thread, before a camera opens: lets the platform prepare.
    virtual void preOpenCamera() = 0;
    // Slot 70. Request thread: may lower the AE target fps range while the avatar feature runs.
    virtual void overrideZumioFPS(CameraMetadata& request) = 0;
    // Slot 71. Result thread: true when video timestamps are to be filtered.
    virtual bool checkFilterVideoTimestamp(bool enable) = 0;
    // Slot 72. Configuration thread: true when the avatar init tag was written.
    virtual bool sendZumioInitTagToHAL(const CameraMetadata& sessionParams) = 0;
    // Slot 73. Configuration thread: true when the avatar description tag is up to date.
    virtual bool sendZumioJsonTagToHAL(const CameraMetadata& sessionParams) = 0;
    // Slot 74. Any thread: whether the avatar feature is switched on.
    virtual bool getZumioEnable() = 0;
    // Slot 75. Request thread: true when the avatar description changed since it was last sent.
    virtual bool getUpdateZumio() = 0;
    // Slot 76. Binder thread, before the server's own eviction: false refuses the connection as
    // camera in use; true lets the server continue. May wait for or disconnect other clients.
    virtual bool customIntelligentEviction(int cameraId, const String16& clientPackageName) = 0;
    // Slot 77. Binder thread, from the characteristics query: adjusts the exposure-time range.
    virtual void limitExposureTimeRangeForIts(CameraMetadata* info) = 0;
    // Slot 78. Binder thread, from the characteristics query: size lists for the CTS verifier.
    virtual void limitSizeListForCtsVerifier(CameraMetadata* info, const String16& cameraId) = 0;
    // Slot 79. Binder thread, from the characteristics query: size lists for ordinary apps.
    virtual void limitSize(const String16& cameraId, CameraMetadata* info) = 0;
    // Slot 80. Configuration thread: true when the output stream's format is accepted.
    virtual bool isValidOutputStream(sp<camera3::Camera3OutputStreamInterface> stream) = 0;
    // Slot 81. Request thread, from onPrepareHalRequestsUpdateMetadata: watches the triggers of
    // apps whose results are corrected later.
    virtual void UpdateParamForSpecial3rdIssue(const camera_metadata* request,
                                               uint32_t frameNumber) = 0;
    // Slot 82. Binder thread, from the characteristics query: size lists for CTS.
    virtual void limitSizeListForCts(CameraMetadata* info, const String16& cameraId) = 0;
    // Slot 83. Binder thread: powers the always-on camera up; the binder is the app's callback.
    virtual status_t openAON(sp<IBinder>& callback) = 0;
    // Slot 84. Binder thread: powers the always-on camera down.
    virtual status_t closeAON() = 0;
};

}  // namespace android

#endif  // VANTU_CONTRACT_ICAMERASERVICEEXT_H

/*
 * The extension object: the one object through which the camera server consults the maker's
 * policies. It keeps the current client's state, owns the feature managers and gives every hook
 * its base behaviour; the chip classes under platform/ override what differs per chip.
 *
 * Its code is split by concern:
 *   CameraServiceExtImpl.cpp                  construction, module state, client state helpers
 *   CameraServiceExtImpl_Forwarders.cpp       hooks forwarded to the feature managers
 *   CameraServiceExtImpl_Classify.cpp         app classification
 *   CameraServiceExtImpl_Connect.cpp          connect and disconnect
 *   CameraServiceExtImpl_Eviction.cpp         intelligent eviction
 *   CameraServiceExtImpl_Torch.cpp            torch policy and shutter sound
 *   CameraServiceExtImpl_Transact.cpp         the library's binder transactions
 *   CameraServiceExtImpl_RequestMetadata.cpp  vendor tags and per-app fixes of requests
 *   CameraServiceExtImpl_SessionTags.cpp      client-identity tags of the session parameters
 *   CameraServiceExtImpl_MetaStream.cpp       the hidden meta stream
 *   CameraServiceExtImpl_Results.cpp          corrections of results for named apps
 *   CameraServiceExtImpl_Characteristics.cpp  static characteristics shaping
 *   CameraServiceExtImpl_SizeCutter.cpp       the stream-size cutter of the size rules
 *   CameraServiceExtImpl_SurfaceLimit.cpp     surface size limit of third-party apps
 *   CameraServiceExtImpl_Avatar.cpp           the avatar feature's hooks
 *   CameraServiceExtImpl_FrameProcessing.cpp  the frame-processing engine per configuration
 *   CameraServiceExtImpl_DeviceServices.cpp   scheduling, JPEG sizing, provider events
 *   CameraServiceExtImpl_AON.cpp              the always-on camera
 *   CameraServiceExtImpl_API1.cpp             legacy API1 defaults
 */
#ifndef VANTU_CAMERASERVICE_CAMERASERVICEEXTIMPL_H
#define VANTU_CAMERASERVICE_CAMERASERVICEEXTIMPL_H

#include <cutils/properties.h>
#include <signal.h>
#include <stdint.h>
#include <utils/KeyedVector.h>
#include <utils/Mutex.h>

#include <atomic>
#include <list>
#include <memory>
#include <mutex>
#include <set>
#include <vector>

#include "ICameraServiceExt.h"
#include "UxThreadTable.h"
#include "features/aps/APSInterface.h"
#include "features/aps/ZumioManager.h"
#include "features/authorize/AuthAppManager.h"
#include "features/motor/MotorManager.h"
#include "features/rio/MagneticSensorManger.h"
#include "utils/Env.h"
#include "utils/Relaxed.h"
#include "utils/RequestSwitches.h"

namespace android {

// Camera ids 0..21 have a client slot and a per-camera record.
constexpr int kMaxCameraSlots = 22;

// Meta buffers taken from the stream and not yet filled, oldest first. A ring over storage
// reserved when the record is made, so the request and result threads allocate nothing per
// frame; it grows only if the stream hands out more buffers than it was configured for.
class MetaBufferQueue {
public:
    bool empty() const { return mCount == 0; }
    size_t size() const { return mCount; }
    void reserve(size_t capacity);
    void push_back(const camera3::camera_stream_buffer& buffer);
    // The oldest buffer; the queue must not be empty.
    const camera3::camera_stream_buffer& front() const { return mSlots[mHead]; }
    void pop_front();
    void clear() { mHead = mCount = 0; }

private:
    std::vector<camera3::camera_stream_buffer> mSlots;
    size_t mHead = 0;
    size_t mCount = 0;
};

// The meta stream of one camera: taken out of the HAL configuration, configured by the library
// and fed with buffers as requests go out.
struct MetaStreamInfo {
    sp<camera3::Camera3OutputStreamInterface> mMetaStream;
    MetaBufferQueue mMetaBufferList;
    bool mDisabled = false;
    // Results still to be treated as not ready after a configuration.
    int32_t mCountdown = 2;
    // Guards the list, mDisabled and mCountdown; shared by the copies a keyed vector makes.
    std::shared_ptr<std::mutex> mLock;
};

// What the request and result hooks remember per camera.
struct CameraRecord {
    uint32_t lastRequestFrameNumber;
    uint32_t lastResultFrameNumber;
};

// Module state of the always-on camera, created with the extension object.
constexpr int kAONMaxSubDevices = 5;
constexpr int kAONSubDevPathSize = 40;
constexpr uint16_t kAONNoFrontCamera = 65535;
enum AONStatus : int32_t {
    AON_IDLE = 0,
    AON_OPEN = 1,
    AON_NORMAL_CLIENT = 2,
    AON_CLOSING = 3,
};
// Sensor sub-device paths found by the probe, in discovery order.
extern char CamSubDeV[kAONMaxSubDevices][kAONSubDevPathSize];
// Index into CamSubDeV of the front sensor; kAONNoFrontCamera while none is known. The probe
// writes it on the caller's binder thread while open and close read it under the always-on lock.
extern vantu::Relaxed<uint16_t> CamFrontIndex;
// One of AONStatus; shared by the connect hooks and the always-on camera.
extern vantu::Relaxed<int32_t> gAONStatus;
// The always-on app's callback, null when none; changed only under the always-on lock.
class IAONHECallbacks;
extern sp<IAONHECallbacks> mAONHECallback;

// Module constants of the extension object.
extern const char kDefaultInstanceName[];       // "default": the HAL service instance asked for
extern const String16 kSystemCameraPermission;  // "android.permission.SYSTEM_CAMERA"
constexpr char kFwkConfigPath[] = "odm/etc/camera/fwk_config.json";

// True when the name begins with a compatibility test package ("android.camera.cts" or
// "com.android.cts.verifier").
bool isCompatibilityTestPackage(const char* packageName);

class IntelligentEviction;

class CameraServiceExtImpl : public ICameraServiceExt {
public:
    CameraServiceExtImpl();
    ~CameraServiceExtImpl() override;

    // ---- Connect and disconnect (CameraServiceExtImpl_Connect.cpp) ----
    bool afterConnect(const String8& cameraId, const String16& clientPackageName,
                      bool systemNativeClient, sp<CameraService::BasicClient> client, void* device,
                      unsigned long vendorId, int apiLevel) override;
    int32_t beforeConnect(const String8& cameraId, const String16& clientPackageName,
                          bool systemNativeClient) override;
    void setCurrentPackageName(const String16& packageName) override;
    void afterDisconnect(String8 cameraId, String16 clientPackageName,
                         sp<CameraService> service) override;
    void onClientChange(String8 cameraId, const sp<CameraService::BasicClient>& client,
                        bool added) override;
    void notifyDeviceStateChange(uint64_t state) override;
    bool beforeDisconnect(bool fromDisconnectAll, bool keepMetaStream,
                          const String8& cameraId) override;
    // Cuts "package/activity" in `name` down to the package (written back in place) and keeps
    // the activity.
    void setActivityName(const String16& name);

protected:
    // The steps of afterDisconnect that every chip shares, for the client of `cameraId`; the
    // MediaTek family writes their lines through the utility logger.
    void resetDisconnectState(int cameraId, bool utilLogger);
    // Wakes an eviction waiting for this disconnect to finish.
    void signalDisconnectWaiter(bool utilLogger);
    // Resets the avatar and frame-processing state a client leaves behind.
    void resetAvatarState();
    void releaseFrameProcessing();
    // Tells the device-management HAL who is about to use the camera ("Torch" for the torch).
    void notifyCameraMDM(const char* who);

public:
    // ---- App classification (CameraServiceExtImpl_Classify.cpp) ----
    bool isPrivilegedApp(int uid) override;
    bool isSystemCameraUid(int uid) override;
    bool isCtsCamera() override;
    bool isEnableFwkTimer() override;
    void clearNonCTSClient(const String16& clientPackageName) override;
    bool isMultiWinCameraSupport() override;
    bool isSystemCameraPkgName(const char* packageName);
    bool is3rdPartyAppPrivileged(String16 packageName);
    bool isCtsCamera(const char* packageName);

    // ---- Intelligent eviction (CameraServiceExtImpl_Eviction.cpp) ----
    bool isSupportExplorer(const String8& cameraId, const String8& packageName) override;
    int OverrideCost(const String8& cameraId, const String8& packageName, int cost) override;
    bool customIntelligentEviction(int cameraId, const String16& clientPackageName) override;
    bool customSaveIntelligentEviction(int cameraId, const String16& clientPackageName);
    // The rule engine reads and arms the client state (CameraServiceExtImpl_EvictionRules.h).
    friend class IntelligentEviction;

    // ---- Torch policy and shutter sound (CameraServiceExtImpl_Torch.cpp) ----
    status_t beforeSetTorchMode(const String8& cameraId, bool enabled) override;
    bool checkNotPlaySound() override;

    // ---- Binder transactions (CameraServiceExtImpl_Transact.cpp) ----
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override;

    // ---- Request metadata (CameraServiceExtImpl_RequestMetadata.cpp) ----
    binder::Status afterEndConfigure(const CameraMetadata& sessionParams, void* client,
                                     unsigned long vendorId, String8 cameraId) override;
    bool IsNewRequest(bool newRequest, bool settingsOverride) override;
    void onPrepareHalRequestsUpdateMetadata(CameraMetadata& request, uint32_t frameNumber) override;
    void afterSendRequestsBatch(const camera_metadata* settings, String8 cameraId) override;
    // Writes (add) or erases the client-identity tags of the session parameters.
    void addRemovePackageName(const CameraMetadata& sessionParams, unsigned long vendorId, bool add);

protected:
    // Apps that the request and result rules single out by package.
    enum class RequestApp : uint8_t { kOther, kWhatsApp, kMessenger, kFacebook, kSnapchat, kSkype };
    // The current package's class for the request and result rules; classified again only when
    // the package changes, so that the per-frame hooks neither copy nor compare names.
    RequestApp currentRequestApp() const;
    // The same, and whether "reject_3rd_app_stop_preview" names the current package: answered
    // from `switches` when they are for this package, else looked up.
    RequestApp currentRequestApp(const vantu::RequestSwitches& switches,
                                 bool* rejectsStopPreview) const;
    // Request fixes that the base and the chip classes share: WhatsApp's pending AF trigger goes
    // back to IDLE, and Messenger's always-flash AE mode gets a single flash.
    void applyThirdPartyFlashAfFixes(CameraMetadata& request);
    // Zeroes the first AE region of a third-party app's front-camera request (touch AE off).
    // `platform` ends the log line ("lahaina", "holi"); `alsoExempt` is one more exempt package,
    // or null.
    void disableFrontCameraTouchAE(CameraMetadata& request, const char* platform,
                                   const char* alsoExempt);

public:
    // ---- Meta stream (CameraServiceExtImpl_MetaStream.cpp) ----
    void beforeConfigureStreamsLocked(const CameraMetadata& sessionParams, size_t vendorId,
                                      String8 cameraId, camera3::StreamSet& streams,
                                      int operatingMode) override;
    void afterConfigureStreamsLocked(const CameraMetadata& sessionParams, size_t vendorId,
                                     const CameraMetadata& deviceInfo, camera3::StreamSet& streams,
                                     String8 cameraId) override;
    status_t flush(String8 cameraId) override;
    bool isValidOutputStream(sp<camera3::Camera3OutputStreamInterface> stream) override;
    // Forgets `count` meta buffers of the camera (all for 0 or -1; -1 also disables the record).
    // False when the camera has no meta stream.
    bool returnMetaBuffer(int cameraId, int count);

protected:
    // Result thread, under mMetaStreamInfosLock and the record's lock: takes the oldest waiting
    // meta buffer of `info`, or dequeues one when none waits. False when there is none.
    bool takeMetaBufferLocked(MetaStreamInfo& info, camera3::camera_stream_buffer* buffer);
    // Result thread, under mMetaStreamInfosLock: copies the locked result `source` into `buffer`,
    // stamped with `frameNumber`, and hands the buffer to the stream's consumer at `sensorTime`.
    // Returns the copy's compact size (0 when nothing was copied).
    size_t fillMetaBuffer(MetaStreamInfo& info, camera3::camera_stream_buffer& buffer,
                          const camera_metadata_t* source, nsecs_t sensorTime, uint32_t frameNumber);

public:
    // ---- Result adjustment (CameraServiceExtImpl_Results.cpp) ----
    bool beforeMetadataSendToApp(CaptureResult* result, uint32_t frameNumber,
                                 camera3::CaptureOutputStates& states) override;
    void forbid3rdPartyAppReconfigureStream(bool& forbid) override;
    bool IsRejectStopPreview() override;
    void setTransformForThirdApp(const CameraMetadata& sessionParams,
                                 camera3::StreamSet& streams) override;
    void getTransformForThirdApp(int& transform, int streamId) override;
    void UpdateParamForSpecial3rdIssue(const camera_metadata* request,
                                       uint32_t frameNumber) override;
    void printAeAfTriggerForDebug(const camera_metadata* request, uint32_t frameNumber);
    void printAeAfStateForDebug(CaptureResult* result, uint32_t frameNumber);

    // ---- Characteristics (CameraServiceExtImpl_Characteristics.cpp) ----
    status_t getCameraCharacteristics(const String16& cameraId, CameraMetadata* info) override;
    void filterSurfaceConfig(int& width, int& height) override;
    void limitExposureTimeRangeForIts(CameraMetadata* info) override;
    void limitSizeListForCtsVerifier(CameraMetadata* info, const String16& cameraId) override;
    void limitSize(const String16& cameraId, CameraMetadata* info) override;
    void limitSizeListForCts(CameraMetadata* info, const String16& cameraId) override;
    // Drops output stream configurations larger than maxWidth x maxHeight.
    void limitSize(int maxWidth, int maxHeight, CameraMetadata* info, bool limitJpeg);
    void updateHFRBatchSizeForCts(CameraMetadata* info);

protected:
    // The third-party size rule that the MediaTek chips and SM6125 share: the motor's limits and
    // the configured per-camera limits cut the stream sizes of the querying app
    // (platform/CameraServiceExtImpl_ThirdPartySize.cpp).
    void limitThirdPartyAppSize(const String16& cameraId, CameraMetadata* info);

public:
    // ---- Forwarded to the feature managers (CameraServiceExtImpl_Forwarders.cpp) ----
    void initCameraInfos(sp<CameraProviderManager> manager) override;
    status_t addListener(const sp<hardware::ICameraServiceListener>& listener) override;
    status_t removeListener(const sp<hardware::ICameraServiceListener>& listener) override;
    bool returnOutputBuffers(camera3::CaptureOutputStates& states,
                             const camera3::camera_stream_buffer* outputBuffers, size_t numBuffers,
                             const camera3::InFlightRequest& request, long timestamp,
                             bool timestampIncreasing) override;
    bool sendCaptureResult(camera3::CaptureOutputStates& states, CameraMetadata& pendingMetadata,
                           CaptureResultExtras& resultExtras, CameraMetadata& collectedPartialResult,
                           uint32_t frameNumber, bool reprocess, bool zslStillCapture,
                           bool rotateAndCropAuto, const std::set<std::string>& cameraIdsWithZoom,
                           const std::vector<PhysicalCaptureResultInfo>& physicalMetadatas,
                           long requestTimeNs) override;
    bool checkToRemoveInFlightReqest(camera3::CaptureOutputStates& states, size_t index) override;
    void parseResult(CameraMetadata& result) override;
    void setTorchIntensity(CameraMetadata& request, uint32_t requestCount) override;
    void checkNeedEnableMagneticSensor() override;
    bool isTorchIntensityChanged() override;

    // ---- Avatar feature (CameraServiceExtImpl_Avatar.cpp) ----
    void overrideZumioFPS(CameraMetadata& request) override;
    bool sendZumioInitTagToHAL(const CameraMetadata& sessionParams) override;
    bool sendZumioJsonTagToHAL(const CameraMetadata& sessionParams) override;
    bool getZumioEnable() override;
    bool getUpdateZumio() override;

    // ---- Frame processing (CameraServiceExtImpl_FrameProcessing.cpp) ----
    // Releases the engine instance of the previous configuration (start of
    // beforeConfigureStreamsLocked) and sets up the next one with the APS switch (end of
    // afterConfigureStreamsLocked); both do nothing unless the library is fully bound.
    void releaseAPSEngine();
    void setUpAPSEngine();
    // The switch reads the client, the session's feature answers and the avatar manager.
    friend class APSInterface;

    // ---- Device services (CameraServiceExtImpl_DeviceServices.cpp) ----
    void modifyWaitDuration(long& duration, long defaultDuration) override;
    ssize_t calculateJpegBufferSize(long calculatedSize, long maxJpegBufferSize) override;
    void updateUseMonoTimestamp(bool& useMonoTimestamp, size_t consumerUsage) override;
    status_t enumerateProviders() override;
    void binderDied(const wp<IBinder>& who) override;
    bool isVirtualCameraProvider(const std::string& name) override;
    void SetStaticUxthread(int value) override;
    void SetUxthread(unsigned int enable) override;
    bool isWeChatRequestTimeOut() override;
    void preOpenCamera() override;
    bool checkFilterVideoTimestamp(bool enable) override;

    // ---- Always-on camera (CameraServiceExtImpl_AON.cpp) ----
    status_t openAON(sp<IBinder>& callback) override;
    status_t closeAON() override;
    // Probes the media devices for the front sensor and installs the signal handler; the result
    // of installing it.
    int32_t getAONcamdev();
    // Installs aon_signal_handler for the driver's signal; sigaction's result.
    int32_t initAONSignal();
    static void aon_signal_handler(int sig, siginfo_t* info, void* context);

    // ---- Legacy API1 (CameraServiceExtImpl_API1.cpp) ----
    bool checkToTriggerAFOnceForAPI1(camera2::Parameters::focusMode_t focusMode,
                                     bool afInMotion) override;
    bool checkToAddPreviewCallbackForAPI1() override;
    bool checkToSetParametersIgnoreErrorForAPI1(camera2::Parameters& params,
                                                const String8& paramString) override;
    bool checkToForceTriggerFaceAEForAPI1() override;
    void adjustPreviewSizeForAPI1(int& width, int& height) override;
    void updatePreviewAndVideoSizeForAPI1(CameraParameters2& params, int cameraId,
                                          Vector<Size>& previewSizes, int& previewWidth,
                                          int& previewHeight, Vector<Size>& videoSizes,
                                          int& videoWidth, int& videoHeight) override;
    void updateFlashModeForAPI1(CameraParameters2& params,
                                camera2::Parameters::flashMode_t& flashMode) override;
    void getPictureSizeForAPI1(Vector<Size>& sizes, std::function<long(Size)> getMinFrameDuration,
                               int cameraId) override;
    void setPreviewFpsRangeForAPI1(int& minFps, int& maxFps, int& previewFps,
                                   int& cameraId) override;
    void adjustInvalidFpsForAPI1(int& minFps, int& maxFps) override;
    void adjustPreviewFpsForAPI1(int& minFps, int& maxFps) override;
    bool checkUseZeroShutterLagForAPI1() override;
    bool checkIfAddSizeForAPI1(int width, int height, int format, int cameraId) override;
    void adjustFOVForAPI1(int cameraId, float* horizontalFov, float* verticalFov, float focalLength,
                          float sensorWidth, float sensorHeight, float arrayWidth,
                          float arrayHeight) override;

    // ---- Client state (CameraServiceExtImpl.cpp) ----
    void setDoingDisconnect(bool doing) override;
    void setAPKPackageName(String16 packageName);
    String16 getAPKPackageName();
    bool getConnectStatus() const { return mConnectStatus; }
    bool getDoingDisconnect() const { return mDoingDisconnect; }
    bool isFoldingDevice();
    // The flash-light state read at construction through "ro.vantu.system.camera.flashlight".
    const char* getFlashLightValue() const { return mFlashLightValue; }

    // The package and activity of the client being served ("NULL" when none).
    String8 currentPackageName() const;
    String8 currentActivityName() const;
    // The camera id of the last accepted connect (-1 before any) and the camera provider's
    // vendor id (-1 when none), for the feature managers.
    int32_t getLastCameraId() const { return mLastCameraId; }
    uint64_t getVendorId() const { return mVendorId; }

    // ---- Pop-up motor (CameraServiceExtImpl_Motor.cpp) ----
    // The motor commands a capture request calls for: raising the module for the front camera,
    // lowering it once the front camera stopped, and the module flash. `cameraId` is the id as
    // cameraIdToInt reads it (-1 when the text is no number).
    void applyMotorRequestRules(const camera_metadata* settings, int cameraId);

    // ---- Client slots (CameraServiceExtImpl.cpp) ----
    // True for the camera ids that have a slot (0..21).
    static bool isSlotId(int cameraId) { return cameraId >= 0 && cameraId < kMaxCameraSlots; }
    // The live client of camera `cameraId`, or null when the slot is empty, its client has died,
    // or the id has no slot. The caller holds the reference only while it needs it.
    sp<CameraService::BasicClient> promoteClient(int cameraId);
    void storeClient(int cameraId, const sp<CameraService::BasicClient>& client);
    void dropClient(int cameraId);
    // The client's package name as UTF-8.
    static String8 clientPackageName(const sp<CameraService::BasicClient>& client);
    // Tells `client` that its camera is gone (ERROR_CAMERA_DISCONNECTED) and disconnects it.
    static void notifyErrorAndDisconnect(const sp<CameraService::BasicClient>& client);

protected:
    // Feature managers, taken once at construction; null while a feature is switched off, so
    // every use tests them first.
    sp<AuthAppManager> mAuthAppManager;
    sp<APSInterface> mApsInterface;
    sp<ZumioManager> mZumioManager;
    sp<MotorManager> mMotorManager;
    sp<MagnecticSensorManager> mMagneticSensorManager;

    // The client being served. Connects of different cameras run on different binder threads,
    // so the names are copied in and out under mClientNameLock (a string is not a flag: a reader
    // racing a writer could see freed storage).
    mutable std::mutex mClientNameLock;
    String8 mCurrentPackageName{"NULL"};
    String8 mActivityName{"NULL"};
    // The package that currentRequestApp() classified last (held, so that its text cannot be
    // freed and another name take its place) and its class; under mClientNameLock.
    mutable String8 mRequestAppName;
    mutable RequestApp mRequestApp = RequestApp::kOther;
    // The (interned) package the request switches were last for, and whether it is the
    // classified package; under mClientNameLock, forgotten when the package changes.
    mutable const char* mRequestAppSwitchesPackage = nullptr;
    mutable bool mRequestAppIsSwitchesPackage = false;
    // Classifies the current package again when it changed; under mClientNameLock.
    RequestApp classifyRequestAppLocked() const;
    // Bumped, under mClientNameLock, at every change of mCurrentPackageName; with the class it
    // was current for, the classified package's (generation << 8 | 0x80 | class), so that the
    // per-frame hooks learn the class without the lock while the package stays the same.
    std::atomic<uint32_t> mClientNameGeneration{0};
    mutable std::atomic<uint32_t> mRequestAppCache{0};
    // Sets the current package under mClientNameLock; every writer of it goes through here.
    void storeCurrentPackageName(const String8& package);
    // "package/activity" exactly as the server passed it to beforeConnect.
    String8 mClientComponentName;

    vantu::Relaxed<bool> mConnectStatus{false};
    vantu::Relaxed<bool> mDoingDisconnect{false};
    // The next eviction disconnects every open client regardless of package rules.
    vantu::Relaxed<bool> mFreeDomEviction{false};
    // Set while the disconnect-all-clients transaction runs.
    vantu::Relaxed<bool> mDisconnectClients{false};
    // AE/AF states and triggers are printed ("persist.vendor.camera.debugaeaf").
    vantu::Relaxed<bool> mAeAfDebug{false};
    // Torch and flash are forbidden by "persist.sys.vantu.camera.open.torch".
    vantu::Relaxed<bool> mTorchDisabled{false};
    // The third-party settings and motor size limits apply to the current app.
    vantu::Relaxed<bool> mApplyThirdPartySettings{false};
    vantu::Relaxed<bool> mDeviceStateChanged{false};
    // A torch switch raised the pop-up module; the next connect lowers it.
    vantu::Relaxed<bool> mMotorTorchPending{false};
    // The pop-up module is to be released at the next disconnect.
    vantu::Relaxed<bool> mMotorReleasePending{false};
    // The always-on camera's front sensor was probed for this client announcement.
    vantu::Relaxed<bool> mAONDevProbed{false};
    // Camera id of the last accepted connect; -1 before any.
    vantu::Relaxed<int32_t> mLastCameraId{-1};
    vantu::Relaxed<int32_t> mApiLevel{0};
    vantu::Relaxed<uint64_t> mVendorId{static_cast<uint64_t>(-1)};
    vantu::Relaxed<uint64_t> mDeviceState{0};

    // The announced app's uid and pid (-1 when unset) and the uids announced as privileged.
    vantu::Relaxed<int32_t> mAPKUid{-1};
    vantu::Relaxed<int32_t> mAPKPid{-1};
    // Written by transactions and read by the classification hooks on other binder threads.
    std::mutex mPrivilegedUidsLock;
    std::set<int32_t> mPrivilegedUids;

    // The package announced by the maker's apps; only under mAPKPackageNameLock.
    Mutex mAPKPackageNameLock;
    String16 mAPKPackageName{"NULL"};

    // An eviction that waits for a client to finish disconnecting; afterDisconnect signals.
    Mutex mDisconnectLock;
    vantu::EnvCondition mDisconnectCondition;
    vantu::Relaxed<bool> mDisconnectWaitPending{false};

    // Meta streams by camera id. The server serialises the hooks of one camera, but the
    // configuration and disconnect of one camera add and remove records (moving the others in
    // the vector) while other cameras' request and result threads use theirs, so every use of
    // the table, and of a record found in it, is under mMetaStreamInfosLock; a record's own
    // mutex is taken inside it.
    std::mutex mMetaStreamInfosLock;
    KeyedVector<int, MetaStreamInfo> mMetaStreamInfos;

    // The client lock: held by disconnect-all for its whole walk, and by the clearing of
    // non-test clients while it takes the clients, so the two walkers never interleave.
    // Recursive because a client disconnected under it may come back into the extension on the
    // same thread.
    std::recursive_mutex mClientLock;
    // The server's clients by camera id; empty when none. Guarded by mClientSlotsLock, a leaf
    // lock held only to read or write a slot, never across a call out: the server runs
    // afterDisconnect (which drops a slot) under its own per-client locks, so a slot access
    // under the client lock would order the two against a disconnect-all that holds the client
    // lock while it waits for such a client.
    std::mutex mClientSlotsLock;
    wp<CameraService::BasicClient> mClientSlots[kMaxCameraSlots];
    CameraRecord mCameraRecords[kMaxCameraSlots]{};

    // The flash-light state: the value of the property that "ro.vantu.system.camera.flashlight"
    // names.
    char mFlashLightValue[PROPERTY_VALUE_MAX];
    // Feature switches read once at construction.
    bool mIsMultiWinCameraSupport = false;
    bool mZumioEnable = false;

    // Request and result marks of the apps whose 3A results are corrected.
    vantu::Relaxed<bool> mRejectStopPreview{false};
    vantu::Relaxed<uint32_t> mRejectStopPreviewFrameNum{static_cast<uint32_t>(-1)};
    vantu::Relaxed<bool> mTorchOn{false};
    vantu::Relaxed<uint8_t> mLastAFtrigger{0};
    // The AF trigger of WhatsApp's last request as the app sent it (0 when it had none), for the
    // MediaTek family's repeated-CANCEL rule.
    vantu::Relaxed<uint8_t> mLastRequestAFtrigger{0};
    vantu::Relaxed<uint32_t> mLatestAePreCaptureFrameNum{0};
    vantu::Relaxed<uint32_t> mLatestAfTriggerCancelFrameNum{0};
    // Resolved vendor tag ids, 0 while unresolved.
    vantu::Relaxed<uint32_t> mDeviceStateTag{0};
    vantu::Relaxed<uint32_t> mAPSRsultTag{0};
    // Per-configuration answers of the frame-processing library and the avatar feature.
    vantu::Relaxed<int32_t> mFwkBeauty{0};
    vantu::Relaxed<int32_t> mFwkZumio{0};
    vantu::Relaxed<int32_t> mSupportAps2Zumio{0};

    // Serialises opening and closing the always-on camera.
    Mutex mAONLock;

    // Threads whose UX class the chips that override SetUxthread have set.
    UxThreadTable mUxThreads;
    // Tells the maker's camera-extension HAL that a camera is about to open (the chips that
    // override preOpenCamera).
    void wakeCameraExtension();
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_CAMERASERVICEEXTIMPL_H

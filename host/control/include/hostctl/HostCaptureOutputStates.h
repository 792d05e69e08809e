/*
 * The result-path state of one host camera device, and the camera3::CaptureOutputStates that
 * refers to it, as the server builds one for each result it processes. The holder owns every
 * object the states refer to (in-flight map, locks, counters, streams, listener, error and
 * accounting sinks) and records what the library did through them.
 */
#ifndef HOSTCTL_HOSTCAPTUREOUTPUTSTATES_H
#define HOSTCTL_HOSTCAPTUREOUTPUTSTATES_H

#include <camera/CameraMetadata.h>
#include <camera/CaptureResult.h>
#include <common/CameraDeviceBase.h>
#include <device3/Camera3OutputUtils.h>
#include <stdarg.h>
#include <stdint.h>
#include <system/camera_vendor_tags.h>
#include <utils/String8.h>

#include <condition_variable>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace hostctl {

// The device's event listener. Records "notifyError(<code>)", "notifyShutter(<frame>, <ts>)",
// "notifyIdle", "notifyPrepared(<id>)", "notifyRequestQueueEmpty", "notifyAutoFocus(<s>, <id>)",
// "notifyAutoExposure(<s>, <id>)", "notifyAutoWhitebalance(<s>, <id>)" and
// "notifyRepeatingRequestError(<frame>)".
class HostNotificationListener : public android::NotificationListener {
public:
    void notifyError(int32_t errorCode, const android::CaptureResultExtras& resultExtras) override;
    void notifyIdle(int64_t requestCount, int64_t resultErrorCount, bool deviceError,
                    const std::vector<android::hardware::CameraStreamStats>& streamStats) override;
    void notifyShutter(const android::CaptureResultExtras& resultExtras, nsecs_t timestamp) override;
    void notifyPrepared(int streamId) override;
    void notifyRequestQueueEmpty() override;
    void notifyAutoFocus(uint8_t newState, int triggerId) override;
    void notifyAutoExposure(uint8_t newState, int triggerId) override;
    void notifyAutoWhitebalance(uint8_t newState, int triggerId) override;
    void notifyRepeatingRequestError(long lastFrameNumber) override;

    std::vector<std::string> events() const;
    void clear();

private:
    void record(std::string event);

    mutable std::mutex mLock;
    std::vector<std::string> mEvents;
};

// The device's error state: keeps every reason it was given.
class HostDeviceErrors : public android::camera3::SetErrorInterface {
public:
    void setErrorState(const char* fmt, ...) override;
    void setErrorStateLocked(const char* fmt, ...) override;

    bool inError() const;
    std::vector<std::string> messages() const;

private:
    void record(const char* fmt, va_list args);

    mutable std::mutex mLock;
    std::vector<std::string> mMessages;
};

// The device's in-flight accounting: keeps the durations of finished requests.
class HostInflightAccounting : public android::camera3::InflightRequestUpdateInterface {
public:
    void onInflightEntryRemovedLocked(nsecs_t duration) override;
    void checkInflightMapLengthLocked() override;
    void onInflightMapFlushedLocked() override;

    std::vector<nsecs_t> removedDurations() const;
    int flushes() const;

private:
    mutable std::mutex mLock;
    std::vector<nsecs_t> mRemoved;
    int mFlushes = 0;
};

// The device's records of buffers the HAL holds.
class HostBufferRecords : public android::camera3::BufferRecordsInterface {
public:
    explicit HostBufferRecords(android::camera3::StreamSet& streams) : mStreams(streams) {}

    void getInflightBufferKeys(std::vector<std::tuple<uint32_t, int32_t>>* out) override;
    void getInflightRequestBufferKeys(std::vector<uint64_t>* out) override;
    std::vector<android::sp<android::camera3::Camera3StreamInterface>> getAllStreams() override;
    android::status_t pushInflightBufferLocked(int32_t frameNumber, int32_t streamId,
                                               buffer_handle_t* buffer) override;
    android::status_t popInflightBuffer(int32_t frameNumber, int32_t streamId,
                                        buffer_handle_t** buffer) override;
    android::status_t pushInflightRequestBuffer(uint64_t bufferId, buffer_handle_t* buf,
                                                int32_t streamId) override;
    android::status_t popInflightRequestBuffer(uint64_t bufferId, buffer_handle_t** buffer,
                                               int32_t* streamId = nullptr) override;

private:
    android::camera3::StreamSet& mStreams;
    std::mutex mLock;
    std::map<std::tuple<uint32_t, int32_t>, buffer_handle_t*> mInflight;
    std::map<uint64_t, std::pair<buffer_handle_t*, int32_t>> mRequested;
};

// Owns a device's result-path state and the CaptureOutputStates over it. Fields are public so
// tests and the simulator can arrange and inspect them; take the matching lock when the library
// may run on another thread.
class HostCaptureOutputStates {
public:
    struct Options {
        bool useHalBufManager = false;
        bool usePartialResult = false;
        bool needFixupMonoChrome = false;
        uint32_t numPartialResults = 1;
        metadata_vendor_id_t vendorTagId = CAMERA_METADATA_INVALID_VENDOR_ID;
        bool legacyClient = false;
    };

    explicit HostCaptureOutputStates(const std::string& cameraId);
    HostCaptureOutputStates(const std::string& cameraId, const android::CameraMetadata& deviceInfo,
                            const Options& options);
    HostCaptureOutputStates(const HostCaptureOutputStates&) = delete;
    HostCaptureOutputStates& operator=(const HostCaptureOutputStates&) = delete;
    ~HostCaptureOutputStates();

    android::camera3::CaptureOutputStates& states() { return *mStates; }

    // Adds or replaces the in-flight request of `frameNumber` (under inflightLock).
    void addInFlightRequest(uint32_t frameNumber, const android::camera3::InFlightRequest& request);
    // False when there was none.
    bool removeInFlightRequest(uint32_t frameNumber);
    size_t inFlightCount();

    const android::String8 cameraId;
    std::mutex inflightLock;
    int64_t lastCompletedRegularFrameNumber = -1;
    int64_t lastCompletedReprocessFrameNumber = -1;
    int64_t lastCompletedZslFrameNumber = -1;
    android::camera3::InFlightRequestMap inflightMap;
    std::mutex outputLock;
    std::list<android::CaptureResult> resultQueue;
    std::condition_variable resultSignal;
    uint32_t nextShutterFrameNum = 0;
    uint32_t nextReprocShutterFrameNum = 0;
    uint32_t nextZslShutterFrameNum = 0;
    uint32_t nextResultFrameNum = 0;
    uint32_t nextReprocResultFrameNum = 0;
    uint32_t nextZslResultFrameNum = 0;
    const android::CameraMetadata deviceInfo;
    std::unordered_map<std::string, android::CameraMetadata> physicalDeviceInfoMap;
    std::unordered_map<std::string, android::camera3::DistortionMapper> distortionMappers;
    std::unordered_map<std::string, android::camera3::ZoomRatioMapper> zoomRatioMappers;
    std::unordered_map<std::string, android::camera3::RotateAndCropMapper> rotateAndCropMappers;
    android::TagMonitor tagMonitor;
    android::camera3::StreamSet outputStreams;
    android::SessionStatsBuilder sessionStatsBuilder;
    const android::sp<HostNotificationListener> listener;
    HostDeviceErrors errors;
    HostInflightAccounting inflightAccounting;
    HostBufferRecords bufferRecords;
    nsecs_t minFrameDuration = 0;

private:
    std::unique_ptr<android::camera3::CaptureOutputStates> mStates;
};

}  // namespace hostctl

#endif  // HOSTCTL_HOSTCAPTUREOUTPUTSTATES_H

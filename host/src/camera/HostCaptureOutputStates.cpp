// The host device's result-path state and the capture output states over it.
#define LOG_TAG "HostCaptureOutputStates"

#include "hostctl/HostCaptureOutputStates.h"

#include <log/log.h>
#include <stdio.h>

namespace hostctl {

using android::BAD_VALUE;
using android::NAME_NOT_FOUND;
using android::OK;
using android::status_t;

// ---- Listener -------------------------------------------------------------------------------

void HostNotificationListener::notifyError(int32_t errorCode, const android::CaptureResultExtras&) {
    record("notifyError(" + std::to_string(errorCode) + ")");
}

void HostNotificationListener::notifyIdle(int64_t, int64_t, bool,
                                          const std::vector<android::hardware::CameraStreamStats>&) {
    record("notifyIdle");
}

void HostNotificationListener::notifyShutter(const android::CaptureResultExtras& resultExtras,
                                             nsecs_t timestamp) {
    record("notifyShutter(" + std::to_string(resultExtras.frameNumber) + ", " +
           std::to_string(timestamp) + ")");
}

void HostNotificationListener::notifyPrepared(int streamId) {
    record("notifyPrepared(" + std::to_string(streamId) + ")");
}

void HostNotificationListener::notifyRequestQueueEmpty() {
    record("notifyRequestQueueEmpty");
}

void HostNotificationListener::notifyAutoFocus(uint8_t newState, int triggerId) {
    record("notifyAutoFocus(" + std::to_string(newState) + ", " + std::to_string(triggerId) + ")");
}

void HostNotificationListener::notifyAutoExposure(uint8_t newState, int triggerId) {
    record("notifyAutoExposure(" + std::to_string(newState) + ", " + std::to_string(triggerId) +
           ")");
}

void HostNotificationListener::notifyAutoWhitebalance(uint8_t newState, int triggerId) {
    record("notifyAutoWhitebalance(" + std::to_string(newState) + ", " + std::to_string(triggerId) +
           ")");
}

void HostNotificationListener::notifyRepeatingRequestError(long lastFrameNumber) {
    record("notifyRepeatingRequestError(" + std::to_string(lastFrameNumber) + ")");
}

std::vector<std::string> HostNotificationListener::events() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mEvents;
}

void HostNotificationListener::clear() {
    std::lock_guard<std::mutex> lock(mLock);
    mEvents.clear();
}

void HostNotificationListener::record(std::string event) {
    std::lock_guard<std::mutex> lock(mLock);
    mEvents.push_back(std::move(event));
}

// ---- Error state ----------------------------------------------------------------------------

void HostDeviceErrors::setErrorState(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    record(fmt, args);
    va_end(args);
}

void HostDeviceErrors::setErrorStateLocked(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    record(fmt, args);
    va_end(args);
}

void HostDeviceErrors::record(const char* fmt, va_list args) {
    char message[512];
    if (fmt == nullptr) {
        snprintf(message, sizeof(message), "(no reason)");
    } else {
        vsnprintf(message, sizeof(message), fmt, args);
    }
    ALOGE("Camera device error: %s", message);
    std::lock_guard<std::mutex> lock(mLock);
    mMessages.emplace_back(message);
}

bool HostDeviceErrors::inError() const {
    std::lock_guard<std::mutex> lock(mLock);
    return !mMessages.empty();
}

std::vector<std::string> HostDeviceErrors::messages() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mMessages;
}

// ---- In-flight accounting -------------------------------------------------------------------

void HostInflightAccounting::onInflightEntryRemovedLocked(nsecs_t duration) {
    std::lock_guard<std::mutex> lock(mLock);
    mRemoved.push_back(duration);
}

void HostInflightAccounting::checkInflightMapLengthLocked() {}

void HostInflightAccounting::onInflightMapFlushedLocked() {
    std::lock_guard<std::mutex> lock(mLock);
    mFlushes++;
}

std::vector<nsecs_t> HostInflightAccounting::removedDurations() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mRemoved;
}

int HostInflightAccounting::flushes() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mFlushes;
}

// ---- Buffer records -------------------------------------------------------------------------

void HostBufferRecords::getInflightBufferKeys(std::vector<std::tuple<uint32_t, int32_t>>* out) {
    if (out == nullptr) return;
    std::lock_guard<std::mutex> lock(mLock);
    out->clear();
    for (const auto& entry : mInflight) out->push_back(entry.first);
}

void HostBufferRecords::getInflightRequestBufferKeys(std::vector<uint64_t>* out) {
    if (out == nullptr) return;
    std::lock_guard<std::mutex> lock(mLock);
    out->clear();
    for (const auto& entry : mRequested) out->push_back(entry.first);
}

std::vector<android::sp<android::camera3::Camera3StreamInterface>> HostBufferRecords::getAllStreams() {
    std::vector<android::sp<android::camera3::Camera3StreamInterface>> streams;
    for (int id : mStreams.getStreamIds()) {
        android::sp<android::camera3::Camera3OutputStreamInterface> stream = mStreams.get(id);
        if (stream != nullptr) streams.push_back(stream);
    }
    return streams;
}

status_t HostBufferRecords::pushInflightBufferLocked(int32_t frameNumber, int32_t streamId,
                                                     buffer_handle_t* buffer) {
    std::lock_guard<std::mutex> lock(mLock);
    auto key = std::make_tuple(static_cast<uint32_t>(frameNumber), streamId);
    if (!mInflight.emplace(key, buffer).second) return BAD_VALUE;
    return OK;
}

status_t HostBufferRecords::popInflightBuffer(int32_t frameNumber, int32_t streamId,
                                              buffer_handle_t** buffer) {
    std::lock_guard<std::mutex> lock(mLock);
    auto it = mInflight.find(std::make_tuple(static_cast<uint32_t>(frameNumber), streamId));
    if (it == mInflight.end()) return NAME_NOT_FOUND;
    if (buffer != nullptr) *buffer = it->second;
    mInflight.erase(it);
    return OK;
}

status_t HostBufferRecords::pushInflightRequestBuffer(uint64_t bufferId, buffer_handle_t* buf,
                                                      int32_t streamId) {
    std::lock_guard<std::mutex> lock(mLock);
    if (!mRequested.emplace(bufferId, std::make_pair(buf, streamId)).second) return BAD_VALUE;
    return OK;
}

status_t HostBufferRecords::popInflightRequestBuffer(uint64_t bufferId, buffer_handle_t** buffer,
                                                     int32_t* streamId) {
    std::lock_guard<std::mutex> lock(mLock);
    auto it = mRequested.find(bufferId);
    if (it == mRequested.end()) return NAME_NOT_FOUND;
    if (buffer != nullptr) *buffer = it->second.first;
    if (streamId != nullptr) *streamId = it->second.second;
    mRequested.erase(it);
    return OK;
}

// ---- Holder ---------------------------------------------------------------------------------

HostCaptureOutputStates::HostCaptureOutputStates(const std::string& cameraId)
    : HostCaptureOutputStates(cameraId, android::CameraMetadata(), Options()) {}

HostCaptureOutputStates::HostCaptureOutputStates(const std::string& cameraId,
                                                 const android::CameraMetadata& deviceInfo,
                                                 const Options& options)
    : cameraId(cameraId.c_str()),
      deviceInfo(deviceInfo),
      listener(new HostNotificationListener()),
      bufferRecords(outputStreams) {
    mStates.reset(new android::camera3::CaptureOutputStates{this->cameraId,
                                                            inflightLock,
                                                            lastCompletedRegularFrameNumber,
                                                            lastCompletedReprocessFrameNumber,
                                                            lastCompletedZslFrameNumber,
                                                            inflightMap,
                                                            outputLock,
                                                            resultQueue,
                                                            resultSignal,
                                                            nextShutterFrameNum,
                                                            nextReprocShutterFrameNum,
                                                            nextZslShutterFrameNum,
                                                            nextResultFrameNum,
                                                            nextReprocResultFrameNum,
                                                            nextZslResultFrameNum,
                                                            options.useHalBufManager,
                                                            options.usePartialResult,
                                                            options.needFixupMonoChrome,
                                                            options.numPartialResults,
                                                            options.vendorTagId,
                                                            this->deviceInfo,
                                                            physicalDeviceInfoMap,
                                                            distortionMappers,
                                                            zoomRatioMappers,
                                                            rotateAndCropMappers,
                                                            tagMonitor,
                                                            /*inputStream=*/nullptr,
                                                            outputStreams,
                                                            sessionStatsBuilder,
                                                            listener,
                                                            errors,
                                                            inflightAccounting,
                                                            bufferRecords,
                                                            options.legacyClient,
                                                            minFrameDuration});
}

HostCaptureOutputStates::~HostCaptureOutputStates() {}

void HostCaptureOutputStates::addInFlightRequest(uint32_t frameNumber,
                                                 const android::camera3::InFlightRequest& request) {
    std::lock_guard<std::mutex> lock(inflightLock);
    inflightMap.replaceValueFor(frameNumber, request);
}

bool HostCaptureOutputStates::removeInFlightRequest(uint32_t frameNumber) {
    std::lock_guard<std::mutex> lock(inflightLock);
    return inflightMap.removeItem(frameNumber) >= 0;
}

size_t HostCaptureOutputStates::inFlightCount() {
    std::lock_guard<std::mutex> lock(inflightLock);
    return inflightMap.size();
}

}  // namespace hostctl

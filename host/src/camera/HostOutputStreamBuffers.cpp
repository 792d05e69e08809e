// The host output stream's buffer flow: handing buffers to the HAL side, waiting when every
// buffer is out, taking them back, and the listeners told of it.
#define LOG_TAG "Camera3-HostOutputStream"

#include <inttypes.h>
#include <log/log.h>
#include <stdio.h>

#include <algorithm>
#include <chrono>

#include "hostctl/HostEnv.h"
#include "hostctl/HostOutputStream.h"
#include "utils/Env.h"

// The host platform's environment (HostEnv.cpp), through which host-side waits follow the
// clock the library sees.
extern "C" android::vantu::Env* android_vantu_host_env();

namespace hostctl {

using android::BAD_VALUE;
using android::INVALID_OPERATION;
using android::OK;
using android::status_t;
using android::TIMED_OUT;
using android::camera3::Camera3StreamBufferListener;
using android::camera3::camera_stream_buffer;

namespace {

// GRALLOC_USAGE_HW_VIDEO_ENCODER.
constexpr uint64_t kUsageVideoEncoder = 0x00010000;

// Step of a wait in virtual time: each step lets scheduled work run and moves the clock.
constexpr nsecs_t kVirtualWaitStep = 1000000;  // 1 ms

}  // namespace

size_t HostOutputStream::handedOutLocked() const {
    return static_cast<size_t>(std::count(mHandedOut.begin(), mHandedOut.end(), true));
}

ssize_t HostOutputStream::indexOfLocked(const buffer_handle_t* handle) const {
    // A handed-out handle points into mBuffers: its index follows from its address, without a
    // walk over every buffer per returned frame.
    if (mBuffers.empty() || handle == nullptr) return -1;
    const uintptr_t first = reinterpret_cast<uintptr_t>(&mBuffers.front().handle);
    const uintptr_t at = reinterpret_cast<uintptr_t>(handle);
    if (at < first || (at - first) % sizeof(HostBuffer) != 0) return -1;
    const size_t index = (at - first) / sizeof(HostBuffer);
    return index < mBuffers.size() ? static_cast<ssize_t>(index) : -1;
}

status_t HostOutputStream::waitForFreeLocked(std::unique_lock<std::mutex>& lock, size_t count,
                                             nsecs_t timeout) {
    auto ready = [&] { return mFree.size() >= count || !configuredLocked(); };
    if (ready()) return OK;
    if (!isVirtualTime()) {
        bool woke = mBufferReturned.wait_for(lock, std::chrono::nanoseconds(timeout), ready);
        return woke ? OK : TIMED_OUT;
    }
    // In virtual time the wait advances the clock step by step, letting the host's scheduled
    // work (which may return buffers) run in between.
    android::vantu::Env* env = android_vantu_host_env();
    const nsecs_t deadline = env->monotonicNs() + timeout;
    while (!ready()) {
        const nsecs_t now = env->monotonicNs();
        if (now >= deadline) return TIMED_OUT;
        lock.unlock();
        env->sleepNs(std::min(kVirtualWaitStep, deadline - now));
        lock.lock();
    }
    return OK;
}

void HostOutputStream::takeBufferLocked(camera_stream_buffer* buffer) {
    const size_t index = mFree.front();
    mFree.pop_front();
    mHandedOut[index] = true;
    buffer->stream = &mHalStream;
    buffer->buffer = &mBuffers[index].handle;
    buffer->status = android::camera3::CAMERA_BUFFER_STATUS_OK;
    buffer->acquire_fence = -1;
    buffer->release_fence = -1;
    markActivityLocked();
}

void HostOutputStream::markActivityLocked() {
    if (mStatusTracker == nullptr) return;
    if (handedOutLocked() > 0) {
        mStatusTracker->markComponentActive(mStatusId);
    } else {
        mStatusTracker->markComponentIdle(mStatusId);
    }
}

status_t HostOutputStream::getBuffer(camera_stream_buffer* buffer, nsecs_t waitBufferTimeout,
                                     const std::vector<size_t>& /*surface_ids*/) {
    std::unique_lock<std::mutex> lock(mLock);
    if (buffer == nullptr) {
        recordLocked("getBuffer", BAD_VALUE);
        return BAD_VALUE;
    }
    if (!configuredLocked()) {
        ALOGE("%s: Stream %d: Can't get buffers if stream is not in CONFIGURED state %d",
              __FUNCTION__, mId, mState);
        recordLocked("getBuffer", INVALID_OPERATION);
        return INVALID_OPERATION;
    }
    // The server never waits less than a second for a buffer to come back.
    if (waitBufferTimeout < kMinWaitForBuffer) waitBufferTimeout = kMinWaitForBuffer;
    status_t res = waitForFreeLocked(lock, 1, waitBufferTimeout);
    if (res == TIMED_OUT) {
        ALOGE("%s: wait for output buffer return timed out after %" PRId64 "ms (max_buffers %d)",
              __FUNCTION__, waitBufferTimeout / 1000000, mHalStream.max_buffers);
    } else if (!configuredLocked()) {
        res = INVALID_OPERATION;
    }
    if (res == OK) takeBufferLocked(buffer);
    recordLocked("getBuffer", res);
    const bool listened = !mBufferListeners.empty();
    lock.unlock();
    if (res == OK && listened) notifyListeners(/*acquired=*/true, 0, false, 0);
    return res;
}

status_t HostOutputStream::getBuffers(std::vector<OutstandingBuffer>* buffers,
                                      nsecs_t waitBufferTimeout) {
    if (buffers == nullptr) return BAD_VALUE;
    for (const auto& outstanding : *buffers) {
        if (outstanding.outBuffer == nullptr) return BAD_VALUE;
    }
    if (buffers->empty()) return OK;
    std::unique_lock<std::mutex> lock(mLock);
    if (!configuredLocked()) {
        ALOGE("%s: Stream %d: Can't get buffers if stream is not in CONFIGURED state %d",
              __FUNCTION__, mId, mState);
        recordLocked("getBuffers", INVALID_OPERATION);
        return INVALID_OPERATION;
    }
    if (buffers->size() > mBuffers.size()) {
        ALOGE("%s: Stream %d: %zu buffers asked for, the stream has %zu", __FUNCTION__, mId,
              buffers->size(), mBuffers.size());
        recordLocked("getBuffers", INVALID_OPERATION);
        return INVALID_OPERATION;
    }
    if (waitBufferTimeout < kMinWaitForBuffer) waitBufferTimeout = kMinWaitForBuffer;
    status_t res = waitForFreeLocked(lock, buffers->size(), waitBufferTimeout);
    if (res == OK && !configuredLocked()) res = INVALID_OPERATION;
    if (res == OK) {
        for (auto& outstanding : *buffers) takeBufferLocked(outstanding.outBuffer);
    }
    recordLocked("getBuffers", res);
    const size_t count = buffers->size();
    lock.unlock();
    if (res == OK) {
        for (size_t i = 0; i < count; i++) notifyListeners(true, 0, false, 0);
    }
    return res;
}

status_t HostOutputStream::returnBuffer(const camera_stream_buffer& buffer, nsecs_t timestamp,
                                        nsecs_t /*readoutTimestamp*/, bool timestampIncreasing,
                                        const std::vector<size_t>& /*surface_ids*/,
                                        uint64_t frameNumber, int32_t /*transform*/) {
    std::unique_lock<std::mutex> lock(mLock);
    const ssize_t index = indexOfLocked(buffer.buffer);
    if (index < 0 || !mHandedOut[index]) {
        ALOGE("%s: Stream %d: Returning an unknown buffer.", __FUNCTION__, mId);
        recordLocked("returnBuffer", BAD_VALUE);
        return BAD_VALUE;
    }
    bool error = buffer.status == android::camera3::CAMERA_BUFFER_STATUS_ERROR || mDropping;
    if (timestampIncreasing && timestamp != 0 && timestamp <= mLastTimestamp) {
        ALOGE("%s: Stream %d: timestamp %" PRId64 " is not increasing. Prev timestamp %" PRId64,
              __FUNCTION__, mId, timestamp, mLastTimestamp);
        error = true;
    }
    mLastTimestamp = timestamp;
    mHandedOut[index] = false;
    // The consumer takes the buffer and releases it at once: it is free again, last in line.
    mFree.push_back(static_cast<size_t>(index));
    if (!error) mUnpreparable = true;
    Delivered& delivered = mDelivered.append();
    delivered.index = static_cast<size_t>(index);
    delivered.timestamp = timestamp;
    delivered.frameNumber = frameNumber;
    delivered.error = error;
    recordReturnLocked(frameNumber, error);
    markActivityLocked();
    mBufferReturned.notify_all();
    const bool listened = !mBufferListeners.empty();
    lock.unlock();
    if (listened) notifyListeners(/*acquired=*/false, timestamp, error, frameNumber);
    return OK;
}

void HostOutputStream::notifyListeners(bool acquired, nsecs_t timestamp, bool error,
                                       uint64_t frameNumber) {
    std::vector<android::wp<Camera3StreamBufferListener>> listeners;
    {
        std::lock_guard<std::mutex> lock(mLock);
        // Most streams have no listener: nothing to copy per buffer then.
        if (mBufferListeners.empty()) return;
        listeners = mBufferListeners;
    }
    Camera3StreamBufferListener::BufferInfo info{/*mOutput=*/true, timestamp, error, frameNumber};
    for (auto& weak : listeners) {
        android::sp<Camera3StreamBufferListener> listener = weak.promote();
        if (listener == nullptr) continue;
        if (acquired) {
            listener->onBufferAcquired(info);
        } else {
            listener->onBufferReleased(info);
        }
    }
}

status_t HostOutputStream::getInputBuffer(camera_stream_buffer*, android::camera3::Size*, bool) {
    ALOGE("%s: Not an input stream!", __FUNCTION__);
    return INVALID_OPERATION;
}

status_t HostOutputStream::returnInputBuffer(const camera_stream_buffer&) {
    ALOGE("%s: Not an input stream!", __FUNCTION__);
    return INVALID_OPERATION;
}

status_t HostOutputStream::getInputBufferProducer(android::sp<android::IGraphicBufferProducer>*) {
    ALOGE("%s: Not an input stream!", __FUNCTION__);
    return INVALID_OPERATION;
}

bool HostOutputStream::hasOutstandingBuffers() const {
    std::lock_guard<std::mutex> lock(mLock);
    return handedOutLocked() > 0;
}

size_t HostOutputStream::getOutstandingBuffersCount() const {
    std::lock_guard<std::mutex> lock(mLock);
    return handedOutLocked();
}

status_t HostOutputStream::setStatusTracker(
    android::sp<android::camera3::StatusTracker> statusTracker) {
    std::lock_guard<std::mutex> lock(mLock);
    if (mStatusTracker != nullptr) mStatusTracker->removeComponent(mStatusId);
    mStatusTracker = statusTracker;
    mStatusId = android::camera3::StatusTracker::NO_STATUS_ID;
    if (mStatusTracker != nullptr) {
        mStatusId = mStatusTracker->addComponent(android::String8::format("Stream %d", mId));
        markActivityLocked();
    }
    return OK;
}

status_t HostOutputStream::disconnect() {
    std::vector<HostBuffer> retired;
    {
        std::lock_guard<std::mutex> lock(mLock);
        if (mState != CONFIGURED && mState != IN_RECONFIG) {
            // Not connected to a consumer: nothing to do.
            recordLocked("disconnect", OK);
            return OK;
        }
        if (handedOutLocked() > 0) {
            ALOGE("%s: Can't disconnect with %zu buffers still dequeued!", __FUNCTION__,
                  handedOutLocked());
            recordLocked("disconnect", INVALID_OPERATION);
            return INVALID_OPERATION;
        }
        retireBuffersLocked(&retired);
        mState = mState == IN_RECONFIG ? IN_CONFIG : CONSTRUCTED;
        recordLocked("disconnect", OK);
        mBufferReturned.notify_all();
    }
    releaseRetired(retired);
    return OK;
}

bool HostOutputStream::isAbandoned() const {
    return false;
}

void HostOutputStream::dump(int fd, const android::Vector<android::String16>&) const {
    std::lock_guard<std::mutex> lock(mLock);
    dprintf(fd, "    Stream[%d]: Output\n", mId);
    dprintf(fd, "      Dims: %d x %d, format 0x%x, dataspace 0x%x\n", mWidth, mHeight,
            mHalStream.format, mHalStream.data_space);
    dprintf(fd, "      Max HAL buffers: %d, buffers: %zu, handed out: %zu\n",
            mHalStream.max_buffers, mBuffers.size(), handedOutLocked());
}

void HostOutputStream::addBufferListener(android::wp<Camera3StreamBufferListener> listener) {
    std::lock_guard<std::mutex> lock(mLock);
    for (const auto& existing : mBufferListeners) {
        if (existing == listener) return;
    }
    mBufferListeners.push_back(listener);
}

void HostOutputStream::removeBufferListener(const android::sp<Camera3StreamBufferListener>& listener) {
    std::lock_guard<std::mutex> lock(mLock);
    for (auto it = mBufferListeners.begin(); it != mBufferListeners.end(); ++it) {
        if (*it == listener) {
            mBufferListeners.erase(it);
            return;
        }
    }
    ALOGW("%s: Could not find listener to remove, already removed", __FUNCTION__);
}

status_t HostOutputStream::setBufferFreedListener(
    android::wp<android::camera3::Camera3StreamBufferFreedListener> listener) {
    std::lock_guard<std::mutex> lock(mLock);
    // Only one listener at a time: set it, or clear it with a null one.
    if (listener != nullptr && mFreedListener != nullptr) {
        ALOGE("%s: Stream %d: a buffer freed listener is already set", __FUNCTION__, mId);
        return BAD_VALUE;
    }
    mFreedListener = listener;
    return OK;
}

void HostOutputStream::fireBufferRequestForFrameNumber(uint64_t frameNumber,
                                                       const android::CameraMetadata& settings) {
    std::vector<android::wp<Camera3StreamBufferListener>> listeners;
    {
        std::lock_guard<std::mutex> lock(mLock);
        // Most streams have no listener: nothing to copy per buffer then.
        if (mBufferListeners.empty()) return;
        listeners = mBufferListeners;
    }
    for (auto& weak : listeners) {
        android::sp<Camera3StreamBufferListener> listener = weak.promote();
        if (listener != nullptr)
            listener->onBufferRequestForFrameNumber(frameNumber, mId, settings);
    }
}

// ---- Output stream operations -------------------------------------------------------------

status_t HostOutputStream::setTransform(int transform, bool /*mayChangeMirror*/) {
    std::lock_guard<std::mutex> lock(mLock);
    mTransform = transform;
    return OK;
}

bool HostOutputStream::isVideoStream() const {
    std::lock_guard<std::mutex> lock(mLock);
    return (mHalStream.usage & kUsageVideoEncoder) != 0;
}

bool HostOutputStream::isConsumerConfigurationDeferred(size_t) const {
    // A host stream has its consumer from the start.
    return false;
}

status_t HostOutputStream::setConsumers(const std::vector<android::sp<android::Surface>>&) {
    ALOGE("%s: consumer surface was already set!", __FUNCTION__);
    return INVALID_OPERATION;
}

status_t HostOutputStream::detachBuffer(android::sp<android::GraphicBuffer>*, int*) {
    ALOGE("%s: Stream %d: the host stream has no graphic buffers to detach", __FUNCTION__, mId);
    return INVALID_OPERATION;
}

ssize_t HostOutputStream::getSurfaceId(const android::sp<android::Surface>&) {
    // A non-shared output stream has its one surface, id 0.
    return 0;
}

status_t HostOutputStream::getUniqueSurfaceIds(const std::vector<size_t>&, std::vector<size_t>*) {
    return INVALID_OPERATION;
}

status_t HostOutputStream::updateStream(
    const std::vector<android::sp<android::Surface>>&,
    const std::vector<android::camera3::OutputStreamInfo>&, const std::vector<size_t>&,
    android::KeyedVector<android::sp<android::Surface>, size_t>*) {
    ALOGE("%s: this method is not supported!", __FUNCTION__);
    return INVALID_OPERATION;
}

status_t HostOutputStream::dropBuffers(bool dropping) {
    std::lock_guard<std::mutex> lock(mLock);
    mDropping = dropping;
    return OK;
}

status_t HostOutputStream::setBatchSize(size_t batchSize) {
    if (batchSize == 0) {
        ALOGE("%s: invalid batch size 0", __FUNCTION__);
        return BAD_VALUE;
    }
    std::lock_guard<std::mutex> lock(mLock);
    mBatchSize = batchSize;
    return OK;
}

void HostOutputStream::onMinDurationChanged(nsecs_t duration) {
    std::lock_guard<std::mutex> lock(mLock);
    mMinDuration = duration;
}

}  // namespace hostctl

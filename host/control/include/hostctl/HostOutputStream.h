/*
 * A camera output stream on the host: a Camera3OutputStreamInterface with the server's
 * configuration states and a buffer queue whose consumer releases every queued buffer at once.
 * It hands out its own camera_stream, allocates its buffers when configuration finishes, waits on
 * the environment's clock when every buffer is out (so virtual time makes the wait instant), and
 * records the calls the library makes.
 */
#ifndef HOSTCTL_HOSTOUTPUTSTREAM_H
#define HOSTCTL_HOSTOUTPUTSTREAM_H

#include <cutils/native_handle.h>
#include <device3/Camera3OutputStreamInterface.h>
#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>
#include <system/graphics.h>
#include <utils/String8.h>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace hostctl {

// The newest `Capacity` entries of a record, oldest first, in storage reused once full, so that
// the per-frame buffer paths append without allocating.
template <typename T, size_t Capacity>
class RecordRing {
public:
    // The slot of a new record, for the caller to fill field by field: a record built on the
    // stack and copied in whole would be read back wider than it was written, which stalls.
    T& append() {
        ++mTotal;
        if (mItems.size() < Capacity) {
            mItems.emplace_back();
            return mItems.back();
        }
        T& slot = mItems[mOldest];
        mOldest = (mOldest + 1) % Capacity;
        return slot;
    }
    void clear() {
        mItems.clear();
        mOldest = 0;
    }
    size_t size() const { return mItems.size(); }
    // Every record ever pushed, the overwritten ones included: what a reader compares to find
    // the records added since it last looked.
    uint64_t total() const { return mTotal; }
    template <typename F>
    void forEach(F each) const {
        for (size_t i = 0; i < mItems.size(); ++i) each(mItems[(mOldest + i) % mItems.size()]);
    }

private:
    std::vector<T> mItems;
    size_t mOldest = 0;
    uint64_t mTotal = 0;
};

// One buffer of a host stream: the handle the HAL side sees and the memory behind it.
struct HostBuffer {
    buffer_handle_t handle = nullptr;
    void* data = nullptr;
    size_t size = 0;
};

// Makes the buffers of host streams. The default backs each buffer with zeroed memory and a
// native handle without file descriptors; a host that models hardware buffers sets its own.
class HostBufferAllocator {
public:
    virtual ~HostBufferAllocator() = default;
    // Fills `out` for one buffer of `stream` of `size` bytes; false when it cannot.
    virtual bool allocate(const android::camera3::camera_stream& stream, size_t size,
                          HostBuffer* out) = 0;
    virtual void release(HostBuffer& buffer) = 0;
};

// Bytes a buffer of this format and size needs on the host (0 when it overflows).
size_t hostBufferSize(int format, uint32_t width, uint32_t height);

class HostOutputStream : public android::camera3::Camera3OutputStreamInterface {
public:
    // Used when the HAL side leaves max_buffers at 0.
    static constexpr uint32_t kDefaultMaxBuffers = 4;
    // The server never waits less than this for a buffer to come back.
    static constexpr nsecs_t kMinWaitForBuffer = 1000000000LL;  // 1 s
    // A host never allocates more than this for one buffer.
    static constexpr size_t kMaxBufferBytes = 256u << 20;

    struct Config {
        int id = 0;
        uint32_t width = 0;
        uint32_t height = 0;
        int format = HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED;
        android_dataspace dataSpace = HAL_DATASPACE_UNKNOWN;
        uint64_t usage = 0;
        int setId = android::camera3::CAMERA3_STREAM_SET_ID_INVALID;
        std::string physicalCameraId;
    };

    // Records kept per stream; older ones are dropped.
    static constexpr size_t kMaxRecords = 4096;

    // A buffer the HAL side gave back and the consumer took.
    struct Delivered {
        size_t index;
        nsecs_t timestamp;
        uint64_t frameNumber;
        bool error;
    };

    explicit HostOutputStream(const Config& config);
    HostOutputStream(int id, uint32_t width, uint32_t height, int format);

    // Host control.
    void setBufferAllocator(std::shared_ptr<HostBufferAllocator> allocator);
    // The next startConfiguration() fails (returns NULL).
    void failNextStartConfiguration();
    // The next finishConfiguration() that would succeed returns `result` instead.
    void failNextFinishConfiguration(android::status_t result);
    // Calls in order: "startConfiguration", "finishConfiguration", "cancelConfiguration",
    // "getBuffer", "returnBuffer", "disconnect" with their outcome, e.g. "getBuffer -> -110".
    std::vector<std::string> calls() const;
    void clearCalls();
    std::vector<Delivered> delivered() const;
    // How many buffers the stream has delivered since it was made (delivered() keeps the newest).
    uint64_t deliveredTotal() const;
    size_t bufferCount() const;
    // The index of the buffer behind `handle`, or -1.
    ssize_t bufferIndex(const buffer_handle_t* handle) const;
    // A copy of buffer `index`'s bytes (empty when out of range).
    std::vector<uint8_t> bufferContents(size_t index) const;

    // Camera3StreamInterface.
    int getId() const override;
    int getStreamSetId() const override;
    bool isMultiResolution() const override;
    int getHalStreamGroupId() const override;
    uint32_t getWidth() const override;
    uint32_t getHeight() const override;
    int getFormat() const override;
    int64_t getDynamicRangeProfile() const override;
    android_dataspace getDataSpace() const override;
    void setFormatOverride(bool formatOverriden) override;
    bool isFormatOverridden() const override;
    int getOriginalFormat() const override;
    void setDataSpaceOverride(bool dataSpaceOverriden) override;
    bool isDataSpaceOverridden() const override;
    android_dataspace getOriginalDataSpace() const override;
    int getMaxHalBuffers() const override;
    int getMaxTotalBuffers() const override;
    void setOfflineProcessingSupport(bool support) override;
    bool getOfflineProcessingSupport() const override;
    android::camera3::camera_stream* asHalStream() override;
    android::camera3::camera_stream* startConfiguration() override;
    bool isConfiguring() const override;
    android::status_t finishConfiguration(bool* streamReconfigured = nullptr) override;
    android::status_t cancelConfiguration() override;
    bool isUnpreparable() override;
    void markUnpreparable() override;
    android::status_t startPrepare(int maxCount, bool blockRequest) override;
    bool isBlockedByPrepare() const override;
    android::status_t prepareNextBuffer() override;
    android::status_t cancelPrepare() override;
    android::status_t tearDown() override;
    android::status_t getBuffer(android::camera3::camera_stream_buffer* buffer,
                                nsecs_t waitBufferTimeout,
                                const std::vector<size_t>& surface_ids = {}) override;
    android::status_t getBuffers(std::vector<OutstandingBuffer>* buffers,
                                 nsecs_t waitBufferTimeout) override;
    android::status_t returnBuffer(const android::camera3::camera_stream_buffer& buffer,
                                   nsecs_t timestamp, nsecs_t readoutTimestamp,
                                   bool timestampIncreasing = true,
                                   const std::vector<size_t>& surface_ids = {},
                                   uint64_t frameNumber = 0, int32_t transform = -1) override;
    android::status_t getInputBuffer(android::camera3::camera_stream_buffer* buffer,
                                     android::camera3::Size* size,
                                     bool respectHalLimit = true) override;
    android::status_t returnInputBuffer(
        const android::camera3::camera_stream_buffer& buffer) override;
    android::status_t getInputBufferProducer(
        android::sp<android::IGraphicBufferProducer>* producer) override;
    bool hasOutstandingBuffers() const override;
    size_t getOutstandingBuffersCount() const override;
    android::status_t setStatusTracker(
        android::sp<android::camera3::StatusTracker> statusTracker) override;
    android::status_t disconnect() override;
    bool isAbandoned() const override;
    void dump(int fd, const android::Vector<android::String16>& args) const override;
    void addBufferListener(
        android::wp<android::camera3::Camera3StreamBufferListener> listener) override;
    void removeBufferListener(
        const android::sp<android::camera3::Camera3StreamBufferListener>& listener) override;
    android::status_t setBufferFreedListener(
        android::wp<android::camera3::Camera3StreamBufferFreedListener> listener) override;
    void fireBufferRequestForFrameNumber(uint64_t frameNumber,
                                         const android::CameraMetadata& settings) override;

    // Camera3OutputStreamInterface.
    android::status_t setTransform(int transform, bool mayChangeMirror) override;
    bool isVideoStream() const override;
    bool isConsumerConfigurationDeferred(size_t surface_id = 0) const override;
    android::status_t setConsumers(
        const std::vector<android::sp<android::Surface>>& consumers) override;
    android::status_t detachBuffer(android::sp<android::GraphicBuffer>* buffer,
                                   int* fenceFd) override;
    ssize_t getSurfaceId(const android::sp<android::Surface>& surface) override;
    android::status_t getUniqueSurfaceIds(const std::vector<size_t>& surfaceIds,
                                          std::vector<size_t>* outUniqueIds) override;
    android::status_t updateStream(
        const std::vector<android::sp<android::Surface>>& outputSurfaces,
        const std::vector<android::camera3::OutputStreamInfo>& outputInfo,
        const std::vector<size_t>& removedSurfaceIds,
        android::KeyedVector<android::sp<android::Surface>, size_t>* outputMap) override;
    android::status_t dropBuffers(bool dropping) override;
    const android::String8& getPhysicalCameraId() const override;
    android::status_t setBatchSize(size_t batchSize = 1) override;
    void onMinDurationChanged(nsecs_t duration) override;

protected:
    ~HostOutputStream() override;

private:
    enum State { CONSTRUCTED, IN_CONFIG, IN_RECONFIG, CONFIGURED, ERROR };

    // Calls are kept as small records and worded only when calls() is asked, so the buffer
    // paths that run per frame cost no text formatting.
    struct CallRecord {
        enum Form : uint8_t { kName, kResult, kReturnBuffer };
        const char* name;  // a literal
        uint64_t frameNumber;
        android::status_t result;
        Form form;
        bool error;
    };
    void recordLocked(const char* call);
    void recordLocked(const char* call, android::status_t result);
    void recordReturnLocked(uint64_t frameNumber, bool error);
    void pushRecordLocked(const char* name, uint64_t frameNumber, android::status_t result,
                          CallRecord::Form form, bool error);
    bool configuredLocked() const { return mState == CONFIGURED; }
    android::status_t allocateBuffersLocked(uint32_t count);
    // Moves every buffer out of the queue into `retired`, to be released without the lock.
    void retireBuffersLocked(std::vector<HostBuffer>* retired);
    void releaseRetired(std::vector<HostBuffer>& retired);
    size_t handedOutLocked() const;
    // Waits until `count` buffers are free or `timeout` passes, on the environment's clock.
    android::status_t waitForFreeLocked(std::unique_lock<std::mutex>& lock, size_t count,
                                        nsecs_t timeout);
    void takeBufferLocked(android::camera3::camera_stream_buffer* buffer);
    ssize_t indexOfLocked(const buffer_handle_t* handle) const;
    // Tells the buffer listeners; called without the lock, and only when there were listeners
    // while it was held (most streams have none).
    void notifyListeners(bool acquired, nsecs_t timestamp, bool error, uint64_t frameNumber);
    void markActivityLocked();

    const int mId;
    const int mSetId;
    const uint32_t mWidth;
    const uint32_t mHeight;
    const int mOriginalFormat;
    const android_dataspace mOriginalDataSpace;
    const android::String8 mPhysicalCameraId;

    mutable std::mutex mLock;
    std::condition_variable mBufferReturned;
    State mState = CONSTRUCTED;
    android::camera3::camera_stream mHalStream;
    uint32_t mOldUsage = 0;
    uint32_t mOldMaxBuffers = 0;
    int mOldFormat = 0;
    android_dataspace mOldDataSpace = HAL_DATASPACE_UNKNOWN;
    bool mFormatOverridden = false;
    bool mDataSpaceOverridden = false;
    bool mOfflineSupport = false;
    bool mUnpreparable = true;
    bool mDropping = false;
    bool mFailNextStart = false;
    android::status_t mFailNextFinish = android::OK;
    int mTransform = 0;
    size_t mBatchSize = 1;
    nsecs_t mMinDuration = 0;
    nsecs_t mLastTimestamp = 0;

    std::shared_ptr<HostBufferAllocator> mAllocator;
    std::vector<HostBuffer> mBuffers;
    std::vector<bool> mHandedOut;
    std::deque<size_t> mFree;  // buffer queue order: the oldest released buffer first

    android::sp<android::camera3::StatusTracker> mStatusTracker;
    int mStatusId = android::camera3::StatusTracker::NO_STATUS_ID;
    std::vector<android::wp<android::camera3::Camera3StreamBufferListener>> mBufferListeners;
    android::wp<android::camera3::Camera3StreamBufferFreedListener> mFreedListener;

    RecordRing<CallRecord, kMaxRecords> mCalls;
    RecordRing<Delivered, kMaxRecords> mDelivered;
};

}  // namespace hostctl

#endif  // HOSTCTL_HOSTOUTPUTSTREAM_H

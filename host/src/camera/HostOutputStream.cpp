// The host's output stream: configuration states and a buffer queue.
#define LOG_TAG "Camera3-HostOutputStream"

#include "hostctl/HostOutputStream.h"

#include <log/log.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace hostctl {

using android::BAD_VALUE;
using android::INVALID_OPERATION;
using android::NO_MEMORY;
using android::OK;
using android::status_t;
using android::camera3::camera_stream;

namespace {

class MemoryAllocator : public HostBufferAllocator {
public:
    bool allocate(const camera_stream&, size_t size, HostBuffer* out) override {
        void* data = calloc(1, size);
        native_handle_t* handle = native_handle_create(0, 0);
        if (data == nullptr || handle == nullptr) {
            free(data);
            if (handle != nullptr) native_handle_delete(handle);
            return false;
        }
        out->handle = handle;
        out->data = data;
        out->size = size;
        return true;
    }

    void release(HostBuffer& buffer) override {
        if (buffer.handle != nullptr) {
            native_handle_delete(const_cast<native_handle_t*>(buffer.handle));
        }
        free(buffer.data);
        buffer = HostBuffer();
    }
};

}  // namespace

size_t hostBufferSize(int format, uint32_t width, uint32_t height) {
    const uint64_t pixels = static_cast<uint64_t>(width) * height;
    uint64_t bytes = 0;
    switch (format) {
        case HAL_PIXEL_FORMAT_BLOB:
            bytes = pixels;
            break;
        case HAL_PIXEL_FORMAT_RGB_565:
        case HAL_PIXEL_FORMAT_YCBCR_422_SP:
        case HAL_PIXEL_FORMAT_YCBCR_422_I:
        case HAL_PIXEL_FORMAT_RAW16:
        case HAL_PIXEL_FORMAT_Y16:
            bytes = pixels * 2;
            break;
        case HAL_PIXEL_FORMAT_RGB_888:
            bytes = pixels * 3;
            break;
        case HAL_PIXEL_FORMAT_RGBA_FP16:
            bytes = pixels * 8;
            break;
        case HAL_PIXEL_FORMAT_YCBCR_420_888:
        case HAL_PIXEL_FORMAT_YCRCB_420_SP:
        case HAL_PIXEL_FORMAT_YV12:
        case HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED:
        case HAL_PIXEL_FORMAT_RAW10:
        case HAL_PIXEL_FORMAT_RAW12:
        case HAL_PIXEL_FORMAT_Y8:
            bytes = (pixels * 3 + 1) / 2;
            break;
        default:
            bytes = pixels * 4;
            break;
    }
    return bytes > HostOutputStream::kMaxBufferBytes ? 0 : static_cast<size_t>(bytes);
}

namespace {

HostOutputStream::Config configOf(int id, uint32_t width, uint32_t height, int format) {
    HostOutputStream::Config config;
    config.id = id;
    config.width = width;
    config.height = height;
    config.format = format;
    return config;
}

}  // namespace

HostOutputStream::HostOutputStream(int id, uint32_t width, uint32_t height, int format)
    : HostOutputStream(configOf(id, width, height, format)) {}

HostOutputStream::HostOutputStream(const Config& config)
    : mId(config.id),
      mSetId(config.setId),
      mWidth(config.width),
      mHeight(config.height),
      mOriginalFormat(config.format),
      mOriginalDataSpace(config.dataSpace),
      mPhysicalCameraId(config.physicalCameraId.c_str()),
      mHalStream(),
      mAllocator(std::make_shared<MemoryAllocator>()) {
    mHalStream.stream_type = android::camera3::CAMERA_STREAM_OUTPUT;
    mHalStream.width = config.width;
    mHalStream.height = config.height;
    mHalStream.format = config.format;
    mHalStream.usage = static_cast<uint32_t>(config.usage);
    mHalStream.max_buffers = 0;
    mHalStream.data_space = config.dataSpace;
    mHalStream.rotation = android::camera3::CAMERA_STREAM_ROTATION_0;
    mHalStream.physical_camera_id = mPhysicalCameraId.string();
    mHalStream.dynamic_range_profile = 1;  // STANDARD
    mHalStream.use_case = 0;               // DEFAULT
}

HostOutputStream::~HostOutputStream() {
    std::vector<HostBuffer> retired;
    {
        std::lock_guard<std::mutex> lock(mLock);
        retireBuffersLocked(&retired);
    }
    for (auto& buffer : retired) mAllocator->release(buffer);
    if (mStatusTracker != nullptr) mStatusTracker->removeComponent(mStatusId);
}

// ---- Host control -------------------------------------------------------------------------

void HostOutputStream::setBufferAllocator(std::shared_ptr<HostBufferAllocator> allocator) {
    std::lock_guard<std::mutex> lock(mLock);
    if (allocator == nullptr) allocator = std::make_shared<MemoryAllocator>();
    if (!mBuffers.empty()) {
        ALOGW("%s: stream %d: the new allocator makes the buffers of the next configuration",
              __FUNCTION__, mId);
    }
    mAllocator = std::move(allocator);
}

void HostOutputStream::failNextStartConfiguration() {
    std::lock_guard<std::mutex> lock(mLock);
    mFailNextStart = true;
}

void HostOutputStream::failNextFinishConfiguration(status_t result) {
    std::lock_guard<std::mutex> lock(mLock);
    mFailNextFinish = result;
}

std::vector<std::string> HostOutputStream::calls() const {
    std::lock_guard<std::mutex> lock(mLock);
    std::vector<std::string> out;
    out.reserve(mCalls.size());
    mCalls.forEach([&out](const CallRecord& r) {
        switch (r.form) {
            case CallRecord::kName:
                out.emplace_back(r.name);
                break;
            case CallRecord::kResult:
                out.push_back(std::string(r.name) + " -> " + std::to_string(r.result));
                break;
            case CallRecord::kReturnBuffer:
                out.push_back("returnBuffer(frame " + std::to_string(r.frameNumber) +
                              (r.error ? ", error)" : ")") + " -> 0");
                break;
        }
    });
    return out;
}

void HostOutputStream::clearCalls() {
    std::lock_guard<std::mutex> lock(mLock);
    mCalls.clear();
    mDelivered.clear();
}

std::vector<HostOutputStream::Delivered> HostOutputStream::delivered() const {
    std::lock_guard<std::mutex> lock(mLock);
    std::vector<Delivered> out;
    out.reserve(mDelivered.size());
    mDelivered.forEach([&out](const Delivered& d) { out.push_back(d); });
    return out;
}

uint64_t HostOutputStream::deliveredTotal() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mDelivered.total();
}

size_t HostOutputStream::bufferCount() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mBuffers.size();
}

ssize_t HostOutputStream::bufferIndex(const buffer_handle_t* handle) const {
    std::lock_guard<std::mutex> lock(mLock);
    return indexOfLocked(handle);
}

std::vector<uint8_t> HostOutputStream::bufferContents(size_t index) const {
    std::lock_guard<std::mutex> lock(mLock);
    if (index >= mBuffers.size() || mBuffers[index].data == nullptr) return {};
    const uint8_t* bytes = static_cast<const uint8_t*>(mBuffers[index].data);
    return std::vector<uint8_t>(bytes, bytes + mBuffers[index].size);
}

void HostOutputStream::pushRecordLocked(const char* name, uint64_t frameNumber, status_t result,
                                        CallRecord::Form form, bool error) {
    CallRecord& record = mCalls.append();
    record.name = name;
    record.frameNumber = frameNumber;
    record.result = result;
    record.form = form;
    record.error = error;
}

void HostOutputStream::recordLocked(const char* call) {
    pushRecordLocked(call, 0, OK, CallRecord::kName, false);
}

void HostOutputStream::recordLocked(const char* call, status_t result) {
    pushRecordLocked(call, 0, result, CallRecord::kResult, false);
}

void HostOutputStream::recordReturnLocked(uint64_t frameNumber, bool error) {
    pushRecordLocked("returnBuffer", frameNumber, OK, CallRecord::kReturnBuffer, error);
}

// ---- Stream description -------------------------------------------------------------------

int HostOutputStream::getId() const {
    return mId;
}

int HostOutputStream::getStreamSetId() const {
    return mSetId;
}

bool HostOutputStream::isMultiResolution() const {
    return false;
}

int HostOutputStream::getHalStreamGroupId() const {
    return -1;
}

uint32_t HostOutputStream::getWidth() const {
    return mWidth;
}

uint32_t HostOutputStream::getHeight() const {
    return mHeight;
}

// The format and data space are read without the stream lock, as Camera3Stream reads them:
// they change only while the stream is being configured, through the HAL stream the
// configuration hands out, which never takes that lock either.
int HostOutputStream::getFormat() const {
    return mHalStream.format;
}

int64_t HostOutputStream::getDynamicRangeProfile() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mHalStream.dynamic_range_profile;
}

android_dataspace HostOutputStream::getDataSpace() const {
    return mHalStream.data_space;
}

void HostOutputStream::setFormatOverride(bool formatOverriden) {
    std::lock_guard<std::mutex> lock(mLock);
    mFormatOverridden = formatOverriden;
}

bool HostOutputStream::isFormatOverridden() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mFormatOverridden;
}

int HostOutputStream::getOriginalFormat() const {
    return mOriginalFormat;
}

void HostOutputStream::setDataSpaceOverride(bool dataSpaceOverriden) {
    std::lock_guard<std::mutex> lock(mLock);
    mDataSpaceOverridden = dataSpaceOverriden;
}

bool HostOutputStream::isDataSpaceOverridden() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mDataSpaceOverridden;
}

android_dataspace HostOutputStream::getOriginalDataSpace() const {
    return mOriginalDataSpace;
}

int HostOutputStream::getMaxHalBuffers() const {
    std::lock_guard<std::mutex> lock(mLock);
    return static_cast<int>(mHalStream.max_buffers);
}

int HostOutputStream::getMaxTotalBuffers() const {
    std::lock_guard<std::mutex> lock(mLock);
    return static_cast<int>(mBuffers.size());
}

void HostOutputStream::setOfflineProcessingSupport(bool support) {
    std::lock_guard<std::mutex> lock(mLock);
    mOfflineSupport = support;
}

bool HostOutputStream::getOfflineProcessingSupport() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mOfflineSupport;
}

camera_stream* HostOutputStream::asHalStream() {
    return &mHalStream;
}

const android::String8& HostOutputStream::getPhysicalCameraId() const {
    return mPhysicalCameraId;
}

// ---- Configuration ------------------------------------------------------------------------

camera_stream* HostOutputStream::startConfiguration() {
    std::lock_guard<std::mutex> lock(mLock);
    if (mFailNextStart) {
        mFailNextStart = false;
        ALOGE("%s: Stream %d: cannot start configuration", __FUNCTION__, mId);
        recordLocked("startConfiguration -> NULL");
        return nullptr;
    }
    switch (mState) {
        case ERROR:
            ALOGE("%s: In error state", __FUNCTION__);
            recordLocked("startConfiguration -> NULL");
            return nullptr;
        case IN_CONFIG:
        case IN_RECONFIG:
            // Already configuring.
            recordLocked("startConfiguration");
            return &mHalStream;
        case CONSTRUCTED:
            mState = IN_CONFIG;
            break;
        case CONFIGURED:
            if (handedOutLocked() > 0) {
                ALOGE("%s: Cannot configure stream; has outstanding buffers", __FUNCTION__);
                recordLocked("startConfiguration -> NULL");
                return nullptr;
            }
            mState = IN_RECONFIG;
            break;
    }
    mOldUsage = mHalStream.usage;
    mOldMaxBuffers = mHalStream.max_buffers;
    mOldFormat = mHalStream.format;
    mOldDataSpace = mHalStream.data_space;
    recordLocked("startConfiguration");
    return &mHalStream;
}

bool HostOutputStream::isConfiguring() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mState == IN_CONFIG || mState == IN_RECONFIG;
}

status_t HostOutputStream::finishConfiguration(bool* streamReconfigured) {
    std::vector<HostBuffer> retired;
    status_t res = OK;
    {
        std::lock_guard<std::mutex> lock(mLock);
        if (streamReconfigured != nullptr) *streamReconfigured = false;
        if (mState != IN_CONFIG && mState != IN_RECONFIG) {
            ALOGE("%s: Cannot finish configuration that hasn't been started", __FUNCTION__);
            recordLocked("finishConfiguration", INVALID_OPERATION);
            return INVALID_OPERATION;
        }
        if (mFailNextFinish != OK) {
            res = mFailNextFinish;
            mFailNextFinish = OK;
            ALOGE("%s: Unable to configure stream %d queue: %s (%d)", __FUNCTION__, mId,
                  strerror(-res), res);
            mState = ERROR;
            recordLocked("finishConfiguration", res);
            return res;
        }
        // An unchanged reconfiguration keeps the buffers it has.
        if (mState == IN_RECONFIG && mOldUsage == mHalStream.usage &&
            mOldMaxBuffers == mHalStream.max_buffers && mOldFormat == mHalStream.format &&
            mOldDataSpace == mHalStream.data_space) {
            mState = CONFIGURED;
            recordLocked("finishConfiguration", OK);
            return OK;
        }
        retireBuffersLocked(&retired);
        uint32_t count = mHalStream.max_buffers > 0 ? mHalStream.max_buffers : kDefaultMaxBuffers;
        res = allocateBuffersLocked(count);
        if (res != OK) {
            mState = ERROR;
        } else {
            if (streamReconfigured != nullptr) *streamReconfigured = true;
            mUnpreparable = false;
            mLastTimestamp = 0;
            mState = CONFIGURED;
        }
        recordLocked("finishConfiguration", res);
        mBufferReturned.notify_all();
    }
    releaseRetired(retired);
    return res;
}

status_t HostOutputStream::cancelConfiguration() {
    std::lock_guard<std::mutex> lock(mLock);
    if (mState != IN_CONFIG && mState != IN_RECONFIG) {
        ALOGE("%s: Cannot cancel configuration that hasn't been started", __FUNCTION__);
        recordLocked("cancelConfiguration", INVALID_OPERATION);
        return INVALID_OPERATION;
    }
    mHalStream.usage = mOldUsage;
    mHalStream.max_buffers = mOldMaxBuffers;
    mState = mState == IN_RECONFIG ? CONFIGURED : CONSTRUCTED;
    recordLocked("cancelConfiguration", OK);
    return OK;
}

status_t HostOutputStream::allocateBuffersLocked(uint32_t count) {
    const size_t size = hostBufferSize(mHalStream.format, mWidth, mHeight);
    if (size == 0) {
        ALOGE("%s: Stream %d: no buffer of %ux%u format %#x can be allocated", __FUNCTION__, mId,
              mWidth, mHeight, mHalStream.format);
        return NO_MEMORY;
    }
    for (uint32_t i = 0; i < count; i++) {
        HostBuffer buffer;
        if (!mAllocator->allocate(mHalStream, size, &buffer) || buffer.handle == nullptr) {
            ALOGE("%s: Stream %d: allocating buffer %u of %zu bytes failed", __FUNCTION__, mId, i,
                  size);
            mAllocator->release(buffer);
            return NO_MEMORY;
        }
        mBuffers.push_back(buffer);
        mHandedOut.push_back(false);
        mFree.push_back(mBuffers.size() - 1);
    }
    return OK;
}

void HostOutputStream::retireBuffersLocked(std::vector<HostBuffer>* retired) {
    retired->insert(retired->end(), mBuffers.begin(), mBuffers.end());
    mBuffers.clear();
    mHandedOut.clear();
    mFree.clear();
}

void HostOutputStream::releaseRetired(std::vector<HostBuffer>& retired) {
    std::shared_ptr<HostBufferAllocator> allocator;
    android::sp<android::camera3::Camera3StreamBufferFreedListener> listener;
    {
        std::lock_guard<std::mutex> lock(mLock);
        allocator = mAllocator;
        listener = mFreedListener.promote();
    }
    for (auto& buffer : retired) {
        if (listener != nullptr) listener->onBufferFreed(mId, buffer.handle);
        allocator->release(buffer);
    }
    retired.clear();
}

// ---- Preparation --------------------------------------------------------------------------

bool HostOutputStream::isUnpreparable() {
    std::lock_guard<std::mutex> lock(mLock);
    return mUnpreparable;
}

void HostOutputStream::markUnpreparable() {
    std::lock_guard<std::mutex> lock(mLock);
    mUnpreparable = true;
}

status_t HostOutputStream::startPrepare(int maxCount, bool) {
    std::lock_guard<std::mutex> lock(mLock);
    if (maxCount < 0) {
        ALOGE("%s: Stream %d: Can't prepare stream if max buffer count (%d) is < 0", __FUNCTION__,
              mId, maxCount);
        return BAD_VALUE;
    }
    if (!configuredLocked() || mUnpreparable) {
        ALOGE(
            "%s: Stream %d: Can't prepare stream if stream is not in CONFIGURED state %d, or "
            "it has been used",
            __FUNCTION__, mId, mState);
        return INVALID_OPERATION;
    }
    // The host allocates every buffer when configuration finishes: nothing is left to prepare.
    return OK;
}

bool HostOutputStream::isBlockedByPrepare() const {
    return false;
}

status_t HostOutputStream::prepareNextBuffer() {
    ALOGE("%s: Stream %d: Can't prepare buffer if stream is not in PREPARING state", __FUNCTION__,
          mId);
    return INVALID_OPERATION;
}

status_t HostOutputStream::cancelPrepare() {
    ALOGE("%s: Stream %d: Can't cancel prepare if stream is not in PREPARING state", __FUNCTION__,
          mId);
    return INVALID_OPERATION;
}

status_t HostOutputStream::tearDown() {
    std::lock_guard<std::mutex> lock(mLock);
    if (!configuredLocked()) {
        ALOGE("%s: Stream %d: Can't tear down stream if stream is not in CONFIGURED state",
              __FUNCTION__, mId);
        return INVALID_OPERATION;
    }
    return OK;
}
}  // namespace hostctl

/*
 * The meta stream: a 300 x 1024 output stream that carries result metadata to the app as image
 * buffers. It is kept from the camera HAL, configured by the library and fed with buffers.
 */
#include <android/hardware_buffer.h>
#include <string.h>
#include <system/camera_metadata.h>
#include <vndk/hardware_buffer.h>

#include "CameraServiceExtImpl.h"
#include "utils/FrameStamp.h"
#include "utils/JsonParser.h"
#include "utils/KeyedLookup.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

// The size that marks an output stream as the meta stream.
constexpr uint32_t kMetaStreamWidth = 300;
constexpr uint32_t kMetaStreamHeight = 1024;
// Buffers the meta stream may have outstanding.
constexpr uint32_t kMetaStreamMaxBuffers = 24;
// Taking a meta buffer must never hold up a request: next to no wait.
constexpr nsecs_t kMetaBufferWaitNs = 1000;
constexpr int32_t kMetaCountdown = 2;

// Accepted output formats: IMPLEMENTATION_DEFINED and the Qualcomm NV12 variant.
constexpr int kFormatImplementationDefined = 34;
constexpr int kFormatQcomNv12Venus = 0x7FA30C06;

}  // namespace

// ---- MetaBufferQueue ----

void MetaBufferQueue::reserve(size_t capacity) {
    if (capacity <= mSlots.size()) return;
    std::vector<camera3::camera_stream_buffer> slots(capacity);
    for (size_t i = 0; i < mCount; ++i) slots[i] = mSlots[(mHead + i) % mSlots.size()];
    mSlots.swap(slots);
    mHead = 0;
}

void MetaBufferQueue::push_back(const camera3::camera_stream_buffer& buffer) {
    if (mCount == mSlots.size()) reserve(mSlots.empty() ? kMetaStreamMaxBuffers : 2 * mCount);
    mSlots[(mHead + mCount) % mSlots.size()] = buffer;
    ++mCount;
}

void MetaBufferQueue::pop_front() {
    if (mCount == 0) return;
    mHead = (mHead + 1) % mSlots.size();
    --mCount;
}

// ---- Stream configuration ----

void CameraServiceExtImpl::beforeConfigureStreamsLocked(const CameraMetadata& sessionParams,
                                                        size_t vendorId, String8 cameraId,
                                                        camera3::StreamSet& streams,
                                                        int operatingMode) {
    releaseAPSEngine();
    mFwkBeauty = 0;
    mFwkZumio = 0;
    mSupportAps2Zumio = 0;
    addRemovePackageName(sessionParams, vendorId, true);
    if (mMagneticSensorManager != nullptr) {
        mMagneticSensorManager->updateParams(sessionParams, cameraIdToInt(cameraId), operatingMode);
    }
    // A listed app's pop-up module is raised once its streams are configured.
    if (mMotorManager != nullptr) {
        mMotorManager->handleMotor(false, MotorManager::CMD_UP, 0, cameraId, currentPackageName());
    }

    const int id = cameraIdToInt(cameraId);
    sp<camera3::Camera3OutputStreamInterface> metaStream;
    int metaKey = -1;
    std::lock_guard<std::mutex> table(mMetaStreamInfosLock);
    for (int streamId : streams.getStreamIds()) {
        sp<camera3::Camera3OutputStreamInterface> stream = streams.get(streamId);
        if (stream != nullptr && stream->getWidth() == kMetaStreamWidth &&
            stream->getHeight() == kMetaStreamHeight) {
            metaStream = stream;
            metaKey = streamId;
            break;
        }
    }
    if (metaStream == nullptr) {
        mMetaStreamInfos.removeItem(id);
        return;
    }

    if (camera3::camera_stream* halStream = metaStream->asHalStream()) {
        halStream->max_buffers = kMetaStreamMaxBuffers;
    } else {
        EXT_LOG(0, "metaInfo.mMetaStream->asHalStream() is null!");
    }

    const int metaStreamId = metaStream->getId();
    int added = 0;
    const ssize_t index = mMetaStreamInfos.indexOfKey(id);
    if (index < 0 || mMetaStreamInfos.valueAt(index).mMetaStream == nullptr ||
        mMetaStreamInfos.valueAt(index).mMetaStream->getId() != metaStreamId) {
        // The old record's mutex goes with it once no copy refers to it any more.
        MetaStreamInfo info;
        info.mMetaStream = metaStream;
        info.mMetaBufferList.reserve(kMetaStreamMaxBuffers);
        info.mDisabled = false;
        info.mCountdown = kMetaCountdown;
        info.mLock = std::make_shared<std::mutex>();
        mMetaStreamInfos.add(id, info);
        added = 1;
    }
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "ignore meta stream(id: %d: add: %d) of 300 x 1024, mMetaStreamInfos.size: %d",
                metaStreamId, added, static_cast<int>(mMetaStreamInfos.size()));
    }
    streams.remove(metaKey);
}

void CameraServiceExtImpl::afterConfigureStreamsLocked(const CameraMetadata& sessionParams,
                                                       size_t vendorId, const CameraMetadata&,
                                                       camera3::StreamSet& streams,
                                                       String8 cameraId) {
    addRemovePackageName(sessionParams, vendorId, false);
    // The frame-processing engine is set up before the meta stream is configured and returned.
    setUpAPSEngine();

    // A new configuration starts the per-app request marks afresh.
    if (getBool("feature_flash_enable", true)) {
        mLastAFtrigger = 0;
        mLastRequestAFtrigger = 0;
        mLatestAePreCaptureFrameNum = 0;
        mLatestAfTriggerCancelFrameNum = 0;
        mTorchOn = false;
        mRejectStopPreview = false;
        mRejectStopPreviewFrameNum = static_cast<uint32_t>(-1);
    }

    sp<camera3::Camera3OutputStreamInterface> stream;
    {
        std::lock_guard<std::mutex> table(mMetaStreamInfosLock);
        const ssize_t index = mMetaStreamInfos.indexOfKey(cameraIdToInt(cameraId));
        if (index >= 0) stream = mMetaStreamInfos.valueAt(index).mMetaStream;
    }
    if (stream != nullptr) {
        if (stream->startConfiguration() == nullptr) {
            EXT_LOG(0, "%s: Can't start meta stream configuration", __func__);
        }
        if (stream->isConfiguring()) {
            const status_t res = stream->finishConfiguration();
            if (res != OK) {
                EXT_LOG(0, "%s: Can't finish configuring meta stream %d: %s (%d)", __func__,
                        stream->getId(), strerror(-res), res);
            }
        }
        streams.add(stream->getId(), stream);
    }
}

status_t CameraServiceExtImpl::flush(String8 cameraId) {
    if (EXT_LOG_ON()) EXT_LOG(1, "%s ", "flush");
    return returnMetaBuffer(cameraIdToInt(cameraId), -1);
}

bool CameraServiceExtImpl::isValidOutputStream(sp<camera3::Camera3OutputStreamInterface> stream) {
    if (stream == nullptr) return false;
    const int format = stream->getFormat();
    return format == kFormatImplementationDefined || format == kFormatQcomNv12Venus;
}

// ---- Meta buffers ----

bool CameraServiceExtImpl::returnMetaBuffer(int cameraId, int count) {
    const nsecs_t start = vantu::monotonicNs();
    std::lock_guard<std::mutex> table(mMetaStreamInfosLock);
    const ssize_t index = mMetaStreamInfos.indexOfKey(cameraId);
    if (index < 0) return false;
    MetaStreamInfo& info = mMetaStreamInfos.editValueAt(index);
    int released = 0;
    {
        std::unique_lock<std::mutex> lock;
        if (info.mLock != nullptr) lock = std::unique_lock<std::mutex>(*info.mLock);
        if (count == -1) {
            info.mDisabled = true;
            if (EXT_LOG_ON()) EXT_LOG(1, "%s, mDisabled", __func__);
        }
        // The list only forgets the entries; the host's buffer accounting takes them back.
        while (!info.mMetaBufferList.empty() && (count < 1 || released < count)) {
            info.mMetaBufferList.pop_front();
            ++released;
        }
    }
    if (EXT_LOG_ON()) {
        // The count shown is how many entries this call released.
        EXT_LOG(1, "%s, time cost : %d  camera id: %d bufCnt: %d mMetaStreamInfos.size: %d",
                __func__, static_cast<int>((vantu::monotonicNs() - start) / 1000000), cameraId,
                released, static_cast<int>(mMetaStreamInfos.size()));
    }
    return true;
}

void CameraServiceExtImpl::afterSendRequestsBatch(const camera_metadata* settings,
                                                  String8 cameraId) {
    const int id = cameraIdToInt(cameraId);
    std::unique_lock<std::mutex> table(mMetaStreamInfosLock);
    const ssize_t index = vantu::indexOfKey(mMetaStreamInfos, id);
    if (index >= 0) {
        MetaStreamInfo& info = mMetaStreamInfos.editValueAt(index);
        if (info.mLock != nullptr && info.mMetaStream != nullptr) {
            std::lock_guard<std::mutex> lock(*info.mLock);
            if (!info.mDisabled) {
                camera3::camera_stream_buffer buffer{};
                if (info.mMetaStream->getBuffer(&buffer, kMetaBufferWaitNs) == OK) {
                    info.mMetaBufferList.push_back(buffer);
                    if (EXT_LOG_ON()) {
                        EXT_LOG(1, "%s, mMetaBufferList streamid: %d size: %d", __func__,
                                info.mMetaStream->getId(),
                                static_cast<int>(info.mMetaBufferList.size()));
                    }
                } else if (EXT_LOG_ON()) {
                    EXT_LOG(1, "%s, get buf fail!, mMetaBufferList size: %d", __func__,
                            static_cast<int>(info.mMetaBufferList.size()));
                }
            }
        }
    }
    table.unlock();
    applyMotorRequestRules(settings, id);
}

bool CameraServiceExtImpl::takeMetaBufferLocked(MetaStreamInfo& info,
                                                camera3::camera_stream_buffer* buffer) {
    // Its lines belong to the hook it serves.
    static constexpr char kResultHook[] = "beforeMetadataSendToApp";
    if (!info.mMetaBufferList.empty()) {
        *buffer = info.mMetaBufferList.front();
        info.mMetaBufferList.pop_front();
        return true;
    }
    // A disabled record takes no further buffers; it stamps only what it already holds.
    if (info.mDisabled) return false;
    if (EXT_LOG_ON()) EXT_LOG(1, "%s: mMetaBufferList is empty, try get one", kResultHook);
    const status_t res = info.mMetaStream->getBuffer(buffer, kMetaBufferWaitNs);
    if (res != OK) {
        EXT_LOG(0, "%s: get meta buf error! %d", kResultHook, res);
        return false;
    }
    return true;
}

size_t CameraServiceExtImpl::fillMetaBuffer(MetaStreamInfo& info,
                                            camera3::camera_stream_buffer& buffer,
                                            const camera_metadata_t* source, nsecs_t sensorTime,
                                            uint32_t frameNumber) {
    static constexpr char kResultHook[] = "beforeMetadataSendToApp";
    const sp<camera3::Camera3OutputStreamInterface>& stream = info.mMetaStream;

    const uint32_t width = stream->getWidth();
    const uint32_t height = stream->getHeight();
    bool stamped = false;
    size_t size = 0;
    AHardwareBuffer* hardwareBuffer = nullptr;
    if (buffer.buffer != nullptr && *buffer.buffer != nullptr) {
        AHardwareBuffer_Desc desc{};
        desc.width = width;
        desc.height = height;
        desc.layers = 1;
        desc.format = static_cast<uint32_t>(stream->getFormat());
        desc.usage = AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN | AHARDWAREBUFFER_USAGE_CPU_WRITE_OFTEN;
        desc.stride = width;
        AHardwareBuffer_createFromHandle(&desc, *buffer.buffer,
                                         AHARDWAREBUFFER_CREATE_FROM_HANDLE_METHOD_REGISTER,
                                         &hardwareBuffer);
    }
    void* address = nullptr;
    if (hardwareBuffer == nullptr || AHardwareBuffer_lock(hardwareBuffer,
                                                          AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN |
                                                              AHARDWAREBUFFER_USAGE_CPU_WRITE_OFTEN,
                                                          -1, nullptr, &address) != 0) {
        EXT_LOG(0, "%s: lock meta buf error!", kResultHook);
    } else {
        const size_t capacity = static_cast<size_t>(width) * height * 3 / 2;
        camera_metadata_t* copy = copy_camera_metadata(address, capacity, source);
        if (copy == nullptr) {
            EXT_LOG(0, "%s: copy meta buf error!", kResultHook);
        } else {
            size = get_camera_metadata_compact_size(copy);
            const uint32_t tag = mAPSRsultTag;
            camera_metadata_entry_t entry{};
            if (tag != 0 && find_camera_metadata_entry(copy, tag, &entry) == OK) {
                vantu::writeFrameStamp(entry.data.u8, entry.count, frameNumber);
                stamped = true;
            } else {
                EXT_LOG(0, "%s: mAPSRsultTag %d", kResultHook, static_cast<int>(tag));
            }
        }
        AHardwareBuffer_unlock(hardwareBuffer, nullptr);
    }
    if (hardwareBuffer != nullptr) AHardwareBuffer_release(hardwareBuffer);

    // The filled buffer goes to the app that consumes the meta stream, at the result's sensor
    // time; one that could not be filled goes back marked as an error.
    if (!stamped) buffer.status = camera3::CAMERA_BUFFER_STATUS_ERROR;
    stream->returnBuffer(buffer, sensorTime, sensorTime, true, {}, frameNumber);
    return size;
}

}  // namespace android

/*
 * Corrections of results for apps that misbehave with this platform's AE and AF state machines,
 * and the stamping of results into meta buffers.
 */
#include <string.h>
#include <system/camera_metadata.h>

#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/KeyedLookup.h"
#include "utils/MetadataEntries.h"
#include "utils/RequestSwitches.h"
#include "utils/VantuLog.h"
#include "utils/VendorTagLookup.h"

namespace android {

namespace {

constexpr char kApsResultTag[] = "com.vantu.aps.result.data";
// Stamping slower than this is worth a line.
constexpr nsecs_t kSlowResultNs = 6000000;

const char* triggerWord(uint8_t trigger) {
    switch (trigger) {
        case 0:
            return "IDLE";
        case 1:
            return "START";
        case 2:
            return "CANCEL";
        default:
            return nullptr;
    }
}

const char* aeStateWord(uint8_t state) {
    static const char* const kWords[] = {"INACTIVE", "SEARCHING",      "CONVERGED",
                                         "LOCKED",   "FLASH_REQUIRED", "PRECAPTURE"};
    return state < sizeof(kWords) / sizeof(kWords[0]) ? kWords[state] : nullptr;
}

const char* afStateWord(uint8_t state) {
    // The active-scan state is printed with its doubled A, as the logs have always shown it.
    static const char* const kWords[] = {"INACTIVE",         "PASSIVE_SCAN",   "PASSIVE_FOCUSED",
                                         "AACTIVE_SCAN",     "FOCUSED_LOCKED", "NOT_FOCUSED_LOCKED",
                                         "PASSIVE_UNFOCUSED"};
    return state < sizeof(kWords) / sizeof(kWords[0]) ? kWords[state] : nullptr;
}

}  // namespace

void CameraServiceExtImpl::UpdateParamForSpecial3rdIssue(const camera_metadata* request,
                                                         uint32_t frameNumber) {
    if (mAeAfDebug) printAeAfTriggerForDebug(request, frameNumber);
    const vantu::RequestSwitches switches = vantu::requestSwitches();
    if (!switches.flashEnable) return;
    bool rejectsStopPreview = false;
    const RequestApp app = currentRequestApp(switches, &rejectsStopPreview);
    uint8_t value = 0;

    if (app == RequestApp::kWhatsApp) {
        if (vantu::firstByte(request, ANDROID_CONTROL_AF_TRIGGER, &value)) {
            mLastAFtrigger = value;
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "%s: Request (frame num %u) had AF trigger 0x%x", __func__, frameNumber,
                        value);
            }
        }
        // A mark beyond this frame is left from a numbering that has started again.
        const uint32_t mark = mLatestAePreCaptureFrameNum;
        if (mark > frameNumber) {
            mLatestAePreCaptureFrameNum = 0;
            if (EXT_LOG_ON()) {
                EXT_LOG(1,
                        "@%s: reset lastest AePreCaptureFrameNum, frameNum: %u, "
                        "latestAePreCaptureFrameNum: %d",
                        __func__, frameNumber, static_cast<int>(mark));
            }
        }
        if (vantu::firstByte(request, ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER, &value) &&
            value == ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER_START) {
            mLatestAePreCaptureFrameNum = frameNumber;
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "%s: Request (frame num %u) trigger AE precapture", __func__,
                        frameNumber);
            }
        }
    }

    if (rejectsStopPreview && vantu::firstByte(request, ANDROID_FLASH_MODE, &value)) {
        if (value == ANDROID_FLASH_MODE_OFF) {
            if (mTorchOn) {
                mRejectStopPreview = true;
                if (EXT_LOG_ON()) {
                    EXT_LOG(1,
                            "%s: Request (frame num %d) turn off torch, need reject stop preview "
                            "at this frame",
                            __func__, static_cast<int>(frameNumber));
                }
            }
            mTorchOn = false;
        } else if (value == ANDROID_FLASH_MODE_TORCH) {
            if (!mTorchOn) {
                mRejectStopPreview = true;
                if (EXT_LOG_ON()) {
                    EXT_LOG(1,
                            "%s: Request (frame num %d) turn on torch, need reject stop preview "
                            "at this frame",
                            __func__, static_cast<int>(frameNumber));
                }
            }
            mTorchOn = true;
        }
    }

    if (app == RequestApp::kSnapchat) {
        const uint32_t mark = mLatestAfTriggerCancelFrameNum;
        if (mark > frameNumber) {
            mLatestAfTriggerCancelFrameNum = 0;
            if (EXT_LOG_ON()) {
                EXT_LOG(1,
                        "@%s: reset lastest AfTriggerCancelFrameNum, frameNum: %u, "
                        "latestAfTriggerCancelFrameNum: %d",
                        __func__, frameNumber, static_cast<int>(mark));
            }
        }
        if (vantu::firstByte(request, ANDROID_CONTROL_AF_TRIGGER, &value) &&
            value == ANDROID_CONTROL_AF_TRIGGER_CANCEL) {
            mLatestAfTriggerCancelFrameNum = frameNumber;
            // The precapture text is reused for this AF event; log readers search for it.
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "%s: Request (frame num %u) trigger AE precapture", __func__,
                        frameNumber);
            }
        }
    }

    if (app == RequestApp::kSkype) {
        if (vantu::firstByte(request, ANDROID_FLASH_MODE, &value)) {
            if (value == ANDROID_FLASH_MODE_TORCH) {
                mTorchOn = true;
            } else if (value == ANDROID_FLASH_MODE_OFF && mTorchOn) {
                mRejectStopPreviewFrameNum = frameNumber;
                mRejectStopPreview = true;
                if (EXT_LOG_ON()) {
                    EXT_LOG(1,
                            "%s: Request (frame num %u) turn off torch, need reject stop preview "
                            "at this frame",
                            __func__, frameNumber);
                }
                mTorchOn = false;
            }
        }
        if (mRejectStopPreview && mRejectStopPreviewFrameNum < frameNumber) {
            mRejectStopPreview = false;
            mRejectStopPreviewFrameNum = static_cast<uint32_t>(-1);
        }
    }
}

bool CameraServiceExtImpl::beforeMetadataSendToApp(CaptureResult* result, uint32_t frameNumber,
                                                   camera3::CaptureOutputStates& states) {
    if (result == nullptr) return false;
    if (mAeAfDebug) printAeAfStateForDebug(result, frameNumber);

    if (vantu::requestSwitches().flashEnable) {
        const RequestApp app = currentRequestApp();
        // Results of frames before the app's latest precapture request report PRECAPTURE.
        if (app == RequestApp::kWhatsApp && mLatestAePreCaptureFrameNum > frameNumber) {
            const uint8_t state = ANDROID_CONTROL_AE_STATE_PRECAPTURE;
            if (vantu::setByte(result->mMetadata, ANDROID_CONTROL_AE_STATE, state) == OK) {
                if (EXT_LOG_ON()) {
                    EXT_LOG(1, "%s: update aestate for frame(%u) to %d", __func__, frameNumber,
                            state);
                }
            } else {
                EXT_LOG(0, "%s: update aestate for frame(%u) error", __func__, frameNumber);
            }
        }
        if (app == RequestApp::kSnapchat && mLatestAfTriggerCancelFrameNum > frameNumber) {
            const uint8_t state = ANDROID_CONTROL_AF_STATE_INACTIVE;
            if (vantu::setByte(result->mMetadata, ANDROID_CONTROL_AF_STATE, state) == OK) {
                if (EXT_LOG_ON()) {
                    EXT_LOG(1, "%s: update afstate for frame(%u) to %d", __func__, frameNumber,
                            state);
                }
            } else {
                EXT_LOG(0, "%s: update afstate for frame(%u) error", __func__, frameNumber);
            }
        }
    }

    parseResult(result->mMetadata);

    // The time spent only ever shows in a debug line: the clock is read while those are on.
    const bool timed = EXT_LOG_ON();
    const nsecs_t start = timed ? vantu::monotonicNs() : 0;
    // Held to the end: `info` lives in the table, which a configuration or a disconnect on
    // another thread may change.
    std::lock_guard<std::mutex> table(mMetaStreamInfosLock);
    const ssize_t index = vantu::indexOfKey(mMetaStreamInfos, cameraIdToInt(states.cameraId));
    if (index < 0) return false;
    MetaStreamInfo& info = mMetaStreamInfos.editValueAt(index);
    if (info.mMetaStream == nullptr || info.mLock == nullptr) return false;

    // One look-up of the sensor time serves both the check and the buffer's hand-over.
    const camera_metadata_t* source = result->mMetadata.getAndLock();
    camera_metadata_ro_entry_t timestamp{};
    if (source == nullptr ||
        find_camera_metadata_ro_entry(source, ANDROID_SENSOR_TIMESTAMP, &timestamp) != OK) {
        result->mMetadata.unlock(source);
        return false;
    }
    const nsecs_t sensorTime =
        timestamp.count > 0 && timestamp.type == TYPE_INT64 ? timestamp.data.i64[0] : 0;

    if (mAPSRsultTag == 0) {
        uint32_t tag = 0;
        if (vantu::findVendorTag(kApsResultTag, mVendorId, &tag)) mAPSRsultTag = tag;
    }

    // Whether the result is ready is settled in the same hold of the record's lock that
    // takes the buffer: the in-flight map is the host's and the countdown changes only under the
    // table lock held here, so the answer is the one it would be after the copy.
    const ssize_t inflight = vantu::indexOfKey(states.inflightMap, frameNumber);
    bool ready = false;
    camera3::camera_stream_buffer buffer{};
    bool haveBuffer = false;
    {
        std::lock_guard<std::mutex> lock(*info.mLock);
        haveBuffer = takeMetaBufferLocked(info, &buffer);
        if (inflight >= 0) {
            const camera3::InFlightRequest& request = states.inflightMap.valueAt(inflight);
            // The three in-flight flags that hold a result back are, in Android 13's
            // InFlightRequest, `hasInputBuffer` (a reprocess request), `stillCapture` and
            // `zslCapture`: only results of ordinary streaming frames are ready at once.
            const bool heldBack =
                request.hasInputBuffer || request.stillCapture || request.zslCapture;
            if (heldBack || info.mCountdown > 0) {
                if (info.mCountdown > 0) --info.mCountdown;
            } else {
                ready = true;
            }
        }
    }
    const size_t size =
        haveBuffer ? fillMetaBuffer(info, buffer, source, sensorTime, frameNumber) : 0;
    result->mMetadata.unlock(source);
    const nsecs_t elapsed = timed ? vantu::monotonicNs() - start : 0;
    if (timed && elapsed >= kSlowResultNs && EXT_LOG_ON()) {
        // The two figures are the milliseconds spent and the frame they were spent on.
        EXT_LOG(1, "%s, time cost : %d %d  size: %d", __func__, static_cast<int>(elapsed / 1000000),
                static_cast<int>(frameNumber), static_cast<int>(size));
    }
    return ready;
}

void CameraServiceExtImpl::printAeAfTriggerForDebug(const camera_metadata* request,
                                                    uint32_t frameNumber) {
    uint8_t value = 0;
    if (vantu::firstByte(request, ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER, &value)) {
        if (const char* word = triggerWord(value)) {
            EXT_LOG(1, "%s: (frame num %u) Request had AE trigger 0x%x %s", __func__, frameNumber,
                    value, word);
        }
    } else {
        EXT_LOG(1, "%s: (frame num %u) Request had no AE trigger", __func__, frameNumber);
    }
    if (vantu::firstByte(request, ANDROID_CONTROL_AF_TRIGGER, &value)) {
        if (const char* word = triggerWord(value)) {
            EXT_LOG(1, "%s: (frame num %u) Request had AF trigger 0x%x %s", __func__, frameNumber,
                    value, word);
        }
    } else {
        EXT_LOG(1, "%s: (frame num %u) Request had no AF trigger", __func__, frameNumber);
    }
}

void CameraServiceExtImpl::printAeAfStateForDebug(CaptureResult* result, uint32_t frameNumber) {
    if (result == nullptr) return;
    // Read through the const view: it needs no lock, so a caller's lock stays as it was.
    const CameraMetadata& metadata = result->mMetadata;
    camera_metadata_ro_entry_t entry = metadata.find(ANDROID_CONTROL_AE_STATE);
    if (entry.count > 0 && entry.type == TYPE_BYTE) {
        if (const char* word = aeStateWord(entry.data.u8[0])) {
            EXT_LOG(1, "%s: (frame num %u) Result had AE state 0x%x %s", __func__, frameNumber,
                    entry.data.u8[0], word);
        }
    } else {
        EXT_LOG(1, "%s: (frame num %u) Result had no AE state", __func__, frameNumber);
    }
    entry = metadata.find(ANDROID_CONTROL_AF_STATE);
    if (entry.count > 0 && entry.type == TYPE_BYTE) {
        if (const char* word = afStateWord(entry.data.u8[0])) {
            EXT_LOG(1, "%s: (frame num %u) Result had AF state 0x%x %s", __func__, frameNumber,
                    entry.data.u8[0], word);
        }
    } else {
        EXT_LOG(1, "%s: (frame num %u) Result had no AF state", __func__, frameNumber);
    }
}

void CameraServiceExtImpl::forbid3rdPartyAppReconfigureStream(bool&) {}

bool CameraServiceExtImpl::IsRejectStopPreview() {
    return mRejectStopPreview;
}

void CameraServiceExtImpl::setTransformForThirdApp(const CameraMetadata&, camera3::StreamSet&) {}

void CameraServiceExtImpl::getTransformForThirdApp(int&, int) {}

}  // namespace android

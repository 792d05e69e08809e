/*
 * Host stand-in of the camera server's capture output states (Android 13): the bundle of
 * references to a device's result-path state (in-flight requests, result queue, frame counters,
 * streams, listener) that the result and notification functions work on.
 */
#ifndef ANDROID_SERVERS_CAMERA3_OUTPUT_UTILS_H
#define ANDROID_SERVERS_CAMERA3_OUTPUT_UTILS_H

#include <camera/CameraMetadata.h>
#include <camera/CaptureResult.h>
#include <stdint.h>
#include <system/camera_vendor_tags.h>
#include <utils/RefBase.h>
#include <utils/String8.h>
#include <utils/Timers.h>

#include <condition_variable>
#include <list>
#include <mutex>
#include <string>
#include <unordered_map>

#include "common/CameraDeviceBase.h"
#include "device3/BufferUtils.h"
#include "device3/Camera3OutputInterface.h"
#include "device3/Camera3OutputStreamInterface.h"
#include "device3/Camera3Stream.h"
#include "device3/DistortionMapper.h"
#include "device3/InFlightRequest.h"
#include "device3/RotateAndCropMapper.h"
#include "device3/ZoomRatioMapper.h"

namespace android {

// On a phone these two live in the server's utils/ folder. The tag monitor logs changes of
// watched tags for dumpsys and the stats builder counts per-stream statistics; the host keeps
// neither, so both hold nothing.
class TagMonitor {
public:
    TagMonitor() {}
};

class SessionStatsBuilder {
public:
    SessionStatsBuilder() {}
};

namespace camera3 {

// The result-path state of one device, all by reference (built as an aggregate).
struct CaptureOutputStates {
    const String8& cameraId;
    std::mutex& inflightLock;
    int64_t& lastCompletedRegularFrameNumber;
    int64_t& lastCompletedReprocessFrameNumber;
    int64_t& lastCompletedZslFrameNumber;
    InFlightRequestMap& inflightMap;  // end of inflightLock protected data
    std::mutex& outputLock;
    std::list<CaptureResult>& resultQueue;
    std::condition_variable& resultSignal;
    uint32_t& nextShutterFrameNum;
    uint32_t& nextReprocShutterFrameNum;
    uint32_t& nextZslShutterFrameNum;
    uint32_t& nextResultFrameNum;
    uint32_t& nextReprocResultFrameNum;
    uint32_t& nextZslResultFrameNum;  // end of outputLock protected data
    const bool useHalBufManager;
    const bool usePartialResult;
    const bool needFixupMonoChrome;
    const uint32_t numPartialResults;
    const metadata_vendor_id_t vendorTagId;
    const CameraMetadata& deviceInfo;
    const std::unordered_map<std::string, CameraMetadata>& physicalDeviceInfoMap;
    std::unordered_map<std::string, camera3::DistortionMapper>& distortionMappers;
    std::unordered_map<std::string, camera3::ZoomRatioMapper>& zoomRatioMappers;
    std::unordered_map<std::string, camera3::RotateAndCropMapper>& rotateAndCropMappers;
    TagMonitor& tagMonitor;
    sp<Camera3Stream> inputStream;
    StreamSet& outputStreams;
    SessionStatsBuilder& sessionStatsBuilder;
    sp<NotificationListener> listener;
    SetErrorInterface& setErrIntf;
    InflightRequestUpdateInterface& inflightIntf;
    BufferRecordsInterface& bufferRecordsIntf;
    bool legacyClient;
    nsecs_t& minFrameDuration;
};

}  // namespace camera3

}  // namespace android

#endif

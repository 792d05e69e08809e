/*
 * The bridge to the separately deployed frame-processing library (APS): loading it, the per-app
 * processing switch, and the buffers and results it holds back while it processes frames.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_APS_APSINTERFACE_H
#define VANTU_CAMERASERVICE_FEATURES_APS_APSINTERFACE_H

#include <camera/CameraMetadata.h>
#include <camera/CaptureResult.h>
#include <stddef.h>
#include <stdint.h>
#include <utils/RefBase.h>
#include <utils/StrongPointer.h>

#include <set>
#include <string>
#include <vector>

#include "device3/Camera3OutputUtils.h"
#include "device3/Camera3StreamInterface.h"
#include "device3/InFlightRequest.h"

namespace android {

class CameraServiceExtImpl;

class APSInterface : public RefBase {
public:
    // The process-wide interface, or null while frame processing is not available. The extension
    // object (`owner`) takes it once at construction and holds it for the life of the process.
    // The frame-processing feature brings the interface itself; until then there is none.
    static sp<APSInterface> getInstance(CameraServiceExtImpl* owner);

    // The buffer path of the extension's hooks of the same names: true when the engine took the
    // buffers, holds the result back, or still needs the in-flight request.
    bool returnOutputBuffers(camera3::CaptureOutputStates& states,
                             const camera3::camera_stream_buffer* outputBuffers, size_t numBuffers,
                             const camera3::InFlightRequest& request, long timestamp,
                             bool timestampIncreasing);
    bool sendCaptureResult(camera3::CaptureOutputStates& states, CameraMetadata& pendingMetadata,
                           CaptureResultExtras& resultExtras, CameraMetadata& collectedPartialResult,
                           uint32_t frameNumber, bool reprocess, bool zslStillCapture,
                           bool rotateAndCropAuto, const std::set<std::string>& cameraIdsWithZoom,
                           const std::vector<PhysicalCaptureResultInfo>& physicalMetadatas,
                           long requestTimeNs);
    bool checkToRemoveInFlightReqest(camera3::CaptureOutputStates& states, size_t index);
    // Releases the engine's resources when a client disconnects.
    void uninit();

    // True when the library is loaded with every entry point bound (the optional one included).
    bool isFullyBound() const;
    // The library's answer whether it supports `feature` (a vendor tag name); false unbound.
    bool isAPSFeatureSupport(const char* feature);
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_APS_APSINTERFACE_H

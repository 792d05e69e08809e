#include "features/aps/APSInterface.h"

namespace android {

sp<APSInterface> APSInterface::getInstance(CameraServiceExtImpl* /*owner*/) {
    return nullptr;
}

// Without an engine nothing is held back: the server handles every buffer and result itself.
bool APSInterface::returnOutputBuffers(camera3::CaptureOutputStates&,
                                       const camera3::camera_stream_buffer*, size_t,
                                       const camera3::InFlightRequest&, long, bool) {
    return false;
}

bool APSInterface::sendCaptureResult(camera3::CaptureOutputStates&, CameraMetadata&,
                                     CaptureResultExtras&, CameraMetadata&, uint32_t, bool, bool,
                                     bool, const std::set<std::string>&,
                                     const std::vector<PhysicalCaptureResultInfo>&, long) {
    return false;
}

bool APSInterface::checkToRemoveInFlightReqest(camera3::CaptureOutputStates&, size_t) {
    return false;
}

void APSInterface::uninit() {}

bool APSInterface::isFullyBound() const {
    return false;
}

bool APSInterface::isAPSFeatureSupport(const char*) {
    return false;
}

}  // namespace android

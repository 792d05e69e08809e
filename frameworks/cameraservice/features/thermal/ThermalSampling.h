/*
 * The temperature sampling of the request path, shared by the chips that pass temperatures to
 * the camera hardware layer: every sixtieth request the device temperatures are read, and when
 * the battery or skin value changed the request carries all four in the vendor tag
 * "com.vantu.CTP.query.ALL".
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_THERMAL_THERMALSAMPLING_H
#define VANTU_CAMERASERVICE_FEATURES_THERMAL_THERMALSAMPLING_H

#include <camera/CameraMetadata.h>
#include <stdint.h>

#include "CameraServiceExtImpl.h"

namespace android {
namespace vantu {

// Sampling state of one extension object. Request threads of several cameras use it without a
// lock, so every field is relaxed.
struct ThermalSampling {
    // The tag id was never found: no request of this object carries temperatures.
    static constexpr uint32_t kTagUnknown = 0xFFFFFFFF;

    // CPU, GPU, battery, skin as last sent to the hardware layer.
    Relaxed<int32_t> lastSent[4] = {-1, -1, -1, -1};
    // The last sample changed: the request being prepared carries the new values.
    Relaxed<bool> tagPending{false};
    // "com.vantu.CTP.query.ALL" once resolved; 0 until then.
    Relaxed<uint32_t> tagId{0};
};

// One request's sampling step (IsNewRequestThermalTemp): restarts `counter` at `limit`; when
// `enabled` and the counter is a multiple of `period`, reads the temperatures and answers true
// if the battery or skin value changed. The counter advances; otherwise the answer is `force`.
bool sampleThermal(ThermalSampling& sampling, Relaxed<uint32_t>& counter, uint32_t period,
                   uint32_t limit, bool enabled, bool force);

// Writes the last sent temperatures into `request` when the last sample asked for it
// (updatethermaltemp).
void writeThermalTag(ThermalSampling& sampling, uint64_t vendorId, CameraMetadata& request);

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_THERMAL_THERMALSAMPLING_H

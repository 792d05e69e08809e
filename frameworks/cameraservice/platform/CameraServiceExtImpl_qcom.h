/*
 * The Qualcomm family: the rules every Snapdragon chip shares. Chip classes derive from it and
 * override only what differs on their chip.
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_QCOM_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_QCOM_H

#include "CameraServiceExtImpl.h"
#include "CameraServiceExtImpl_EvictionRules.h"

namespace android {

class CameraServiceExtImpl_qcom : public CameraServiceExtImpl {
public:
    CameraServiceExtImpl_qcom();
    // Request thread: WhatsApp's and Messenger's fixes whatever "feature_flash_enable" says,
    // then the base, which applies them again under that switch (finding nothing left to do).
    void onPrepareHalRequestsUpdateMetadata(CameraMetadata& request, uint32_t frameNumber) override;

    // The calling thread's UX state written straight to its kernel file; JPEG buffers keep the
    // size the server calculated (CameraServiceExtImpl_qcom_Scheduling.cpp).
    void SetStaticUxthread(int value) override;
    ssize_t calculateJpegBufferSize(long calculatedSize, long maxJpegBufferSize) override;

protected:
    // Eviction rules that several Snapdragon chips add to the base set.

    // "Limit_Intelligent_Eviction" holds for the client or for the current app: no package rule
    // applies to this connect.
    bool evictionLimited(const String8& packageName);
    // "feature_preempt_enable" is off for the current app: the rules never take its camera.
    bool preemptDisabled();
    // In place of the fold rule: the system camera arriving while another app is current
    // disconnects every occupant (FreeDom mode).
    void systemCameraTakesOver(int cameraId, const String8& packageName);
    // A client listed in "enable_occupied_duration_list" waits (1500 ms at most) for a closing
    // occupant, or gives an idle system camera one second before the server's eviction.
    EvictionVerdict occupiedDurationRule(int slot, const String8& packageName,
                                         const String8& occupant);
    // Waits, 30 ms per poll and `boundMs` at most, while a disconnect is in progress: admits
    // the client once it finished, refuses it as busy when it did not.
    EvictionVerdict waitForClosingOccupant(int slot, const String8& packageName,
                                           const String8& occupant, int boundMs);
    // The face-unlock aware rules of the chips that run face unlock as a native client: the
    // service decides on an occupied camera as the system's own clients do, and the always-on
    // service yields to it.
    void useFaceUnlockAwareRules(EvictionRules* rules);
    // True when the global string list `key` holds the package.
    static bool isListed(const char* key, const String8& packageName);
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_QCOM_H

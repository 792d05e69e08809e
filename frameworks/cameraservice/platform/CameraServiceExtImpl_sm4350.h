/*
 * Qualcomm Snapdragon SM4350 (board platform "holi").
 */
#ifndef VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM4350_H
#define VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM4350_H

#include "platform/CameraServiceExtImpl_qcom.h"

namespace android {

class CameraServiceExtImpl_sm4350 : public CameraServiceExtImpl_qcom {
public:
    CameraServiceExtImpl_sm4350();
    // Request thread: the front-camera touch-AE rule, then the family's rules.
    void onPrepareHalRequestsUpdateMetadata(CameraMetadata& request, uint32_t frameNumber) override;
    // Thread UX class 136 when boosted; display sync as "disableDisplaySync" says.
    void SetUxthread(unsigned int enable) override;
    bool allowDisplaySync() override;
    // Eviction: the "Limit_Intelligent_Eviction", test-app and "feature_preempt_enable" gates
    // first, the system camera taking over in place of the fold rule, face unlock deciding as
    // the system's own clients do, and a system camera kept from face unlock and Duo.
    bool customIntelligentEviction(int cameraId, const String16& clientPackageName) override;

    // API2 size lists for the querying app.
    virtual void limitAPI2Size(const String16& cameraId, const char* packageName,
                               CameraMetadata* info);
    // Size lists offered to third-party apps on this chip family.
    virtual void limit3rdAPPSizeListFor6375(CameraMetadata* info, const char* packageName,
                                            const String16& cameraId);
    // Characteristics edits that let ITS skip tests the chip cannot pass.
    virtual void skipItsTest(CameraMetadata* info);
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_PLATFORM_CAMERASERVICEEXTIMPL_SM4350_H

// The camera server calls every hook through a fixed vtable slot, so moving, inserting or
// removing a virtual operation breaks the binary contract silently. These tests pin each
// operation to its slot.
#include <gtest/gtest.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <utility>
#include <vector>

#include "CameraServiceExtFactory.h"
#include "ICameraServiceExt.h"
#include "platform/CameraServiceExtImpl_mt6983.h"
#include "platform/CameraServiceExtImpl_mtk.h"
#include "platform/CameraServiceExtImpl_sm4350.h"
#include "platform/CameraServiceExtImpl_sm6225.h"
#include "platform/CameraServiceExtImpl_sm7125.h"
#include "platform/CameraServiceExtImpl_sm7250.h"
#include "platform/CameraServiceExtImpl_sm8250.h"
#include "platform/CameraServiceExtImpl_sm8350.h"
#include "platform/CameraServiceExtImpl_sm8450.h"

namespace {

using namespace android;

// The vtable slot a pointer to a virtual member function designates, or -1 when it is not
// virtual. Itanium C++ ABI: the pointer word holds 1 + the slot's byte offset; the ARM variant
// keeps the byte offset there and marks virtual functions in the adjustment's low bit.
template <typename Pmf>
long slotOf(Pmf pmf) {
    struct Representation {
        uintptr_t ptr;
        ptrdiff_t adj;
    } rep;
    static_assert(sizeof(Pmf) == sizeof(Representation), "unexpected member pointer layout");
    memcpy(&rep, &pmf, sizeof(rep));
#if defined(__arm__) || defined(__aarch64__)
    if ((rep.adj & 1) == 0) return -1;
    return static_cast<long>(rep.ptr / sizeof(void*));
#else
    if ((rep.ptr & 1) == 0) return -1;
    return static_cast<long>((rep.ptr - 1) / sizeof(void*));
#endif
}

#define SLOT(name) \
    { #name, slotOf(&ICameraServiceExt::name) }

TEST(SlotOrder, HooksFollowTheDestructorPairInTheServersOrder) {
    const std::vector<std::pair<const char*, long>> hooks = {
        SLOT(afterConnect),
        SLOT(afterEndConfigure),
        SLOT(onTransact),
        SLOT(isPrivilegedApp),
        SLOT(isSystemCameraUid),
        SLOT(isCtsCamera),
        SLOT(isEnableFwkTimer),
        SLOT(getCameraCharacteristics),
        SLOT(beforeConnect),
        SLOT(clearNonCTSClient),
        SLOT(setCurrentPackageName),
        SLOT(beforeSetTorchMode),
        SLOT(checkNotPlaySound),
        SLOT(afterDisconnect),
        SLOT(onClientChange),
        SLOT(initCameraInfos),
        SLOT(addListener),
        SLOT(removeListener),
        SLOT(isSupportExplorer),
        SLOT(OverrideCost),
        SLOT(modifyWaitDuration),
        SLOT(beforeMetadataSendToApp),
        SLOT(returnOutputBuffers),
        SLOT(sendCaptureResult),
        SLOT(checkToRemoveInFlightReqest),
        SLOT(parseResult),
        SLOT(beforeConfigureStreamsLocked),
        SLOT(forbid3rdPartyAppReconfigureStream),
        SLOT(afterConfigureStreamsLocked),
        SLOT(flush),
        SLOT(IsNewRequest),
        SLOT(onPrepareHalRequestsUpdateMetadata),
        SLOT(afterSendRequestsBatch),
        SLOT(setTorchIntensity),
        SLOT(checkNeedEnableMagneticSensor),
        SLOT(notifyDeviceStateChange),
        SLOT(isTorchIntensityChanged),
        SLOT(calculateJpegBufferSize),
        SLOT(updateUseMonoTimestamp),
        SLOT(beforeDisconnect),
        SLOT(setDoingDisconnect),
        SLOT(checkToTriggerAFOnceForAPI1),
        SLOT(checkToAddPreviewCallbackForAPI1),
        SLOT(IsRejectStopPreview),
        SLOT(checkToSetParametersIgnoreErrorForAPI1),
        SLOT(checkToForceTriggerFaceAEForAPI1),
        SLOT(adjustPreviewSizeForAPI1),
        SLOT(updatePreviewAndVideoSizeForAPI1),
        SLOT(updateFlashModeForAPI1),
        SLOT(getPictureSizeForAPI1),
        SLOT(enumerateProviders),
        SLOT(binderDied),
        SLOT(setPreviewFpsRangeForAPI1),
        SLOT(adjustInvalidFpsForAPI1),
        SLOT(adjustPreviewFpsForAPI1),
        SLOT(checkUseZeroShutterLagForAPI1),
        SLOT(checkIfAddSizeForAPI1),
        SLOT(adjustFOVForAPI1),
        SLOT(filterSurfaceConfig),
        SLOT(isVirtualCameraProvider),
        SLOT(SetStaticUxthread),
        SLOT(SetUxthread),
        SLOT(allowDisplaySync),
        SLOT(isWeChatRequestTimeOut),
        SLOT(isMultiWinCameraSupport),
        SLOT(setTransformForThirdApp),
        SLOT(getTransformForThirdApp),
        SLOT(preOpenCamera),
        SLOT(overrideZumioFPS),
        SLOT(checkFilterVideoTimestamp),
        SLOT(sendZumioInitTagToHAL),
        SLOT(sendZumioJsonTagToHAL),
        SLOT(getZumioEnable),
        SLOT(getUpdateZumio),
        SLOT(customIntelligentEviction),
        SLOT(limitExposureTimeRangeForIts),
        SLOT(limitSizeListForCtsVerifier),
        SLOT(limitSize),
        SLOT(isValidOutputStream),
        SLOT(UpdateParamForSpecial3rdIssue),
        SLOT(limitSizeListForCts),
        SLOT(openAON),
        SLOT(closeAON),
    };
    // Slots 0 and 1 are the destructor pair; the 83 hooks fill slots 2 to 84.
    ASSERT_EQ(83u, hooks.size());
    for (size_t i = 0; i < hooks.size(); ++i) {
        EXPECT_EQ(static_cast<long>(i + 2), hooks[i].second) << hooks[i].first;
    }
}

#undef SLOT

TEST(SlotOrder, FactoryBuildsThroughItsFirstSlot) {
    EXPECT_EQ(0, slotOf(&CameraServiceExtFactory::getCameraServiceExt));
}

// The chip-specific size rule that some Snapdragon classes add beside the hook of the same name.
template <typename Chip>
using ChipLimitSize = void (Chip::*)(const String16&, const char*, CameraMetadata*);

// Chip classes add their own virtual operations after the last hook, in a fixed order per chip.
TEST(SlotOrder, ChipOperationsComeAfterTheLastHook) {
    EXPECT_EQ(85, slotOf(&CameraServiceExtImpl_mtk::IsNewRequestThermalTemp));
    EXPECT_EQ(86, slotOf(&CameraServiceExtImpl_mtk::updatethermaltemp));
    EXPECT_EQ(87, slotOf(&CameraServiceExtImpl_mt6983::limitThumbnailSizeListForCts));

    EXPECT_EQ(85, slotOf(&CameraServiceExtImpl_sm8450::limit3rdAPPSizeListFor8450));
    EXPECT_EQ(86, slotOf(&CameraServiceExtImpl_sm8450::updatethermaltemp));
    EXPECT_EQ(85, slotOf(&CameraServiceExtImpl_sm8350::isConnectIgnoreApp));
    EXPECT_EQ(86, slotOf(&CameraServiceExtImpl_sm8350::updatethermaltemp));
    EXPECT_EQ(85, slotOf(&CameraServiceExtImpl_sm4350::limitAPI2Size));
    EXPECT_EQ(86, slotOf(&CameraServiceExtImpl_sm4350::limit3rdAPPSizeListFor6375));
    EXPECT_EQ(87, slotOf(&CameraServiceExtImpl_sm4350::skipItsTest));

    EXPECT_EQ(85, slotOf(static_cast<ChipLimitSize<CameraServiceExtImpl_sm7125>>(
                      &CameraServiceExtImpl_sm7125::limitSize)));
    EXPECT_EQ(85, slotOf(static_cast<ChipLimitSize<CameraServiceExtImpl_sm6225>>(
                      &CameraServiceExtImpl_sm6225::limitSize)));
    EXPECT_EQ(85, slotOf(static_cast<ChipLimitSize<CameraServiceExtImpl_sm7250>>(
                      &CameraServiceExtImpl_sm7250::limitSize)));
    EXPECT_EQ(85, slotOf(static_cast<ChipLimitSize<CameraServiceExtImpl_sm8250>>(
                      &CameraServiceExtImpl_sm8250::limitSize)));
}

}  // namespace

// Every operation of the hook interface, called by name with the arguments of a "hook" step.
// Parameter indexes follow the hook table; host objects are the simulator's own.
#include <utils/String16.h>
#include <utils/String8.h>

#include "hostctl/Binder.h"
#include "sim/HookCall.h"
#include "sim/ParcelJson.h"

namespace camext {
namespace sim {

namespace {

using android::sp;
using android::String16;
using android::String8;

String8 s8(const HookCall& c, size_t i) {
    return String8(c.str(i).c_str());
}
String16 s16(const HookCall& c, size_t i) {
    return String16(c.str(i).c_str());
}

// The client open on a camera, for hooks that take the server's client.
sp<hostctl::HostCameraClient> clientOf(HookCall& c, const std::string& cameraId) {
    CameraState* cam = c.host.camera(cameraId);
    return cam ? cam->client : nullptr;
}

// The result path of a camera, made on first use; null (and the step's problem) for a camera
// the device does not have.
hostctl::HostCaptureOutputStates* resultsOf(HookCall& c, const std::string& cameraId) {
    CameraState* cam = c.host.camera(cameraId);
    if (cam == nullptr) {
        c.problem("camera \"" + cameraId + "\" is not on this device");
        return nullptr;
    }
    if (cam->results == nullptr) {
        hostctl::HostCaptureOutputStates::Options options;
        options.vendorTagId = c.host.tags.vendorId;
        cam->results = std::make_unique<hostctl::HostCaptureOutputStates>(
            cam->id, cam->characteristics, options);
    }
    return cam->results.get();
}

// A metadata hook: builds the packet, calls, reports what changed.
template <typename Fn>
void withMetadata(HookCall& c, size_t index, const std::string& cameraId, bool characteristics,
                  Fn fn) {
    android::CameraMetadata md;
    if (!c.metadata(index, &md, cameraId, characteristics)) return;
    fn(md);
    c.metadataAfter(md);
}

void afterConnect(HookCall& c) {
    // A client for the step's caller, as the server has one by the time it calls the hook.
    const Caller& who = c.run.step.caller;
    sp<hostctl::HostCameraClient> client =
        new hostctl::HostCameraClient(s8(c, 0), s16(c, 1), static_cast<uid_t>(who.uid), who.pid);
    CameraState* cam = c.host.camera(c.str(0));
    if (cam != nullptr && cam->client == nullptr) {
        cam->client = client;
        cam->package = c.str(1);
        c.host.clients.push_back({client, 0});
    } else {
        c.session.afterStep([client]() {});
    }
    c.result(c.ext->afterConnect(s8(c, 0), s16(c, 1), c.flag(2), client, client.get(),
                                 static_cast<unsigned long>(c.num(3)), c.i32(4)));
}
void afterEndConfigure(HookCall& c) {
    withMetadata(c, 0, "", false, [&](android::CameraMetadata& md) {
        auto client = clientOf(c, c.str(2));
        auto st = c.ext->afterEndConfigure(md, client.get(), static_cast<unsigned long>(c.num(1)),
                                           s8(c, 2));
        c.result(st.isOk() ? Json(0)
                           : Json::object({{"serviceSpecificError", st.serviceSpecificErrorCode()},
                                           {"message", st.exceptionMessage().string()}}));
    });
}
void onTransact(HookCall& c) {
    android::Parcel data, reply;
    std::string error;
    if (!writeParcelItems(c.arg(1), &data, &error)) return c.problem(error);
    data.setDataPosition(0);
    c.result(c.ext->onTransact(static_cast<uint32_t>(c.num(0)), data, &reply,
                               static_cast<uint32_t>(c.num(2))));
    c.out("reply", parcelWords(reply));
}
void isPrivilegedApp(HookCall& c) {
    c.result(c.ext->isPrivilegedApp(c.i32(0)));
}
void isSystemCameraUid(HookCall& c) {
    c.result(c.ext->isSystemCameraUid(c.i32(0)));
}
void isCtsCamera(HookCall& c) {
    c.result(c.ext->isCtsCamera());
}
void isEnableFwkTimer(HookCall& c) {
    c.result(c.ext->isEnableFwkTimer());
}
void getCameraCharacteristics(HookCall& c) {
    withMetadata(c, 1, c.str(0), true, [&](android::CameraMetadata& md) {
        c.result(c.ext->getCameraCharacteristics(s16(c, 0), &md));
    });
}
void beforeConnect(HookCall& c) {
    String16 package = s16(c, 1);
    c.result(c.ext->beforeConnect(s8(c, 0), package, c.flag(2)));
    c.out("package", String8(package).string());
}
void clearNonCTSClient(HookCall& c) {
    c.ext->clearNonCTSClient(s16(c, 0));
}
void setCurrentPackageName(HookCall& c) {
    c.ext->setCurrentPackageName(s16(c, 0));
}
void beforeSetTorchMode(HookCall& c) {
    c.result(c.ext->beforeSetTorchMode(s8(c, 0), c.flag(1)));
}
void checkNotPlaySound(HookCall& c) {
    c.result(c.ext->checkNotPlaySound());
}
void afterDisconnect(HookCall& c) {
    c.ext->afterDisconnect(s8(c, 0), s16(c, 1), c.host.cameraService);
}
void onClientChange(HookCall& c) {
    sp<android::CameraService::BasicClient> client = clientOf(c, c.str(0));
    c.ext->onClientChange(s8(c, 0), client, c.flag(1));
}
void initCameraInfos(HookCall& c) {
    c.ext->initCameraInfos(c.host.providers);
}
void addListener(HookCall& c) {
    sp<android::hardware::ICameraServiceListener> l = c.host.listener;
    c.result(c.ext->addListener(l));
}
void removeListener(HookCall& c) {
    sp<android::hardware::ICameraServiceListener> l = c.host.listener;
    c.result(c.ext->removeListener(l));
}
void isSupportExplorer(HookCall& c) {
    c.result(c.ext->isSupportExplorer(s8(c, 0), s8(c, 1)));
}
void OverrideCost(HookCall& c) {
    c.result(c.ext->OverrideCost(s8(c, 0), s8(c, 1), c.i32(2)));
}
void modifyWaitDuration(HookCall& c) {
    long duration = static_cast<long>(c.num(0));
    c.ext->modifyWaitDuration(duration, static_cast<long>(c.num(1)));
    c.out("duration", Json(duration));
}
void beforeMetadataSendToApp(HookCall& c) {
    withMetadata(c, 2, "", false, [&](android::CameraMetadata& md) {
        auto* results = resultsOf(c, c.str(0));
        if (results == nullptr) return;
        android::CaptureResult result;
        result.mMetadata = md;
        const uint32_t frame = static_cast<uint32_t>(c.num(1));
        result.mResultExtras.frameNumber = frame;
        c.result(c.ext->beforeMetadataSendToApp(&result, frame, results->states()));
        md = result.mMetadata;
    });
}
void returnOutputBuffers(HookCall& c) {
    auto* results = resultsOf(c, c.str(0));
    if (results == nullptr) return;
    android::camera3::InFlightRequest request;
    c.result(c.ext->returnOutputBuffers(results->states(), nullptr, 0, request,
                                        static_cast<long>(c.num(1)), c.flag(2)));
}
void sendCaptureResult(HookCall& c) {
    withMetadata(c, 2, "", false, [&](android::CameraMetadata& md) {
        auto* results = resultsOf(c, c.str(0));
        if (results == nullptr) return;
        android::CaptureResultExtras extras;
        extras.frameNumber = c.num(1);
        android::CameraMetadata partial;
        const std::set<std::string> zoom;
        const std::vector<android::PhysicalCaptureResultInfo> physical;
        c.result(c.ext->sendCaptureResult(results->states(), md, extras, partial,
                                          static_cast<uint32_t>(c.num(1)), c.flag(3), c.flag(4),
                                          c.flag(5), zoom, physical, static_cast<long>(c.num(6))));
    });
}
void checkToRemoveInFlightReqest(HookCall& c) {
    auto* results = resultsOf(c, c.str(0));
    if (results == nullptr) return;
    c.result(c.ext->checkToRemoveInFlightReqest(results->states(), static_cast<size_t>(c.num(1))));
}
void parseResult(HookCall& c) {
    withMetadata(c, 0, "", false, [&](android::CameraMetadata& md) { c.ext->parseResult(md); });
}
void beforeConfigureStreamsLocked(HookCall& c) {
    withMetadata(c, 0, "", false, [&](android::CameraMetadata& md) {
        android::camera3::StreamSet streams;
        c.ext->beforeConfigureStreamsLocked(md, static_cast<size_t>(c.num(1)), s8(c, 2), streams,
                                            c.i32(3));
    });
}
void forbid3rdPartyAppReconfigureStream(HookCall& c) {
    bool forbid = c.flag(0);
    c.ext->forbid3rdPartyAppReconfigureStream(forbid);
    c.out("forbid", Json(forbid));
}
void afterConfigureStreamsLocked(HookCall& c) {
    withMetadata(c, 0, "", false, [&](android::CameraMetadata& md) {
        android::camera3::StreamSet streams;
        CameraState* cam = c.host.camera(c.str(2));
        android::CameraMetadata info = cam ? cam->characteristics : android::CameraMetadata();
        c.ext->afterConfigureStreamsLocked(md, static_cast<size_t>(c.num(1)), info, streams,
                                           s8(c, 2));
    });
}
void flush(HookCall& c) {
    c.result(c.ext->flush(s8(c, 0)));
}
void IsNewRequest(HookCall& c) {
    c.result(c.ext->IsNewRequest(c.flag(0), c.flag(1)));
}
void onPrepareHalRequestsUpdateMetadata(HookCall& c) {
    withMetadata(c, 0, "", false, [&](android::CameraMetadata& md) {
        c.ext->onPrepareHalRequestsUpdateMetadata(md, static_cast<uint32_t>(c.num(1)));
    });
}
void afterSendRequestsBatch(HookCall& c) {
    withMetadata(c, 0, "", false, [&](android::CameraMetadata& md) {
        const camera_metadata_t* raw = md.getAndLock();
        c.ext->afterSendRequestsBatch(raw, s8(c, 1));
        md.unlock(raw);
    });
}
void setTorchIntensity(HookCall& c) {
    withMetadata(c, 0, "", false, [&](android::CameraMetadata& md) {
        c.ext->setTorchIntensity(md, static_cast<uint32_t>(c.num(1)));
    });
}
void checkNeedEnableMagneticSensor(HookCall& c) {
    c.ext->checkNeedEnableMagneticSensor();
}
void notifyDeviceStateChange(HookCall& c) {
    c.ext->notifyDeviceStateChange(static_cast<uint64_t>(c.num(0)));
}
void isTorchIntensityChanged(HookCall& c) {
    c.result(c.ext->isTorchIntensityChanged());
}
void calculateJpegBufferSize(HookCall& c) {
    c.result(Json(static_cast<long long>(
        c.ext->calculateJpegBufferSize(static_cast<long>(c.num(0)), static_cast<long>(c.num(1))))));
}
void updateUseMonoTimestamp(HookCall& c) {
    bool mono = c.flag(0);
    c.ext->updateUseMonoTimestamp(mono, static_cast<size_t>(c.num(1)));
    c.out("useMonoTimestamp", Json(mono));
}
void beforeDisconnect(HookCall& c) {
    c.result(c.ext->beforeDisconnect(c.flag(0), c.flag(1), s8(c, 2)));
}
void setDoingDisconnect(HookCall& c) {
    c.ext->setDoingDisconnect(c.flag(0));
}
void checkToTriggerAFOnceForAPI1(HookCall& c) {
    c.result(c.ext->checkToTriggerAFOnceForAPI1(
        static_cast<android::camera2::Parameters::focusMode_t>(c.i32(0)), c.flag(1)));
}
void checkToAddPreviewCallbackForAPI1(HookCall& c) {
    c.result(c.ext->checkToAddPreviewCallbackForAPI1());
}
void IsRejectStopPreview(HookCall& c) {
    c.result(c.ext->IsRejectStopPreview());
}
void checkToSetParametersIgnoreErrorForAPI1(HookCall& c) {
    android::camera2::Parameters params(0, 1);
    c.result(c.ext->checkToSetParametersIgnoreErrorForAPI1(params, s8(c, 0)));
}
void checkToForceTriggerFaceAEForAPI1(HookCall& c) {
    c.result(c.ext->checkToForceTriggerFaceAEForAPI1());
}
void adjustPreviewSizeForAPI1(HookCall& c) {
    int w = c.i32(0), h = c.i32(1);
    c.ext->adjustPreviewSizeForAPI1(w, h);
    c.out("width", Json(w));
    c.out("height", Json(h));
}
void updatePreviewAndVideoSizeForAPI1(HookCall& c) {
    android::CameraParameters2 params;
    auto preview = c.sizes(1), video = c.sizes(4);
    int pw = c.i32(2), ph = c.i32(3), vw = c.i32(5), vh = c.i32(6);
    c.ext->updatePreviewAndVideoSizeForAPI1(params, c.cameraInt(0), preview, pw, ph, video, vw, vh);
    c.out("previewSizes", HookCall::sizesJson(preview));
    c.out("previewWidth", Json(pw));
    c.out("previewHeight", Json(ph));
    c.out("videoSizes", HookCall::sizesJson(video));
    c.out("videoWidth", Json(vw));
    c.out("videoHeight", Json(vh));
}
void updateFlashModeForAPI1(HookCall& c) {
    android::CameraParameters2 params;
    auto mode = static_cast<android::camera2::Parameters::flashMode_t>(c.i32(0));
    c.ext->updateFlashModeForAPI1(params, mode);
    c.out("flashMode", Json(static_cast<int>(mode)));
}
void getPictureSizeForAPI1(HookCall& c) {
    auto sizes = c.sizes(0);
    const long duration = c.arg(1).isNull() ? 33333333L : static_cast<long>(c.num(1));
    c.ext->getPictureSizeForAPI1(
        sizes, [duration](android::Size) { return duration; }, c.cameraInt(2));
    c.out("sizes", HookCall::sizesJson(sizes));
}
void enumerateProviders(HookCall& c) {
    c.result(c.ext->enumerateProviders());
}
void binderDied(HookCall& c) {
    android::wp<android::IBinder> who = c.binder(0);
    c.ext->binderDied(who);
}
void setPreviewFpsRangeForAPI1(HookCall& c) {
    int minFps = c.i32(0), maxFps = c.i32(1), fps = c.i32(2), id = c.cameraInt(3);
    c.ext->setPreviewFpsRangeForAPI1(minFps, maxFps, fps, id);
    c.out("minFps", Json(minFps));
    c.out("maxFps", Json(maxFps));
    c.out("previewFps", Json(fps));
    c.out("cameraId", Json(id));
}
void adjustInvalidFpsForAPI1(HookCall& c) {
    int minFps = c.i32(0), maxFps = c.i32(1);
    c.ext->adjustInvalidFpsForAPI1(minFps, maxFps);
    c.out("minFps", Json(minFps));
    c.out("maxFps", Json(maxFps));
}
void adjustPreviewFpsForAPI1(HookCall& c) {
    int minFps = c.i32(0), maxFps = c.i32(1);
    c.ext->adjustPreviewFpsForAPI1(minFps, maxFps);
    c.out("minFps", Json(minFps));
    c.out("maxFps", Json(maxFps));
}
void checkUseZeroShutterLagForAPI1(HookCall& c) {
    c.result(c.ext->checkUseZeroShutterLagForAPI1());
}
void checkIfAddSizeForAPI1(HookCall& c) {
    c.result(c.ext->checkIfAddSizeForAPI1(c.i32(0), c.i32(1), c.i32(2), c.cameraInt(3)));
}
void adjustFOVForAPI1(HookCall& c) {
    float h = c.real(1), v = c.real(2);
    c.ext->adjustFOVForAPI1(c.cameraInt(0), &h, &v, c.real(3), c.real(4), c.real(5), c.real(6),
                            c.real(7));
    c.out("horizontalFov", Json(static_cast<double>(h)));
    c.out("verticalFov", Json(static_cast<double>(v)));
}
void filterSurfaceConfig(HookCall& c) {
    int w = c.i32(0), h = c.i32(1);
    c.ext->filterSurfaceConfig(w, h);
    c.out("width", Json(w));
    c.out("height", Json(h));
}
void isVirtualCameraProvider(HookCall& c) {
    c.result(c.ext->isVirtualCameraProvider(c.str(0)));
}
void SetStaticUxthread(HookCall& c) {
    c.ext->SetStaticUxthread(c.i32(0));
}
void SetUxthread(HookCall& c) {
    c.ext->SetUxthread(static_cast<unsigned int>(c.num(0)));
}
void allowDisplaySync(HookCall& c) {
    c.result(c.ext->allowDisplaySync());
}
void isWeChatRequestTimeOut(HookCall& c) {
    c.result(c.ext->isWeChatRequestTimeOut());
}
void isMultiWinCameraSupport(HookCall& c) {
    c.result(c.ext->isMultiWinCameraSupport());
}
void setTransformForThirdApp(HookCall& c) {
    withMetadata(c, 0, "", false, [&](android::CameraMetadata& md) {
        android::camera3::StreamSet streams;
        c.ext->setTransformForThirdApp(md, streams);
    });
}
void getTransformForThirdApp(HookCall& c) {
    int transform = c.i32(0);
    c.ext->getTransformForThirdApp(transform, c.i32(1));
    c.out("transform", Json(transform));
}
void preOpenCamera(HookCall& c) {
    c.ext->preOpenCamera();
}
void overrideZumioFPS(HookCall& c) {
    withMetadata(c, 0, "", false, [&](android::CameraMetadata& md) { c.ext->overrideZumioFPS(md); });
}
void checkFilterVideoTimestamp(HookCall& c) {
    c.result(c.ext->checkFilterVideoTimestamp(c.flag(0)));
}
void sendZumioInitTagToHAL(HookCall& c) {
    withMetadata(c, 0, "", false,
                 [&](android::CameraMetadata& md) { c.result(c.ext->sendZumioInitTagToHAL(md)); });
}
void sendZumioJsonTagToHAL(HookCall& c) {
    withMetadata(c, 0, "", false,
                 [&](android::CameraMetadata& md) { c.result(c.ext->sendZumioJsonTagToHAL(md)); });
}
void getZumioEnable(HookCall& c) {
    c.result(c.ext->getZumioEnable());
}
void getUpdateZumio(HookCall& c) {
    c.result(c.ext->getUpdateZumio());
}
void customIntelligentEviction(HookCall& c) {
    c.result(c.ext->customIntelligentEviction(c.cameraInt(0), s16(c, 1)));
}
void limitExposureTimeRangeForIts(HookCall& c) {
    withMetadata(c, 1, c.str(0), true,
                 [&](android::CameraMetadata& md) { c.ext->limitExposureTimeRangeForIts(&md); });
}
void limitSizeListForCtsVerifier(HookCall& c) {
    withMetadata(c, 1, c.str(0), true, [&](android::CameraMetadata& md) {
        c.ext->limitSizeListForCtsVerifier(&md, s16(c, 0));
    });
}
void limitSize(HookCall& c) {
    withMetadata(c, 1, c.str(0), true,
                 [&](android::CameraMetadata& md) { c.ext->limitSize(s16(c, 0), &md); });
}
void isValidOutputStream(HookCall& c) {
    sp<android::camera3::Camera3OutputStreamInterface> stream = new hostctl::HostOutputStream(
        0, static_cast<uint32_t>(c.num(0)), static_cast<uint32_t>(c.num(1)), c.i32(2));
    c.result(c.ext->isValidOutputStream(stream));
}
void UpdateParamForSpecial3rdIssue(HookCall& c) {
    withMetadata(c, 0, "", false, [&](android::CameraMetadata& md) {
        const camera_metadata_t* raw = md.getAndLock();
        c.ext->UpdateParamForSpecial3rdIssue(raw, static_cast<uint32_t>(c.num(1)));
        md.unlock(raw);
    });
}
void limitSizeListForCts(HookCall& c) {
    withMetadata(c, 1, c.str(0), true,
                 [&](android::CameraMetadata& md) { c.ext->limitSizeListForCts(&md, s16(c, 0)); });
}
void openAON(HookCall& c) {
    sp<android::IBinder> callback = c.binder(0);
    c.result(c.ext->openAON(callback));
}
void closeAON(HookCall& c) {
    c.result(c.ext->closeAON());
}

#define HOOK(name) \
    { #name, name }

}  // namespace

HookFn findHookFn(const std::string& name) {
    static const struct {
        const char* name;
        HookFn fn;
    } kHooks[] = {
        HOOK(afterConnect),
        HOOK(afterEndConfigure),
        HOOK(onTransact),
        HOOK(isPrivilegedApp),
        HOOK(isSystemCameraUid),
        HOOK(isCtsCamera),
        HOOK(isEnableFwkTimer),
        HOOK(getCameraCharacteristics),
        HOOK(beforeConnect),
        HOOK(clearNonCTSClient),
        HOOK(setCurrentPackageName),
        HOOK(beforeSetTorchMode),
        HOOK(checkNotPlaySound),
        HOOK(afterDisconnect),
        HOOK(onClientChange),
        HOOK(initCameraInfos),
        HOOK(addListener),
        HOOK(removeListener),
        HOOK(isSupportExplorer),
        HOOK(OverrideCost),
        HOOK(modifyWaitDuration),
        HOOK(beforeMetadataSendToApp),
        HOOK(returnOutputBuffers),
        HOOK(sendCaptureResult),
        HOOK(checkToRemoveInFlightReqest),
        HOOK(parseResult),
        HOOK(beforeConfigureStreamsLocked),
        HOOK(forbid3rdPartyAppReconfigureStream),
        HOOK(afterConfigureStreamsLocked),
        HOOK(flush),
        HOOK(IsNewRequest),
        HOOK(onPrepareHalRequestsUpdateMetadata),
        HOOK(afterSendRequestsBatch),
        HOOK(setTorchIntensity),
        HOOK(checkNeedEnableMagneticSensor),
        HOOK(notifyDeviceStateChange),
        HOOK(isTorchIntensityChanged),
        HOOK(calculateJpegBufferSize),
        HOOK(updateUseMonoTimestamp),
        HOOK(beforeDisconnect),
        HOOK(setDoingDisconnect),
        HOOK(checkToTriggerAFOnceForAPI1),
        HOOK(checkToAddPreviewCallbackForAPI1),
        HOOK(IsRejectStopPreview),
        HOOK(checkToSetParametersIgnoreErrorForAPI1),
        HOOK(checkToForceTriggerFaceAEForAPI1),
        HOOK(adjustPreviewSizeForAPI1),
        HOOK(updatePreviewAndVideoSizeForAPI1),
        HOOK(updateFlashModeForAPI1),
        HOOK(getPictureSizeForAPI1),
        HOOK(enumerateProviders),
        HOOK(binderDied),
        HOOK(setPreviewFpsRangeForAPI1),
        HOOK(adjustInvalidFpsForAPI1),
        HOOK(adjustPreviewFpsForAPI1),
        HOOK(checkUseZeroShutterLagForAPI1),
        HOOK(checkIfAddSizeForAPI1),
        HOOK(adjustFOVForAPI1),
        HOOK(filterSurfaceConfig),
        HOOK(isVirtualCameraProvider),
        HOOK(SetStaticUxthread),
        HOOK(SetUxthread),
        HOOK(allowDisplaySync),
        HOOK(isWeChatRequestTimeOut),
        HOOK(isMultiWinCameraSupport),
        HOOK(setTransformForThirdApp),
        HOOK(getTransformForThirdApp),
        HOOK(preOpenCamera),
        HOOK(overrideZumioFPS),
        HOOK(checkFilterVideoTimestamp),
        HOOK(sendZumioInitTagToHAL),
        HOOK(sendZumioJsonTagToHAL),
        HOOK(getZumioEnable),
        HOOK(getUpdateZumio),
        HOOK(customIntelligentEviction),
        HOOK(limitExposureTimeRangeForIts),
        HOOK(limitSizeListForCtsVerifier),
        HOOK(limitSize),
        HOOK(isValidOutputStream),
        HOOK(UpdateParamForSpecial3rdIssue),
        HOOK(limitSizeListForCts),
        HOOK(openAON),
        HOOK(closeAON),
    };
    for (const auto& h : kHooks) {
        if (name == h.name) return h.fn;
    }
    return nullptr;
}

#undef HOOK

}  // namespace sim
}  // namespace camext

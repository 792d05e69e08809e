#include "SpineTestSupport.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "hostctl/HostCaptureOutputStates.h"

namespace spinetest {

using namespace android;

const char kAllFeaturesOff[] = R"({"default": {
    "feature_auth_enable": false,
    "feature_aps_enable": false,
    "feature_motor_enable": false,
    "feature_rio_enable": false
}})";

void expectNeutralForwarders(CameraServiceExtImpl& ext) {
    sp<hardware::ICameraServiceListener> listener;
    EXPECT_EQ(OK, ext.addListener(listener));
    EXPECT_EQ(OK, ext.removeListener(listener));
    ext.initCameraInfos(nullptr);

    CameraMetadata metadata;
    ext.parseResult(metadata);
    ext.setTorchIntensity(metadata, 0);
    ext.setTorchIntensity(metadata, 10);
    EXPECT_TRUE(metadata.isEmpty());
    ext.checkNeedEnableMagneticSensor();
    EXPECT_FALSE(ext.isTorchIntensityChanged());

    hostctl::HostCaptureOutputStates output("0");
    camera3::camera_stream_buffer buffer{};
    camera3::InFlightRequest request;
    EXPECT_FALSE(ext.returnOutputBuffers(output.states(), &buffer, 1, request, 0, true));
    CameraMetadata pending, partial;
    CaptureResultExtras extras;
    EXPECT_FALSE(ext.sendCaptureResult(output.states(), pending, extras, partial, 1, false, false,
                                       false, std::set<std::string>(),
                                       std::vector<PhysicalCaptureResultInfo>(), 0));
    EXPECT_FALSE(ext.checkToRemoveInFlightReqest(output.states(), 0));
    EXPECT_TRUE(pending.isEmpty());
    EXPECT_TRUE(partial.isEmpty());
    EXPECT_TRUE(output.listener->events().empty());
    EXPECT_FALSE(output.errors.inError());
}

}  // namespace spinetest

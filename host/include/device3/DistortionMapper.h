/*
 * Host stand-in of the camera server's DistortionMapper, which corrects lens distortion in the
 * coordinates of requests and results. The host models no such correction: the mapper holds nothing
 * and maps nothing, so a device's per-camera map of mappers can exist for the capture output states
 * to refer to.
 */
#ifndef ANDROID_SERVERS_DISTORTIONMAPPER_H
#define ANDROID_SERVERS_DISTORTIONMAPPER_H

namespace android {

namespace camera3 {

class DistortionMapper {
public:
    DistortionMapper() {}
};

}  // namespace camera3

}  // namespace android

#endif

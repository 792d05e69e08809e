/*
 * Host stand-in of the camera server's ZoomRatioMapper, which converts crop regions to and from the
 * zoom ratio of requests and results. The host models no such correction: the mapper holds nothing
 * and maps nothing, so a device's per-camera map of mappers can exist for the capture output states
 * to refer to.
 */
#ifndef ANDROID_SERVERS_ZOOMRATIOMAPPER_H
#define ANDROID_SERVERS_ZOOMRATIOMAPPER_H

namespace android {

namespace camera3 {

class ZoomRatioMapper {
public:
    ZoomRatioMapper() {}
};

}  // namespace camera3

}  // namespace android

#endif

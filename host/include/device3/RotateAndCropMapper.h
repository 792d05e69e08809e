/*
 * Host stand-in of the camera server's RotateAndCropMapper, which rewrites coordinates for the
 * rotate-and-crop setting. The host models no such correction: the mapper holds nothing and maps nothing,
 * so a device's per-camera map of mappers can exist for the capture output states to refer to.
 */
#ifndef ANDROID_SERVERS_ROTATEANDCROPMAPPER_H
#define ANDROID_SERVERS_ROTATEANDCROPMAPPER_H

namespace android {

namespace camera3 {

class RotateAndCropMapper {
public:
    RotateAndCropMapper() {}
};

}  // namespace camera3

}  // namespace android

#endif

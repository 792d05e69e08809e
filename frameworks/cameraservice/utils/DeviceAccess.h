/*
 * The library's way to kernel device nodes: open a node, issue driver requests on it, close it.
 *
 * On a phone this is open(2)/ioctl(2)/close(2) on the path under the device root. A host
 * platform may provide its own devices instead (the Linux stand-ins answer as a scenario's media
 * controller and camera sensors would), so that code which drives a driver can run off the
 * phone.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_DEVICEACCESS_H
#define VANTU_CAMERASERVICE_UTILS_DEVICEACCESS_H

namespace android {
namespace vantu {

class DeviceAccess {
public:
    virtual ~DeviceAccess() = default;

    // Opens the device node at `path` ("/dev/media0") with open(2) flags; a descriptor, or -1
    // with errno set.
    virtual int openDevice(const char* path, int flags) = 0;
    // Issues driver request `request` with `arg` on `fd`; as ioctl(2): -1 with errno on failure.
    virtual int ioctlDevice(int fd, unsigned long request, void* arg) = 0;
    // 0, or -1 with errno.
    virtual int closeDevice(int fd) = 0;

    // The device access of this process, chosen once.
    static DeviceAccess* Default();
};

// C symbol through which a host platform may provide the process's devices
// (signature: android::vantu::DeviceAccess* (void)). Absent on a phone.
constexpr const char kHostDeviceAccessSymbol[] = "android_vantu_host_device_access";

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_DEVICEACCESS_H

#include "utils/DeviceAccess.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "utils/Env.h"

namespace android {
namespace vantu {

namespace {

// The kernel's own device nodes, under the device root ("/" on a phone).
class PosixDeviceAccess : public DeviceAccess {
public:
    int openDevice(const char* path, int flags) override {
        return ::open(devicePath(path).c_str(), flags);
    }
    int ioctlDevice(int fd, unsigned long request, void* arg) override {
        return ::ioctl(fd, request, arg);
    }
    int closeDevice(int fd) override { return ::close(fd); }
};

}  // namespace

DeviceAccess* DeviceAccess::Default() {
    // As for the environment: a host platform exports this entry, a phone does not. Chosen once;
    // lives for the process.
    static DeviceAccess* const access = []() -> DeviceAccess* {
        using Provider = DeviceAccess* (*)();
        auto provider = reinterpret_cast<Provider>(dlsym(RTLD_DEFAULT, kHostDeviceAccessSymbol));
        DeviceAccess* hostAccess = provider != nullptr ? provider() : nullptr;
        return hostAccess != nullptr ? hostAccess : new PosixDeviceAccess();
    }();
    return access;
}

}  // namespace vantu
}  // namespace android

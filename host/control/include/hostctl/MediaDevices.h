/*
 * Control of the kernel devices the library reaches through its device-access seam on the host:
 * media controllers ("/dev/media<n>") with their entities, and the camera sensor sub-devices
 * the always-on camera drives. Nothing is present until set; an absent node fails to open with
 * ENOENT, as on a device without it.
 */
#ifndef HOSTCTL_MEDIADEVICES_H
#define HOSTCTL_MEDIADEVICES_H

#include <stdint.h>

#include <string>
#include <vector>

namespace hostctl {

// The entity type of a camera sensor sub-device of the camera request manager's driver.
constexpr uint32_t kCameraSensorEntityType = 0x10001;
// The sensor position code of the front sensor.
constexpr uint16_t kFrontSensorPosition = 1801;

struct MediaEntity {
    // As the driver reports it: only the first 32 bytes reach the caller, without a terminator
    // when the name has 32 or more.
    std::string name;
    uint32_t type = kCameraSensorEntityType;
    // A sensor's answer to the position request (0x5002).
    uint16_t position = 0;
    // The sensor refuses the power requests (0x5000, 0x5001) with EIO.
    bool powerFails = false;
};

struct MediaDevice {
    int number = 0;  // "/dev/media<number>"
    // Only the first 32 bytes reach the caller, as for entity names.
    std::string model = "cam-req-mgr-devnode";
    // Entity ids are 1, 2, ... in this order. A sensor's node is "/dev/" followed by its name as
    // a caller sees it, cut to 31 characters.
    std::vector<MediaEntity> entities;
};

// Replaces every media device; descriptors already open stay valid but see the new devices.
void setMediaDevices(const std::vector<MediaDevice>& devices);
void clearMediaDevices();
// Descriptors opened and not yet closed.
int openMediaDescriptors();

// Every power request a sensor received is recorded as a service call of "media":
//   powerUp [node], powerDown [node]        (whether or not the sensor refused it)
constexpr const char kMediaService[] = "media";

}  // namespace hostctl

#endif  // HOSTCTL_MEDIADEVICES_H

/*
 * Control of the platform services the library talks to on the host: the maker's HALs
 * (performance, camera extension, camera device management), the thermal HAL, the sensors
 * service, the "kairo" thermal binder service, the motor service on the abstract socket
 * "motor_socket", and the fake frame-processing library. Tests and the simulator start the
 * services a device has, steer their answers, and read back every call they received.
 *
 * A service exists only once started: until then getService/tryGetService answer null and the
 * socket refuses connections, as on a device without it. Service names are those of the
 * scenario files' "services" object.
 */
#ifndef HOSTCTL_SERVICES_H
#define HOSTCTL_SERVICES_H

#include <stddef.h>
#include <stdint.h>
#include <utils/Errors.h>

#include <array>
#include <map>
#include <string>
#include <vector>

namespace hostctl {

// Service names.
constexpr const char kPerformanceHal[] = "performance";           // IPerformance "default"
constexpr const char kCameraExtensionHal[] = "camera_extension";  // "cameraextensionservice"
constexpr const char kCameraMdmHal[] = "camera_mdm";              // IVantuCameraMDM "default"
constexpr const char kThermalHal[] = "thermal_hal";               // IThermal "default"
constexpr const char kSensorsService[] = "sensors";               // ISensorManager "default"
constexpr const char kKairoService[] = "kairo";                   // binder service "kairo"
constexpr const char kMotorService[] = "motor";                   // abstract socket "motor_socket"
constexpr const char kApsLibrary[] = "aps";  // the fake frame-processing library

// ---------------------------------------------------------------------------------------------
// Calls received, in the order they arrived, across all services.

struct ServiceCall {
    std::string service;            // one of the names above
    std::string method;             // the operation as its interface spells it
    std::vector<std::string> args;  // the arguments as text, in order
    // "setUxThread(136, 5000, 5001)"
    std::string text() const;
};

// What each service records (arguments in brackets):
//   performance       setUxThread [uxValue, pid, tid]
//   camera_extension  preOpenCamera [value]
//   camera_mdm        notifyCameraPackage [packageName]
//   thermal_hal       getTemperatures, getCpuUsages, getCoolingDevices []
//   sensors           getSensorList [], getDefaultSensor [type], createEventQueue [],
//                     enableSensor [handle, samplingPeriodUs, maxBatchReportLatencyUs],
//                     disableSensor [handle], onEvent [handle, data[3]] (each event delivered)
//   kairo             transact [code, interface token, flags] (the token as read, or "?")
//   aps               every entry point the library calls (see host/fakes/AlgoProcessApi.h)
//   every HIDL one    linkToDeath [cookie], unlinkToDeath []
// The motor service keeps its messages apart (motorMessages()).
std::vector<ServiceCall> serviceCalls(size_t from = 0);
std::vector<ServiceCall> serviceCallsOf(const std::string& service);
size_t serviceCallCount();
void clearServiceCalls();
// For the fakes (and the frame-processing library fake, which shares this process).
void recordServiceCall(const std::string& service, const std::string& method,
                       std::vector<std::string> args);

// ---------------------------------------------------------------------------------------------
// Starting and stopping.

// Starts the named service with its current settings; false with a reason for an unknown name
// or, for "motor", when the socket cannot be bound. Starting a running service keeps it.
bool startService(const std::string& name, std::string* error = nullptr);
// Withdraws it quietly: it leaves its registry and the socket closes; no death notice.
void stopService(const std::string& name);
// Its process dies: every death recipient linked to it is told (on the calling thread, before
// this returns), calls through references still held fail with DEAD_OBJECT, and it leaves its
// registry. False when it was not running or cannot die ("motor").
bool killService(const std::string& name);
bool isServiceRunning(const std::string& name);

// Names a HIDL service in the device manifest (or takes it out; resetServices takes every one
// out). As on a phone, getService for a declared service that is not running waits for it, while
// tryGetService answers null at once. On a phone the wait has no end; the host gives up after one
// second and answers null. False for a name that is not a HIDL service.
bool declareService(const std::string& name, bool declared = true);
// getService calls that waited for a declared service, since the last resetServices.
size_t declaredServiceWaits();

// What a scenario's device "services" object describes.
struct ServicesConfig {
    bool motor = false;
    bool kairo = false;
    float kairoTemperature = 0.0f;
    bool thermalHal = false;
    bool sensors = false;
    bool magneticSensor = false;  // the sensors service offers the magnetic proximity sensor
    bool performance = false;
    bool cameraExtension = false;
    bool cameraMdm = false;
};
// Resets every service (resetServices) and starts those named; on failure the ones started
// stay and `error` says which failed.
bool startServices(const ServicesConfig& config, std::string* error = nullptr);
// Stops every service, forgets all calls and motor messages and restores default settings.
void resetServices();

// ---------------------------------------------------------------------------------------------
// Answers.

// The int32 result of the maker's HALs' one method (performance, camera_extension, camera_mdm).
// Default 0.
void setServiceAnswer(const std::string& name, int32_t result);

// How a HIDL service answers linkToDeath: linked (true), refused (false) or a transport error.
enum class LinkToDeathAnswer { kLinked, kRefused, kTransportError };
void setLinkToDeathAnswer(const std::string& name, LinkToDeathAnswer answer);

// The thermal HAL's getTemperatures list. Types as android.hardware.thermal@1.0's
// TemperatureType (-1 unknown, 0 CPU, 1 GPU, 2 battery, 3 skin). Default: cpu0 40.0,
// gpu0 38.0, battery 31.0, skin 35.0.
struct ThermalReading {
    int32_t type;
    std::string name;
    float celsius;
};
void setThermalTemperatures(const std::vector<ThermalReading>& readings);

// What "kairo" answers to its one transaction (code 17, token "com.vantu.kairo.IKairoService"):
// the reply holds one float, this temperature. A wrong code gets UNKNOWN_TRANSACTION and a wrong
// token PERMISSION_DENIED, as a binder service does. Default 0.0.
void setKairoTemperature(float celsius);
// Makes the transaction fail with this status (OK: answer normally).
void setKairoTransactError(android::status_t status);

// ---------------------------------------------------------------------------------------------
// The sensors service.

// The sensor type and handle of the magnetic proximity sensor (a device-private type).
constexpr int32_t kMagneticProximitySensorType = 65633;  // 0x10061
constexpr int32_t kMagneticProximitySensorHandle = 0x5f;

// Whether the sensors service offers the magnetic proximity sensor (default true); takes
// effect at the next start of "sensors".
void setMagneticSensorPresent(bool present);

struct SensorEventSpec {
    int32_t sensorType = kMagneticProximitySensorType;
    std::array<float, 16> data{};  // Event.u.data
    // Delivers also to queues on which the sensor is not enabled (a late event after disable).
    bool evenIfDisabled = false;
};
// Delivers one event of the sensor to every event queue on which it is enabled, on the sensors
// service's callback thread, and returns once each callback has returned: the number of
// callbacks told (0 when none has the sensor enabled), or -1 with `error` (no service, no such
// sensor, or a callback that did not return within 5 s).
int deliverSensorEvent(const SensorEventSpec& event, std::string* error = nullptr);
// The magnetic proximity sensor with u.data[3] = data3.
int deliverMagneticEvent(float data3, std::string* error = nullptr);
// Whether some event queue has the sensor of this type enabled.
bool isSensorEnabled(int32_t sensorType = kMagneticProximitySensorType);

// ---------------------------------------------------------------------------------------------
// The motor service.

struct MotorMessage {
    std::string bytes;  // everything one connection sent, as received
    // Decoded from "cmd,pid,package,cameraId" when well formed.
    bool wellFormed = false;
    int32_t command = 0;
    int32_t pid = 0;
    std::string package;
    int32_t cameraId = 0;
    // "1,1234,com.example.app,1 (raise the module, pid 1234, com.example.app, camera 1)"
    std::string describe() const;
};
// Messages received since the last clear, oldest first. Connections already made are read
// before this returns, so a message the library sent is never missed by a later call.
std::vector<MotorMessage> motorMessages();
void clearMotorMessages();

// How long "motor" waits for the socket name when another process holds it (parallel tests);
// default 10000 ms.
void setMotorBindTimeoutMs(int timeoutMs);

// Gives this process its own network namespace, so that its "motor_socket" neither sees nor
// blocks another process's. Call it while the process has a single thread (at start, or in a
// child right after fork). Needs root or unprivileged user namespaces; false with a reason
// otherwise.
bool isolateAbstractSockets(std::string* error = nullptr);

// ---------------------------------------------------------------------------------------------
// The frame-processing library fake.

// The shape of the library file the device carries.
struct ApsLibraryShape {
    // Entry points the file does not export ("initAPS", "APSProcessCaptureFrames", ...).
    std::vector<std::string> missing;
    // isAPSFeatureSupport answers by feature name; features not named answer true.
    std::map<std::string, bool> features;
    // Answer of createAPSInstance, initAPS and the frame calls (default true).
    bool engineSucceeds = true;
};
// The entry points, in the order the library binds them.
const std::vector<std::string>& apsEntryPoints();
// Writes the fake library at `hostPath` (a path on the host, e.g. the device root's
// "odm/lib64/libAlgoProcess.so"), creating folders, with the answers file beside it. False with
// a reason when the fake was not built, a name in `missing` is not an entry point, or the file
// cannot be written.
bool installApsLibrary(const std::string& hostPath, const ApsLibraryShape& shape,
                       std::string* error = nullptr);

}  // namespace hostctl

#endif  // HOSTCTL_SERVICES_H

// hostctl's control of the host services: dispatch by service name.
#include "hostctl/Services.h"

#include <map>

#include "HidlRegistry.h"
#include "ServiceControl.h"

namespace hostctl {

namespace {

hostsvc::ServiceControl* control(const std::string& name) {
    static const std::map<std::string, hostsvc::ServiceControl* (*)()> kControls = {
        {kPerformanceHal, [] { return &hostsvc::performanceControl(); }},
        {kCameraExtensionHal, [] { return &hostsvc::cameraExtensionControl(); }},
        {kCameraMdmHal, [] { return &hostsvc::cameraMdmControl(); }},
        {kThermalHal, [] { return &hostsvc::thermalControl(); }},
        {kSensorsService, [] { return &hostsvc::sensorsControl(); }},
        {kKairoService, [] { return &hostsvc::kairoControl(); }},
        {kMotorService, [] { return &hostsvc::motorControl(); }},
    };
    auto it = kControls.find(name);
    return it == kControls.end() ? nullptr : it->second();
}

const char* const kAllServices[] = {kPerformanceHal, kCameraExtensionHal, kCameraMdmHal,
                                    kThermalHal,     kSensorsService,     kKairoService,
                                    kMotorService};

}  // namespace

bool startService(const std::string& name, std::string* error) {
    hostsvc::ServiceControl* c = control(name);
    if (c == nullptr) {
        if (error) *error = "no host service is named \"" + name + "\"";
        return false;
    }
    return c->start(error);
}

void stopService(const std::string& name) {
    if (hostsvc::ServiceControl* c = control(name)) c->stop();
}

bool killService(const std::string& name) {
    hostsvc::ServiceControl* c = control(name);
    return c != nullptr && c->kill();
}

bool isServiceRunning(const std::string& name) {
    hostsvc::ServiceControl* c = control(name);
    return c != nullptr && c->running();
}

bool declareService(const std::string& name, bool declared) {
    hostsvc::ServiceControl* c = control(name);
    return c != nullptr && c->declare(declared);
}

size_t declaredServiceWaits() {
    return hostsvc::hidlServiceWaits();
}

void setServiceAnswer(const std::string& name, int32_t result) {
    hostsvc::setVendorHalAnswer(name, result);
}

void setLinkToDeathAnswer(const std::string& name, LinkToDeathAnswer answer) {
    if (hostsvc::ServiceControl* c = control(name)) c->setLinkToDeathAnswer(answer);
}

void resetServices() {
    for (const char* name : kAllServices) {
        hostsvc::ServiceControl* c = control(name);
        c->stop();
        c->reset();
    }
    hostsvc::clearHidlServiceWaits();
    clearServiceCalls();
}

bool startServices(const ServicesConfig& config, std::string* error) {
    resetServices();
    setMagneticSensorPresent(config.magneticSensor);
    setKairoTemperature(config.kairoTemperature);
    const std::pair<bool, const char*> wanted[] = {
        {config.performance, kPerformanceHal}, {config.cameraExtension, kCameraExtensionHal},
        {config.cameraMdm, kCameraMdmHal},     {config.thermalHal, kThermalHal},
        {config.sensors, kSensorsService},     {config.kairo, kKairoService},
        {config.motor, kMotorService},
    };
    for (const auto& w : wanted) {
        std::string why;
        if (w.first && !startService(w.second, &why)) {
            if (error) *error = std::string(w.second) + ": " + why;
            return false;
        }
    }
    return true;
}

}  // namespace hostctl

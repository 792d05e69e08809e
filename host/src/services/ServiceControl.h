// How hostctl/Services.cpp drives each host service.
#pragma once

#include <string>

#include "hostctl/Services.h"

namespace hostsvc {

class ServiceControl {
public:
    virtual ~ServiceControl() = default;
    virtual bool start(std::string* error) = 0;
    // Withdraws the service without a death notice.
    virtual void stop() = 0;
    // The service dies; false when it was not running or cannot die.
    virtual bool kill() = 0;
    virtual bool running() = 0;
    // Back to default answers (the service must be stopped).
    virtual void reset() = 0;
    virtual void setLinkToDeathAnswer(hostctl::LinkToDeathAnswer) {}
    // Names the service in the device manifest; false for a service that is not a HIDL one.
    virtual bool declare(bool) { return false; }
};

// The controls, each living for the process.
ServiceControl& performanceControl();
ServiceControl& cameraExtensionControl();
ServiceControl& cameraMdmControl();
ServiceControl& thermalControl();
ServiceControl& sensorsControl();
ServiceControl& kairoControl();
ServiceControl& motorControl();

// The int32 answer of the maker's HALs.
void setVendorHalAnswer(const std::string& name, int32_t result);

}  // namespace hostsvc

// Host-only access to the HIDL service registry, for the host's own services.
#pragma once

#include <string>

namespace hostsvc {

// Removes the service registered under `descriptor` and `instance`, if any.
void unregisterHidlService(const std::string& descriptor, const std::string& instance);

// Puts the instance in the device manifest (or takes it out): getService then waits for it.
void declareHidlService(const std::string& descriptor, const std::string& instance, bool declared);
// getService calls that waited for a declared instance that was not registered.
size_t hidlServiceWaits();
void clearHidlServiceWaits();

}  // namespace hostsvc

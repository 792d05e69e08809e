// Host-only access to the HIDL service registry, for the host's own services.
#pragma once

#include <string>

namespace hostsvc {

// Removes the service registered under `descriptor` and `instance`, if any.
void unregisterHidlService(const std::string& descriptor, const std::string& instance);

}  // namespace hostsvc

/*
 * Control of the host's system property store. Tests and the simulator fill and change it; the
 * library only sees <cutils/properties.h>.
 */
#ifndef HOSTCTL_PROPERTIES_H
#define HOSTCTL_PROPERTIES_H

#include <map>
#include <string>
#include <vector>

namespace hostctl {

// Sets a property without the platform's checks (read-only names and lengths included), as the
// init process does when it loads build.prop.
void setProperty(const std::string& name, const std::string& value);
void removeProperty(const std::string& name);
void clearProperties();
std::map<std::string, std::string> properties();

// Makes property_set refuse (-1, value kept) every name that starts with one of `prefixes`, as a
// phone's init does for a name without a property context that the writer's SELinux domain may
// set. An empty list (the default) allows every write; each call forgets earlier refusals.
void refusePropertyWrites(const std::vector<std::string>& prefixes);
// The names whose writes were refused, oldest first.
std::vector<std::string> refusedPropertyWrites();

// Loads "name=value" lines (build.prop style: '#' comments and blank lines ignored, white space
// around the name and the value trimmed). Returns false with a message naming the line on a
// malformed line or an unreadable file; lines before it stay loaded.
bool loadPropertyFile(const std::string& path, std::string* error);

}  // namespace hostctl

#endif  // HOSTCTL_PROPERTIES_H

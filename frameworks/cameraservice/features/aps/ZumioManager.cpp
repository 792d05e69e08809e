#include "features/aps/ZumioManager.h"

namespace android {

sp<ZumioManager> ZumioManager::getInstance() {
    return nullptr;
}

// The avatar feature brings the manager's state with the manager itself; until then no manager
// exists and these are never reached.
void ZumioManager::setAvatarInfo(const String8&) {}
void ZumioManager::setZumioEnable(bool, bool) {}
bool ZumioManager::isSupportZumio(const char*, const char*, bool) {
    return false;
}

}  // namespace android

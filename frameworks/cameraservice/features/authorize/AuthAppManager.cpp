#include "features/authorize/AuthAppManager.h"

namespace android {

sp<AuthAppManager> AuthAppManager::getInstance() {
    return nullptr;
}

}  // namespace android

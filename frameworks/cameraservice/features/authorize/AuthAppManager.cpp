#include "features/authorize/AuthAppManager.h"

namespace android {

sp<AuthAppManager> AuthAppManager::getInstance() {
    return nullptr;
}

AuthAppManager::~AuthAppManager() = default;

int32_t AuthAppManager::addAuthResultInfo(int, int, int, String8) {
    return 0;
}
void AuthAppManager::removeAuthResultInfo(int, String8) {}
int32_t AuthAppManager::setDeathRecipient(sp<IBinder>, int, int) {
    return 0;
}
void AuthAppManager::binderDied(const wp<IBinder>&) {}
void AuthAppManager::clearInvalidAuthResult() {}
bool AuthAppManager::isAuthedClient(int, String8, bool, bool) {
    return false;
}
bool AuthAppManager::isAuthedClient(void*) {
    return false;
}
bool AuthAppManager::checkAuthResult(int, int, String8, void*) {
    return false;
}
bool AuthAppManager::wait(int, String8, bool, bool) {
    return false;
}
bool AuthAppManager::isValid(const AuthResult&, int64_t) const {
    return false;
}

}  // namespace android

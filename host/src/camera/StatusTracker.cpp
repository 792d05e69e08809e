// The host's status tracker: component states kept under a lock.
#include "device3/StatusTracker.h"

namespace android {

namespace camera3 {

int StatusTracker::addComponent(String8 /*componentName*/) {
    std::lock_guard<std::mutex> lock(mLock);
    int id = mNextId++;
    mStates[id] = IDLE;
    return id;
}

void StatusTracker::removeComponent(int id) {
    std::lock_guard<std::mutex> lock(mLock);
    mStates.erase(id);
}

void StatusTracker::markComponentIdle(int id) {
    markComponent(id, IDLE);
}

void StatusTracker::markComponentActive(int id) {
    markComponent(id, ACTIVE);
}

bool StatusTracker::isIdle() const {
    std::lock_guard<std::mutex> lock(mLock);
    for (const auto& entry : mStates) {
        if (entry.second == ACTIVE) return false;
    }
    return true;
}

void StatusTracker::markComponent(int id, ComponentState state) {
    std::lock_guard<std::mutex> lock(mLock);
    auto it = mStates.find(id);
    if (it != mStates.end()) it->second = state;
}

}  // namespace camera3

}  // namespace android

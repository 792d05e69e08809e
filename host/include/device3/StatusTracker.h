/*
 * Host stand-in of the camera server's status tracker. On a phone it is the thread that folds the
 * idle/active state of every stream and of the request queue into the device's state; the host
 * has no such thread, so the tracker only keeps the component states it is told.
 */
#ifndef ANDROID_SERVERS_CAMERA3_STATUSTRACKER_H
#define ANDROID_SERVERS_CAMERA3_STATUSTRACKER_H

#include <utils/RefBase.h>
#include <utils/String8.h>

#include <map>
#include <mutex>

namespace android {

namespace camera3 {

class StatusTracker : public virtual RefBase {
public:
    enum ComponentState { IDLE, ACTIVE };
    enum { NO_STATUS_ID = -1 };

    // Adds a component and returns its id (components start idle).
    int addComponent(String8 componentName);
    void removeComponent(int id);
    void markComponentIdle(int id);
    void markComponentActive(int id);
    // True when every component is idle.
    bool isIdle() const;

private:
    void markComponent(int id, ComponentState state);

    mutable std::mutex mLock;
    int mNextId = 0;
    std::map<int, ComponentState> mStates;
};

}  // namespace camera3

}  // namespace android

#endif

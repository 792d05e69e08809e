/*
 * Host stand-in of the camera server's narrow interfaces through which the result path reaches
 * back into its device: to enter the error state, and to account for in-flight requests.
 */
#ifndef ANDROID_SERVERS_CAMERA3_OUTPUT_INTERFACE_H
#define ANDROID_SERVERS_CAMERA3_OUTPUT_INTERFACE_H

#include <utils/Timers.h>

namespace android {

namespace camera3 {

// Puts the device in its error state, with a printf-style reason.
class SetErrorInterface {
public:
    virtual void setErrorState(const char* fmt, ...) = 0;
    virtual void setErrorStateLocked(const char* fmt, ...) = 0;
    virtual ~SetErrorInterface() {}
};

// Told when in-flight requests leave the map.
class InflightRequestUpdateInterface {
public:
    // A request finished after `duration` ns in flight (the device lock is held).
    virtual void onInflightEntryRemovedLocked(nsecs_t duration) = 0;
    virtual void checkInflightMapLengthLocked() = 0;
    virtual void onInflightMapFlushedLocked() = 0;
    virtual ~InflightRequestUpdateInterface() {}
};

}  // namespace camera3

}  // namespace android

#endif

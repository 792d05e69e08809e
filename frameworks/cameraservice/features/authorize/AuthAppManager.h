/*
 * Authorisation of apps that use the maker's camera SDK: which uid and package a system
 * component has authorised, and which connected clients passed the check.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_AUTHORIZE_AUTHAPPMANAGER_H
#define VANTU_CAMERASERVICE_FEATURES_AUTHORIZE_AUTHAPPMANAGER_H

#include <utils/RefBase.h>
#include <utils/StrongPointer.h>

namespace android {

class AuthAppManager : public virtual RefBase {
public:
    // The process-wide manager, or null while app authorisation is not available. The extension
    // object takes it once at construction and holds it for the life of the process. The
    // authorisation feature brings the manager itself; until then there is none.
    static sp<AuthAppManager> getInstance();
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_AUTHORIZE_AUTHAPPMANAGER_H

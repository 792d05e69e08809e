/*
 * Helpers of the extension-object tests: an extension whose protected state a test may read, and
 * the check of the forwarding hooks.
 */
#pragma once

#include "CameraServiceExtImpl.h"

namespace spinetest {

// A feature configuration under which no feature manager is made.
extern const char kAllFeaturesOff[];

// Any extension class with read access to what a test needs to see.
template <typename Ext>
class Exposed : public Ext {
public:
    bool hasAnyManager() const {
        return this->mAuthAppManager != nullptr || this->mApsInterface != nullptr ||
               this->mZumioManager != nullptr || this->mMotorManager != nullptr ||
               this->mMagneticSensorManager != nullptr;
    }
    int32_t lastCameraId() const { return this->mLastCameraId; }
    android::String8 currentPackageName() const { return this->mCurrentPackageName; }
};
using ExposedExtension = Exposed<android::CameraServiceExtImpl>;

// Every hook that forwards to a feature manager answers its neutral value (OK, false, nothing
// changed) and does not crash. Reports through GoogleTest expectations.
void expectNeutralForwarders(android::CameraServiceExtImpl& ext);

}  // namespace spinetest

/*
 * The library's own binder transactions, codes 10001 to 10014 under the interface token
 * "android.hardware.camera".
 */
#include "CameraServiceExtImpl.h"

namespace android {

status_t CameraServiceExtImpl::onTransact(uint32_t, const Parcel&, Parcel*, uint32_t) {
    return INVALID_OPERATION;
}

}  // namespace android

/*
 * Intelligent eviction: whether a connecting client may go ahead, must wait for a closing
 * occupant, evicts occupants first, or is refused as busy.
 */
#include "CameraServiceExtImpl.h"

namespace android {

bool CameraServiceExtImpl::customIntelligentEviction(int, const String16&) {
    return true;
}

bool CameraServiceExtImpl::customSaveIntelligentEviction(int, const String16&) {
    return true;
}

bool CameraServiceExtImpl::isSupportExplorer(const String8&, const String8&) {
    return false;
}

int CameraServiceExtImpl::OverrideCost(const String8&, const String8&, int cost) {
    return cost;
}

}  // namespace android

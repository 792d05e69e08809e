/*
 * Key look-ups in the platform's keyed vectors for the per-frame hooks.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_KEYEDLOOKUP_H
#define VANTU_CAMERASERVICE_UTILS_KEYEDLOOKUP_H

#include <sys/types.h>
#include <utils/KeyedVector.h>

namespace android {
namespace vantu {

// The index of `key` in `map`, or NAME_NOT_FOUND: what KeyedVector::indexOfKey answers, found
// by a binary search over the sorted keys instead of through a key-value pair, which would
// build and destroy a default value per look-up (an in-flight request record is a large one).
template <typename Key, typename Value>
ssize_t indexOfKey(const KeyedVector<Key, Value>& map, const Key& key) {
    size_t low = 0;
    size_t high = map.size();
    while (low < high) {
        const size_t middle = low + (high - low) / 2;
        const Key& probe = map.keyAt(middle);
        if (probe < key) {
            low = middle + 1;
        } else if (key < probe) {
            high = middle;
        } else {
            return static_cast<ssize_t>(middle);
        }
    }
    return NAME_NOT_FOUND;
}

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_KEYEDLOOKUP_H

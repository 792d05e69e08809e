/*
 * Host stand-in of libbinder's Parcelable: an object that flattens itself into a Parcel.
 */
#ifndef ANDROID_PARCELABLE_H
#define ANDROID_PARCELABLE_H

#include <stdint.h>
#include <utils/Errors.h>

namespace android {

class Parcel;

class Parcelable {
public:
    virtual ~Parcelable() = default;
    Parcelable() = default;
    Parcelable(const Parcelable&) = default;
    Parcelable& operator=(const Parcelable&) = default;

    // Writes this object at the parcel's current position.
    virtual status_t writeToParcel(Parcel* parcel) const = 0;
    // Reads this object from the parcel's current position.
    virtual status_t readFromParcel(const Parcel* parcel) = 0;

    enum class Stability : int32_t {
        STABILITY_LOCAL,
        STABILITY_VINTF,
    };

    virtual Stability getStability() const { return Stability::STABILITY_LOCAL; }
};

}  // namespace android

#endif  // ANDROID_PARCELABLE_H

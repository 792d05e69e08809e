/*
 * android::CameraMetadata as Android 13's libcamera_client declares it: an owning, resizable
 * wrapper of a camera metadata packet with typed updates, lock tracking and its parcel form.
 */
#ifndef ANDROID_CLIENT_CAMERA2_CAMERAMETADATA_CPP
#define ANDROID_CLIENT_CAMERA2_CAMERAMETADATA_CPP

#include <binder/Parcelable.h>
#include <camera/VendorTagDescriptor.h>
#include <system/camera_metadata.h>
#include <utils/String8.h>
#include <utils/Vector.h>

#include <vector>

namespace android {

class CameraMetadata : public Parcelable {
public:
    CameraMetadata();
    // Allocates a packet of the given capacities (data capacity in bytes).
    CameraMetadata(size_t entryCapacity, size_t dataCapacity = 10);
    ~CameraMetadata();

    // Takes ownership of `buffer`.
    CameraMetadata(camera_metadata_t* buffer);
    CameraMetadata(const CameraMetadata& other);
    CameraMetadata(CameraMetadata&& other);

    // Clones the other packet; ignored (with an error log) while this object is locked.
    CameraMetadata& operator=(const CameraMetadata& other);
    CameraMetadata& operator=(const camera_metadata_t* buffer);
    CameraMetadata& operator=(CameraMetadata&& other);

    // Hands out the packet for reading; until unlock() every change fails. May return NULL.
    const camera_metadata_t* getAndLock() const;

    // INVALID_OPERATION when not locked, BAD_VALUE when `buffer` is not the packet handed out.
    status_t unlock(const camera_metadata_t* buffer) const;

    // Gives up ownership of the packet (free it with free_camera_metadata); NULL when locked.
    camera_metadata_t* release();

    // Frees the packet; does nothing while locked.
    void clear();

    // Frees the current packet and takes ownership of `buffer`; does nothing while locked.
    void acquire(camera_metadata_t* buffer);

    // Takes the other object's packet, leaving it empty.
    void acquire(CameraMetadata& other);

    // Appends every entry of the other packet, growing this one as needed.
    status_t append(const CameraMetadata& other);
    status_t append(const camera_metadata* other);

    size_t entryCount() const;
    bool isEmpty() const;
    // Bytes of the packet including unused capacity; 0 when there is none.
    size_t bufferSize() const;

    status_t sort();

    // Replaces or adds the entry of `tag`. INVALID_OPERATION while locked, for an unknown tag or
    // a tag of another type, and for data that lies inside this packet.
    status_t update(uint32_t tag, const uint8_t* data, size_t data_count);
    status_t update(uint32_t tag, const int32_t* data, size_t data_count);
    status_t update(uint32_t tag, const float* data, size_t data_count);
    status_t update(uint32_t tag, const int64_t* data, size_t data_count);
    status_t update(uint32_t tag, const double* data, size_t data_count);
    status_t update(uint32_t tag, const camera_metadata_rational_t* data, size_t data_count);
    // A byte tag holding the string and its terminating NUL.
    status_t update(uint32_t tag, const String8& string);
    status_t update(const camera_metadata_ro_entry& entry);

    template <typename T>
    status_t update(uint32_t tag, Vector<T> data) {
        return update(tag, data.array(), data.size());
    }

    bool exists(uint32_t tag) const;

    // The entry of `tag`, or one with count 0 when absent (or, for the non-const form, while
    // locked). The data pointer is valid until the next change.
    camera_metadata_entry find(uint32_t tag);
    camera_metadata_ro_entry find(uint32_t tag) const;

    // OK when the tag was removed or was not there; INVALID_OPERATION while locked.
    status_t erase(uint32_t tag);

    // Removes the entries that need the camera permission (built-in and vendor ones), listing
    // the removed tags in `tagsRemoved`.
    status_t removePermissionEntries(metadata_vendor_id_t vendorId,
                                     std::vector<int32_t>* tagsRemoved);

    // Exchanges packets; does nothing when either object is locked.
    void swap(CameraMetadata& other);

    void dump(int fd, int verbosity = 1, int indentation = 0) const;

    virtual status_t readFromParcel(const Parcel* parcel) override;
    virtual status_t writeToParcel(Parcel* parcel) const override;

    // The parcel form: int32 blob size (0 for no packet), a blob holding the compacted packet
    // at an 8-aligned address, then int32 offset of the packet in the blob.
    static status_t readFromParcel(const Parcel& parcel, camera_metadata_t** out);
    static status_t writeToParcel(Parcel& parcel, const camera_metadata_t* metadata);

    // The id of a full tag name ("android.control.aeMode", or a vendor tag of `vTags`).
    // BAD_VALUE for NULL arguments or a name without a tag part, NAME_NOT_FOUND when unknown.
    static status_t getTagFromName(const char* name, const VendorTagDescriptor* vTags,
                                   uint32_t* tag);

    metadata_vendor_id_t getVendorId();

private:
    camera_metadata_t* mBuffer;
    mutable bool mLocked;

    status_t checkType(uint32_t tag, uint8_t expectedType);
    status_t updateImpl(uint32_t tag, const void* data, size_t data_count);
    // Grows the packet so that `extraEntries` entries and `extraData` bytes fit.
    status_t resizeIfNeeded(size_t extraEntries, size_t extraData);
};

namespace hardware {
namespace camera2 {
namespace impl {
using ::android::CameraMetadata;
typedef CameraMetadata CameraMetadataNative;
}  // namespace impl
}  // namespace camera2
}  // namespace hardware

}  // namespace android

#endif  // ANDROID_CLIENT_CAMERA2_CAMERAMETADATA_CPP

/*
 * android::CameraMetadata: ownership, locking, growth and typed updates of a camera metadata
 * packet, with the semantics of Android 13's libcamera_client.
 */
#define LOG_TAG "Camera2-Metadata"

#include <camera/CameraMetadata.h>
#include <camera_metadata_hidden.h>
#include <log/log.h>
#include <string.h>

namespace android {

CameraMetadata::CameraMetadata() : mBuffer(nullptr), mLocked(false) {}

CameraMetadata::CameraMetadata(size_t entryCapacity, size_t dataCapacity) : mLocked(false) {
    mBuffer = allocate_camera_metadata(entryCapacity, dataCapacity);
}

CameraMetadata::CameraMetadata(const CameraMetadata& other) : Parcelable(other), mLocked(false) {
    mBuffer = clone_camera_metadata(other.mBuffer);
}

CameraMetadata::CameraMetadata(CameraMetadata&& other) : mBuffer(nullptr), mLocked(false) {
    acquire(other);
}

CameraMetadata& CameraMetadata::operator=(CameraMetadata&& other) {
    acquire(other);
    return *this;
}

CameraMetadata::CameraMetadata(camera_metadata_t* buffer) : mBuffer(nullptr), mLocked(false) {
    acquire(buffer);
}

CameraMetadata& CameraMetadata::operator=(const CameraMetadata& other) {
    return operator=(other.mBuffer);
}

CameraMetadata& CameraMetadata::operator=(const camera_metadata_t* buffer) {
    if (mLocked) {
        ALOGE("%s: Assignment to a locked CameraMetadata!", __FUNCTION__);
        return *this;
    }
    if (buffer != mBuffer) {
        camera_metadata_t* newBuffer = clone_camera_metadata(buffer);
        clear();
        mBuffer = newBuffer;
    }
    return *this;
}

CameraMetadata::~CameraMetadata() {
    mLocked = false;
    clear();
}

const camera_metadata_t* CameraMetadata::getAndLock() const {
    mLocked = true;
    return mBuffer;
}

status_t CameraMetadata::unlock(const camera_metadata_t* buffer) const {
    if (!mLocked) {
        ALOGE("%s: Can't unlock a non-locked CameraMetadata!", __FUNCTION__);
        return INVALID_OPERATION;
    }
    if (buffer != mBuffer) {
        ALOGE("%s: Can't unlock CameraMetadata with wrong pointer!", __FUNCTION__);
        return BAD_VALUE;
    }
    mLocked = false;
    return OK;
}

camera_metadata_t* CameraMetadata::release() {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return nullptr;
    }
    camera_metadata_t* released = mBuffer;
    mBuffer = nullptr;
    return released;
}

void CameraMetadata::clear() {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return;
    }
    if (mBuffer != nullptr) {
        free_camera_metadata(mBuffer);
        mBuffer = nullptr;
    }
}

void CameraMetadata::acquire(camera_metadata_t* buffer) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return;
    }
    clear();
    mBuffer = buffer;
    ALOGE_IF(validate_camera_metadata_structure(mBuffer, nullptr) != OK,
             "%s: Failed to validate metadata structure %p", __FUNCTION__, buffer);
}

void CameraMetadata::acquire(CameraMetadata& other) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return;
    }
    if (&other == this) return;
    acquire(other.release());
}

status_t CameraMetadata::append(const CameraMetadata& other) {
    return append(other.mBuffer);
}

status_t CameraMetadata::append(const camera_metadata* other) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return INVALID_OPERATION;
    }
    size_t extraEntries = get_camera_metadata_entry_count(other);
    size_t extraData = get_camera_metadata_data_count(other);
    resizeIfNeeded(extraEntries, extraData);
    return append_camera_metadata(mBuffer, other);
}

size_t CameraMetadata::entryCount() const {
    return mBuffer == nullptr ? 0 : get_camera_metadata_entry_count(mBuffer);
}

bool CameraMetadata::isEmpty() const {
    return entryCount() == 0;
}

size_t CameraMetadata::bufferSize() const {
    return mBuffer == nullptr ? 0 : get_camera_metadata_size(mBuffer);
}

status_t CameraMetadata::sort() {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return INVALID_OPERATION;
    }
    return sort_camera_metadata(mBuffer);
}

status_t CameraMetadata::checkType(uint32_t tag, uint8_t expectedType) {
    int tagType = get_local_camera_metadata_tag_type(tag, mBuffer);
    if (tagType == -1) {
        ALOGE("Update metadata entry: Unknown tag %d", tag);
        return INVALID_OPERATION;
    }
    if (tagType != expectedType) {
        const char* tagName = get_local_camera_metadata_tag_name(tag, mBuffer);
        ALOGE(
            "Mismatched tag type when updating entry %s (%d) of type %s; got type %s data "
            "instead ",
            tagName != nullptr ? tagName : "<unknown>", tag,
            (tagType >= 0 && tagType < NUM_TYPES) ? camera_metadata_type_names[tagType] : "unknown",
            expectedType < NUM_TYPES ? camera_metadata_type_names[expectedType] : "unknown");
        return INVALID_OPERATION;
    }
    return OK;
}

status_t CameraMetadata::update(uint32_t tag, const int32_t* data, size_t data_count) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return INVALID_OPERATION;
    }
    status_t res = checkType(tag, TYPE_INT32);
    return res != OK ? res : updateImpl(tag, data, data_count);
}

status_t CameraMetadata::update(uint32_t tag, const uint8_t* data, size_t data_count) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return INVALID_OPERATION;
    }
    status_t res = checkType(tag, TYPE_BYTE);
    return res != OK ? res : updateImpl(tag, data, data_count);
}

status_t CameraMetadata::update(uint32_t tag, const float* data, size_t data_count) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return INVALID_OPERATION;
    }
    status_t res = checkType(tag, TYPE_FLOAT);
    return res != OK ? res : updateImpl(tag, data, data_count);
}

status_t CameraMetadata::update(uint32_t tag, const int64_t* data, size_t data_count) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return INVALID_OPERATION;
    }
    status_t res = checkType(tag, TYPE_INT64);
    return res != OK ? res : updateImpl(tag, data, data_count);
}

status_t CameraMetadata::update(uint32_t tag, const double* data, size_t data_count) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return INVALID_OPERATION;
    }
    status_t res = checkType(tag, TYPE_DOUBLE);
    return res != OK ? res : updateImpl(tag, data, data_count);
}

status_t CameraMetadata::update(uint32_t tag, const camera_metadata_rational_t* data,
                                size_t data_count) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return INVALID_OPERATION;
    }
    status_t res = checkType(tag, TYPE_RATIONAL);
    return res != OK ? res : updateImpl(tag, data, data_count);
}

status_t CameraMetadata::update(uint32_t tag, const String8& string) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return INVALID_OPERATION;
    }
    status_t res = checkType(tag, TYPE_BYTE);
    if (res != OK) return res;
    // size() does not count the terminating NUL, which is stored too.
    return updateImpl(tag, string.c_str(), string.size() + 1);
}

status_t CameraMetadata::update(const camera_metadata_ro_entry& entry) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return INVALID_OPERATION;
    }
    status_t res = checkType(entry.tag, entry.type);
    return res != OK ? res : updateImpl(entry.tag, entry.data.u8, entry.count);
}

status_t CameraMetadata::updateImpl(uint32_t tag, const void* data, size_t data_count) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return INVALID_OPERATION;
    }
    int type = get_local_camera_metadata_tag_type(tag, mBuffer);
    if (type == -1) {
        ALOGE("%s: Tag %d not found", __FUNCTION__, tag);
        return BAD_VALUE;
    }
    // Data from this very packet would be moved or freed by the resize below.
    if (mBuffer != nullptr) {
        uintptr_t bufAddr = reinterpret_cast<uintptr_t>(mBuffer);
        uintptr_t dataAddr = reinterpret_cast<uintptr_t>(data);
        if (dataAddr > bufAddr && dataAddr < bufAddr + get_camera_metadata_size(mBuffer)) {
            ALOGE("%s: Update attempted with data from the same metadata buffer!", __FUNCTION__);
            return INVALID_OPERATION;
        }
    }

    size_t data_size = calculate_camera_metadata_entry_data_size(type, data_count);
    status_t res = resizeIfNeeded(1, data_size);
    if (res == OK) {
        camera_metadata_entry_t entry;
        res = find_camera_metadata_entry(mBuffer, tag, &entry);
        if (res == NAME_NOT_FOUND) {
            res = add_camera_metadata_entry(mBuffer, tag, data, data_count);
        } else if (res == OK) {
            res = update_camera_metadata_entry(mBuffer, entry.index, data, data_count, nullptr);
        }
    }
    if (res != OK) {
        const char* section = get_local_camera_metadata_section_name(tag, mBuffer);
        const char* name = get_local_camera_metadata_tag_name(tag, mBuffer);
        ALOGE("%s: Unable to update metadata entry %s.%s (%x): %s (%d)", __FUNCTION__,
              section != nullptr ? section : "<unknown>", name != nullptr ? name : "<unknown>", tag,
              strerror(-res), res);
    }
    return res;
}

bool CameraMetadata::exists(uint32_t tag) const {
    camera_metadata_ro_entry entry;
    return find_camera_metadata_ro_entry(mBuffer, tag, &entry) == 0;
}

camera_metadata_entry_t CameraMetadata::find(uint32_t tag) {
    camera_metadata_entry entry = {};
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        entry.count = 0;
        return entry;
    }
    if (find_camera_metadata_entry(mBuffer, tag, &entry) != OK) {
        entry.count = 0;
        entry.data.u8 = nullptr;
    }
    return entry;
}

camera_metadata_ro_entry_t CameraMetadata::find(uint32_t tag) const {
    camera_metadata_ro_entry entry = {};
    if (find_camera_metadata_ro_entry(mBuffer, tag, &entry) != OK) {
        entry.count = 0;
        entry.data.u8 = nullptr;
    }
    return entry;
}

status_t CameraMetadata::erase(uint32_t tag) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return INVALID_OPERATION;
    }
    camera_metadata_entry_t entry;
    status_t res = find_camera_metadata_entry(mBuffer, tag, &entry);
    if (res == NAME_NOT_FOUND) return OK;
    const char* section = get_local_camera_metadata_section_name(tag, mBuffer);
    const char* name = get_local_camera_metadata_tag_name(tag, mBuffer);
    if (res != OK) {
        ALOGE("%s: Error looking for entry %s.%s (%x): %s %d", __FUNCTION__,
              section != nullptr ? section : "<unknown>", name != nullptr ? name : "<unknown>", tag,
              strerror(-res), res);
        return res;
    }
    res = delete_camera_metadata_entry(mBuffer, entry.index);
    if (res != OK) {
        ALOGE("%s: Error deleting entry %s.%s (%x): %s %d", __FUNCTION__,
              section != nullptr ? section : "<unknown>", name != nullptr ? name : "<unknown>", tag,
              strerror(-res), res);
    }
    return res;
}

void CameraMetadata::swap(CameraMetadata& other) {
    if (mLocked) {
        ALOGE("%s: CameraMetadata is locked", __FUNCTION__);
        return;
    } else if (other.mLocked) {
        ALOGE("%s: Other CameraMetadata is locked", __FUNCTION__);
        return;
    }
    camera_metadata* thisBuf = mBuffer;
    mBuffer = other.mBuffer;
    other.mBuffer = thisBuf;
}

void CameraMetadata::dump(int fd, int verbosity, int indentation) const {
    dump_indented_camera_metadata(mBuffer, fd, verbosity, indentation);
}

metadata_vendor_id_t CameraMetadata::getVendorId() {
    return get_camera_metadata_vendor_id(mBuffer);
}

status_t CameraMetadata::resizeIfNeeded(size_t extraEntries, size_t extraData) {
    if (mBuffer == nullptr) {
        mBuffer = allocate_camera_metadata(extraEntries * 2, extraData * 2);
        if (mBuffer == nullptr) {
            ALOGE("%s: Can't allocate larger metadata buffer", __FUNCTION__);
            return NO_MEMORY;
        }
        return OK;
    }
    size_t currentEntryCount = get_camera_metadata_entry_count(mBuffer);
    size_t currentEntryCap = get_camera_metadata_entry_capacity(mBuffer);
    size_t newEntryCount = currentEntryCount + extraEntries;
    newEntryCount = (newEntryCount > currentEntryCap) ? newEntryCount * 2 : currentEntryCap;

    size_t currentDataCount = get_camera_metadata_data_count(mBuffer);
    size_t currentDataCap = get_camera_metadata_data_capacity(mBuffer);
    size_t newDataCount = currentDataCount + extraData;
    newDataCount = (newDataCount > currentDataCap) ? newDataCount * 2 : currentDataCap;

    if (newEntryCount > currentEntryCap || newDataCount > currentDataCap) {
        camera_metadata_t* oldBuffer = mBuffer;
        mBuffer = allocate_camera_metadata(newEntryCount, newDataCount);
        if (mBuffer == nullptr) {
            // Keep the old packet rather than lose its entries.
            mBuffer = oldBuffer;
            ALOGE("%s: Can't allocate larger metadata buffer", __FUNCTION__);
            return NO_MEMORY;
        }
        int res = append_camera_metadata(mBuffer, oldBuffer);
        if (res != OK) {
            free_camera_metadata(mBuffer);
            mBuffer = oldBuffer;
            ALOGE("%s: Can't copy metadata in resize", __FUNCTION__);
            return res;
        }
        free_camera_metadata(oldBuffer);
    }
    return OK;
}

}  // namespace android

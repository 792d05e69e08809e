/*
 * Parcel: strong binders (flat_binder_object records backed by the object table) and in-place
 * blobs.
 */
#include <android/log.h>
#include <binder/Parcel.h>
#include <string.h>

#include "ParcelWire.h"

namespace android {

using parcelwire::FlatBinderObject;
using parcelwire::padSize;

namespace {

constexpr const char kLogTag[] = "Parcel";

}  // namespace

// ---------------------------------------------------------------------------------------------
// Binder objects

status_t Parcel::writeStrongBinder(const sp<IBinder>& val) {
    const size_t offset = mDataPos;
    // Overwriting an object in place reuses its table slot, so other records keep their index.
    size_t index = mObjects.size();
    for (size_t i = 0; i < mObjects.size(); ++i) {
        if (mObjects[i].offset == offset) index = i;
    }
    FlatBinderObject flat{};
    flat.flags = parcelwire::kDefaultSchedBits;
    flat.type = parcelwire::kBinderTypeBinder;
    if (val != nullptr) {
        if (val->localBinder() != nullptr) {
            flat.flags |= parcelwire::kFlatBinderFlagAcceptsFds;
        } else {
            flat.type = parcelwire::kBinderTypeHandle;
        }
        // Where a kernel would put a pointer or a handle, the host puts the table index + 1,
        // leaving 0 to mean null as a null pointer does.
        flat.binder = index + 1;
    }
    status_t err = writeAlignedRaw(&flat, sizeof(flat));
    if (err != OK) return err;
    if (index < mObjects.size()) {
        mObjects[index].binder = val;
    } else if (val != nullptr) {
        mObjects.push_back({offset, val});
    }
    return writeInt32(val != nullptr ? parcelwire::kStabilitySystem : 0);
}

status_t Parcel::readNullableBinderAt(sp<IBinder>* val) const {
    const size_t start = mDataPos;
    if (start > mDataSize || mDataSize - start < sizeof(FlatBinderObject) + sizeof(int32_t)) {
        return NOT_ENOUGH_DATA;
    }
    FlatBinderObject flat;
    memcpy(&flat, mData + start, sizeof(flat));
    if (flat.type != parcelwire::kBinderTypeBinder && flat.type != parcelwire::kBinderTypeHandle) {
        return BAD_TYPE;
    }
    sp<IBinder> binder;
    bool valid = false;
    if (flat.binder == 0) {
        valid = flat.type == parcelwire::kBinderTypeBinder && flat.cookie == 0;
    } else if (flat.binder <= mObjects.size() && mObjects[flat.binder - 1].offset == start) {
        // Only a record the parcel itself wrote (or took over) has a table entry here.
        binder = mObjects[flat.binder - 1].binder;
        valid = true;
    }
    if (!valid) {
        __android_log_print(ANDROID_LOG_ERROR, kLogTag,
                            "Binder object at offset %zu is not in the object list", start);
        return BAD_TYPE;
    }
    mDataPos = start + sizeof(flat) + sizeof(int32_t);
    *val = binder;
    return OK;
}

status_t Parcel::readNullableStrongBinder(sp<IBinder>* val) const {
    if (val == nullptr) return BAD_VALUE;
    return readNullableBinderAt(val);
}

status_t Parcel::readStrongBinder(sp<IBinder>* val) const {
    status_t status = readNullableStrongBinder(val);
    if (status == OK && *val == nullptr) {
        __android_log_print(ANDROID_LOG_WARN, kLogTag,
                            "Expecting binder but got null! (readStrongBinder)");
        status = UNEXPECTED_NULL;
    }
    return status;
}

sp<IBinder> Parcel::readStrongBinder() const {
    sp<IBinder> val;
    // Errors are ignored: a malformed binder reads as null.
    readNullableStrongBinder(&val);
    return val;
}

// ---------------------------------------------------------------------------------------------
// Blobs

Parcel::Blob::Blob() : mFd(-1), mData(nullptr), mSize(0), mMutable(false) {}

Parcel::Blob::~Blob() {
    release();
}

void Parcel::Blob::clear() {
    mFd = -1;
    mData = nullptr;
    mSize = 0;
    mMutable = false;
}

// In-place blobs own nothing (no shared memory mapping to undo).
void Parcel::Blob::release() {
    clear();
}

void Parcel::Blob::init(int fd, void* data, size_t size, bool isMutable) {
    mFd = fd;
    mData = data;
    mSize = size;
    mMutable = isMutable;
}

status_t Parcel::writeBlob(size_t len, bool mutableCopy, WritableBlob* outBlob) {
    if (outBlob == nullptr) return BAD_VALUE;
    outBlob->clear();
    if (len > INT32_MAX) return BAD_VALUE;
    // Room for the blob and a few trailer words up front keeps the blob's pointer valid while
    // the caller writes what follows it before filling the blob.
    constexpr size_t kTrailerRoom = 64;
    status_t err = reserve(sizeof(int32_t) + padSize(len) + kTrailerRoom);
    if (err != OK) return err;
    err = writeInt32(parcelwire::BLOB_INPLACE);
    if (err != OK) return err;
    void* ptr = writeInplace(len);
    if (ptr == nullptr) return NO_MEMORY;
    outBlob->init(-1, ptr, len, false);
    (void)mutableCopy;
    return OK;
}

status_t Parcel::readBlob(size_t len, ReadableBlob* outBlob) const {
    if (outBlob == nullptr) return BAD_VALUE;
    outBlob->clear();
    const size_t start = mDataPos;
    int32_t blobType = 0;
    status_t err = readInt32(&blobType);
    if (err != OK) return err;
    if (blobType != parcelwire::BLOB_INPLACE) {
        // Shared-memory blobs need file descriptors, which host parcels do not carry.
        __android_log_print(ANDROID_LOG_ERROR, kLogTag, "readBlob: unsupported blob type %d",
                            blobType);
        mDataPos = start;
        return BAD_VALUE;
    }
    const void* ptr = readInplace(len);
    if (ptr == nullptr) {
        mDataPos = start;
        return BAD_VALUE;
    }
    outBlob->init(-1, const_cast<void*>(ptr), len, false);
    return OK;
}

}  // namespace android

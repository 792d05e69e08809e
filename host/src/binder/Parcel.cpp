/*
 * Parcel: data management, fixed-size items and RPC headers. Binder objects and blobs are in
 * ParcelObjects.cpp; strings, vectors and parcelables in ParcelStrings.cpp.
 */
#include <android/log.h>
#include <binder/IPCThreadState.h>
#include <binder/Parcel.h>
#include <binder/Status.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "ParcelWire.h"

namespace android {

using parcelwire::FlatBinderObject;
using parcelwire::padSize;

namespace {

constexpr const char kLogTag[] = "Parcel";

}  // namespace

Parcel::Parcel() : mData(nullptr), mDataSize(0), mDataCapacity(0), mDataPos(0) {}

Parcel::~Parcel() {
    freeData();
}

const uint8_t* Parcel::data() const {
    return mData;
}

// Only written bytes count: a position moved past the end adds nothing to data().
size_t Parcel::dataSize() const {
    return mDataSize;
}

size_t Parcel::dataAvail() const {
    return mDataPos < mDataSize ? mDataSize - mDataPos : 0;
}

size_t Parcel::dataPosition() const {
    return mDataPos;
}

size_t Parcel::dataCapacity() const {
    return mDataCapacity;
}

status_t Parcel::setDataSize(size_t size) {
    if (size > INT32_MAX) return BAD_VALUE;
    status_t err = setDataCapacity(size);
    if (err != OK) return err;
    mDataSize = size;
    if (mDataPos > size) mDataPos = size;
    // Binder objects cut off by the new size are gone.
    mObjects.erase(std::remove_if(mObjects.begin(), mObjects.end(),
                                  [size](const Object& obj) {
                                      return obj.offset + parcelwire::kFlatBinderObjectSize > size;
                                  }),
                   mObjects.end());
    return OK;
}

void Parcel::setDataPosition(size_t pos) const {
    // A position past INT32_MAX is fatal on a phone; here it just makes every read fail.
    mDataPos = pos;
}

status_t Parcel::setDataCapacity(size_t size) {
    if (size > INT32_MAX) return BAD_VALUE;
    if (size <= mDataCapacity) return OK;
    uint8_t* data = nullptr;
    size_t capacity = size;
    if (mData == nullptr && size <= kInlineCapacity) {
        data = mInline;
        capacity = kInlineCapacity;
    } else if (mData == mInline) {
        data = static_cast<uint8_t*>(malloc(size));
        if (data == nullptr) return NO_MEMORY;
        memcpy(data, mInline, mDataCapacity);
    } else {
        data = static_cast<uint8_t*>(realloc(mData, size));
        if (data == nullptr) return NO_MEMORY;
    }
    // New room is zeroed so gaps left by setDataPosition never expose stale bytes.
    memset(data + mDataCapacity, 0, capacity - mDataCapacity);
    mData = data;
    mDataCapacity = capacity;
    return OK;
}

status_t Parcel::setData(const uint8_t* buffer, size_t len) {
    if (len > INT32_MAX) return BAD_VALUE;
    if (buffer == nullptr && len > 0) return BAD_VALUE;
    freeData();
    status_t err = setDataCapacity(len);
    if (err != OK) return err;
    if (len > 0) memcpy(mData, buffer, len);
    mDataSize = len;
    return OK;
}

status_t Parcel::appendFrom(const Parcel* parcel, size_t start, size_t len) {
    if (parcel == nullptr || parcel == this) return BAD_VALUE;
    if (len == 0) return OK;
    if (len > INT32_MAX || start > parcel->mDataSize || len > parcel->mDataSize - start) {
        return BAD_VALUE;
    }
    const size_t at = mDataSize;
    mDataPos = at;
    status_t err = reserve(len);
    if (err != OK) return err;
    memcpy(mData + at, parcel->mData + start, len);
    finishWrite(len);
    for (const Object& obj : parcel->mObjects) {
        if (obj.offset >= start && obj.offset + parcelwire::kFlatBinderObjectSize <= start + len) {
            const size_t offset = at + obj.offset - start;
            FlatBinderObject flat;
            memcpy(&flat, mData + offset, sizeof(flat));
            if (obj.binder != nullptr) {
                flat.binder = mObjects.size() + 1;
                memcpy(mData + offset, &flat, sizeof(flat));
            }
            mObjects.push_back({offset, obj.binder});
        }
    }
    return OK;
}

int Parcel::compareData(const Parcel& other) const {
    const size_t size = mDataSize;
    if (size != other.mDataSize) return size < other.mDataSize ? -1 : 1;
    return size == 0 ? 0 : memcmp(mData, other.mData, size);
}

size_t Parcel::objectsCount() const {
    return mObjects.size();
}

void Parcel::freeData() {
    if (mData != mInline) free(mData);
    mData = nullptr;
    mDataSize = 0;
    mDataCapacity = 0;
    mDataPos = 0;
    mObjects.clear();
}

// ---------------------------------------------------------------------------------------------
// Writing

status_t Parcel::reserve(size_t len) {
    if (len > INT32_MAX || mDataPos > INT32_MAX || mDataPos + len > INT32_MAX) return BAD_VALUE;
    const size_t end = mDataPos + len;
    if (end <= mDataCapacity) return OK;
    // Grow by half again, as libbinder does, so a run of small writes reallocates rarely.
    size_t newCapacity = (end * 3) / 2;
    if (newCapacity > INT32_MAX) newCapacity = INT32_MAX;
    return setDataCapacity(newCapacity);
}

void Parcel::finishWrite(size_t len) {
    mDataPos += len;
    if (mDataPos > mDataSize) mDataSize = mDataPos;
}

status_t Parcel::writeAlignedRaw(const void* val, size_t len) {
    status_t err = reserve(len);
    if (err != OK) return err;
    memcpy(mData + mDataPos, val, len);
    finishWrite(len);
    return OK;
}

void* Parcel::writeInplace(size_t len) {
    if (len > INT32_MAX) return nullptr;
    const size_t padded = padSize(len);
    if (reserve(padded) != OK) return nullptr;
    // An empty write into a parcel that has no storage yet has nowhere to point, as in libbinder.
    if (mData == nullptr) return nullptr;
    uint8_t* data = mData + mDataPos;
    memset(data + len, 0, padded - len);
    finishWrite(padded);
    return data;
}

status_t Parcel::write(const void* data, size_t len) {
    if (data == nullptr && len > 0) return BAD_VALUE;
    // Nothing to copy, whether or not the parcel has storage yet.
    if (len == 0) return OK;
    void* d = writeInplace(len);
    if (d == nullptr) return len > INT32_MAX ? BAD_VALUE : NO_MEMORY;
    if (len > 0) memcpy(d, data, len);
    return OK;
}

status_t Parcel::writeUnpadded(const void* data, size_t len) {
    if (data == nullptr && len > 0) return BAD_VALUE;
    status_t err = reserve(len);
    if (err != OK) return err;
    if (len > 0) memcpy(mData + mDataPos, data, len);
    finishWrite(len);
    return OK;
}

status_t Parcel::writeInt32(int32_t val) {
    return writeAlignedRaw(&val, sizeof(val));
}
status_t Parcel::writeUint32(uint32_t val) {
    return writeAlignedRaw(&val, sizeof(val));
}
status_t Parcel::writeInt64(int64_t val) {
    return writeAlignedRaw(&val, sizeof(val));
}
status_t Parcel::writeUint64(uint64_t val) {
    return writeAlignedRaw(&val, sizeof(val));
}
status_t Parcel::writeFloat(float val) {
    return writeAlignedRaw(&val, sizeof(val));
}
status_t Parcel::writeDouble(double val) {
    return writeAlignedRaw(&val, sizeof(val));
}
status_t Parcel::writeBool(bool val) {
    return writeInt32(val ? 1 : 0);
}
status_t Parcel::writeChar(char16_t val) {
    return writeInt32(static_cast<int32_t>(val));
}
status_t Parcel::writeByte(int8_t val) {
    return writeInt32(static_cast<int32_t>(val));
}

status_t Parcel::writeNoException() {
    return writeInt32(0);
}

// ---------------------------------------------------------------------------------------------
// Reading

// Plain reads must not see the bytes of a binder object.
bool Parcel::overlapsObject(size_t pos, size_t len) const {
    for (const Object& obj : mObjects) {
        if (pos < obj.offset + parcelwire::kFlatBinderObjectSize && obj.offset < pos + len) {
            return true;
        }
    }
    return false;
}

status_t Parcel::readAlignedRaw(void* val, size_t len) const {
    if (mDataPos > mDataSize || len > mDataSize - mDataPos) return NOT_ENOUGH_DATA;
    if (overlapsObject(mDataPos, len)) {
        __android_log_print(ANDROID_LOG_ERROR, kLogTag,
                            "Attempt to read from protected data in Parcel %p", this);
        // libbinder still moves past the bytes it refused to read.
        mDataPos += len;
        return PERMISSION_DENIED;
    }
    memcpy(val, mData + mDataPos, len);
    mDataPos += len;
    return OK;
}

const void* Parcel::readInplace(size_t len) const {
    if (len > INT32_MAX) return nullptr;
    const size_t padded = padSize(len);
    if (mDataPos > mDataSize || padded > mDataSize - mDataPos) return nullptr;
    if (overlapsObject(mDataPos, padded)) {
        __android_log_print(ANDROID_LOG_ERROR, kLogTag,
                            "Attempt to read from protected data in Parcel %p", this);
        mDataPos += padded;
        return nullptr;
    }
    const void* data = mData + mDataPos;
    mDataPos += padded;
    return data;
}

status_t Parcel::read(void* outData, size_t len) const {
    if (outData == nullptr && len > 0) return BAD_VALUE;
    const void* d = readInplace(len);
    if (d == nullptr) return NOT_ENOUGH_DATA;
    if (len > 0) memcpy(outData, d, len);
    return OK;
}

namespace {

// Reads one fixed-size item; the value-returning readers give 0 on failure.
template <typename T>
T readOr0(const Parcel& p, status_t (Parcel::*reader)(T*) const) {
    T val{};
    if ((p.*reader)(&val) != OK) return T{};
    return val;
}

}  // namespace

status_t Parcel::readInt32(int32_t* pArg) const {
    if (pArg == nullptr) return BAD_VALUE;
    return readAlignedRaw(pArg, sizeof(*pArg));
}
status_t Parcel::readUint32(uint32_t* pArg) const {
    if (pArg == nullptr) return BAD_VALUE;
    return readAlignedRaw(pArg, sizeof(*pArg));
}
status_t Parcel::readInt64(int64_t* pArg) const {
    if (pArg == nullptr) return BAD_VALUE;
    return readAlignedRaw(pArg, sizeof(*pArg));
}
status_t Parcel::readUint64(uint64_t* pArg) const {
    if (pArg == nullptr) return BAD_VALUE;
    return readAlignedRaw(pArg, sizeof(*pArg));
}
status_t Parcel::readFloat(float* pArg) const {
    if (pArg == nullptr) return BAD_VALUE;
    return readAlignedRaw(pArg, sizeof(*pArg));
}
status_t Parcel::readDouble(double* pArg) const {
    if (pArg == nullptr) return BAD_VALUE;
    return readAlignedRaw(pArg, sizeof(*pArg));
}
status_t Parcel::readBool(bool* pArg) const {
    if (pArg == nullptr) return BAD_VALUE;
    int32_t v = 0;
    status_t err = readInt32(&v);
    *pArg = (v != 0);
    return err;
}
status_t Parcel::readChar(char16_t* pArg) const {
    if (pArg == nullptr) return BAD_VALUE;
    int32_t v = 0;
    status_t err = readInt32(&v);
    *pArg = static_cast<char16_t>(v);
    return err;
}
status_t Parcel::readByte(int8_t* pArg) const {
    if (pArg == nullptr) return BAD_VALUE;
    int32_t v = 0;
    status_t err = readInt32(&v);
    *pArg = static_cast<int8_t>(v);
    return err;
}

int32_t Parcel::readInt32() const {
    return readOr0<int32_t>(*this, &Parcel::readInt32);
}
uint32_t Parcel::readUint32() const {
    return readOr0<uint32_t>(*this, &Parcel::readUint32);
}
int64_t Parcel::readInt64() const {
    return readOr0<int64_t>(*this, &Parcel::readInt64);
}
uint64_t Parcel::readUint64() const {
    return readOr0<uint64_t>(*this, &Parcel::readUint64);
}
float Parcel::readFloat() const {
    return readOr0<float>(*this, &Parcel::readFloat);
}
double Parcel::readDouble() const {
    return readOr0<double>(*this, &Parcel::readDouble);
}
bool Parcel::readBool() const {
    return readOr0<bool>(*this, &Parcel::readBool);
}
char16_t Parcel::readChar() const {
    return readOr0<char16_t>(*this, &Parcel::readChar);
}
int8_t Parcel::readByte() const {
    return readOr0<int8_t>(*this, &Parcel::readByte);
}

int32_t Parcel::readExceptionCode() const {
    binder::Status status;
    status.readFromParcel(*this);
    return status.exceptionCode();
}

// ---------------------------------------------------------------------------------------------
// RPC headers

status_t Parcel::writeInterfaceToken(const String16& interface) {
    return writeInterfaceToken(interface.string(), interface.size());
}

status_t Parcel::writeInterfaceToken(const char16_t* str, size_t len) {
    const IPCThreadState* threadState = IPCThreadState::self();
    status_t err =
        writeInt32(threadState->getStrictModePolicy() | parcelwire::kStrictModePenaltyGather);
    if (err == OK) {
        err = writeInt32(threadState->shouldPropagateWorkSource()
                             ? static_cast<int32_t>(threadState->getCallingWorkSourceUid())
                             : IPCThreadState::kUnsetWorkSource);
    }
    if (err == OK) err = writeInt32(parcelwire::kHeader);
    if (err == OK) err = writeString16(str, len);
    return err;
}

bool Parcel::enforceInterface(const String16& interface, IPCThreadState* threadState) const {
    return enforceInterface(interface.string(), interface.size(), threadState);
}

bool Parcel::enforceInterface(const char16_t* interface, size_t len,
                              IPCThreadState* threadState) const {
    if (threadState == nullptr) threadState = IPCThreadState::self();
    const int32_t strictPolicy = readInt32();
    // A one-way call has no caller waiting to be told about strict-mode violations.
    if ((threadState->getLastTransactionBinderFlags() & IBinder::FLAG_ONEWAY) != 0) {
        threadState->setStrictModePolicy(0);
    } else {
        threadState->setStrictModePolicy(strictPolicy);
    }
    const int32_t workSource = readInt32();
    threadState->setCallingWorkSourceUidWithoutPropagation(static_cast<uid_t>(workSource));
    const int32_t header = readInt32();
    if (header != parcelwire::kHeader) {
        __android_log_print(ANDROID_LOG_ERROR, kLogTag,
                            "Expecting header 0x%x but found 0x%x. Mixing copies of libbinder?",
                            static_cast<uint32_t>(parcelwire::kHeader),
                            static_cast<uint32_t>(header));
        return false;
    }
    size_t parcelLen = 0;
    const char16_t* parcelInterface = readString16Inplace(&parcelLen);
    if (parcelInterface != nullptr && len == parcelLen &&
        (len == 0 || (interface != nullptr &&
                      memcmp(parcelInterface, interface, len * sizeof(char16_t)) == 0))) {
        return true;
    }
    const String8 expected = interface != nullptr ? String8(interface, len) : String8();
    const String8 found =
        parcelInterface != nullptr ? String8(parcelInterface, parcelLen) : String8();
    __android_log_print(ANDROID_LOG_WARN, kLogTag,
                        "**** enforceInterface() expected '%s' but read '%s'", expected.string(),
                        found.string());
    return false;
}

bool Parcel::checkInterface(IBinder*) const {
    return true;
}

binder::Status Parcel::enforceNoDataAvail() const {
    const size_t avail = dataAvail();
    if (avail == 0) return binder::Status::ok();
    return binder::Status::fromExceptionCode(
        binder::Status::EX_BAD_PARCELABLE,
        String8::format("Parcel data not fully consumed, unread size: %zu", avail));
}

}  // namespace android

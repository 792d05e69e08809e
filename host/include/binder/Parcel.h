/*
 * Host stand-in of libbinder's Parcel: a flat buffer with the kernel binder's wire format
 * (little-endian, every item padded with zeros to 4 bytes) and an object table for binders.
 *
 * A host cannot pass binder pointers through a kernel, so a strong binder is written as a
 * flat_binder_object-shaped record whose binder field indexes the parcel's own object table, and
 * reading it back looks the binder up there. Reads never go past the end of the data: a short
 * read of one item fails with NOT_ENOUGH_DATA (or yields zero, empty or null) and leaves the
 * position where it was.
 */
#ifndef ANDROID_PARCEL_H
#define ANDROID_PARCEL_H

#include <binder/IInterface.h>
#include <binder/Parcelable.h>
#include <stddef.h>
#include <stdint.h>
#include <utils/Errors.h>
#include <utils/RefBase.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace android {

class IBinder;
class IPCThreadState;

namespace binder {
class Status;
}

class Parcel {
public:
    class ReadableBlob;
    class WritableBlob;

    Parcel();
    ~Parcel();

    const uint8_t* data() const;
    size_t dataSize() const;
    size_t dataAvail() const;
    size_t dataPosition() const;
    size_t dataCapacity() const;

    status_t setDataSize(size_t size);
    // Moves the read/write position; a position past the data makes every read fail.
    void setDataPosition(size_t pos) const;
    status_t setDataCapacity(size_t size);
    // Replaces the contents with a copy of `buffer` (no binder objects) and rewinds.
    status_t setData(const uint8_t* buffer, size_t len);
    // Appends `len` bytes of `parcel` from `start`, binder objects included, at the end of this
    // parcel's data.
    status_t appendFrom(const Parcel* parcel, size_t start, size_t len);

    int compareData(const Parcel& other) const;

    bool hasFileDescriptors() const { return false; }
    // Number of binder objects written into this parcel.
    size_t objectsCount() const;

    // Writes the RPC header (strict-mode policy, work source, "SYST" header) and `interface`.
    status_t writeInterfaceToken(const String16& interface);
    status_t writeInterfaceToken(const char16_t* str, size_t len);

    // Reads an RPC header and checks it names `interface`. False on a wrong header word, another
    // descriptor or truncated data.
    bool enforceInterface(const String16& interface, IPCThreadState* threadState = nullptr) const;
    bool enforceInterface(const char16_t* interface, size_t len,
                          IPCThreadState* threadState = nullptr) const;
    bool checkInterface(IBinder* binder) const;

    // EX_BAD_PARCELABLE when data is left unread after the position.
    binder::Status enforceNoDataAvail() const;

    void freeData();

    status_t write(const void* data, size_t len);
    // Reserves `len` bytes (padded, padding zeroed) and returns them, or null.
    void* writeInplace(size_t len);
    status_t writeUnpadded(const void* data, size_t len);
    status_t writeInt32(int32_t val);
    status_t writeUint32(uint32_t val);
    status_t writeInt64(int64_t val);
    status_t writeUint64(uint64_t val);
    status_t writeFloat(float val);
    status_t writeDouble(double val);
    status_t writeBool(bool val);
    status_t writeChar(char16_t val);
    status_t writeByte(int8_t val);
    status_t writeCString(const char* str);
    status_t writeString8(const String8& str);
    status_t writeString8(const char* str, size_t len);
    status_t writeString16(const String16& str);
    status_t writeString16(const std::optional<String16>& str);
    status_t writeString16(const std::unique_ptr<String16>& str);
    status_t writeString16(const char16_t* str, size_t len);
    status_t writeUtf8AsUtf16(const std::string& str);
    status_t writeUtf8AsUtf16(const std::optional<std::string>& str);
    status_t writeInt32Array(size_t len, const int32_t* val);
    status_t writeByteArray(size_t len, const uint8_t* val);
    status_t writeByteVector(const std::vector<int8_t>& val);
    status_t writeByteVector(const std::vector<uint8_t>& val);
    status_t writeInt32Vector(const std::vector<int32_t>& val);
    status_t writeInt64Vector(const std::vector<int64_t>& val);
    status_t writeString16Vector(const std::vector<String16>& val);
    status_t writeUtf8VectorAsUtf16Vector(const std::vector<std::string>& val);

    status_t writeStrongBinder(const sp<IBinder>& val);
    // An interface is written as its binder.
    template <typename T>
    auto writeStrongBinder(const sp<T>& val) -> decltype(T::asBinder(val), status_t()) {
        return writeStrongBinder(T::asBinder(val));
    }

    // A present parcelable is preceded by int32 1.
    status_t writeParcelable(const Parcelable& parcelable);
    template <typename T>
    status_t writeParcelableVector(const std::vector<T>& val);

    // The reply header of a call that raised no exception: int32 0.
    status_t writeNoException();

    status_t read(void* outData, size_t len) const;
    // The next `len` bytes (position moves past their padding), or null if not all there.
    const void* readInplace(size_t len) const;
    int32_t readInt32() const;
    status_t readInt32(int32_t* pArg) const;
    uint32_t readUint32() const;
    status_t readUint32(uint32_t* pArg) const;
    int64_t readInt64() const;
    status_t readInt64(int64_t* pArg) const;
    uint64_t readUint64() const;
    status_t readUint64(uint64_t* pArg) const;
    float readFloat() const;
    status_t readFloat(float* pArg) const;
    double readDouble() const;
    status_t readDouble(double* pArg) const;
    bool readBool() const;
    status_t readBool(bool* pArg) const;
    char16_t readChar() const;
    status_t readChar(char16_t* pArg) const;
    int8_t readByte() const;
    status_t readByte(int8_t* pArg) const;

    const char* readCString() const;
    String8 readString8() const;
    status_t readString8(String8* pArg) const;
    const char* readString8Inplace(size_t* outLen) const;
    String16 readString16() const;
    // UNEXPECTED_NULL (and an empty string) for a null string.
    status_t readString16(String16* pArg) const;
    // A null string reads as nullopt.
    status_t readString16(std::optional<String16>* pArg) const;
    status_t readString16(std::unique_ptr<String16>* pArg) const;
    const char16_t* readString16Inplace(size_t* outLen) const;
    status_t readUtf8FromUtf16(std::string* str) const;
    status_t readUtf8FromUtf16(std::optional<std::string>* str) const;

    status_t readByteVector(std::vector<int8_t>* val) const;
    status_t readByteVector(std::vector<uint8_t>* val) const;
    status_t readInt32Vector(std::vector<int32_t>* val) const;
    status_t readInt64Vector(std::vector<int64_t>* val) const;
    status_t readString16Vector(std::vector<String16>* val) const;
    status_t readUtf8VectorFromUtf16Vector(std::vector<std::string>* val) const;

    // Null on a null binder or any error.
    sp<IBinder> readStrongBinder() const;
    // UNEXPECTED_NULL for a null binder.
    status_t readStrongBinder(sp<IBinder>* val) const;
    status_t readNullableStrongBinder(sp<IBinder>* val) const;
    template <typename T>
    status_t readStrongBinder(sp<T>* val) const;
    template <typename T>
    status_t readNullableStrongBinder(sp<T>* val) const;

    status_t readParcelable(Parcelable* parcelable) const;
    template <typename T>
    status_t readParcelableVector(std::vector<T>* val) const;

    // The exception code of a reply (0 when none); the message and error code are skipped.
    int32_t readExceptionCode() const;

    class Blob {
    public:
        Blob();
        ~Blob();

        void clear();
        void release();
        inline size_t size() const { return mSize; }
        inline int fd() const { return mFd; }
        inline bool isMutable() const { return mMutable; }

    protected:
        void init(int fd, void* data, size_t size, bool isMutable);

        int mFd;
        void* mData;
        size_t mSize;
        bool mMutable;
    };

    class ReadableBlob : public Blob {
        friend class Parcel;

    public:
        inline const void* data() const { return mData; }
        inline void* mutableData() { return isMutable() ? mData : nullptr; }
    };

    class WritableBlob : public Blob {
        friend class Parcel;

    public:
        inline void* data() { return mData; }
    };

    // Blobs live in the parcel's own data (no shared memory on the host). A written blob's
    // pointer stays valid across a few more small writes (a trailer word or two) and until the
    // parcel is freed or grows past that.
    status_t writeBlob(size_t len, bool mutableCopy, WritableBlob* outBlob);
    status_t readBlob(size_t len, ReadableBlob* outBlob) const;

private:
    Parcel(const Parcel&) = delete;
    Parcel& operator=(const Parcel&) = delete;

    struct Object {
        size_t offset;
        sp<IBinder> binder;
    };

    // Makes room for `len` more bytes at the position; BAD_VALUE past INT32_MAX, NO_MEMORY.
    status_t reserve(size_t len);
    // Moves the position past `len` written bytes, growing the data size to it.
    void finishWrite(size_t len);
    status_t writeAlignedRaw(const void* val, size_t len);
    status_t readAlignedRaw(void* val, size_t len) const;
    status_t writeString16Raw(const char16_t* str, int32_t len);
    const char16_t* readString16Raw(size_t* outLen, bool* isNull) const;
    status_t readNullableBinderAt(sp<IBinder>* val) const;
    bool overlapsObject(size_t pos, size_t len) const;

    template <typename T>
    status_t writeVector(const std::vector<T>& val, status_t (Parcel::*writeOne)(T));
    template <typename T>
    status_t readVector(std::vector<T>* val, status_t (Parcel::*readOne)(T*) const) const;
    // Reads a vector's element count and checks that many items of at least `minItemSize`
    // bytes can follow; -1 (null vector) is reported as *isNull.
    status_t readVectorSize(size_t minItemSize, size_t* outSize, bool* isNull) const;

    // Payloads up to this size (an RPC header and a few words) live in mInline, so writing and
    // sending a small one-way call allocates nothing, as a call made from a signal handler must.
    static constexpr size_t kInlineCapacity = 128;

    uint8_t* mData;
    size_t mDataSize;
    size_t mDataCapacity;
    mutable size_t mDataPos;
    std::vector<Object> mObjects;
    uint8_t mInline[kInlineCapacity];
};

// ---------------------------------------------------------------------------

template <typename T>
status_t Parcel::readStrongBinder(sp<T>* val) const {
    sp<IBinder> tmp;
    status_t ret = readStrongBinder(&tmp);
    if (ret == OK) {
        *val = interface_cast<T>(tmp);
        if (*val == nullptr) return UNKNOWN_ERROR;
    }
    return ret;
}

template <typename T>
status_t Parcel::readNullableStrongBinder(sp<T>* val) const {
    sp<IBinder> tmp;
    status_t ret = readNullableStrongBinder(&tmp);
    if (ret == OK) {
        *val = interface_cast<T>(tmp);
        if (*val == nullptr && tmp != nullptr) ret = UNKNOWN_ERROR;
    }
    return ret;
}

template <typename T>
status_t Parcel::writeParcelableVector(const std::vector<T>& val) {
    if (val.size() > INT32_MAX) return BAD_VALUE;
    status_t status = writeInt32(static_cast<int32_t>(val.size()));
    for (size_t i = 0; status == OK && i < val.size(); ++i) {
        status = writeParcelable(val[i]);
    }
    return status;
}

template <typename T>
status_t Parcel::readParcelableVector(std::vector<T>* val) const {
    if (val == nullptr) return BAD_VALUE;
    const size_t start = dataPosition();
    size_t size = 0;
    bool isNull = false;
    // Each present item takes at least its int32 presence marker.
    status_t status = readVectorSize(sizeof(int32_t), &size, &isNull);
    if (status != OK) return status;
    if (isNull) {
        setDataPosition(start);
        return UNEXPECTED_NULL;
    }
    std::vector<T> out(size);
    for (size_t i = 0; i < size; ++i) {
        status = readParcelable(&out[i]);
        if (status != OK) {
            setDataPosition(start);
            return status;
        }
    }
    *val = std::move(out);
    return OK;
}

}  // namespace android

#endif  // ANDROID_PARCEL_H

/*
 * Parcel: strings (UTF-16, UTF-8, C strings), vectors and parcelables.
 */
#include <binder/Parcel.h>
#include <string.h>
#include <utils/Unicode.h>

#include "ParcelWire.h"

namespace android {

// ---------------------------------------------------------------------------------------------
// UTF-16 strings: int32 length in code units, the units and a 0 unit, padded; -1 for null.

status_t Parcel::writeString16Raw(const char16_t* str, int32_t len) {
    const size_t bytes = (static_cast<size_t>(len) + 1) * sizeof(char16_t);
    const size_t start = mDataPos;
    status_t err = writeInt32(len);
    if (err != OK) return err;
    char16_t* data = static_cast<char16_t*>(writeInplace(bytes));
    if (data == nullptr) {
        mDataPos = start;
        return NO_MEMORY;
    }
    if (len > 0) memcpy(data, str, static_cast<size_t>(len) * sizeof(char16_t));
    data[len] = 0;
    return OK;
}

status_t Parcel::writeString16(const char16_t* str, size_t len) {
    if (str == nullptr) return writeInt32(-1);
    // The byte count, terminator included, must fit an int32.
    if (len >= INT32_MAX / sizeof(char16_t)) return BAD_VALUE;
    return writeString16Raw(str, static_cast<int32_t>(len));
}

status_t Parcel::writeString16(const String16& str) {
    return writeString16(str.string(), str.size());
}

status_t Parcel::writeString16(const std::optional<String16>& str) {
    if (!str) return writeInt32(-1);
    return writeString16(*str);
}

status_t Parcel::writeString16(const std::unique_ptr<String16>& str) {
    if (!str) return writeInt32(-1);
    return writeString16(*str);
}

const char16_t* Parcel::readString16Raw(size_t* outLen, bool* isNull) const {
    *outLen = 0;
    *isNull = false;
    int32_t size = 0;
    if (readInt32(&size) != OK) return nullptr;
    if (size == -1) {
        *isNull = true;
        return nullptr;
    }
    // As in libbinder, a malformed string is not given back: the length stays read, and so do
    // the units when they were all there (a string without its terminator).
    if (size >= 0 && size < INT32_MAX) {
        const char16_t* str = static_cast<const char16_t*>(
            readInplace((static_cast<size_t>(size) + 1) * sizeof(char16_t)));
        if (str != nullptr && str[size] == 0) {
            *outLen = static_cast<size_t>(size);
            return str;
        }
    }
    return nullptr;
}

const char16_t* Parcel::readString16Inplace(size_t* outLen) const {
    size_t len = 0;
    bool isNull = false;
    const char16_t* str = readString16Raw(&len, &isNull);
    if (outLen != nullptr) *outLen = len;
    return str;
}

status_t Parcel::readString16(String16* pArg) const {
    if (pArg == nullptr) return BAD_VALUE;
    size_t len = 0;
    const char16_t* str = readString16Inplace(&len);
    if (str == nullptr) {
        *pArg = String16();
        return UNEXPECTED_NULL;
    }
    return pArg->setTo(str, len);
}

String16 Parcel::readString16() const {
    String16 str;
    if (readString16(&str) != OK) return String16();
    return str;
}

status_t Parcel::readString16(std::optional<String16>* pArg) const {
    if (pArg == nullptr) return BAD_VALUE;
    pArg->reset();
    const size_t start = mDataPos;
    int32_t size = 0;
    status_t status = readInt32(&size);
    // A negative length is a null string (libbinder accepts any negative value).
    if (status != OK || size < 0) return status;
    mDataPos = start;
    pArg->emplace();
    status = readString16(&**pArg);
    if (status != OK) pArg->reset();
    return status;
}

status_t Parcel::readString16(std::unique_ptr<String16>* pArg) const {
    if (pArg == nullptr) return BAD_VALUE;
    std::optional<String16> str;
    status_t status = readString16(&str);
    if (str) {
        pArg->reset(new String16(*str));
    } else {
        pArg->reset();
    }
    return status;
}

// ---------------------------------------------------------------------------------------------
// UTF-8 strings carried as UTF-16

status_t Parcel::writeUtf8AsUtf16(const std::string& str) {
    const uint8_t* src = reinterpret_cast<const uint8_t*>(str.data());
    const ssize_t utf16Len = utf8_to_utf16_length(src, str.size());
    if (utf16Len < 0 || utf16Len >= INT32_MAX / 2) return BAD_VALUE;
    std::vector<char16_t> units(static_cast<size_t>(utf16Len) + 1);
    utf8_to_utf16(src, str.size(), units.data(), units.size());
    return writeString16(units.data(), static_cast<size_t>(utf16Len));
}

status_t Parcel::writeUtf8AsUtf16(const std::optional<std::string>& str) {
    if (!str) return writeInt32(-1);
    return writeUtf8AsUtf16(*str);
}

status_t Parcel::readUtf8FromUtf16(std::string* str) const {
    if (str == nullptr) return BAD_VALUE;
    size_t len = 0;
    const char16_t* src = readString16Inplace(&len);
    if (src == nullptr) return UNEXPECTED_NULL;
    if (len == 0) {
        str->clear();
        return OK;
    }
    const ssize_t utf8Len = utf16_to_utf8_length(src, len);
    if (utf8Len < 0) return BAD_VALUE;
    std::vector<char> buf(static_cast<size_t>(utf8Len) + 1);
    utf16_to_utf8(src, len, buf.data(), buf.size());
    str->assign(buf.data(), static_cast<size_t>(utf8Len));
    return OK;
}

status_t Parcel::readUtf8FromUtf16(std::optional<std::string>* str) const {
    if (str == nullptr) return BAD_VALUE;
    str->reset();
    const size_t start = mDataPos;
    int32_t size = 0;
    status_t status = readInt32(&size);
    if (status != OK || size < 0) return status;
    mDataPos = start;
    str->emplace();
    status = readUtf8FromUtf16(&**str);
    if (status != OK) str->reset();
    return status;
}

// ---------------------------------------------------------------------------------------------
// 8-bit strings: int32 length in bytes, the bytes and a NUL, padded; -1 for null.

status_t Parcel::writeString8(const String8& str) {
    return writeString8(str.string(), str.size());
}

status_t Parcel::writeString8(const char* str, size_t len) {
    if (str == nullptr) return writeInt32(-1);
    if (len >= INT32_MAX) return BAD_VALUE;
    const size_t start = mDataPos;
    status_t err = writeInt32(static_cast<int32_t>(len));
    if (err != OK) return err;
    char* data = static_cast<char*>(writeInplace(len + 1));
    if (data == nullptr) {
        mDataPos = start;
        return NO_MEMORY;
    }
    if (len > 0) memcpy(data, str, len);
    data[len] = 0;
    return OK;
}

const char* Parcel::readString8Inplace(size_t* outLen) const {
    if (outLen != nullptr) *outLen = 0;
    int32_t size = 0;
    if (readInt32(&size) != OK) return nullptr;
    // A null or malformed string stays read, as in libbinder (see readString16Raw).
    if (size >= 0 && size < INT32_MAX) {
        const char* str = static_cast<const char*>(readInplace(static_cast<size_t>(size) + 1));
        if (str != nullptr && str[size] == 0) {
            if (outLen != nullptr) *outLen = static_cast<size_t>(size);
            return str;
        }
    }
    return nullptr;
}

status_t Parcel::readString8(String8* pArg) const {
    if (pArg == nullptr) return BAD_VALUE;
    size_t len = 0;
    const char* str = readString8Inplace(&len);
    if (str == nullptr) {
        *pArg = String8();
        return UNEXPECTED_NULL;
    }
    pArg->setTo(str, len);
    return OK;
}

String8 Parcel::readString8() const {
    String8 str;
    if (readString8(&str) != OK) return String8();
    return str;
}

status_t Parcel::writeCString(const char* str) {
    if (str == nullptr) return BAD_VALUE;
    return write(str, strlen(str) + 1);
}

const char* Parcel::readCString() const {
    if (mDataPos >= mDataSize) return nullptr;
    const size_t avail = mDataSize - mDataPos;
    const char* str = reinterpret_cast<const char*>(mData + mDataPos);
    const void* eos = memchr(str, 0, avail);
    if (eos == nullptr) return nullptr;
    const size_t len = static_cast<const char*>(eos) - str;
    const size_t padded = parcelwire::padSize(len + 1);
    mDataPos += padded < avail ? padded : avail;
    return str;
}

// ---------------------------------------------------------------------------------------------
// Arrays and vectors: int32 element count (-1 for null), then the elements.

status_t Parcel::writeInt32Array(size_t len, const int32_t* val) {
    if (val == nullptr) return writeInt32(-1);
    if (len > INT32_MAX / sizeof(int32_t)) return BAD_VALUE;
    status_t err = writeInt32(static_cast<int32_t>(len));
    if (err == OK) err = write(val, len * sizeof(int32_t));
    return err;
}

status_t Parcel::writeByteArray(size_t len, const uint8_t* val) {
    if (val == nullptr) return writeInt32(-1);
    if (len > INT32_MAX) return BAD_VALUE;
    status_t err = writeInt32(static_cast<int32_t>(len));
    if (err == OK) err = write(val, len);
    return err;
}

status_t Parcel::writeByteVector(const std::vector<int8_t>& val) {
    return writeByteArray(val.size(), reinterpret_cast<const uint8_t*>(val.data()));
}

status_t Parcel::writeByteVector(const std::vector<uint8_t>& val) {
    return writeByteArray(val.size(), val.data());
}

template <typename T>
status_t Parcel::writeVector(const std::vector<T>& val, status_t (Parcel::*writeOne)(T)) {
    if (val.size() > INT32_MAX) return BAD_VALUE;
    status_t err = writeInt32(static_cast<int32_t>(val.size()));
    for (size_t i = 0; err == OK && i < val.size(); ++i) err = (this->*writeOne)(val[i]);
    return err;
}

status_t Parcel::writeInt32Vector(const std::vector<int32_t>& val) {
    return writeVector<int32_t>(val, &Parcel::writeInt32);
}

status_t Parcel::writeInt64Vector(const std::vector<int64_t>& val) {
    return writeVector<int64_t>(val, &Parcel::writeInt64);
}

status_t Parcel::writeString16Vector(const std::vector<String16>& val) {
    if (val.size() > INT32_MAX) return BAD_VALUE;
    status_t err = writeInt32(static_cast<int32_t>(val.size()));
    for (size_t i = 0; err == OK && i < val.size(); ++i) err = writeString16(val[i]);
    return err;
}

status_t Parcel::writeUtf8VectorAsUtf16Vector(const std::vector<std::string>& val) {
    if (val.size() > INT32_MAX) return BAD_VALUE;
    status_t err = writeInt32(static_cast<int32_t>(val.size()));
    for (size_t i = 0; err == OK && i < val.size(); ++i) err = writeUtf8AsUtf16(val[i]);
    return err;
}

status_t Parcel::readVectorSize(size_t minItemSize, size_t* outSize, bool* isNull) const {
    *outSize = 0;
    *isNull = false;
    const size_t start = mDataPos;
    int32_t size = 0;
    status_t err = readInt32(&size);
    if (err != OK) return err;
    if (size == -1) {
        *isNull = true;
        return OK;
    }
    // A count the remaining data cannot hold is refused before anything is allocated.
    if (size < 0 || static_cast<size_t>(size) > dataAvail() / (minItemSize ? minItemSize : 1)) {
        mDataPos = start;
        return BAD_VALUE;
    }
    *outSize = static_cast<size_t>(size);
    return OK;
}

template <typename T>
status_t Parcel::readVector(std::vector<T>* val, status_t (Parcel::*readOne)(T*) const) const {
    if (val == nullptr) return BAD_VALUE;
    const size_t start = mDataPos;
    size_t size = 0;
    bool isNull = false;
    status_t err = readVectorSize(sizeof(int32_t), &size, &isNull);
    if (err != OK) return err;
    if (isNull) return UNEXPECTED_NULL;
    std::vector<T> out(size);
    for (size_t i = 0; i < size; ++i) {
        err = (this->*readOne)(&out[i]);
        if (err != OK) {
            mDataPos = start;
            return err;
        }
    }
    *val = std::move(out);
    return OK;
}

status_t Parcel::readInt32Vector(std::vector<int32_t>* val) const {
    return readVector<int32_t>(val, &Parcel::readInt32);
}

status_t Parcel::readInt64Vector(std::vector<int64_t>* val) const {
    return readVector<int64_t>(val, &Parcel::readInt64);
}

status_t Parcel::readString16Vector(std::vector<String16>* val) const {
    return readVector<String16>(val, &Parcel::readString16);
}

status_t Parcel::readUtf8VectorFromUtf16Vector(std::vector<std::string>* val) const {
    return readVector<std::string>(val, &Parcel::readUtf8FromUtf16);
}

template <typename T>
static status_t readBytes(const Parcel& p, std::vector<T>* val) {
    if (val == nullptr) return BAD_VALUE;
    const size_t start = p.dataPosition();
    int32_t size = 0;
    status_t err = p.readInt32(&size);
    if (err != OK) return err;
    if (size == -1) return UNEXPECTED_NULL;
    const void* data = size >= 0 ? p.readInplace(static_cast<size_t>(size)) : nullptr;
    if (data == nullptr) {
        p.setDataPosition(start);
        return BAD_VALUE;
    }
    const T* bytes = static_cast<const T*>(data);
    val->assign(bytes, bytes + size);
    return OK;
}

status_t Parcel::readByteVector(std::vector<int8_t>* val) const {
    return readBytes(*this, val);
}

status_t Parcel::readByteVector(std::vector<uint8_t>* val) const {
    return readBytes(*this, val);
}

// ---------------------------------------------------------------------------------------------
// Parcelables: int32 1 (present) then the object; 0 means null.

status_t Parcel::writeParcelable(const Parcelable& parcelable) {
    status_t err = writeInt32(1);
    if (err != OK) return err;
    return parcelable.writeToParcel(this);
}

status_t Parcel::readParcelable(Parcelable* parcelable) const {
    if (parcelable == nullptr) return BAD_VALUE;
    int32_t present = 0;
    status_t err = readInt32(&present);
    if (err != OK) return err;
    if (present == 0) return UNEXPECTED_NULL;
    return parcelable->readFromParcel(this);
}

}  // namespace android

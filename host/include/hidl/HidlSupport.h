/*
 * Host stand-in of libhidl's <hidl/HidlSupport.h>: the value types of generated HIDL code
 * (hidl_string, hidl_vec, hidl_array) and hidl_death_recipient.
 *
 * The types behave like libhidl's for everything a client does with them; their memory layout
 * is the host's own (nothing here is sent over a transport). hidl_handle and hidl_memory are
 * left out: no interface used on the host passes them.
 */
#ifndef ANDROID_HIDL_SUPPORT_H
#define ANDROID_HIDL_SUPPORT_H

#include <hidl/Status.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include <utils/Errors.h>
#include <utils/RefBase.h>
#include <utils/StrongPointer.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <ostream>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace android {

namespace hidl {
namespace base {
namespace V1_0 {
struct IBase;
}  // namespace V1_0
}  // namespace base
}  // namespace hidl

namespace hardware {

// Told when a service it was linked to (IBase::linkToDeath) dies.
struct hidl_death_recipient : public virtual RefBase {
    virtual void serviceDied(uint64_t cookie,
                             const ::android::wp<::android::hidl::base::V1_0::IBase>& who) = 0;
};

struct hidl_string {
    hidl_string() = default;
    hidl_string(const hidl_string&) = default;
    hidl_string(hidl_string&&) noexcept = default;
    // nullptr gives an empty string.
    hidl_string(const char* s) : mText(s ? s : "") {}  // NOLINT: implicit like libhidl's
    hidl_string(const char* s, size_t length) : mText(s ? std::string(s, length) : "") {}
    hidl_string(const std::string& s) : mText(s) {}  // NOLINT

    hidl_string& operator=(const hidl_string&) = default;
    hidl_string& operator=(hidl_string&&) noexcept = default;
    hidl_string& operator=(const char* s) {
        mText = s ? s : "";
        return *this;
    }
    hidl_string& operator=(const std::string& s) {
        mText = s;
        return *this;
    }

    const char* c_str() const { return mText.c_str(); }
    size_t size() const { return mText.size(); }
    bool empty() const { return mText.empty(); }
    operator std::string() const { return mText; }  // NOLINT
    void clear() { mText.clear(); }
    // libhidl references the caller's characters; the host copies them, which callers cannot tell.
    void setToExternal(const char* data, size_t size) {
        mText.assign(data ? data : "", data ? size : 0);
    }

private:
    std::string mText;
};

#define HOST_HIDL_STRING_OPERATOR(OP)                                     \
    inline bool operator OP(const hidl_string& a, const hidl_string& b) { \
        return strcmp(a.c_str(), b.c_str()) OP 0;                         \
    }                                                                     \
    inline bool operator OP(const hidl_string& a, const char* b) {        \
        return strcmp(a.c_str(), b ? b : "") OP 0;                        \
    }                                                                     \
    inline bool operator OP(const char* a, const hidl_string& b) {        \
        return strcmp(a ? a : "", b.c_str()) OP 0;                        \
    }
HOST_HIDL_STRING_OPERATOR(==)
HOST_HIDL_STRING_OPERATOR(!=)
HOST_HIDL_STRING_OPERATOR(<)
HOST_HIDL_STRING_OPERATOR(<=)
HOST_HIDL_STRING_OPERATOR(>)
HOST_HIDL_STRING_OPERATOR(>=)
#undef HOST_HIDL_STRING_OPERATOR

inline std::ostream& operator<<(std::ostream& os, const hidl_string& s) {
    return os << s.c_str();
}

template <typename T>
struct hidl_vec {
    hidl_vec() = default;
    hidl_vec(size_t size) { resize(size); }  // NOLINT: implicit like libhidl's
    hidl_vec(const hidl_vec& other) { assign(other.mBuffer, other.mSize); }
    hidl_vec(hidl_vec&& other) noexcept { swap(other); }
    hidl_vec(std::initializer_list<T> list) { assign(list.begin(), list.size()); }
    hidl_vec(const std::vector<T>& other) { assignRange(other.begin(), other.end()); }  // NOLINT
    template <typename InputIterator,
              typename Category = typename std::iterator_traits<InputIterator>::iterator_category,
              typename = typename std::enable_if<
                  std::is_convertible<Category, std::input_iterator_tag>::value>::type>
    hidl_vec(InputIterator first, InputIterator last) {
        assignRange(first, last);
    }
    ~hidl_vec() { delete[] mBuffer; }

    hidl_vec& operator=(const hidl_vec& other) {
        if (this != &other) assign(other.mBuffer, other.mSize);
        return *this;
    }
    hidl_vec& operator=(hidl_vec&& other) noexcept {
        if (this != &other) {
            hidl_vec empty;
            swap(empty);
            swap(other);
        }
        return *this;
    }
    hidl_vec& operator=(const std::vector<T>& other) {
        assignRange(other.begin(), other.end());
        return *this;
    }

    operator std::vector<T>() const { return std::vector<T>(begin(), end()); }  // NOLINT

    bool operator==(const hidl_vec& other) const {
        return mSize == other.mSize && std::equal(begin(), end(), other.begin());
    }
    bool operator!=(const hidl_vec& other) const { return !(*this == other); }

    T* data() { return mBuffer; }
    const T* data() const { return mBuffer; }
    size_t size() const { return mSize; }
    T& operator[](size_t index) { return mBuffer[index]; }
    const T& operator[](size_t index) const { return mBuffer[index]; }

    // New elements are value-initialised (libhidl leaves primitives unset).
    void resize(size_t size) {
        T* next = size ? new T[size]() : nullptr;
        for (size_t i = 0; i < std::min(size, mSize); ++i) next[i] = std::move(mBuffer[i]);
        delete[] mBuffer;
        mBuffer = next;
        mSize = size;
    }

    // libhidl may reference external memory; the host always copies it.
    void setToExternal(T* data, size_t size, bool shouldOwn = false) {
        assign(data, data ? size : 0);
        if (shouldOwn) delete[] data;
    }

    T* begin() { return mBuffer; }
    T* end() { return mBuffer + mSize; }
    const T* begin() const { return mBuffer; }
    const T* end() const { return mBuffer + mSize; }

private:
    void swap(hidl_vec& other) noexcept {
        std::swap(mBuffer, other.mBuffer);
        std::swap(mSize, other.mSize);
    }
    void assign(const T* src, size_t n) {
        T* next = n ? new T[n] : nullptr;
        for (size_t i = 0; i < n; ++i) next[i] = src[i];
        delete[] mBuffer;
        mBuffer = next;
        mSize = n;
    }
    template <typename It>
    void assignRange(It first, It last) {
        std::vector<T> copy;
        for (; first != last; ++first) copy.push_back(static_cast<T>(*first));
        T* next = copy.empty() ? nullptr : new T[copy.size()];
        for (size_t i = 0; i < copy.size(); ++i) next[i] = std::move(copy[i]);
        delete[] mBuffer;
        mBuffer = next;
        mSize = copy.size();
    }

    T* mBuffer = nullptr;
    size_t mSize = 0;
};

// A fixed-size array, one or more dimensions; trivially constructible like a C array, so it can
// sit in the unions of generated types (sensors' EventPayload holds a hidl_array<float, 16>).
template <typename T, size_t SIZE1, size_t... SIZES>
struct hidl_array {
    using row_type = hidl_array<T, SIZES...>;

    row_type& operator[](size_t index) { return mRows[index]; }
    const row_type& operator[](size_t index) const { return mRows[index]; }

    T* data() { return mRows[0].data(); }
    const T* data() const { return mRows[0].data(); }

    static constexpr std::tuple<size_t, decltype(SIZES)...> size() {
        return std::tuple<size_t, decltype(SIZES)...>(SIZE1, SIZES...);
    }

    bool operator==(const hidl_array& other) const {
        for (size_t i = 0; i < SIZE1; ++i) {
            if (!(mRows[i] == other.mRows[i])) return false;
        }
        return true;
    }
    bool operator!=(const hidl_array& other) const { return !(*this == other); }

    row_type mRows[SIZE1];
};

template <typename T, size_t SIZE1>
struct hidl_array<T, SIZE1> {
    hidl_array() = default;
    hidl_array(const T (&in)[SIZE1]) {  // NOLINT: implicit like libhidl's
        for (size_t i = 0; i < SIZE1; ++i) mBuffer[i] = in[i];
    }

    T& operator[](size_t index) { return mBuffer[index]; }
    const T& operator[](size_t index) const { return mBuffer[index]; }

    T* data() { return mBuffer; }
    const T* data() const { return mBuffer; }
    static constexpr size_t size() { return SIZE1; }

    bool operator==(const hidl_array& other) const {
        return std::equal(mBuffer, mBuffer + SIZE1, other.mBuffer);
    }
    bool operator!=(const hidl_array& other) const { return !(*this == other); }

    T mBuffer[SIZE1];
};

}  // namespace hardware
}  // namespace android

#endif  // ANDROID_HIDL_SUPPORT_H

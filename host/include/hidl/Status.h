/*
 * Host stand-in of libhidl's <hidl/Status.h>: the transport status of a HIDL call and Return<T>,
 * the value a generated method gives back.
 *
 * As on a phone, a transport failure must be looked at: reading the value of a failed Return,
 * or destroying a failed Return whose isOk() was never asked, logs a fatal error and aborts.
 * Host services only fail that way after the test or the simulator has killed them.
 */
#ifndef ANDROID_HARDWARE_BINDER_STATUS_H
#define ANDROID_HARDWARE_BINDER_STATUS_H

#include <stdint.h>
#include <utils/Errors.h>
#include <utils/StrongPointer.h>

#include <ostream>
#include <string>
#include <utility>

namespace android {
namespace hardware {

class Status final {
public:
    enum Exception {
        EX_NONE = 0,
        EX_SECURITY = -1,
        EX_BAD_PARCELABLE = -2,
        EX_ILLEGAL_ARGUMENT = -3,
        EX_NULL_POINTER = -4,
        EX_ILLEGAL_STATE = -5,
        EX_NETWORK_MAIN_THREAD = -6,
        EX_UNSUPPORTED_OPERATION = -7,
        EX_HAS_REPLY_HEADER = -128,
        EX_TRANSACTION_FAILED = -129,
    };

    static Status ok() { return Status(); }
    static Status fromExceptionCode(int32_t exceptionCode);
    static Status fromExceptionCode(int32_t exceptionCode, const char* message);
    // OK gives a good status; any other value a transaction failure carrying it.
    static Status fromStatusT(status_t status);

    Status() = default;

    void setException(int32_t ex, const char* message);
    void setFromStatusT(status_t status);

    int32_t exceptionCode() const { return mException; }
    const char* exceptionMessage() const { return mMessage.c_str(); }
    status_t transactionError() const {
        return mException == EX_TRANSACTION_FAILED ? mErrorCode : OK;
    }
    bool isOk() const { return mException == EX_NONE; }

    // "No error" or "Status(EX_TRANSACTION_FAILED): 'DEAD_OBJECT: '".
    std::string description() const;

private:
    int32_t mException = EX_NONE;
    int32_t mErrorCode = 0;
    std::string mMessage;
};

std::ostream& operator<<(std::ostream& stream, const Status& s);

template <typename T>
class Return;

namespace details {

// Logs `message` as fatal and aborts, as libhidl does on misuse.
[[noreturn]] void logAlwaysFatal(const char* message);

class return_status {
public:
    return_status() = default;
    return_status(const Status& s) : mStatus(s) {}  // NOLINT: implicit like libhidl's
    return_status(const return_status&) = delete;
    return_status& operator=(const return_status&) = delete;
    return_status(return_status&& other) noexcept { *this = std::move(other); }
    return_status& operator=(return_status&& other) noexcept;
    ~return_status();

    // Whether the call went through, without counting as checked.
    bool isOkUnchecked() const { return mStatus.isOk(); }
    bool isOk() const {
        mCheckedStatus = true;
        return mStatus.isOk();
    }
    // A dead service counts as checked once this answered true.
    bool isDeadObject() const {
        const bool dead = mStatus.transactionError() == DEAD_OBJECT;
        if (dead) mCheckedStatus = true;
        return dead;
    }
    std::string description() const { return mStatus.description(); }

protected:
    void assertOk() const;

private:
    Status mStatus{};
    mutable bool mCheckedStatus = false;
};

}  // namespace details

template <typename T>
class Return : public details::return_status {
public:
    Return(T v) : details::return_status(), mVal{v} {}  // NOLINT: implicit by design
    Return(Status s) : details::return_status(s) {}     // NOLINT
    Return(Return&& other) noexcept = default;
    Return& operator=(Return&&) noexcept = default;

    operator T() const {  // NOLINT: implicit by design
        assertOk();
        return mVal;
    }
    T withDefault(T t) { return isOk() ? mVal : t; }

private:
    T mVal{};
};

template <typename T>
class Return<sp<T>> : public details::return_status {
public:
    Return(sp<T> v) : details::return_status(), mVal{v} {}  // NOLINT
    Return(T* v) : details::return_status(), mVal{v} {}     // NOLINT
    template <typename U>
    Return(sp<U> v) : details::return_status(), mVal{v} {}  // NOLINT
    template <typename U>
    Return(U* v) : details::return_status(), mVal{v} {}  // NOLINT
    Return(Status s) : details::return_status(s) {}      // NOLINT
    Return(Return&& other) noexcept = default;
    Return& operator=(Return&&) noexcept = default;

    operator sp<T>() const {  // NOLINT
        assertOk();
        return mVal;
    }
    sp<T> withDefault(sp<T> t) { return isOk() ? mVal : t; }

private:
    sp<T> mVal{};
};

template <>
class Return<void> : public details::return_status {
public:
    Return() : details::return_status() {}
    Return(const Status& s) : details::return_status(s) {}  // NOLINT
    Return(Return&&) = default;
    Return& operator=(Return&&) = default;
};

static inline Return<void> Void() {
    return Return<void>();
}

}  // namespace hardware
}  // namespace android

#endif  // ANDROID_HARDWARE_BINDER_STATUS_H

/*
 * Host stand-in of libbinder's binder::Status: the outcome of an AIDL call, either an exception
 * code with a message (and a service-specific error) or a transport error.
 */
#ifndef ANDROID_BINDER_STATUS_H
#define ANDROID_BINDER_STATUS_H

#include <stdint.h>
#include <utils/Errors.h>
#include <utils/String8.h>

#include <sstream>
#include <string>

namespace android {

class Parcel;

namespace binder {

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
        EX_SERVICE_SPECIFIC = -8,
        EX_PARCELABLE = -9,

        // A reply carries a header before its exception code; it is skipped and means no error.
        EX_HAS_REPLY_HEADER = -128,
        // Never sent over the wire: the transaction itself failed.
        EX_TRANSACTION_FAILED = -129,
    };

    static Status ok();
    static Status fromExceptionCode(int32_t exceptionCode);
    static Status fromExceptionCode(int32_t exceptionCode, const String8& message);
    static Status fromExceptionCode(int32_t exceptionCode, const char* message);
    static Status fromServiceSpecificError(int32_t serviceSpecificErrorCode);
    static Status fromServiceSpecificError(int32_t serviceSpecificErrorCode, const String8& message);
    static Status fromServiceSpecificError(int32_t serviceSpecificErrorCode, const char* message);
    static Status fromStatusT(status_t status);

    static std::string exceptionToString(status_t exceptionCode);

    Status() = default;
    ~Status() = default;
    Status(Status&& status) = default;
    Status(const Status& status) = default;
    Status& operator=(Status&& status) = default;
    Status& operator=(const Status& status) = default;

    // Reads an exception (and its message and error code) from the parcel's current position.
    // A malformed reply leaves the status as EX_TRANSACTION_FAILED with the read error.
    status_t readFromParcel(const Parcel& parcel);
    // Writes the status at the parcel's position; a transaction failure is not written but
    // returned.
    status_t writeToParcel(Parcel* parcel) const;
    // Empties the parcel and writes the status from its start.
    status_t writeOverParcel(Parcel* parcel) const;

    void setException(int32_t ex, const String8& message);
    void setServiceSpecificError(int32_t errorCode, const String8& message);
    void setFromStatusT(status_t status);

    int32_t exceptionCode() const { return mException; }
    const String8& exceptionMessage() const { return mMessage; }
    status_t transactionError() const {
        return mException == EX_TRANSACTION_FAILED ? mErrorCode : OK;
    }
    int32_t serviceSpecificErrorCode() const {
        return mException == EX_SERVICE_SPECIFIC ? mErrorCode : 0;
    }

    bool isOk() const { return mException == EX_NONE; }

    String8 toString8() const;

private:
    Status(int32_t exceptionCode, int32_t errorCode);
    Status(int32_t exceptionCode, int32_t errorCode, const String8& message);

    int32_t mException = EX_NONE;
    int32_t mErrorCode = 0;
    String8 mMessage;
};

static inline std::ostream& operator<<(std::ostream& stream, const Status& s) {
    return stream << s.toString8().string();
}

}  // namespace binder
}  // namespace android

#endif  // ANDROID_BINDER_STATUS_H

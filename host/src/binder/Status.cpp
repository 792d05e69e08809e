#include <binder/Parcel.h>
#include <binder/Status.h>
#include <string.h>
#include <utils/String16.h>

#include <optional>

namespace android {
namespace binder {

namespace {

// Skips a size-prefixed header whose size counts its own size field; 0 means empty.
status_t skipSizedHeader(const Parcel& parcel) {
    const size_t headerStart = parcel.dataPosition();
    const size_t headerAvail = parcel.dataAvail();
    int32_t headerSize = 0;
    status_t status = parcel.readInt32(&headerSize);
    if (status != OK) return status;
    if (headerSize < 0 || static_cast<size_t>(headerSize) > headerAvail) return UNKNOWN_ERROR;
    if (static_cast<size_t>(headerSize) > sizeof(int32_t)) {
        parcel.setDataPosition(headerStart + static_cast<size_t>(headerSize));
    }
    return OK;
}

// The name of a status_t, as libutils' statusToString gives it (not exported by the host's
// libutils build).
std::string statusName(status_t s) {
#define STATUS_CASE(STATUS) \
    case STATUS:            \
        return #STATUS;
    switch (s) {
        STATUS_CASE(OK)
        STATUS_CASE(UNKNOWN_ERROR)
        STATUS_CASE(NO_MEMORY)
        STATUS_CASE(INVALID_OPERATION)
        STATUS_CASE(BAD_VALUE)
        STATUS_CASE(BAD_TYPE)
        STATUS_CASE(NAME_NOT_FOUND)
        STATUS_CASE(PERMISSION_DENIED)
        STATUS_CASE(NO_INIT)
        STATUS_CASE(ALREADY_EXISTS)
        STATUS_CASE(DEAD_OBJECT)
        STATUS_CASE(FAILED_TRANSACTION)
        STATUS_CASE(BAD_INDEX)
        STATUS_CASE(NOT_ENOUGH_DATA)
        STATUS_CASE(WOULD_BLOCK)
        STATUS_CASE(TIMED_OUT)
        STATUS_CASE(UNKNOWN_TRANSACTION)
        STATUS_CASE(FDS_NOT_ALLOWED)
        STATUS_CASE(UNEXPECTED_NULL)
        default:
            break;
    }
#undef STATUS_CASE
    return std::to_string(s) + " (" + strerror(-s) + ")";
}

}  // namespace

Status Status::ok() {
    return Status();
}

Status Status::fromExceptionCode(int32_t exceptionCode) {
    if (exceptionCode == EX_TRANSACTION_FAILED) return Status(exceptionCode, FAILED_TRANSACTION);
    return Status(exceptionCode, OK);
}

Status Status::fromExceptionCode(int32_t exceptionCode, const String8& message) {
    if (exceptionCode == EX_TRANSACTION_FAILED) {
        return Status(exceptionCode, FAILED_TRANSACTION, message);
    }
    return Status(exceptionCode, OK, message);
}

Status Status::fromExceptionCode(int32_t exceptionCode, const char* message) {
    return fromExceptionCode(exceptionCode, String8(message != nullptr ? message : ""));
}

Status Status::fromServiceSpecificError(int32_t serviceSpecificErrorCode) {
    return Status(EX_SERVICE_SPECIFIC, serviceSpecificErrorCode);
}

Status Status::fromServiceSpecificError(int32_t serviceSpecificErrorCode, const String8& message) {
    return Status(EX_SERVICE_SPECIFIC, serviceSpecificErrorCode, message);
}

Status Status::fromServiceSpecificError(int32_t serviceSpecificErrorCode, const char* message) {
    return fromServiceSpecificError(serviceSpecificErrorCode,
                                    String8(message != nullptr ? message : ""));
}

Status Status::fromStatusT(status_t status) {
    Status ret;
    ret.setFromStatusT(status);
    return ret;
}

std::string Status::exceptionToString(status_t exceptionCode) {
    switch (exceptionCode) {
#define EXCEPTION_TO_CASE(EXCEPTION) \
    case EXCEPTION:                  \
        return #EXCEPTION;
        EXCEPTION_TO_CASE(EX_NONE)
        EXCEPTION_TO_CASE(EX_SECURITY)
        EXCEPTION_TO_CASE(EX_BAD_PARCELABLE)
        EXCEPTION_TO_CASE(EX_ILLEGAL_ARGUMENT)
        EXCEPTION_TO_CASE(EX_NULL_POINTER)
        EXCEPTION_TO_CASE(EX_ILLEGAL_STATE)
        EXCEPTION_TO_CASE(EX_NETWORK_MAIN_THREAD)
        EXCEPTION_TO_CASE(EX_UNSUPPORTED_OPERATION)
        EXCEPTION_TO_CASE(EX_SERVICE_SPECIFIC)
        EXCEPTION_TO_CASE(EX_PARCELABLE)
        EXCEPTION_TO_CASE(EX_HAS_REPLY_HEADER)
        EXCEPTION_TO_CASE(EX_TRANSACTION_FAILED)
#undef EXCEPTION_TO_CASE
        default:
            return std::to_string(exceptionCode);
    }
}

Status::Status(int32_t exceptionCode, int32_t errorCode)
    : mException(exceptionCode), mErrorCode(errorCode) {}

Status::Status(int32_t exceptionCode, int32_t errorCode, const String8& message)
    : mException(exceptionCode), mErrorCode(errorCode), mMessage(message) {}

status_t Status::readFromParcel(const Parcel& parcel) {
    status_t status = parcel.readInt32(&mException);
    if (status != OK) {
        setFromStatusT(status);
        return status;
    }
    if (mException == EX_HAS_REPLY_HEADER) {
        status = skipSizedHeader(parcel);
        if (status != OK) {
            setFromStatusT(status);
            return status;
        }
        // Fat reply headers only come with successful replies.
        mException = EX_NONE;
    }
    mErrorCode = 0;
    mMessage = String8();
    if (mException == EX_NONE) return OK;

    std::optional<String16> message;
    status = parcel.readString16(&message);
    if (status != OK) {
        setFromStatusT(status);
        return status;
    }
    mMessage = message ? String8(*message) : String8();

    // The remote stack trace is not kept.
    status = skipSizedHeader(parcel);
    if (status == OK) {
        if (mException == EX_SERVICE_SPECIFIC) {
            status = parcel.readInt32(&mErrorCode);
        } else if (mException == EX_PARCELABLE) {
            status = skipSizedHeader(parcel);
        }
    }
    if (status != OK) setFromStatusT(status);
    return status;
}

status_t Status::writeToParcel(Parcel* parcel) const {
    if (parcel == nullptr) return BAD_VALUE;
    // A transport failure is reported to the binder driver, not written into the reply.
    if (mException == EX_TRANSACTION_FAILED) return mErrorCode;

    status_t status = parcel->writeInt32(mException);
    if (status != OK || mException == EX_NONE) return status;
    status = parcel->writeString16(String16(mMessage));
    if (status != OK) return status;
    // Empty remote stack trace header.
    status = parcel->writeInt32(0);
    if (status != OK) return status;
    if (mException == EX_SERVICE_SPECIFIC) {
        status = parcel->writeInt32(mErrorCode);
    } else if (mException == EX_PARCELABLE) {
        // Sized header of the parcelable's data: empty.
        status = parcel->writeInt32(0);
    }
    return status;
}

status_t Status::writeOverParcel(Parcel* parcel) const {
    if (parcel == nullptr) return BAD_VALUE;
    parcel->setDataSize(0);
    parcel->setDataPosition(0);
    return writeToParcel(parcel);
}

void Status::setException(int32_t ex, const String8& message) {
    mException = ex;
    mErrorCode = ex == EX_TRANSACTION_FAILED ? FAILED_TRANSACTION : NO_ERROR;
    mMessage.setTo(message);
}

void Status::setServiceSpecificError(int32_t errorCode, const String8& message) {
    setException(EX_SERVICE_SPECIFIC, message);
    mErrorCode = errorCode;
}

void Status::setFromStatusT(status_t status) {
    mException = (status == NO_ERROR) ? EX_NONE : EX_TRANSACTION_FAILED;
    mErrorCode = status;
    mMessage.clear();
}

String8 Status::toString8() const {
    String8 ret;
    if (mException == EX_NONE) {
        ret.append("No error");
    } else {
        ret.appendFormat("Status(%d, %s): '", mException, exceptionToString(mException).c_str());
        if (mException == EX_SERVICE_SPECIFIC) {
            ret.appendFormat("%d: ", mErrorCode);
        } else if (mException == EX_TRANSACTION_FAILED) {
            ret.appendFormat("%s: ", statusName(mErrorCode).c_str());
        }
        ret.append(mMessage);
        ret.append("'");
    }
    return ret;
}

}  // namespace binder
}  // namespace android

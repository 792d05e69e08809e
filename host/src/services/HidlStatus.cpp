// libhidl's transport status and Return checks.
#include <android/log.h>
#include <hidl/Status.h>
#include <stdlib.h>
#include <string.h>

#include <sstream>

namespace android {
namespace hardware {

namespace {

const char* statusName(status_t s) {
    switch (s) {
        case OK:
            return "OK";
        case UNKNOWN_ERROR:
            return "UNKNOWN_ERROR";
        case NO_MEMORY:
            return "NO_MEMORY";
        case INVALID_OPERATION:
            return "INVALID_OPERATION";
        case BAD_VALUE:
            return "BAD_VALUE";
        case BAD_TYPE:
            return "BAD_TYPE";
        case NAME_NOT_FOUND:
            return "NAME_NOT_FOUND";
        case PERMISSION_DENIED:
            return "PERMISSION_DENIED";
        case NO_INIT:
            return "NO_INIT";
        case ALREADY_EXISTS:
            return "ALREADY_EXISTS";
        case DEAD_OBJECT:
            return "DEAD_OBJECT";
        case FAILED_TRANSACTION:
            return "FAILED_TRANSACTION";
        case BAD_INDEX:
            return "BAD_INDEX";
        case NOT_ENOUGH_DATA:
            return "NOT_ENOUGH_DATA";
        case WOULD_BLOCK:
            return "WOULD_BLOCK";
        case TIMED_OUT:
            return "TIMED_OUT";
        case UNKNOWN_TRANSACTION:
            return "UNKNOWN_TRANSACTION";
        case FDS_NOT_ALLOWED:
            return "FDS_NOT_ALLOWED";
        case UNEXPECTED_NULL:
            return "UNEXPECTED_NULL";
        default:
            return nullptr;
    }
}

const char* exceptionName(int32_t ex) {
    switch (ex) {
        case Status::EX_NONE:
            return "EX_NONE";
        case Status::EX_SECURITY:
            return "EX_SECURITY";
        case Status::EX_BAD_PARCELABLE:
            return "EX_BAD_PARCELABLE";
        case Status::EX_ILLEGAL_ARGUMENT:
            return "EX_ILLEGAL_ARGUMENT";
        case Status::EX_NULL_POINTER:
            return "EX_NULL_POINTER";
        case Status::EX_ILLEGAL_STATE:
            return "EX_ILLEGAL_STATE";
        case Status::EX_NETWORK_MAIN_THREAD:
            return "EX_NETWORK_MAIN_THREAD";
        case Status::EX_UNSUPPORTED_OPERATION:
            return "EX_UNSUPPORTED_OPERATION";
        case Status::EX_HAS_REPLY_HEADER:
            return "EX_HAS_REPLY_HEADER";
        case Status::EX_TRANSACTION_FAILED:
            return "EX_TRANSACTION_FAILED";
        default:
            return nullptr;
    }
}

}  // namespace

Status Status::fromExceptionCode(int32_t exceptionCode) {
    Status s;
    s.setException(exceptionCode, "");
    return s;
}

Status Status::fromExceptionCode(int32_t exceptionCode, const char* message) {
    Status s;
    s.setException(exceptionCode, message);
    return s;
}

Status Status::fromStatusT(status_t status) {
    Status s;
    s.setFromStatusT(status);
    return s;
}

void Status::setException(int32_t ex, const char* message) {
    mException = ex;
    mErrorCode = OK;
    mMessage = message ? message : "";
}

void Status::setFromStatusT(status_t status) {
    mException = status == OK ? EX_NONE : EX_TRANSACTION_FAILED;
    mErrorCode = status;
    mMessage.clear();
}

std::string Status::description() const {
    std::ostringstream out;
    out << *this;
    return out.str();
}

std::ostream& operator<<(std::ostream& stream, const Status& s) {
    if (s.exceptionCode() == Status::EX_NONE) return stream << "No error";
    const char* ex = exceptionName(s.exceptionCode());
    stream << "Status(" << (ex ? ex : std::to_string(s.exceptionCode()).c_str()) << "): '";
    if (s.exceptionCode() == Status::EX_TRANSACTION_FAILED) {
        const char* name = statusName(s.transactionError());
        if (name) {
            stream << name;
        } else {
            stream << s.transactionError() << " " << strerror(-s.transactionError());
        }
        stream << ": ";
    }
    return stream << s.exceptionMessage() << "'";
}

namespace details {

void logAlwaysFatal(const char* message) {
    __android_log_write(ANDROID_LOG_FATAL, "HidlStatus", message);
    abort();
}

void return_status::assertOk() const {
    if (!isOk()) {
        logAlwaysFatal(
            ("Attempted to retrieve value from failed HIDL call: " + description()).c_str());
    }
}

return_status::~return_status() {
    // Asked before isOk(), which marks the status checked.
    if (!mCheckedStatus && !isOk()) {
        logAlwaysFatal(("Failed HIDL return status not checked: " + description()).c_str());
    }
}

return_status& return_status::operator=(return_status&& other) noexcept {
    if (!mCheckedStatus && !isOk()) {
        logAlwaysFatal(("Failed HIDL return status not checked: " + description()).c_str());
    }
    std::swap(mStatus, other.mStatus);
    std::swap(mCheckedStatus, other.mCheckedStatus);
    return *this;
}

}  // namespace details
}  // namespace hardware
}  // namespace android

/*
 * IAONHECallbacks in the AIDL compiler's wire form: each call is the interface token followed by
 * its arguments, sent one-way.
 */
#include "features/aon/IAONHECallbacks.h"

namespace android {

DO_NOT_DIRECTLY_USE_ME_IMPLEMENT_META_INTERFACE(AONHECallbacks, "android.hardware.IAONHECallbacks")

binder::Status IAONHECallbacksDefault::onOpened() {
    return binder::Status::fromStatusT(UNKNOWN_TRANSACTION);
}

binder::Status IAONHECallbacksDefault::onClosed() {
    return binder::Status::fromStatusT(UNKNOWN_TRANSACTION);
}

binder::Status IAONHECallbacksDefault::onError(int32_t) {
    return binder::Status::fromStatusT(UNKNOWN_TRANSACTION);
}

binder::Status IAONHECallbacksDefault::onHEDetected() {
    return binder::Status::fromStatusT(UNKNOWN_TRANSACTION);
}

BpAONHECallbacks::BpAONHECallbacks(const sp<IBinder>& impl) : BpInterface<IAONHECallbacks>(impl) {}

namespace {

// Sends one one-way call: the token, then `code`'s single int32 argument when `hasArg`.
status_t sendOneway(IBinder* remote, const String16& descriptor, uint32_t code, bool hasArg,
                    int32_t arg) {
    if (remote == nullptr) return DEAD_OBJECT;
    Parcel data;
    status_t res = data.writeInterfaceToken(descriptor);
    if (res == OK && hasArg) res = data.writeInt32(arg);
    if (res == OK) res = remote->transact(code, data, nullptr, IBinder::FLAG_ONEWAY);
    return res;
}

}  // namespace

binder::Status BpAONHECallbacks::onOpened() {
    status_t res = sendOneway(remote(), getInterfaceDescriptor(),
                              BnAONHECallbacks::TRANSACTION_onOpened, false, 0);
    if (res == UNKNOWN_TRANSACTION && IAONHECallbacks::getDefaultImpl() != nullptr) {
        return IAONHECallbacks::getDefaultImpl()->onOpened();
    }
    return binder::Status::fromStatusT(res);
}

binder::Status BpAONHECallbacks::onClosed() {
    status_t res = sendOneway(remote(), getInterfaceDescriptor(),
                              BnAONHECallbacks::TRANSACTION_onClosed, false, 0);
    if (res == UNKNOWN_TRANSACTION && IAONHECallbacks::getDefaultImpl() != nullptr) {
        return IAONHECallbacks::getDefaultImpl()->onClosed();
    }
    return binder::Status::fromStatusT(res);
}

binder::Status BpAONHECallbacks::onError(int32_t code) {
    status_t res = sendOneway(remote(), getInterfaceDescriptor(),
                              BnAONHECallbacks::TRANSACTION_onError, true, code);
    if (res == UNKNOWN_TRANSACTION && IAONHECallbacks::getDefaultImpl() != nullptr) {
        return IAONHECallbacks::getDefaultImpl()->onError(code);
    }
    return binder::Status::fromStatusT(res);
}

binder::Status BpAONHECallbacks::onHEDetected() {
    status_t res = sendOneway(remote(), getInterfaceDescriptor(),
                              BnAONHECallbacks::TRANSACTION_onHEDetected, false, 0);
    if (res == UNKNOWN_TRANSACTION && IAONHECallbacks::getDefaultImpl() != nullptr) {
        return IAONHECallbacks::getDefaultImpl()->onHEDetected();
    }
    return binder::Status::fromStatusT(res);
}

status_t BnAONHECallbacks::onTransact(uint32_t code, const Parcel& data, Parcel* reply,
                                      uint32_t flags) {
    if (code < TRANSACTION_onOpened || code > TRANSACTION_onHEDetected) {
        return BBinder::onTransact(code, data, reply, flags);
    }
    if (!data.enforceInterface(IAONHECallbacks::descriptor)) return BAD_TYPE;
    int32_t errorCode = 0;
    if (code == TRANSACTION_onError) {
        status_t res = data.readInt32(&errorCode);
        if (res != OK) return res;
    }
    binder::Status leftOver = data.enforceNoDataAvail();
    if (!leftOver.isOk()) {
        return reply != nullptr ? leftOver.writeToParcel(reply) : BAD_VALUE;
    }
    switch (code) {
        case TRANSACTION_onOpened:
            onOpened();
            break;
        case TRANSACTION_onClosed:
            onClosed();
            break;
        case TRANSACTION_onError:
            onError(errorCode);
            break;
        default:
            onHEDetected();
            break;
    }
    return OK;
}

}  // namespace android

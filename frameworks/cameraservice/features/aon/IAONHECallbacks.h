/*
 * The always-on camera app's callback ("android.hardware.IAONHECallbacks"): four one-way calls
 * through which the extension tells the app that the mode opened or closed, that a request
 * failed, and that the sensor detected a human presence. The proxy is what the library uses;
 * the stub lets a process (or a test) receive the calls.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_AON_IAONHECALLBACKS_H
#define VANTU_CAMERASERVICE_FEATURES_AON_IAONHECALLBACKS_H

#include <binder/IInterface.h>
#include <binder/Parcel.h>
#include <binder/Status.h>

namespace android {

class IAONHECallbacks : public IInterface {
public:
    DECLARE_META_INTERFACE(AONHECallbacks)

    // Codes passed to onError.
    enum ErrorCode : int32_t {
        ERROR_NO_FRONT_SENSOR = -1,   // no front sensor sub-device is known
        ERROR_CLOSED_WHILE_IDLE = 0,  // closed while the mode was not open
        ERROR_ALREADY_OPEN = 1,       // opened while already open
        ERROR_CAMERA_IN_USE = 2,      // a normal camera client holds the camera
        ERROR_CLOSED_FOR_CLIENT = 3,  // the mode was closed because a normal client arrived
    };

    virtual binder::Status onOpened() = 0;
    virtual binder::Status onClosed() = 0;
    virtual binder::Status onError(int32_t code) = 0;
    virtual binder::Status onHEDetected() = 0;
};

// Does nothing; what setDefaultImpl is usually given.
class IAONHECallbacksDefault : public IAONHECallbacks {
public:
    IBinder* onAsBinder() override { return nullptr; }
    binder::Status onOpened() override;
    binder::Status onClosed() override;
    binder::Status onError(int32_t code) override;
    binder::Status onHEDetected() override;
};

class BpAONHECallbacks : public BpInterface<IAONHECallbacks> {
public:
    explicit BpAONHECallbacks(const sp<IBinder>& impl);
    ~BpAONHECallbacks() override = default;
    binder::Status onOpened() override;
    binder::Status onClosed() override;
    binder::Status onError(int32_t code) override;
    binder::Status onHEDetected() override;
};

class BnAONHECallbacks : public BnInterface<IAONHECallbacks> {
public:
    static constexpr uint32_t TRANSACTION_onOpened = IBinder::FIRST_CALL_TRANSACTION + 0;
    static constexpr uint32_t TRANSACTION_onClosed = IBinder::FIRST_CALL_TRANSACTION + 1;
    static constexpr uint32_t TRANSACTION_onError = IBinder::FIRST_CALL_TRANSACTION + 2;
    static constexpr uint32_t TRANSACTION_onHEDetected = IBinder::FIRST_CALL_TRANSACTION + 3;

    // Checks the interface token (BAD_TYPE when wrong), reads the arguments, refuses a parcel
    // with data left over and calls the operation; other codes go to BBinder.
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply,
                        uint32_t flags = 0) override;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_AON_IAONHECALLBACKS_H

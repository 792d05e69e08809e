// ICameraServiceListener: its meta-interface, the proxy that writes each callback as a one-way
// transaction and the native side that reads them back, in the AIDL compiler's wire form.
#define LOG_TAG "ICameraServiceListener"

#include <android/hardware/BnCameraServiceListener.h>
#include <android/hardware/BpCameraServiceListener.h>
#include <android/hardware/ICameraServiceListener.h>
#include <binder/Parcel.h>
#include <log/log.h>

namespace android {

namespace hardware {

DO_NOT_DIRECTLY_USE_ME_IMPLEMENT_META_INTERFACE(CameraServiceListener,
                                                "android.hardware.ICameraServiceListener")

BpCameraServiceListener::BpCameraServiceListener(const sp<IBinder>& _aidl_impl)
    : BpInterface<ICameraServiceListener>(_aidl_impl) {}

namespace {

// Sends one one-way call whose arguments `write` puts after the interface token.
template <typename Writer>
binder::Status sendOneway(IBinder* remote, const String16& descriptor, uint32_t code, Writer write) {
    if (remote == nullptr) {
        return binder::Status::fromStatusT(DEAD_OBJECT);
    }
    Parcel data;
    status_t res = data.writeInterfaceToken(descriptor);
    if (res == OK) res = write(data);
    if (res == OK) res = remote->transact(code, data, nullptr, IBinder::FLAG_ONEWAY);
    return binder::Status::fromStatusT(res);
}

}  // namespace

binder::Status BpCameraServiceListener::onStatusChanged(int32_t status, const String16& cameraId) {
    return sendOneway(remote(), getInterfaceDescriptor(),
                      BnCameraServiceListener::TRANSACTION_onStatusChanged, [&](Parcel& data) {
                          status_t res = data.writeInt32(status);
                          return res == OK ? data.writeString16(cameraId) : res;
                      });
}

binder::Status BpCameraServiceListener::onPhysicalCameraStatusChanged(
    int32_t status, const String16& cameraId, const String16& physicalCameraId) {
    return sendOneway(remote(), getInterfaceDescriptor(),
                      BnCameraServiceListener::TRANSACTION_onPhysicalCameraStatusChanged,
                      [&](Parcel& data) {
                          status_t res = data.writeInt32(status);
                          if (res == OK) res = data.writeString16(cameraId);
                          return res == OK ? data.writeString16(physicalCameraId) : res;
                      });
}

binder::Status BpCameraServiceListener::onTorchStatusChanged(int32_t status,
                                                             const String16& cameraId) {
    return sendOneway(remote(), getInterfaceDescriptor(),
                      BnCameraServiceListener::TRANSACTION_onTorchStatusChanged, [&](Parcel& data) {
                          status_t res = data.writeInt32(status);
                          return res == OK ? data.writeString16(cameraId) : res;
                      });
}

binder::Status BpCameraServiceListener::onTorchStrengthLevelChanged(const String16& cameraId,
                                                                    int32_t newTorchStrength) {
    return sendOneway(remote(), getInterfaceDescriptor(),
                      BnCameraServiceListener::TRANSACTION_onTorchStrengthLevelChanged,
                      [&](Parcel& data) {
                          status_t res = data.writeString16(cameraId);
                          return res == OK ? data.writeInt32(newTorchStrength) : res;
                      });
}

binder::Status BpCameraServiceListener::onCameraAccessPrioritiesChanged() {
    return sendOneway(remote(), getInterfaceDescriptor(),
                      BnCameraServiceListener::TRANSACTION_onCameraAccessPrioritiesChanged,
                      [](Parcel&) { return OK; });
}

binder::Status BpCameraServiceListener::onCameraOpened(const String16& cameraId,
                                                       const String16& clientPackageId) {
    return sendOneway(remote(), getInterfaceDescriptor(),
                      BnCameraServiceListener::TRANSACTION_onCameraOpened, [&](Parcel& data) {
                          status_t res = data.writeString16(cameraId);
                          return res == OK ? data.writeString16(clientPackageId) : res;
                      });
}

binder::Status BpCameraServiceListener::onCameraClosed(const String16& cameraId) {
    return sendOneway(remote(), getInterfaceDescriptor(),
                      BnCameraServiceListener::TRANSACTION_onCameraClosed,
                      [&](Parcel& data) { return data.writeString16(cameraId); });
}

BnCameraServiceListener::BnCameraServiceListener() {}

status_t BnCameraServiceListener::onTransact(uint32_t _aidl_code, const Parcel& _aidl_data,
                                             Parcel* _aidl_reply, uint32_t _aidl_flags) {
    if (_aidl_code < TRANSACTION_onStatusChanged || _aidl_code > TRANSACTION_onCameraClosed) {
        return BBinder::onTransact(_aidl_code, _aidl_data, _aidl_reply, _aidl_flags);
    }
    if (!_aidl_data.enforceInterface(ICameraServiceListener::descriptor)) {
        return BAD_TYPE;
    }
    int32_t number = 0;
    String16 first;
    String16 second;
    status_t res = OK;
    switch (_aidl_code) {
        case TRANSACTION_onStatusChanged:
        case TRANSACTION_onTorchStatusChanged:
            if ((res = _aidl_data.readInt32(&number)) != OK) break;
            if ((res = _aidl_data.readString16(&first)) != OK) break;
            if (_aidl_code == TRANSACTION_onStatusChanged) {
                onStatusChanged(number, first);
            } else {
                onTorchStatusChanged(number, first);
            }
            break;
        case TRANSACTION_onPhysicalCameraStatusChanged:
            if ((res = _aidl_data.readInt32(&number)) != OK) break;
            if ((res = _aidl_data.readString16(&first)) != OK) break;
            if ((res = _aidl_data.readString16(&second)) != OK) break;
            onPhysicalCameraStatusChanged(number, first, second);
            break;
        case TRANSACTION_onTorchStrengthLevelChanged:
            if ((res = _aidl_data.readString16(&first)) != OK) break;
            if ((res = _aidl_data.readInt32(&number)) != OK) break;
            onTorchStrengthLevelChanged(first, number);
            break;
        case TRANSACTION_onCameraAccessPrioritiesChanged:
            onCameraAccessPrioritiesChanged();
            break;
        case TRANSACTION_onCameraOpened:
            if ((res = _aidl_data.readString16(&first)) != OK) break;
            if ((res = _aidl_data.readString16(&second)) != OK) break;
            onCameraOpened(first, second);
            break;
        case TRANSACTION_onCameraClosed:
            if ((res = _aidl_data.readString16(&first)) != OK) break;
            onCameraClosed(first);
            break;
    }
    if (res != OK) {
        ALOGE("%s: malformed transaction %u: %d", __FUNCTION__, _aidl_code, res);
    }
    return res;
}

}  // namespace hardware

}  // namespace android

/*
 * The library's own binder transactions, codes 10001 to 10014 under the interface token
 * "android.hardware.camera". The maker's camera apps and system services use them to report
 * authorised apps, announce the app behind a proxy, drive the accessory torch, clear every
 * client, switch the avatar feature and open or close the always-on camera.
 *
 * Parcels come from other processes, so every read uses the status-returning form: a missing
 * string reads as empty, as the platform's value-returning read gives it, and missing numbers or
 * a malformed binder fail the transaction with BAD_VALUE before it changes anything.
 */
#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>

#include <initializer_list>

#include "CameraServiceExtFactory.h"
#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

// The function name the transaction log lines carry.
constexpr char kFunc[] = "onTransact";

enum TransactionCode : uint32_t {
    SET_AUTH_RESULT = 10001,
    SET_AUTH_DEATH_RECIPIENT = 10002,
    SET_PACKAGE_NAME = 10003,
    IS_AUTHED_CLIENT = 10004,
    SET_CLIENT_INFO = 10005,
    SET_CALL_INFO = 10006,
    SET_RIO_CLIENT_INFO = 10007,
    SET_TORCH_INTENSITY = 10008,
    DISCONNECT_CLIENTS = 10009,
    SET_AVATAR_INFO = 10010,
    GET_CONNECT_STATUS = 10011,
    OPEN_AON = 10012,
    CLOSE_AON = 10013,
    PRE_OPEN_CAMERA = 10014,
};

const String16& cameraInterface() {
    static const String16 descriptor("android.hardware.camera");
    return descriptor;
}

// A wrong or missing token is only logged: callers exist that do not write it, and the reads
// go on from wherever the check left the parcel, as they always have.
void enforceToken(const Parcel& data, uint32_t code, uint32_t flags) {
    const bool res = data.enforceInterface(cameraInterface());
    if (res) return;
    switch (code) {
        case IS_AUTHED_CLIENT:
        case SET_AVATAR_INFO:
        case GET_CONNECT_STATUS:
        case OPEN_AON:
        case CLOSE_AON:
            EXT_LOG(0, "%s, %d enforceInterface res: %d, flags: %d", kFunc, code, res,
                    static_cast<int>(flags));
            break;
        case SET_TORCH_INTENSITY:
            EXT_LOG(0, "[RIO-Torch] %s: %d enforceInterface res: %d", kFunc, code, res);
            break;
        default:
            EXT_LOG(0, "%s, %d enforceInterface res: %d", kFunc, code, res);
            break;
    }
}

bool callerHoldsSystemCamera() {
    const IPCThreadState* ipc = IPCThreadState::self();
    return checkPermission(kSystemCameraPermission, ipc->getCallingPid(), ipc->getCallingUid());
}

// A missing, null or malformed string reads as empty.
String16 readString16OrEmpty(const Parcel& data) {
    String16 value;
    data.readString16(&value);
    return value;
}

// Reads the int32 fields in order; stops at the first one the parcel does not hold.
status_t readInt32s(const Parcel& data, uint32_t code, std::initializer_list<int32_t*> fields) {
    for (int32_t* field : fields) {
        const status_t res = data.readInt32(field);
        if (res != OK) {
            EXT_LOG(0, "%s, %d bad parcel, read res: %d", kFunc, code, res);
            return BAD_VALUE;
        }
    }
    return OK;
}

// A null binder is a valid read; a record that is cut short or names no object is not.
status_t readBinder(const Parcel& data, uint32_t code, sp<IBinder>* binder) {
    const status_t res = data.readNullableStrongBinder(binder);
    if (res != OK) {
        EXT_LOG(0, "%s, %d bad parcel, read res: %d", kFunc, code, res);
        return BAD_VALUE;
    }
    return OK;
}

void writeNoException(Parcel* reply) {
    if (reply != nullptr) reply->writeNoException();
}

}  // namespace

status_t CameraServiceExtImpl::onTransact(uint32_t code, const Parcel& data, Parcel* reply,
                                          uint32_t flags) {
    if (code < SET_AUTH_RESULT || code > PRE_OPEN_CAMERA) return INVALID_OPERATION;

    // These two act on every client or report on them: only the system may ask.
    if ((code == DISCONNECT_CLIENTS || code == GET_CONNECT_STATUS) && !callerHoldsSystemCamera()) {
        return UNKNOWN_ERROR;
    }
    if (code != DISCONNECT_CLIENTS) enforceToken(data, code, flags);

    const IPCThreadState* ipc = IPCThreadState::self();
    switch (code) {
        case SET_AUTH_RESULT: {
            if (mAuthAppManager == nullptr) return OK;
            // The reporting component writes uid before pid; the manager takes pid first.
            int32_t uid = 0, pid = 0, permBits = 0;
            if (readInt32s(data, code, {&uid, &pid, &permBits}) != OK) return BAD_VALUE;
            const String8 package(readString16OrEmpty(data));
            return mAuthAppManager->addAuthResultInfo(pid, uid, permBits, package);
        }
        case SET_AUTH_DEATH_RECIPIENT: {
            if (mAuthAppManager == nullptr) return OK;
            sp<IBinder> binder;
            if (readBinder(data, code, &binder) != OK || binder == nullptr) return BAD_VALUE;
            return mAuthAppManager->setDeathRecipient(binder, ipc->getCallingPid(),
                                                      static_cast<int>(ipc->getCallingUid()));
        }
        case SET_PACKAGE_NAME: {
            const String16 package = readString16OrEmpty(data);
            setAPKPackageName(package);
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "%s, setPackName mAPKPackageName: %s", kFunc, String8(package).c_str());
            }
            return OK;
        }
        case IS_AUTHED_CLIENT: {
            bool authed = true;
            if (mAuthAppManager != nullptr) {
                const String8 package(readString16OrEmpty(data));
                authed = mAuthAppManager->isAuthedClient(static_cast<int>(ipc->getCallingUid()),
                                                         package, true, true);
            }
            if (reply != nullptr) {
                reply->writeNoException();
                reply->writeBool(authed);
            }
            return OK;
        }
        case SET_CLIENT_INFO: {
            const String16 package = readString16OrEmpty(data);
            int32_t uid = 0, pid = 0;
            if (readInt32s(data, code, {&uid, &pid}) != OK) return BAD_VALUE;
            const String8 package8(package);
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "%s, setClientInfo packageName: %s, uid: %d, pid: %d", kFunc,
                        package8.c_str(), uid, pid);
            }
            if (isSystemCameraPkgName(package8.c_str()) || is3rdPartyAppPrivileged(package)) {
                std::lock_guard<std::mutex> lock(mPrivilegedUidsLock);
                mPrivilegedUids.insert(uid);
                mAPKUid = uid;
                mAPKPid = pid;
            }
            setAPKPackageName(package);
            // The always-on camera's front sensor is probed once, by the first announcement
            // that finds the feature on.
            if (getBool("feature_aon_enable", false, nullptr) && !mAONDevProbed.exchange(true)) {
                getAONcamdev();
            }
            return OK;
        }
        case SET_CALL_INFO: {
            const int32_t uid = static_cast<int32_t>(ipc->getCallingUid());
            const int32_t pid = ipc->getCallingPid();
            {
                std::lock_guard<std::mutex> lock(mPrivilegedUidsLock);
                mAPKUid = uid;
                mAPKPid = pid;
            }
            if (EXT_LOG_ON()) EXT_LOG(1, "%s, set call info uid: %d, pid: %d", kFunc, uid, pid);
            return OK;
        }
        case SET_RIO_CLIENT_INFO: {
            const pid_t pid = ipc->getCallingPid();
            if (mMagneticSensorManager != nullptr) mMagneticSensorManager->setRioClientPid(pid);
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "[RIO-Torch] %s: setRioClientInfo getcalling info pid: %d", kFunc, pid);
            }
            return OK;
        }
        case SET_TORCH_INTENSITY: {
            int32_t intensity = 0;
            if (readInt32s(data, code, {&intensity}) != OK) return BAD_VALUE;
            if (mMagneticSensorManager != nullptr) {
                mMagneticSensorManager->setTorchIntensity(intensity);
            }
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "[RIO-Torch] %s: set torch intensity: %d", kFunc, intensity);
            }
            return OK;
        }
        case DISCONNECT_CLIENTS: {
            mDisconnectClients = true;
            if (EXT_LOG_ON()) EXT_LOG(1, "%s, DISCONNECT_CLIENTS", kFunc);
            // The client lock is held for the whole walk; the slots themselves are read and
            // cleared under their own leaf lock, which afterDisconnect also takes, so a close
            // already under way on another thread finishes while this walk waits for it.
            std::lock_guard<std::recursive_mutex> lock(mClientLock);
            for (int id = 0; id < kMaxCameraSlots; ++id) {
                const sp<CameraService::BasicClient> client = promoteClient(id);
                if (client == nullptr) continue;
                notifyErrorAndDisconnect(client);
                dropClient(id);
            }
            mDisconnectClients = false;
            return OK;
        }
        case SET_AVATAR_INFO: {
            if (mZumioManager != nullptr && (mZumioEnable || mSupportAps2Zumio != 0)) {
                static const String16 kNullLower("null");
                static const String16 kNullUpper("NULL");
                static const String16 kInit("init");
                const String16 message = readString16OrEmpty(data);
                if (message == kNullLower || message == kNullUpper) {
                    if (EXT_LOG_ON()) EXT_LOG(1, "%s, msg null", kFunc);
                    mZumioManager->setAvatarInfo(String8("NULL"));
                    mZumioManager->setZumioEnable(true, true);
                } else if (message == kInit) {
                    if (EXT_LOG_ON()) EXT_LOG(1, "%s, msg init", kFunc);
                    mZumioManager->setAvatarInfo(String8(message));
                    mZumioManager->setZumioEnable(true, true);
                } else {
                    if (EXT_LOG_ON()) EXT_LOG(1, "%s, msg avator", kFunc);
                    mZumioManager->setAvatarInfo(String8(message));
                    mZumioManager->setZumioEnable(true, false);
                }
            }
            writeNoException(reply);
            return OK;
        }
        case GET_CONNECT_STATUS:
            if (reply != nullptr) {
                reply->writeNoException();
                reply->writeBool(mConnectStatus);
            }
            return OK;
        case OPEN_AON: {
            sp<IBinder> callback;
            if (readBinder(data, code, &callback) != OK) return BAD_VALUE;
            openAON(callback);
            writeNoException(reply);
            return OK;
        }
        case CLOSE_AON:
            closeAON();
            writeNoException(reply);
            return OK;
        case PRE_OPEN_CAMERA: {
            // The extension object the server obtained from the factory; none before the
            // server first called the library's entry.
            CameraServiceExtFactory* factory = CameraServiceExtFactory::getInstance();
            ICameraServiceExt* ext = factory != nullptr ? factory->getCameraServiceExt() : nullptr;
            if (ext != nullptr) ext->preOpenCamera();
            return OK;
        }
    }
    return INVALID_OPERATION;
}

}  // namespace android

#define LOG_TAG "KairoServiceProxy"

#include "features/thermal/KairoServiceProxy.h"

#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <log/log.h>
#include <utils/String16.h>

namespace android {

ANDROID_SINGLETON_STATIC_INSTANCE(KairoServiceProxy);

namespace {
constexpr char kServiceName[] = "kairo";
constexpr char kInterfaceToken[] = "com.vantu.kairo.IKairoService";
}  // namespace

void KairoServiceProxy::DeathObserver::binderDied(const wp<IBinder>&) {
    mProxy->handleHSBinderDied();
}

KairoServiceProxy::KairoServiceProxy() {
    ALOGD("New KairoServiceProxy \n");
    Mutex::Autolock l(mLock);
    getKairoService();
}

int KairoServiceProxy::getKairoService() {
    if (mService != nullptr) return 0;
    // checkService answers at once: this runs on the request thread, where getService's wait
    // for a service that is not coming would stall every sixtieth frame.
    sp<IBinder> binder = defaultServiceManager()->checkService(String16(kServiceName));
    if (binder == nullptr) {
        ALOGE("unable to get KairoService");
        return -1;
    }
    mService = binder;
    mDeathObserver = new DeathObserver(this);
    mService->linkToDeath(mDeathObserver, nullptr, 0);
    return 0;
}

void KairoServiceProxy::handleHSBinderDied() {
    Mutex::Autolock l(mLock);
    mService.clear();
    mDeathObserver.clear();
}

float KairoServiceProxy::getCurrentThermal() {
    Mutex::Autolock l(mLock);
    if (getKairoService() != 0) {
        ALOGE("%s, failed to get kairo service", __func__);
        return -1.0f;
    }
    Parcel data;
    Parcel reply;
    data.writeInterfaceToken(String16(kInterfaceToken));
    const status_t status = mService->transact(mTransactionCode, data, &reply, 0);
    if (status != OK) {
        ALOGE("%s, failed to transact: %d", __func__, status);
        return -1.0f;
    }
    // Only the first float of the reply is read; an empty reply reads as 0.0.
    const float thermal = reply.readFloat();
    ALOGI("%s, get current thermal from kairo success : %f", __func__, thermal);
    return thermal;
}

}  // namespace android

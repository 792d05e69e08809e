/*
 * Client of the maker's system thermal service "kairo": one binder transaction that answers the
 * current device (skin) temperature. The binder is looked up on first use and dropped when its
 * process dies, so the next call looks it up again.
 */
#ifndef VANTU_CAMERASERVICE_FEATURES_THERMAL_KAIROSERVICEPROXY_H
#define VANTU_CAMERASERVICE_FEATURES_THERMAL_KAIROSERVICEPROXY_H

#include <binder/IBinder.h>
#include <utils/Mutex.h>
#include <utils/Singleton.h>

namespace android {

class KairoServiceProxy : public Singleton<KairoServiceProxy> {
public:
    // 0 when the service binder is held (looking it up when it is not), -1 when there is none.
    // The caller holds mLock.
    int getKairoService();
    // The service's process died: forget the binder and its observer.
    void handleHSBinderDied();
    // The current temperature the service reports, or -1.0 when it cannot be asked.
    float getCurrentThermal();

private:
    friend class Singleton<KairoServiceProxy>;

    class DeathObserver : public IBinder::DeathRecipient {
    public:
        explicit DeathObserver(KairoServiceProxy* proxy) : mProxy(proxy) {}
        void binderDied(const wp<IBinder>& who) override;

    private:
        KairoServiceProxy* const mProxy;
    };

    KairoServiceProxy();

    const uint32_t mTransactionCode = 17;
    sp<IBinder> mService;
    sp<DeathObserver> mDeathObserver;
    Mutex mLock;
};

}  // namespace android

#endif  // VANTU_CAMERASERVICE_FEATURES_THERMAL_KAIROSERVICEPROXY_H

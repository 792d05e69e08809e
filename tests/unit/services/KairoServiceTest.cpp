// The "kairo" thermal service: its one transaction, its answers and its death.
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <gtest/gtest.h>
#include <utils/String16.h>

#include "hostctl/Binder.h"
#include "hostctl/Services.h"

namespace {

using android::IBinder;
using android::Parcel;
using android::sp;
using android::status_t;
using android::String16;
using android::wp;

constexpr char kToken[] = "com.vantu.kairo.IKairoService";

class KairoServiceTest : public ::testing::Test {
protected:
    void SetUp() override { hostctl::resetServices(); }
    void TearDown() override { hostctl::resetServices(); }

    static sp<IBinder> lookUp() {
        return android::defaultServiceManager()->checkService(String16("kairo"));
    }

    // Sends the thermal query as the library does; the status and the first float of the reply.
    static status_t query(const sp<IBinder>& kairo, float* value, const char* token = kToken,
                          uint32_t code = 17) {
        Parcel data, reply;
        data.writeInterfaceToken(String16(token));
        status_t err = kairo->transact(code, data, &reply, 0);
        if (err == android::OK) *value = reply.readFloat();
        return err;
    }
};

TEST_F(KairoServiceTest, AbsentUntilStarted) {
    EXPECT_EQ(nullptr, lookUp());
    hostctl::ServicesConfig config;
    config.kairo = true;
    config.kairoTemperature = 41.5f;
    ASSERT_TRUE(hostctl::startServices(config));
    float value = 0;
    ASSERT_EQ(android::OK, query(lookUp(), &value));
    EXPECT_FLOAT_EQ(41.5f, value);
    EXPECT_EQ("transact(17, com.vantu.kairo.IKairoService, 0)",
              hostctl::serviceCallsOf(hostctl::kKairoService).back().text());
}

TEST_F(KairoServiceTest, RefusesWrongTokenAndUnknownCode) {
    ASSERT_TRUE(hostctl::startService(hostctl::kKairoService));
    float value = 0;
    EXPECT_EQ(android::PERMISSION_DENIED, query(lookUp(), &value, "com.other.IService"));
    EXPECT_EQ(android::UNKNOWN_TRANSACTION, query(lookUp(), &value, kToken, 18));
    Parcel empty, reply;
    EXPECT_EQ(android::PERMISSION_DENIED, lookUp()->transact(17, empty, &reply));
    EXPECT_EQ("transact(17, ?, 0)", hostctl::serviceCallsOf(hostctl::kKairoService).back().text());
}

TEST_F(KairoServiceTest, TransactionFailsAsConfigured) {
    ASSERT_TRUE(hostctl::startService(hostctl::kKairoService));
    hostctl::setKairoTemperature(30.0f);
    hostctl::setKairoTransactError(android::FAILED_TRANSACTION);
    float value = 0;
    EXPECT_EQ(android::FAILED_TRANSACTION, query(lookUp(), &value));
    hostctl::setKairoTransactError(android::OK);
    EXPECT_EQ(android::OK, query(lookUp(), &value));
    EXPECT_FLOAT_EQ(30.0f, value);
}

TEST_F(KairoServiceTest, DeathTellsLinkedObserversAndLeavesTheServiceManager) {
    struct Observer : public IBinder::DeathRecipient {
        void binderDied(const wp<IBinder>&) override { ++deaths; }
        int deaths = 0;
    };
    ASSERT_TRUE(hostctl::startService(hostctl::kKairoService));
    sp<IBinder> kairo = lookUp();
    sp<Observer> observer = new Observer();
    ASSERT_EQ(android::OK, kairo->linkToDeath(observer));

    ASSERT_TRUE(hostctl::killService(hostctl::kKairoService));
    EXPECT_EQ(1, observer->deaths);
    EXPECT_EQ(nullptr, lookUp());
    float value = 0;
    EXPECT_EQ(android::DEAD_OBJECT, query(kairo, &value));
    // A restarted service is a new binder.
    ASSERT_TRUE(hostctl::startService(hostctl::kKairoService));
    EXPECT_NE(kairo.get(), lookUp().get());
}

// The simulator's binder_died step kills it by its binder name.
TEST_F(KairoServiceTest, KilledByBinderNameIsNotRunning) {
    ASSERT_TRUE(hostctl::startService(hostctl::kKairoService));
    ASSERT_TRUE(hostctl::killBinder("kairo"));
    EXPECT_FALSE(hostctl::isServiceRunning(hostctl::kKairoService));
    ASSERT_TRUE(hostctl::startService(hostctl::kKairoService));
    float value = -1;
    EXPECT_EQ(android::OK, query(lookUp(), &value));
}

}  // namespace

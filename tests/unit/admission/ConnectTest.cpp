// Connect and disconnect bookkeeping, with the inputs the server may hand over at its worst.
#include <gtest/gtest.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include <string>
#include <thread>
#include <vector>

#include "CameraServiceExtImpl.h"
#include "hostctl/CameraHost.h"
#include "hostctl/Properties.h"
#include "support/TestSupport.h"

namespace {

using namespace android;

class Exposed : public CameraServiceExtImpl {
public:
    using CameraServiceExtImpl::promoteClient;
    String8 component() const {
        std::lock_guard<std::mutex> lock(mClientNameLock);
        return mClientComponentName;
    }
    bool connectStatus() const { return mConnectStatus; }
};

class Connect : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        mRoot.writeFile(kFwkConfigPath, R"({"default": {"feature_auth_enable": false}})");
        mExt = new Exposed();
    }
    void TearDown() override { hostctl::clearProperties(); }

    // Plays the server's connect and returns the verdict and the string after beforeConnect.
    int32_t open(const char* id, String16& package, sp<hostctl::HostCameraClient>* out = nullptr) {
        const int32_t verdict = mExt->beforeConnect(String8(id), package, false);
        if (verdict != 0) return verdict;
        mExt->setCurrentPackageName(package);
        sp<hostctl::HostCameraClient> c =
            new hostctl::HostCameraClient(String8(id), package, 10100, 5000);
        mExt->afterConnect(String8(id), package, false, c, c.get(), 1, 2);
        if (out != nullptr) *out = c;
        return verdict;
    }

    testsupport::TempDeviceRoot mRoot;
    testsupport::VirtualTime mTime;
    sp<Exposed> mExt;
};

TEST_F(Connect, ComponentIsCutToThePackageInTheServersString) {
    String16 package(u"com.a/.Main");
    ASSERT_EQ(0, open("0", package));
    EXPECT_EQ(String16("com.a"), package);
    EXPECT_EQ(String8("com.a"), mExt->currentPackageName());
    EXPECT_EQ(String8(".Main"), mExt->currentActivityName());
    EXPECT_EQ(String8("com.a/.Main"), mExt->component());
}

// Only a slash with text on both sides splits, and only the first one.
TEST_F(Connect, OnlyTheFirstInnerSlashSplits) {
    const struct {
        const char16_t* text;
        const char16_t* package;
        const char* activity;
    } rows[] = {
        {u"com.a", u"com.a", "NULL"}, {u"/x", u"/x", "NULL"}, {u"com.a/", u"com.a/", "NULL"},
        {u"/", u"/", "NULL"},         {u"", u"", "NULL"},     {u"com.a/b/c", u"com.a", "b/c"},
    };
    for (const auto& row : rows) {
        String16 package(row.text);
        ASSERT_EQ(0, mExt->beforeConnect(String8("0"), package, false));
        EXPECT_EQ(String16(row.package), package) << String8(row.text).string();
        EXPECT_EQ(String8(row.activity), mExt->currentActivityName()) << String8(row.text).string();
    }
}

TEST_F(Connect, BrokenUtf16AndHugeNamesAreTakenWithoutHarm) {
    // A lone surrogate in the package and a name far beyond any property length.
    const char16_t broken[] = {u'c', 0xD800, u'/', u'x', 0};
    String16 package(broken);
    EXPECT_EQ(0, open("0", package));
    std::u16string huge(100000, u'a');
    huge += u"/Activity";
    String16 big(huge.c_str());
    EXPECT_EQ(0, open("1", big));
    EXPECT_EQ(100000u, big.size());
    // The property keeps its last value it could hold; the library goes on.
    EXPECT_EQ(100000u, mExt->currentPackageName().length());
}

TEST_F(Connect, CameraIdsWithoutASlotNeverReachTheTable) {
    for (const char* id : {"25", "-1", "22", "abc", "", "0x7fffffff", "99999999999"}) {
        String16 package(u"com.a");
        sp<hostctl::HostCameraClient> c;
        EXPECT_EQ(0, open(id, package, &c)) << id;
        for (int slot = 0; slot < kMaxCameraSlots; ++slot) {
            EXPECT_EQ(nullptr, mExt->promoteClient(slot)) << id;
        }
        mExt->afterDisconnect(String8(id), String16("com.a"), nullptr);
    }
    // Out-of-range look-ups answer empty.
    EXPECT_EQ(nullptr, mExt->promoteClient(-1));
    EXPECT_EQ(nullptr, mExt->promoteClient(22));
}

TEST_F(Connect, ADeadClientCountsAsAnEmptySlot) {
    String16 first(u"com.a");
    {
        sp<hostctl::HostCameraClient> c;
        ASSERT_EQ(0, open("0", first, &c));
        EXPECT_NE(nullptr, mExt->promoteClient(0));
    }
    // The server dropped its last reference without a disconnect.
    EXPECT_EQ(nullptr, mExt->promoteClient(0));
    String16 second(u"com.b");
    sp<hostctl::HostCameraClient> other;
    ASSERT_EQ(0, open("2", second, &other));
    mExt->afterDisconnect(String8("2"), String16("com.b"), nullptr);
    EXPECT_EQ("", hostctl::properties()["vantu.camera.packname"]);
}

TEST_F(Connect, PolicyPropertyRefusesOnlyForExactlyZero) {
    for (const char* value : {"00", "1", "false", " 0", ""}) {
        hostctl::setProperty("persist.sys.vantu.camera.open.camera", value);
        String16 package(u"com.a");
        EXPECT_EQ(0, mExt->beforeConnect(String8("0"), package, false)) << value;
    }
    hostctl::setProperty("persist.sys.vantu.camera.open.camera", "0");
    String16 package(u"com.a/.Main");
    EXPECT_EQ(4, mExt->beforeConnect(String8("0"), package, false));
    // Refused before anything of the client was taken.
    EXPECT_EQ(String16("com.a/.Main"), package);
}

TEST_F(Connect, ConcurrentConnectsOfTwoCamerasKeepConsistentNames) {
    // Two binder threads connect and disconnect different cameras at once; the names the
    // library keeps must never tear (run under the sanitizers).
    auto loop = [this](const char* id, const char16_t* component) {
        for (int i = 0; i < 200; ++i) {
            String16 package(component);
            open(id, package);
            const String8 current = mExt->currentPackageName();
            EXPECT_TRUE(current == "com.one" || current == "com.two" || current == "NULL")
                << current.string();
            mExt->afterDisconnect(String8(id), package, nullptr);
        }
    };
    std::thread a(loop, "0", u"com.one/.A");
    std::thread b(loop, "1", u"com.two/.B");
    a.join();
    b.join();
    EXPECT_FALSE(mExt->connectStatus());
}

}  // namespace

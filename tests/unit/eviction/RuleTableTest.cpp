// Which rule set each board gets, and the small hooks beside the eviction decision.
#include <gtest/gtest.h>
#include <limits.h>

#include <map>
#include <set>
#include <string>

#include "EvictionTestSupport.h"
#include "ExtFactory.h"
#include "platform/CameraServiceExtImpl_mt6765.h"
#include "platform/CameraServiceExtImpl_mt6983.h"
#include "platform/CameraServiceExtImpl_mtk.h"
#include "platform/CameraServiceExtImpl_sm4350.h"
#include "platform/CameraServiceExtImpl_sm6225.h"
#include "platform/CameraServiceExtImpl_sm7125.h"
#include "platform/CameraServiceExtImpl_sm7250.h"
#include "platform/CameraServiceExtImpl_sm8250.h"
#include "platform/CameraServiceExtImpl_sm8350.h"
#include "platform/CameraServiceExtImpl_sm8450.h"

namespace {

using namespace android;
using evictiontest::EvictionTest;
using evictiontest::Exposed;

// The class whose customIntelligentEviction each board must reach.
[[maybe_unused]] const std::map<std::string, std::string>& expectedRuleOwner() {
    static const std::map<std::string, std::string> owners = {
        {"mt6779", "mtk"},    {"mt6765", "mt6765"}, {"mt6785", "mtk"},     {"mt6789", "mtk"},
        {"mt6885", "mtk"},    {"mt6833", "mtk"},    {"mt6853", "mtk"},     {"mt6873", "mtk"},
        {"mt6893", "mtk"},    {"mt6895", "mtk"},    {"mt6877", "mtk"},     {"mt6983", "mt6983"},
        {"mt6985", "mtk"},    {"trinket", "base"},  {"lahaina", "sm8350"}, {"kona", "sm8250"},
        {"holi", "sm4350"},   {"lito", "sm7250"},   {"atoll", "sm7125"},   {"taro", "sm8450"},
        {"bengal", "sm6225"}, {"msmnile", "base"},  {"kalama", "base"},
    };
    return owners;
}

[[maybe_unused]] sp<CameraServiceExtImpl> makeOwner(const std::string& owner) {
    if (owner == "base") return new CameraServiceExtImpl();
    if (owner == "mtk") return new CameraServiceExtImpl_mtk();
    if (owner == "mt6765") return new CameraServiceExtImpl_mt6765();
    if (owner == "mt6983") return new CameraServiceExtImpl_mt6983();
    if (owner == "sm4350") return new CameraServiceExtImpl_sm4350();
    if (owner == "sm6225") return new CameraServiceExtImpl_sm6225();
    if (owner == "sm7125") return new CameraServiceExtImpl_sm7125();
    if (owner == "sm7250") return new CameraServiceExtImpl_sm7250();
    if (owner == "sm8250") return new CameraServiceExtImpl_sm8250();
    if (owner == "sm8350") return new CameraServiceExtImpl_sm8350();
    if (owner == "sm8450") return new CameraServiceExtImpl_sm8450();
    return nullptr;
}

#if defined(__GNUC__) && !defined(__clang__)
#define CAN_RESOLVE_OVERRIDES 1
// The function a virtual call of customIntelligentEviction on `ext` reaches (a g++ extension
// that resolves a bound pointer to member function).
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpmf-conversions"
const void* evictionRulesOf(CameraServiceExtImpl* ext) {
    using Fn = bool (*)(CameraServiceExtImpl*, int, const String16&);
    Fn fn = (Fn)(ext->*(&CameraServiceExtImpl::customIntelligentEviction));
    return reinterpret_cast<const void*>(fn);
}
#pragma GCC diagnostic pop
#else
#define CAN_RESOLVE_OVERRIDES 0
#endif

class BoardRules : public EvictionTest, public ::testing::WithParamInterface<BoardEntry> {};

TEST_P(BoardRules, ReachesTheRuleSetOfItsChip) {
#if CAN_RESOLVE_OVERRIDES
    auto owner = expectedRuleOwner().find(GetParam().platform);
    ASSERT_NE(owner, expectedRuleOwner().end()) << "no expectation for " << GetParam().platform;
    sp<CameraServiceExtImpl> built = GetParam().create();
    sp<CameraServiceExtImpl> reference = makeOwner(owner->second);
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(evictionRulesOf(reference.get()), evictionRulesOf(built.get()))
        << GetParam().className << " should use the rules of " << owner->second;
#else
    GTEST_SKIP() << "resolving a virtual call to its function needs g++";
#endif
}

std::vector<BoardEntry> allBoards() {
    return std::vector<BoardEntry>(boardTable(), boardTable() + boardTableSize());
}

INSTANTIATE_TEST_SUITE_P(AllBoards, BoardRules, ::testing::ValuesIn(allBoards()),
                         [](const ::testing::TestParamInfo<BoardEntry>& info) {
                             return std::string(info.param.platform);
                         });

// Each chip listed with its own rules really has its own override, none shares another's.
TEST_F(EvictionTest, EveryRuleSetIsItsOwnFunction) {
#if CAN_RESOLVE_OVERRIDES
    std::set<std::string> owners;
    for (const auto& row : expectedRuleOwner()) owners.insert(row.second);
    std::set<const void*> functions;
    for (const std::string& owner : owners) {
        sp<CameraServiceExtImpl> ext = makeOwner(owner);
        functions.insert(evictionRulesOf(ext.get()));
    }
    EXPECT_EQ(owners.size(), functions.size());
    EXPECT_EQ(11u, owners.size());
#else
    GTEST_SKIP() << "resolving a virtual call to its function needs g++";
#endif
}

// ---- The connect record ----

TEST_F(EvictionTest, SaveArmsFreeDomForNativeAndListedClientsOnly) {
    writeConfig("", R"("com.quick": {"isFreeDomEvictionPackge": true})");
    sp<Exposed<CameraServiceExtImpl>> ext = new Exposed<CameraServiceExtImpl>();
    EXPECT_TRUE(ext->customSaveIntelligentEviction(2, String16("com.app")));
    EXPECT_FALSE(ext->freeDomArmed());
    EXPECT_EQ(2, ext->lastCameraId());
    EXPECT_TRUE(ext->customSaveIntelligentEviction(0, String16("client.pid77")));
    EXPECT_TRUE(ext->freeDomArmed());
    ext->armFreeDom(false);
    EXPECT_TRUE(ext->customSaveIntelligentEviction(1, String16("com.quick")));
    EXPECT_TRUE(ext->freeDomArmed());
    EXPECT_EQ(1, ext->lastCameraId());
}

TEST_F(EvictionTest, SaveChangesNothingWhileEvictionIsOffForThePackage) {
    writeConfig("", R"("client.pid77": {"feature_evication_enable": false})");
    sp<Exposed<CameraServiceExtImpl>> ext = new Exposed<CameraServiceExtImpl>();
    EXPECT_TRUE(ext->customSaveIntelligentEviction(3, String16("client.pid77")));
    EXPECT_FALSE(ext->freeDomArmed());
    EXPECT_EQ(-1, ext->lastCameraId());
}

// ---- Explorer mode and the resource cost ----

TEST_F(EvictionTest, ExplorerMaskBitIsTheCameraIdModulo32) {
    writeConfig(R"("feature_explorer_enable": true)",
                R"("com.tencent.mm": {"supportExplorerCameraMask": 2})");
    sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl();
    const String8 wechat("com.tencent.mm");
    EXPECT_TRUE(ext->isSupportExplorer(String8("1"), wechat));
    EXPECT_TRUE(ext->isSupportExplorer(String8("33"), wechat));
    EXPECT_FALSE(ext->isSupportExplorer(String8("0"), wechat));
    EXPECT_FALSE(ext->isSupportExplorer(String8("32"), wechat));
    EXPECT_FALSE(ext->isSupportExplorer(String8("-1"), wechat));
    EXPECT_FALSE(ext->isSupportExplorer(String8("x1"), wechat));
    EXPECT_FALSE(ext->isSupportExplorer(String8("1"), String8("com.other")));
}

TEST_F(EvictionTest, ExplorerIsOffWithoutItsSwitch) {
    writeConfig(R"("explorer_override_cost": 5)",
                R"("com.tencent.mm": {"supportExplorerCameraMask": -1})");
    sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl();
    EXPECT_FALSE(ext->isSupportExplorer(String8("1"), String8("com.tencent.mm")));
    EXPECT_EQ(70, ext->OverrideCost(String8("1"), String8("com.vantu.camera"), 70));
}

// The highest bit of the mask counts like any other (the mask is read as unsigned).
TEST_F(EvictionTest, ExplorerMaskUsesAll32Bits) {
    writeConfig(R"("feature_explorer_enable": true)",
                R"("com.tencent.mm": {"supportExplorerCameraMask": -2147483648})");
    sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl();
    EXPECT_TRUE(ext->isSupportExplorer(String8("31"), String8("com.tencent.mm")));
    EXPECT_TRUE(ext->isSupportExplorer(String8("63"), String8("com.tencent.mm")));
    EXPECT_FALSE(ext->isSupportExplorer(String8("30"), String8("com.tencent.mm")));
}

TEST_F(EvictionTest, CostIsOverriddenForExplorerCamerasAndTheSystemCamera) {
    writeConfig(R"("feature_explorer_enable": true, "explorer_override_cost": 5)",
                R"("com.tencent.mm": {"supportExplorerCameraMask": 1})");
    sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl();
    EXPECT_EQ(5, ext->OverrideCost(String8("0"), String8("com.tencent.mm"), 100));
    EXPECT_EQ(100, ext->OverrideCost(String8("1"), String8("com.tencent.mm"), 100));
    EXPECT_EQ(5, ext->OverrideCost(String8("1"), String8("com.vantu.camera"), 100));
    EXPECT_EQ(100, ext->OverrideCost(String8("0"), String8("com.app"), 100));
}

TEST_F(EvictionTest, CostKeepsTheServersValueWithoutAnOverrideKey) {
    writeConfig(R"("feature_explorer_enable": true)");
    sp<CameraServiceExtImpl> ext = new CameraServiceExtImpl();
    EXPECT_EQ(100, ext->OverrideCost(String8("0"), String8("com.vantu.camera"), 100));
}

// ---- The server's eviction wait ----

TEST_F(EvictionTest, OnlyKonaLengthensTheSystemCamerasWait) {
    sp<CameraServiceExtImpl> base = new CameraServiceExtImpl();
    sp<CameraServiceExtImpl> kona = new CameraServiceExtImpl_sm8250();
    base->setAPKPackageName(String16("com.vantu.camera"));
    kona->setAPKPackageName(String16("com.vantu.camera"));
    long duration = 1;
    base->modifyWaitDuration(duration, 3000000000L);
    EXPECT_EQ(1, duration);
    kona->modifyWaitDuration(duration, 3000000000L);
    EXPECT_EQ(8000000000L, duration);
    // No overflow for a server default near the limit.
    kona->modifyWaitDuration(duration, LONG_MAX - 1);
    EXPECT_EQ(LONG_MAX, duration);
    kona->setAPKPackageName(String16("com.app"));
    duration = 1;
    kona->modifyWaitDuration(duration, 3000000000L);
    EXPECT_EQ(1, duration);
}

}  // namespace

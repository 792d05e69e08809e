// Vendor tags: descriptors, the per-provider cache, the process-wide descriptor and how packets
// resolve vendor tag types through them.
#include <binder/Parcel.h>
#include <camera/CameraMetadata.h>
#include <camera/VendorTagDescriptor.h>
#include <camera_metadata_hidden.h>
#include <gtest/gtest.h>
#include <hostctl/VendorTags.h>

#include <atomic>
#include <thread>
#include <vector>

using android::CameraMetadata;
using android::sp;
using android::String8;
using android::VendorTagDescriptor;
using android::VendorTagDescriptorCache;

namespace {

constexpr uint64_t kProvider = 1;

class VendorTags : public ::testing::Test {
protected:
    void TearDown() override { hostctl::clearVendorTags(); }

    static uint32_t tagOf(const char* name, const VendorTagDescriptor* desc) {
        uint32_t tag = 0;
        EXPECT_EQ(CameraMetadata::getTagFromName(name, desc, &tag), android::OK) << name;
        return tag;
    }
};

TEST_F(VendorTags, IdsAreNumberedBySectionFromTheVendorBoundary) {
    sp<VendorTagDescriptor> desc = hostctl::makeVendorTagDescriptor({
        {"com.vantu.packageName", TYPE_BYTE},
        {"com.vantu.device.state", TYPE_INT64},
        {"com.vantu.fwkApiLevel", TYPE_INT32},
    });
    ASSERT_NE(desc, nullptr);
    EXPECT_EQ(desc->getTagCount(), 3);
    uint32_t tag = 0;
    ASSERT_EQ(desc->lookupTag(String8("fwkApiLevel"), String8("com.vantu"), &tag), android::OK);
    EXPECT_EQ(tag, 0x80000001u);
    ASSERT_EQ(desc->lookupTag(String8("state"), String8("com.vantu.device"), &tag), android::OK);
    EXPECT_EQ(tag, 0x80010000u);
    EXPECT_STREQ(desc->getSectionName(0x80010000u), "com.vantu.device");
    EXPECT_STREQ(desc->getTagName(0x80000000u), "packageName");
    EXPECT_EQ(desc->getTagType(0x80000001u), TYPE_INT32);

    EXPECT_EQ(desc->lookupTag(String8("state"), String8("com.vantu"), &tag), android::BAD_VALUE);
    EXPECT_EQ(desc->lookupTag(String8("x"), String8("com.other"), &tag), android::BAD_VALUE);
    EXPECT_EQ(desc->getTagType(0x80020000u), -1);
    EXPECT_EQ(desc->getSectionName(0x80020000u), nullptr);

    // A descriptor without tags counts -1, as the platform's does.
    EXPECT_EQ(VendorTagDescriptor().getTagCount(), -1);
    sp<VendorTagDescriptor> made = hostctl::makeVendorTagDescriptor({});
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->getTagCount(), -1);
}

TEST_F(VendorTags, MalformedTagListsAreRefused) {
    std::string error;
    EXPECT_EQ(hostctl::makeVendorTagDescriptor({{"nosection", TYPE_BYTE}}, &error), nullptr);
    EXPECT_NE(error.find("nosection"), std::string::npos);
    EXPECT_EQ(hostctl::makeVendorTagDescriptor({{"com.vantu.", TYPE_BYTE}}), nullptr);
    EXPECT_EQ(hostctl::makeVendorTagDescriptor({{"com.vantu.x", NUM_TYPES}}), nullptr);
    EXPECT_EQ(
        hostctl::makeVendorTagDescriptor({{"com.vantu.x", TYPE_BYTE}, {"com.vantu.x", TYPE_BYTE}}),
        nullptr);
}

// HAL operations that describe one tag with whatever the test puts in these globals.
uint32_t gOpsTag;
const char* gOpsName;
int gOpsType;
int opsCount(const vendor_tag_ops_t*) {
    return 1;
}
void opsAll(const vendor_tag_ops_t*, uint32_t* tags) {
    tags[0] = gOpsTag;
}
const char* opsSection(const vendor_tag_ops_t*, uint32_t) {
    return "com.hal";
}
const char* opsName(const vendor_tag_ops_t*, uint32_t) {
    return gOpsName;
}
int opsType(const vendor_tag_ops_t*, uint32_t) {
    return gOpsType;
}

TEST_F(VendorTags, DescriptorsFromHalOperationsAreChecked) {
    vendor_tag_ops_t ops = {opsCount, opsAll, opsSection, opsName, opsType, {}};
    sp<VendorTagDescriptor> desc;
    gOpsTag = 0x80000000u, gOpsName = "tag", gOpsType = TYPE_FLOAT;
    ASSERT_EQ(VendorTagDescriptor::createDescriptorFromOps(&ops, desc), android::OK);
    EXPECT_EQ(desc->getTagType(0x80000000u), TYPE_FLOAT);

    gOpsTag = 0x00010000u;  // below the vendor boundary
    EXPECT_EQ(VendorTagDescriptor::createDescriptorFromOps(&ops, desc), android::BAD_VALUE);
    gOpsTag = 0x80000000u, gOpsName = nullptr;
    EXPECT_EQ(VendorTagDescriptor::createDescriptorFromOps(&ops, desc), android::BAD_VALUE);
    gOpsName = "tag", gOpsType = NUM_TYPES;
    EXPECT_EQ(VendorTagDescriptor::createDescriptorFromOps(&ops, desc), android::BAD_VALUE);
    EXPECT_EQ(VendorTagDescriptor::createDescriptorFromOps(nullptr, desc), android::BAD_VALUE);
}

TEST_F(VendorTags, PacketsWithTheProvidersVendorIdResolveThroughTheCache) {
    ASSERT_TRUE(hostctl::installVendorTags(hostctl::libraryVendorTags(), kProvider, true, false));
    EXPECT_TRUE(VendorTagDescriptorCache::isVendorCachePresent(kProvider));
    EXPECT_FALSE(VendorTagDescriptorCache::isVendorCachePresent(kProvider + 1));
    EXPECT_EQ(VendorTagDescriptor::getGlobalVendorTagDescriptor(), nullptr);

    sp<VendorTagDescriptor> desc;
    ASSERT_EQ(VendorTagDescriptorCache::getGlobalVendorTagCache()->getVendorTagDescriptor(kProvider,
                                                                                          &desc),
              android::OK);
    uint32_t state = tagOf("com.vantu.device.state", desc.get());

    CameraMetadata request;
    hostctl::setMetadataVendorId(&request, kProvider);
    int64_t folded = 2;
    ASSERT_EQ(request.update(state, &folded, 1), android::OK);
    EXPECT_EQ(request.find(state).data.i64[0], 2);
    EXPECT_STREQ(get_local_camera_metadata_tag_name(state, request.getAndLock()), "state");
    request.unlock(request.getAndLock());

    // A packet without a vendor id finds no vendor tags: no process-wide descriptor is set.
    CameraMetadata plain;
    EXPECT_EQ(plain.update(state, &folded, 1), android::INVALID_OPERATION);

    // The cache answers type 0 (byte) for a provider it does not know, as the platform does.
    CameraMetadata stranger;
    hostctl::setMetadataVendorId(&stranger, kProvider + 1);
    EXPECT_EQ(stranger.update(state, &folded, 1), android::INVALID_OPERATION);
    uint8_t b = 1;
    EXPECT_EQ(stranger.update(state, &b, 1), android::OK);
}

TEST_F(VendorTags, TheProcessWideDescriptorServesPacketsWithoutVendorId) {
    ASSERT_TRUE(hostctl::installVendorTags({{"com.vantu.control.torch.intensity", TYPE_INT32}},
                                           kProvider, false, true));
    sp<VendorTagDescriptor> global = VendorTagDescriptor::getGlobalVendorTagDescriptor();
    ASSERT_NE(global, nullptr);
    uint32_t intensity = tagOf("com.vantu.control.torch.intensity", global.get());

    CameraMetadata m;
    int32_t level = 3;
    ASSERT_EQ(m.update(intensity, &level, 1), android::OK);
    EXPECT_EQ(get_camera_metadata_tag_type(intensity), TYPE_INT32);
    EXPECT_STREQ(get_camera_metadata_section_name(intensity), "com.vantu.control.torch");

    hostctl::clearVendorTags();
    EXPECT_EQ(get_camera_metadata_tag_type(intensity), -1);
    EXPECT_EQ(VendorTagDescriptor::getGlobalVendorTagDescriptor(), nullptr);
}

TEST_F(VendorTags, EveryLibraryTagResolvesByNameToItsType) {
    sp<VendorTagDescriptor> desc = hostctl::makeVendorTagDescriptor(hostctl::libraryVendorTags());
    ASSERT_NE(desc, nullptr);
    for (const hostctl::VendorTag& t : hostctl::libraryVendorTags()) {
        uint32_t tag = tagOf(t.name.c_str(), desc.get());
        EXPECT_EQ(desc->getTagType(tag), t.type) << t.name;
        EXPECT_EQ(std::string(desc->getSectionName(tag)) + "." + desc->getTagName(tag), t.name);
    }
    EXPECT_NE(hostctl::findLibraryVendorTag("com.vantu.CTP.query.ALL"), nullptr);
    EXPECT_EQ(hostctl::findLibraryVendorTag("com.vantu.unknown"), nullptr);
}

TEST_F(VendorTags, ReRegisteringAProviderReplacesItsTags) {
    ASSERT_TRUE(hostctl::installVendorTags({{"com.vantu.a", TYPE_BYTE}}, kProvider, true, false));
    ASSERT_TRUE(hostctl::installVendorTags({{"com.vantu.b", TYPE_INT32}}, kProvider, true, false));
    uint32_t tag = 0;
    int type = -1;
    EXPECT_FALSE(hostctl::lookupTag("com.vantu.a", kProvider, &tag, &type));
    ASSERT_TRUE(hostctl::lookupTag("com.vantu.b", kProvider, &tag, &type));
    EXPECT_EQ(type, TYPE_INT32);
}

TEST_F(VendorTags, NamesTranslateBothWays) {
    ASSERT_TRUE(hostctl::installVendorTags(hostctl::libraryVendorTags(), kProvider, true, false));
    uint32_t tag = 0;
    int type = -1;
    ASSERT_TRUE(hostctl::lookupTag("android.control.aeMode", kProvider, &tag, &type));
    EXPECT_EQ(tag, static_cast<uint32_t>(ANDROID_CONTROL_AE_MODE));
    EXPECT_EQ(type, TYPE_BYTE);
    ASSERT_TRUE(hostctl::lookupTag("com.vantu.CTP.query.ALL", kProvider, &tag, &type));
    EXPECT_EQ(type, TYPE_INT32);
    EXPECT_EQ(hostctl::tagName(tag, kProvider), "com.vantu.CTP.query.ALL");
    EXPECT_EQ(hostctl::tagType(tag, kProvider), TYPE_INT32);
    EXPECT_EQ(hostctl::tagName(ANDROID_FLASH_INFO_AVAILABLE, kProvider),
              "android.flash.info.available");
    EXPECT_EQ(hostctl::tagName(0x7fff0000u, kProvider), "0x7fff0000");
    EXPECT_FALSE(hostctl::lookupTag("com.vantu.CTP.query.ALL", kProvider + 1, &tag, &type));
    EXPECT_FALSE(hostctl::lookupTag("android.nothing", kProvider, &tag, &type));
}

TEST_F(VendorTags, DescriptorsAndCachesSurviveAParcel) {
    sp<VendorTagDescriptor> desc = hostctl::makeVendorTagDescriptor(hostctl::libraryVendorTags());
    ASSERT_NE(desc, nullptr);
    sp<VendorTagDescriptorCache> cache = new VendorTagDescriptorCache();
    ASSERT_EQ(cache->addVendorDescriptor(kProvider, desc), android::OK);
    EXPECT_EQ(cache->addVendorDescriptor(kProvider, desc), android::BAD_VALUE);

    android::Parcel parcel;
    ASSERT_EQ(cache->writeToParcel(&parcel), android::OK);
    parcel.setDataPosition(0);
    VendorTagDescriptorCache read;
    ASSERT_EQ(read.readFromParcel(&parcel), android::OK);
    EXPECT_EQ(read.getTagCount(kProvider), desc->getTagCount());
    uint32_t tag = tagOf("com.vantu.device.state", desc.get());
    EXPECT_EQ(read.getTagType(tag, kProvider), TYPE_INT64);
    EXPECT_STREQ(read.getSectionName(tag, kProvider), "com.vantu.device");
}

TEST_F(VendorTags, AMalformedDescriptorParcelLeavesTheDescriptorUnchanged) {
    sp<VendorTagDescriptor> desc = hostctl::makeVendorTagDescriptor({{"com.vantu.a", TYPE_BYTE}});
    ASSERT_NE(desc, nullptr);
    android::Parcel parcel;
    parcel.writeInt32(1);           // one tag
    parcel.writeInt32(0x00010000);  // below the vendor boundary
    parcel.setDataPosition(0);
    EXPECT_EQ(desc->readFromParcel(&parcel), android::BAD_VALUE);

    android::Parcel sections;  // a section index beyond the sections sent
    sections.writeInt32(1);
    sections.writeInt32(static_cast<int32_t>(0x80000000u));
    sections.writeInt32(TYPE_BYTE);
    sections.writeString8(String8("b"));
    sections.writeInt32(3);
    sections.writeInt32(1);
    sections.writeString8(String8("com.other"));
    sections.setDataPosition(0);
    EXPECT_EQ(desc->readFromParcel(&sections), android::BAD_VALUE);

    EXPECT_EQ(desc->getTagCount(), 1);
    EXPECT_STREQ(desc->getTagName(0x80000000u), "a");
}

// Request and result threads resolve vendor tags while the service installs and clears the
// process-wide descriptor; the lookups must be race free (this test is meant for TSan builds).
TEST_F(VendorTags, LookupsRaceFreeWithInstallation) {
    sp<VendorTagDescriptor> desc =
        hostctl::makeVendorTagDescriptor({{"com.vantu.fwkApiLevel", TYPE_INT32}});
    ASSERT_NE(desc, nullptr);
    ASSERT_TRUE(hostctl::registerVendorTagsInCache(kProvider, desc));
    const uint32_t tag = 0x80000000u;

    std::atomic<bool> stop{false};
    std::atomic<int> failures{0};
    std::vector<std::thread> readers;
    for (int t = 0; t < 2; ++t) {
        readers.emplace_back([&] {
            while (!stop.load(std::memory_order_relaxed)) {
                CameraMetadata settings;
                hostctl::setMetadataVendorId(&settings, kProvider);
                int32_t level = 33;
                if (settings.update(tag, &level, 1) != android::OK) failures++;
                get_camera_metadata_tag_type(tag);  // global descriptor or nothing
            }
        });
    }
    for (int i = 0; i < 200; ++i) {
        VendorTagDescriptor::setAsGlobalVendorTagDescriptor(desc);
        VendorTagDescriptor::clearGlobalVendorTagDescriptor();
    }
    stop = true;
    for (std::thread& r : readers) r.join();
    EXPECT_EQ(failures.load(), 0);
}

}  // namespace

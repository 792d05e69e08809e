// The provider manager's queries over the cameras the host declares.
#include <common/CameraProviderManager.h>
#include <gtest/gtest.h>
#include <system/camera_metadata.h>

#include "hostctl/CameraHost.h"

namespace {

using android::CameraMetadata;
using android::sp;
using hostctl::HostProviderManager;

CameraMetadata camera(uint8_t facing, std::vector<uint8_t> capabilities, bool flash = false) {
    CameraMetadata metadata;
    metadata.update(ANDROID_LENS_FACING, &facing, 1);
    if (!capabilities.empty()) {
        metadata.update(ANDROID_REQUEST_AVAILABLE_CAPABILITIES, capabilities.data(),
                        capabilities.size());
    }
    uint8_t available = flash ? 1 : 0;
    metadata.update(ANDROID_FLASH_INFO_AVAILABLE, &available, 1);
    return metadata;
}

CameraMetadata logical(uint8_t facing, const std::string& physicalIds) {
    CameraMetadata metadata = camera(facing, {0, 11});
    metadata.update(ANDROID_LOGICAL_MULTI_CAMERA_PHYSICAL_IDS,
                    reinterpret_cast<const uint8_t*>(physicalIds.data()), physicalIds.size());
    return metadata;
}

constexpr uint8_t kBack = 1;
constexpr uint8_t kFront = 0;

TEST(CameraProviderManager, CharacteristicsOfKnownCamerasOnly) {
    sp<HostProviderManager> manager = new HostProviderManager();
    manager->addCamera("0", camera(kBack, {0}, /*flash=*/true));
    CameraMetadata characteristics;
    ASSERT_EQ(android::OK, manager->getCameraCharacteristics("0", false, &characteristics));
    EXPECT_EQ(kBack, characteristics.find(ANDROID_LENS_FACING).data.u8[0]);
    EXPECT_TRUE(manager->hasFlashUnit("0"));
    EXPECT_EQ(android::NAME_NOT_FOUND,
              manager->getCameraCharacteristics("7", false, &characteristics));
    EXPECT_EQ(android::BAD_VALUE, manager->getCameraCharacteristics("0", false, nullptr));
    EXPECT_FALSE(manager->hasFlashUnit("7"));
    manager->removeCamera("0");
    EXPECT_EQ(android::NAME_NOT_FOUND,
              manager->getCameraCharacteristics("0", false, &characteristics));
}

TEST(CameraProviderManager, ReplacingACameraKeepsItsPlace) {
    sp<HostProviderManager> manager = new HostProviderManager();
    manager->addCamera("0", camera(kBack, {0}));
    manager->addCamera("1", camera(kFront, {0}));
    manager->addCamera("0", camera(kFront, {0}));
    EXPECT_EQ((std::vector<std::string>{"0", "1"}), manager->getCameraDeviceIds());
    CameraMetadata characteristics;
    manager->getCameraCharacteristics("0", false, &characteristics);
    EXPECT_EQ(kFront, characteristics.find(ANDROID_LENS_FACING).data.u8[0]);
}

TEST(CameraProviderManager, CapabilitiesDecideTheSystemCameraKind) {
    sp<HostProviderManager> manager = new HostProviderManager();
    manager->addCamera("0", camera(kBack, {0}));
    manager->addCamera("1", camera(kFront, {0, 14}));  // SYSTEM_CAMERA
    manager->addCamera("2", camera(kBack, {13}));      // only SECURE_IMAGE_DATA
    manager->addCamera("3", camera(kBack, {0, 13}));   // secure among others: public
    android::SystemCameraKind kind;
    ASSERT_EQ(android::OK, manager->getSystemCameraKind("1", &kind));
    EXPECT_EQ(android::SYSTEM_ONLY_CAMERA, kind);
    ASSERT_EQ(android::OK, manager->getSystemCameraKind("2", &kind));
    EXPECT_EQ(android::HIDDEN_SECURE_CAMERA, kind);
    ASSERT_EQ(android::OK, manager->getSystemCameraKind("3", &kind));
    EXPECT_EQ(android::PUBLIC, kind);
    EXPECT_EQ(android::NAME_NOT_FOUND, manager->getSystemCameraKind("9", &kind));
    // (system-only, public); the hidden secure camera is not counted.
    EXPECT_EQ(std::make_pair(1, 2), manager->getCameraCount());
}

TEST(CameraProviderManager, LogicalCameraListsItsPhysicalCameras) {
    sp<HostProviderManager> manager = new HostProviderManager();
    manager->addCamera("0", logical(kBack, std::string("2\0"
                                                       "3",
                                                       4)));
    manager->addCamera("2", camera(kBack, {0}));
    std::vector<std::string> physical;
    EXPECT_TRUE(manager->isLogicalCamera("0", &physical));
    EXPECT_EQ((std::vector<std::string>{"2", "3"}), physical);
    EXPECT_FALSE(manager->isLogicalCamera("2", &physical));
    // "3" is only reachable through the logical camera.
    EXPECT_TRUE(manager->isHiddenPhysicalCamera("3"));
    EXPECT_FALSE(manager->isHiddenPhysicalCamera("2"));
}

TEST(CameraProviderManager, Api1IdsKeepOneIdPerLogicalGroupAndPutSystemCamerasLast) {
    sp<HostProviderManager> manager = new HostProviderManager();
    manager->addCamera("10", camera(kBack, {0}));
    manager->addCamera("4", camera(kFront, {0, 14}));
    manager->addCamera("0", logical(kBack, std::string("2\0", 2)));
    manager->addCamera("2", camera(kBack, {0}));
    manager->addCamera("1", camera(kFront, {0}));
    manager->addCamera("5", camera(kBack, {}));    // not backward compatible
    manager->addCamera("6", camera(kBack, {13}));  // hidden secure
    EXPECT_EQ((std::vector<std::string>{"0", "1", "10", "4"}),
              manager->getAPI1CompatibleCameraDeviceIds());
}

TEST(CameraProviderManager, TorchNeedsAFlashUnit) {
    sp<HostProviderManager> manager = new HostProviderManager();
    manager->addCamera("0", camera(kBack, {0}, /*flash=*/true));
    manager->addCamera("1", camera(kFront, {0}));
    EXPECT_EQ(android::OK, manager->setTorchMode("0", true));
    EXPECT_TRUE(manager->torchMode("0"));
    EXPECT_EQ(android::INVALID_OPERATION, manager->setTorchMode("1", true));
    EXPECT_EQ(android::NAME_NOT_FOUND, manager->setTorchMode("8", true));
    EXPECT_FALSE(manager->supportSetTorchMode("1"));
}

TEST(CameraProviderManager, ProviderTagIdFollowsTheCamera) {
    sp<HostProviderManager> manager = new HostProviderManager();
    manager->addCamera("0", camera(kBack, {0}), 7);
    EXPECT_EQ(7u, manager->getProviderTagIdLocked("0"));
    EXPECT_EQ(CAMERA_METADATA_INVALID_VENDOR_ID, manager->getProviderTagIdLocked("1"));
}

}  // namespace

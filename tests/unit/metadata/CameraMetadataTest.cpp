// android::CameraMetadata: locking, typed updates, growth, copies, names and the parcel form.
#include <binder/Parcel.h>
#include <camera/CameraMetadata.h>
#include <camera_metadata_hidden.h>
#include <gtest/gtest.h>
#include <hostctl/VendorTags.h>
#include <string.h>

#include <vector>

using android::CameraMetadata;
using android::Parcel;
using android::String8;

namespace {

TEST(CameraMetadataLock, ChangesFailWhileTheBufferIsHandedOut) {
    CameraMetadata m(4, 16);
    uint8_t on = 1;
    ASSERT_EQ(m.update(ANDROID_CONTROL_AE_MODE, &on, 1), android::OK);
    const camera_metadata_t* raw = m.getAndLock();
    ASSERT_NE(raw, nullptr);

    EXPECT_EQ(m.update(ANDROID_FLASH_MODE, &on, 1), android::INVALID_OPERATION);
    EXPECT_EQ(m.erase(ANDROID_CONTROL_AE_MODE), android::INVALID_OPERATION);
    EXPECT_EQ(m.sort(), android::INVALID_OPERATION);
    EXPECT_EQ(m.append(CameraMetadata(1, 0)), android::INVALID_OPERATION);
    EXPECT_EQ(m.release(), nullptr);
    m.clear();
    EXPECT_EQ(m.entryCount(), 1u);
    EXPECT_EQ(m.find(ANDROID_CONTROL_AE_MODE).count, 0u);  // non-const find refuses too
    const CameraMetadata& constView = m;
    EXPECT_EQ(constView.find(ANDROID_CONTROL_AE_MODE).count, 1u);

    CameraMetadata other(1, 0);
    m.swap(other);
    EXPECT_EQ(m.entryCount(), 1u);
    m = other;
    EXPECT_EQ(m.entryCount(), 1u);

    EXPECT_EQ(m.unlock(nullptr), android::BAD_VALUE);
    EXPECT_EQ(m.unlock(raw), android::OK);
    EXPECT_EQ(m.unlock(raw), android::INVALID_OPERATION);
    EXPECT_EQ(m.update(ANDROID_FLASH_MODE, &on, 1), android::OK);
}

TEST(CameraMetadataUpdate, TypeMismatchesAndUnknownTagsAreRefused) {
    CameraMetadata m;
    int32_t value = 1;
    EXPECT_EQ(m.update(ANDROID_CONTROL_AE_MODE, &value, 1), android::INVALID_OPERATION);
    EXPECT_EQ(m.update(0x7fff0001, &value, 1), android::INVALID_OPERATION);
    EXPECT_EQ(m.update(0x80000000u, &value, 1), android::INVALID_OPERATION);  // no vendor tags
    EXPECT_TRUE(m.isEmpty());
    EXPECT_EQ(m.bufferSize(), 0u);
}

TEST(CameraMetadataUpdate, StringsKeepTheirTerminatingNul) {
    CameraMetadata m;
    ASSERT_EQ(m.update(ANDROID_JPEG_GPS_PROCESSING_METHOD, String8("GPS")), android::OK);
    camera_metadata_ro_entry e =
        static_cast<const CameraMetadata&>(m).find(ANDROID_JPEG_GPS_PROCESSING_METHOD);
    ASSERT_EQ(e.count, 4u);
    EXPECT_EQ(memcmp(e.data.u8, "GPS\0", 4), 0);
    EXPECT_EQ(m.update(ANDROID_JPEG_ORIENTATION, String8("x")), android::INVALID_OPERATION);
}

TEST(CameraMetadataUpdate, ReplacesGrowsAndKeepsEarlierEntries) {
    CameraMetadata m(1, 0);
    int64_t range[2] = {1000, 2000};
    ASSERT_EQ(m.update(ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE, range, 2), android::OK);
    for (int32_t i = 0; i < 20; ++i) {
        int32_t regions[5] = {i, i, i + 10, i + 10, 1};
        ASSERT_EQ(m.update(ANDROID_CONTROL_AE_REGIONS, regions, 5), android::OK);
        ASSERT_EQ(m.update(ANDROID_JPEG_ORIENTATION, &i, 1), android::OK);
    }
    android::Vector<float> zoom;
    zoom.add(1.0f);
    zoom.add(10.0f);
    ASSERT_EQ(m.update(ANDROID_CONTROL_ZOOM_RATIO_RANGE, zoom), android::OK);

    EXPECT_EQ(m.entryCount(), 4u);
    camera_metadata_entry e = m.find(ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE);
    ASSERT_EQ(e.count, 2u);
    EXPECT_EQ(e.data.i64[1], 2000);
    e = m.find(ANDROID_CONTROL_AE_REGIONS);
    ASSERT_EQ(e.count, 5u);
    EXPECT_EQ(e.data.i32[0], 19);
    EXPECT_EQ(m.find(ANDROID_JPEG_ORIENTATION).data.i32[0], 19);
    EXPECT_FLOAT_EQ(m.find(ANDROID_CONTROL_ZOOM_RATIO_RANGE).data.f[1], 10.0f);
}

TEST(CameraMetadataUpdate, EntryUpdatesCopyAnotherPacketsEntry) {
    CameraMetadata source, target;
    double gps[3] = {1.5, 2.5, 3.5};
    ASSERT_EQ(source.update(ANDROID_JPEG_GPS_COORDINATES, gps, 3), android::OK);
    camera_metadata_rational_t step = {1, 3};
    ASSERT_EQ(source.update(ANDROID_CONTROL_AE_COMPENSATION_STEP, &step, 1), android::OK);

    const CameraMetadata& constSource = source;
    ASSERT_EQ(target.update(constSource.find(ANDROID_JPEG_GPS_COORDINATES)), android::OK);
    ASSERT_EQ(target.update(constSource.find(ANDROID_CONTROL_AE_COMPENSATION_STEP)), android::OK);
    EXPECT_DOUBLE_EQ(target.find(ANDROID_JPEG_GPS_COORDINATES).data.d[2], 3.5);
    EXPECT_EQ(target.find(ANDROID_CONTROL_AE_COMPENSATION_STEP).data.r[0].denominator, 3);

    // An entry that points into the packet being updated would be moved under its own feet.
    camera_metadata_ro_entry own =
        static_cast<const CameraMetadata&>(target).find(ANDROID_JPEG_GPS_COORDINATES);
    EXPECT_EQ(target.update(own), android::INVALID_OPERATION);
}

TEST(CameraMetadataErase, AbsentTagsEraseWithoutError) {
    CameraMetadata m(2, 0);
    EXPECT_EQ(m.erase(ANDROID_FLASH_MODE), android::OK);
    uint8_t torch = ANDROID_FLASH_MODE_TORCH;
    ASSERT_EQ(m.update(ANDROID_FLASH_MODE, &torch, 1), android::OK);
    EXPECT_TRUE(m.exists(ANDROID_FLASH_MODE));
    EXPECT_EQ(m.erase(ANDROID_FLASH_MODE), android::OK);
    EXPECT_FALSE(m.exists(ANDROID_FLASH_MODE));
    EXPECT_EQ(m.find(ANDROID_FLASH_MODE).data.u8, nullptr);
}

TEST(CameraMetadataOwnership, CopiesMovesAndAppendsAreIndependent) {
    CameraMetadata a(2, 0);
    int32_t one = 1, two = 2;
    ASSERT_EQ(a.update(ANDROID_JPEG_ORIENTATION, &one, 1), android::OK);
    CameraMetadata copy(a);
    ASSERT_EQ(copy.update(ANDROID_JPEG_ORIENTATION, &two, 1), android::OK);
    EXPECT_EQ(a.find(ANDROID_JPEG_ORIENTATION).data.i32[0], 1);

    CameraMetadata moved(std::move(copy));
    EXPECT_TRUE(copy.isEmpty());
    EXPECT_EQ(moved.find(ANDROID_JPEG_ORIENTATION).data.i32[0], 2);

    CameraMetadata sum;
    uint8_t off = 0;
    ASSERT_EQ(sum.update(ANDROID_FLASH_MODE, &off, 1), android::OK);
    ASSERT_EQ(sum.append(moved), android::OK);
    EXPECT_EQ(sum.entryCount(), 2u);

    camera_metadata_t* released = sum.release();
    EXPECT_TRUE(sum.isEmpty());
    CameraMetadata adopted(released);
    EXPECT_EQ(adopted.entryCount(), 2u);
}

TEST(CameraMetadataNames, TheLongestSectionWins) {
    uint32_t tag = 0;
    ASSERT_EQ(CameraMetadata::getTagFromName("android.flash.info.available", nullptr, &tag),
              android::OK);
    EXPECT_EQ(tag, static_cast<uint32_t>(ANDROID_FLASH_INFO_AVAILABLE));
    ASSERT_EQ(CameraMetadata::getTagFromName("android.flash.mode", nullptr, &tag), android::OK);
    EXPECT_EQ(tag, static_cast<uint32_t>(ANDROID_FLASH_MODE));
    ASSERT_EQ(CameraMetadata::getTagFromName("android.scaler.availableStreamConfigurations",
                                             nullptr, &tag),
              android::OK);
    EXPECT_EQ(tag, static_cast<uint32_t>(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS));
}

TEST(CameraMetadataNames, MalformedAndUnknownNamesAreReported) {
    uint32_t tag = 0;
    EXPECT_EQ(CameraMetadata::getTagFromName(nullptr, nullptr, &tag), android::BAD_VALUE);
    EXPECT_EQ(CameraMetadata::getTagFromName("android.control.aeMode", nullptr, nullptr),
              android::BAD_VALUE);
    EXPECT_EQ(CameraMetadata::getTagFromName("android.control", nullptr, &tag), android::BAD_VALUE);
    EXPECT_EQ(CameraMetadata::getTagFromName("android.control.", nullptr, &tag), android::BAD_VALUE);
    EXPECT_EQ(CameraMetadata::getTagFromName("android.control.aeModes", nullptr, &tag),
              android::NAME_NOT_FOUND);
    EXPECT_EQ(CameraMetadata::getTagFromName("com.vantu.device.state", nullptr, &tag),
              android::NAME_NOT_FOUND);
}

TEST(CameraMetadataNames, VendorNamesResolveThroughTheDescriptor) {
    android::sp<android::VendorTagDescriptor> desc = hostctl::makeVendorTagDescriptor(
        {{"com.vantu.packageName", TYPE_BYTE}, {"com.vantu.device.state", TYPE_INT64}});
    ASSERT_NE(desc, nullptr);
    uint32_t tag = 0;
    // "com.vantu.device.state" begins with both "com.vantu" and "com.vantu.device".
    ASSERT_EQ(CameraMetadata::getTagFromName("com.vantu.device.state", desc.get(), &tag),
              android::OK);
    EXPECT_EQ(desc->getTagType(tag), TYPE_INT64);
    ASSERT_EQ(CameraMetadata::getTagFromName("com.vantu.packageName", desc.get(), &tag),
              android::OK);
    EXPECT_EQ(tag, 0x80000000u);
    EXPECT_EQ(CameraMetadata::getTagFromName("com.vantu.activityName", desc.get(), &tag),
              android::NAME_NOT_FOUND);
}

TEST(CameraMetadataPermissions, RemovesVendorAndPermissionTagsAndTheirKeys) {
    CameraMetadata m;
    float pose[4] = {0, 0, 0, 1};
    uint8_t facing = ANDROID_LENS_FACING_BACK;
    ASSERT_EQ(m.update(ANDROID_LENS_POSE_ROTATION, pose, 4), android::OK);
    ASSERT_EQ(m.update(ANDROID_LENS_FACING, &facing, 1), android::OK);
    int32_t keys[3] = {ANDROID_LENS_POSE_ROTATION, ANDROID_LENS_FACING, ANDROID_SENSOR_ORIENTATION};
    ASSERT_EQ(m.update(ANDROID_REQUEST_AVAILABLE_CHARACTERISTICS_KEYS, keys, 3), android::OK);

    std::vector<int32_t> removed;
    ASSERT_EQ(m.removePermissionEntries(CAMERA_METADATA_INVALID_VENDOR_ID, &removed), android::OK);
    EXPECT_EQ(removed, std::vector<int32_t>{ANDROID_LENS_POSE_ROTATION});
    EXPECT_FALSE(m.exists(ANDROID_LENS_POSE_ROTATION));
    camera_metadata_entry left = m.find(ANDROID_REQUEST_AVAILABLE_CHARACTERISTICS_KEYS);
    ASSERT_EQ(left.count, 2u);
    EXPECT_EQ(left.data.i32[0], ANDROID_LENS_FACING);
}

// --- parcel form ---

TEST(CameraMetadataParcel, RoundTripKeepsEntriesAndVendorId) {
    CameraMetadata m(4, 64);
    int64_t range[2] = {100000, 2000000000};
    uint8_t mode = ANDROID_CONTROL_AF_MODE_CONTINUOUS_PICTURE;
    ASSERT_EQ(m.update(ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE, range, 2), android::OK);
    ASSERT_EQ(m.update(ANDROID_CONTROL_AF_MODE, &mode, 1), android::OK);
    hostctl::setMetadataVendorId(&m, 9);

    Parcel parcel;
    ASSERT_EQ(m.writeToParcel(&parcel), android::OK);
    parcel.setDataPosition(0);
    CameraMetadata read;
    ASSERT_EQ(read.readFromParcel(&parcel), android::OK);
    EXPECT_EQ(read.entryCount(), 2u);
    EXPECT_EQ(read.getVendorId(), 9u);
    EXPECT_EQ(read.find(ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE).data.i64[1], 2000000000);
    EXPECT_EQ(read.find(ANDROID_CONTROL_AF_MODE).data.u8[0], mode);
    // The packet travels compacted.
    EXPECT_EQ(read.bufferSize(), calculate_camera_metadata_size(2, 16));
}

TEST(CameraMetadataParcel, AnEmptyObjectTravelsAsSizeZero) {
    Parcel parcel;
    CameraMetadata empty;
    ASSERT_EQ(empty.writeToParcel(&parcel), android::OK);
    EXPECT_EQ(parcel.dataSize(), 4u);
    parcel.setDataPosition(0);
    CameraMetadata read(2, 0);
    ASSERT_EQ(read.readFromParcel(&parcel), android::OK);
    EXPECT_EQ(read.bufferSize(), 0u);
}

TEST(CameraMetadataParcel, MalformedParcelsLeaveTheObjectUnchanged) {
    CameraMetadata target(2, 0);
    int32_t v = 90;
    ASSERT_EQ(target.update(ANDROID_JPEG_ORIENTATION, &v, 1), android::OK);

    Parcel tooSmall;  // a blob no larger than the alignment slack
    tooSmall.writeInt32(8);
    tooSmall.setDataPosition(0);
    EXPECT_EQ(target.readFromParcel(&tooSmall), android::BAD_VALUE);

    CameraMetadata source(1, 0);
    ASSERT_EQ(source.update(ANDROID_JPEG_ORIENTATION, &v, 1), android::OK);
    Parcel good;
    ASSERT_EQ(source.writeToParcel(&good), android::OK);

    // Rewrite the trailing offset to point past the alignment slack.
    Parcel badOffset;
    badOffset.setData(good.data(), good.dataSize() - 4);
    badOffset.setDataPosition(good.dataSize() - 4);
    badOffset.writeInt32(8);
    badOffset.setDataPosition(0);
    EXPECT_EQ(target.readFromParcel(&badOffset), android::BAD_VALUE);

    // Damage the packet inside the blob: an entry count beyond its capacity.
    std::vector<uint8_t> bytes(good.data(), good.data() + good.dataSize());
    int32_t offset;
    memcpy(&offset, bytes.data() + bytes.size() - 4, sizeof(offset));
    size_t packetStart = 4 + 4 + offset;  // blob size word, in-place blob marker, padding
    uint32_t count = 50;
    memcpy(bytes.data() + packetStart + 12, &count, sizeof(count));
    Parcel corrupt;
    corrupt.setData(bytes.data(), bytes.size());
    corrupt.setDataPosition(0);
    EXPECT_EQ(target.readFromParcel(&corrupt), android::BAD_VALUE);

    EXPECT_EQ(target.find(ANDROID_JPEG_ORIENTATION).data.i32[0], 90);
    EXPECT_EQ(target.readFromParcel(nullptr), android::BAD_VALUE);
}

}  // namespace

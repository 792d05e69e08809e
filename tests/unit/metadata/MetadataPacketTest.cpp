// The camera metadata packet: layout, entry operations, copies and validation.
#include <camera_metadata_hidden.h>
#include <errno.h>
#include <gtest/gtest.h>
#include <stdio.h>
#include <string.h>
#include <system/camera_metadata.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace {

struct PacketDeleter {
    void operator()(camera_metadata_t* m) const { free_camera_metadata(m); }
};
using Packet = std::unique_ptr<camera_metadata_t, PacketDeleter>;

Packet allocate(size_t entries, size_t data) {
    return Packet(allocate_camera_metadata(entries, data));
}

// Raw header words, as another process would read them.
uint32_t headerWord(const camera_metadata_t* m, size_t offset) {
    uint32_t v;
    memcpy(&v, reinterpret_cast<const uint8_t*>(m) + offset, sizeof(v));
    return v;
}

void setHeaderWord(camera_metadata_t* m, size_t offset, uint32_t v) {
    memcpy(reinterpret_cast<uint8_t*>(m) + offset, &v, sizeof(v));
}

// Entry record `i`, at entries_start + 16 * i.
uint8_t* entryRecord(camera_metadata_t* m, size_t i) {
    return reinterpret_cast<uint8_t*>(m) + headerWord(m, 20) + 16 * i;
}

std::vector<uint8_t> bytesOf(const camera_metadata_ro_entry_t& e) {
    size_t n = e.count * camera_metadata_type_size[e.type];
    return std::vector<uint8_t>(e.data.u8, e.data.u8 + n);
}

// One tag of each type, with a value count that fits inline and one that does not.
struct TypeCase {
    uint32_t tag;
    uint8_t type;
    size_t inlineCount;
    size_t outOfLineCount;
};

const TypeCase kTypeCases[] = {
    {ANDROID_CONTROL_AE_MODE, TYPE_BYTE, 4, 5},
    {ANDROID_CONTROL_AE_REGIONS, TYPE_INT32, 1, 5},
    {ANDROID_CONTROL_ZOOM_RATIO_RANGE, TYPE_FLOAT, 1, 2},
    {ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE, TYPE_INT64, 0, 2},
    {ANDROID_JPEG_GPS_COORDINATES, TYPE_DOUBLE, 0, 3},
    {ANDROID_CONTROL_AE_COMPENSATION_STEP, TYPE_RATIONAL, 0, 1},
};

std::vector<uint8_t> pattern(size_t bytes, uint8_t seed) {
    std::vector<uint8_t> v(bytes);
    for (size_t i = 0; i < bytes; ++i) v[i] = static_cast<uint8_t>(seed + i * 7);
    return v;
}

class EveryType : public ::testing::TestWithParam<TypeCase> {};

TEST_P(EveryType, AddFindUpdateEraseAndCopyKeepTheValues) {
    const TypeCase& c = GetParam();
    ASSERT_EQ(get_camera_metadata_tag_type(c.tag), c.type);
    Packet m = allocate(4, 256);
    size_t size = camera_metadata_type_size[c.type];

    std::vector<uint8_t> small = pattern(c.inlineCount * size, 1);
    std::vector<uint8_t> large = pattern(c.outOfLineCount * size, 50);
    ASSERT_EQ(add_camera_metadata_entry(m.get(), c.tag, large.data(), c.outOfLineCount), 0);
    ASSERT_EQ(add_camera_metadata_entry(m.get(), ANDROID_FLASH_MODE, "\x02", 1), 0);

    camera_metadata_ro_entry_t e;
    ASSERT_EQ(find_camera_metadata_ro_entry(m.get(), c.tag, &e), 0);
    EXPECT_EQ(e.type, c.type);
    EXPECT_EQ(bytesOf(e), large);

    // Shrinking to an inline payload and growing again must not disturb the other entry.
    camera_metadata_entry_t updated;
    ASSERT_EQ(update_camera_metadata_entry(m.get(), e.index, small.empty() ? nullptr : small.data(),
                                           c.inlineCount, &updated),
              0);
    EXPECT_EQ(updated.count, c.inlineCount);
    ASSERT_EQ(find_camera_metadata_ro_entry(m.get(), c.tag, &e), 0);
    EXPECT_EQ(bytesOf(e), small);
    EXPECT_EQ(get_camera_metadata_data_count(m.get()), 0u);
    ASSERT_EQ(
        update_camera_metadata_entry(m.get(), e.index, large.data(), c.outOfLineCount, nullptr), 0);

    std::vector<uint8_t> copyMemory(get_camera_metadata_compact_size(m.get()) + 8);
    uint8_t* aligned =
        copyMemory.data() + (8 - reinterpret_cast<uintptr_t>(copyMemory.data()) % 8) % 8;
    camera_metadata_t* copy = copy_camera_metadata(aligned, copyMemory.size() - 8, m.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(validate_camera_metadata_structure(copy, nullptr), 0);
    ASSERT_EQ(find_camera_metadata_ro_entry(copy, c.tag, &e), 0);
    EXPECT_EQ(bytesOf(e), large);

    ASSERT_EQ(find_camera_metadata_ro_entry(m.get(), c.tag, &e), 0);
    ASSERT_EQ(delete_camera_metadata_entry(m.get(), e.index), 0);
    EXPECT_EQ(find_camera_metadata_ro_entry(m.get(), c.tag, &e), -ENOENT);
    ASSERT_EQ(find_camera_metadata_ro_entry(m.get(), ANDROID_FLASH_MODE, &e), 0);
    EXPECT_EQ(e.data.u8[0], 2);
    EXPECT_EQ(validate_camera_metadata_structure(m.get(), nullptr), 0);
}

INSTANTIATE_TEST_SUITE_P(Types, EveryType, ::testing::ValuesIn(kTypeCases),
                         [](const ::testing::TestParamInfo<TypeCase>& info) {
                             return std::string(camera_metadata_type_names[info.param.type]);
                         });

TEST(MetadataLayout, HeaderAndSizesFollowTheWireFormat) {
    EXPECT_EQ(calculate_camera_metadata_size(10, 100), 312u);
    EXPECT_EQ(calculate_camera_metadata_size(0, 0), 48u);
    Packet m = allocate(3, 20);
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(headerWord(m.get(), 0), calculate_camera_metadata_size(3, 20));  // size
    EXPECT_EQ(headerWord(m.get(), 4), 1u);                                     // version
    EXPECT_EQ(headerWord(m.get(), 16), 3u);                                    // entry capacity
    EXPECT_EQ(headerWord(m.get(), 20), 48u);                                   // entries start
    EXPECT_EQ(headerWord(m.get(), 28), 20u);                                   // data capacity
    EXPECT_EQ(headerWord(m.get(), 32), 96u);  // 48 + 3 * 16, already 8-aligned
    EXPECT_EQ(get_camera_metadata_vendor_id(m.get()), CAMERA_METADATA_INVALID_VENDOR_ID);
    EXPECT_EQ(get_camera_metadata_alignment(), 8u);
}

// Payloads of up to four bytes live in the entry record; larger ones go to the data area, each
// padded to eight bytes.
TEST(MetadataLayout, SmallPayloadsLiveInTheEntryRecordOthersArePadded) {
    Packet m = allocate(3, 64);
    int32_t orientation = 0x01020304;
    ASSERT_EQ(add_camera_metadata_entry(m.get(), ANDROID_JPEG_ORIENTATION, &orientation, 1), 0);
    uint8_t five[5] = {1, 2, 3, 4, 5};
    ASSERT_EQ(add_camera_metadata_entry(m.get(), ANDROID_CONTROL_AE_AVAILABLE_MODES, five, 5), 0);
    int64_t range[2] = {100000, 2000000000};
    ASSERT_EQ(add_camera_metadata_entry(m.get(), ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE, range, 2),
              0);
    EXPECT_EQ(calculate_camera_metadata_entry_data_size(TYPE_BYTE, 5), 8u);
    EXPECT_EQ(calculate_camera_metadata_entry_data_size(TYPE_INT32, 1), 0u);
    EXPECT_EQ(get_camera_metadata_data_count(m.get()), 8u + 16u);

    int32_t stored;
    memcpy(&stored, entryRecord(m.get(), 0) + 8, sizeof(stored));
    EXPECT_EQ(stored, orientation);
    EXPECT_EQ(entryRecord(m.get(), 0)[12], TYPE_INT32);
    uint32_t offsets[2];
    memcpy(&offsets[0], entryRecord(m.get(), 1) + 8, sizeof(offsets[0]));
    memcpy(&offsets[1], entryRecord(m.get(), 2) + 8, sizeof(offsets[1]));
    EXPECT_EQ(offsets[0], 0u);
    EXPECT_EQ(offsets[1], 8u);
    int64_t first;
    memcpy(&first, reinterpret_cast<uint8_t*>(m.get()) + headerWord(m.get(), 32) + 8, sizeof(first));
    EXPECT_EQ(first, range[0]);
}

TEST(MetadataEntries, FullPacketsRefuseMore) {
    Packet m = allocate(1, 8);
    int32_t regions[5] = {0, 0, 10, 10, 1};
    EXPECT_NE(add_camera_metadata_entry(m.get(), ANDROID_CONTROL_AE_REGIONS, regions, 5), 0);
    ASSERT_EQ(add_camera_metadata_entry(m.get(), ANDROID_CONTROL_AE_REGIONS, regions, 2), 0);
    EXPECT_NE(add_camera_metadata_entry(m.get(), ANDROID_FLASH_MODE, "\x01", 1), 0);
    // Growing the one entry past the data capacity fails and leaves it as it was.
    EXPECT_NE(update_camera_metadata_entry(m.get(), 0, regions, 5, nullptr), 0);
    camera_metadata_ro_entry_t e;
    ASSERT_EQ(get_camera_metadata_ro_entry(m.get(), 0, &e), 0);
    EXPECT_EQ(e.count, 2u);
    EXPECT_NE(add_camera_metadata_entry(m.get(), 0x7fff0000, regions, 1), 0);  // unknown tag
}

TEST(MetadataEntries, SortedPacketsAreSearchedInTagOrder) {
    Packet m = allocate(8, 64);
    const uint32_t tags[] = {ANDROID_SENSOR_SENSITIVITY, ANDROID_CONTROL_AE_EXPOSURE_COMPENSATION,
                             ANDROID_JPEG_ORIENTATION, ANDROID_REQUEST_ID,
                             ANDROID_CONTROL_POST_RAW_SENSITIVITY_BOOST};
    int32_t value = 0;
    for (uint32_t tag : tags) {
        ++value;
        ASSERT_EQ(add_camera_metadata_entry(m.get(), tag, &value, 1), 0);
    }
    ASSERT_EQ(sort_camera_metadata(m.get()), 0);
    EXPECT_EQ(headerWord(m.get(), 8) & 1u, 1u);

    camera_metadata_ro_entry_t e;
    uint32_t previous = 0;
    for (size_t i = 0; i < 5; ++i) {
        ASSERT_EQ(get_camera_metadata_ro_entry(m.get(), i, &e), 0);
        EXPECT_GT(e.tag, previous);
        previous = e.tag;
    }
    value = 0;
    for (uint32_t tag : tags) {
        ++value;
        ASSERT_EQ(find_camera_metadata_ro_entry(m.get(), tag, &e), 0);
        EXPECT_EQ(e.data.i32[0], value);
    }
    EXPECT_EQ(find_camera_metadata_ro_entry(m.get(), ANDROID_FLASH_MODE, &e), -ENOENT);

    // Deleting keeps the order; adding clears the flag and search falls back to a scan.
    ASSERT_EQ(delete_camera_metadata_entry(m.get(), 1), 0);
    EXPECT_EQ(headerWord(m.get(), 8) & 1u, 1u);
    ASSERT_EQ(add_camera_metadata_entry(m.get(), ANDROID_CONTROL_AE_MODE, "\x01", 1), 0);
    EXPECT_EQ(headerWord(m.get(), 8) & 1u, 0u);
    EXPECT_EQ(find_camera_metadata_ro_entry(m.get(), ANDROID_CONTROL_AE_MODE, &e), 0);
}

TEST(MetadataEntries, DeletionRepacksDataAndShrinksTheCompactSize) {
    Packet m = allocate(4, 128);
    int64_t a[2] = {1, 2}, b[3] = {3, 4, 5}, c[2] = {6, 7};
    ASSERT_EQ(add_camera_metadata_entry(m.get(), ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE, a, 2), 0);
    ASSERT_EQ(add_camera_metadata_entry(m.get(), ANDROID_SCALER_AVAILABLE_STALL_DURATIONS, b, 3), 0);
    ASSERT_EQ(
        add_camera_metadata_entry(m.get(), ANDROID_SCALER_AVAILABLE_MIN_FRAME_DURATIONS, c, 2), 0);
    size_t before = get_camera_metadata_compact_size(m.get());

    ASSERT_EQ(delete_camera_metadata_entry(m.get(), 1), 0);
    EXPECT_EQ(get_camera_metadata_data_count(m.get()), 32u);
    EXPECT_EQ(get_camera_metadata_compact_size(m.get()), before - 16 - 24);
    camera_metadata_ro_entry_t e;
    ASSERT_EQ(
        find_camera_metadata_ro_entry(m.get(), ANDROID_SCALER_AVAILABLE_MIN_FRAME_DURATIONS, &e), 0);
    EXPECT_EQ(e.data.i64[0], 6);
    EXPECT_EQ(e.data.i64[1], 7);
    EXPECT_EQ(validate_camera_metadata_structure(m.get(), nullptr), 0);
    EXPECT_NE(delete_camera_metadata_entry(m.get(), 2), 0);
}

TEST(MetadataCopies, CloneAndCopyDropUnusedCapacity) {
    Packet m = allocate(10, 200);
    set_camera_metadata_vendor_id(m.get(), 7);
    int32_t v = 3;
    ASSERT_EQ(add_camera_metadata_entry(m.get(), ANDROID_JPEG_ORIENTATION, &v, 1), 0);
    Packet clone(clone_camera_metadata(m.get()));
    ASSERT_NE(clone, nullptr);
    EXPECT_EQ(get_camera_metadata_entry_capacity(clone.get()), 1u);
    EXPECT_EQ(get_camera_metadata_data_capacity(clone.get()), 0u);
    EXPECT_EQ(get_camera_metadata_size(clone.get()), get_camera_metadata_compact_size(m.get()));
    EXPECT_EQ(get_camera_metadata_vendor_id(clone.get()), 7u);

    alignas(8) uint8_t small[48];
    EXPECT_EQ(copy_camera_metadata(small, sizeof(small), m.get()), nullptr);
    EXPECT_EQ(clone_camera_metadata(nullptr), nullptr);
}

TEST(MetadataCopies, AppendMovesOffsetsAndChecksVendorIds) {
    Packet a = allocate(4, 64), b = allocate(4, 64);
    int64_t range[2] = {1, 2};
    float zoom[2] = {1.0f, 8.0f};
    ASSERT_EQ(add_camera_metadata_entry(a.get(), ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE, range, 2),
              0);
    ASSERT_EQ(add_camera_metadata_entry(b.get(), ANDROID_CONTROL_ZOOM_RATIO_RANGE, zoom, 2), 0);
    set_camera_metadata_vendor_id(b.get(), 5);

    ASSERT_EQ(append_camera_metadata(a.get(), b.get()), 0);
    EXPECT_EQ(get_camera_metadata_vendor_id(a.get()), 5u);
    camera_metadata_ro_entry_t e;
    ASSERT_EQ(find_camera_metadata_ro_entry(a.get(), ANDROID_CONTROL_ZOOM_RATIO_RANGE, &e), 0);
    EXPECT_FLOAT_EQ(e.data.f[1], 8.0f);
    ASSERT_EQ(find_camera_metadata_ro_entry(a.get(), ANDROID_SENSOR_INFO_EXPOSURE_TIME_RANGE, &e),
              0);
    EXPECT_EQ(e.data.i64[1], 2);

    Packet other = allocate(2, 16);
    set_camera_metadata_vendor_id(other.get(), 6);
    EXPECT_NE(append_camera_metadata(a.get(), other.get()), 0);
    Packet tiny = allocate(1, 0);
    EXPECT_NE(append_camera_metadata(tiny.get(), a.get()), 0);
}

TEST(MetadataCopies, AppendKeepsTheSortOrderOnlyIntoAnEmptyPacket) {
    Packet sorted = allocate(2, 0), empty = allocate(4, 0), full = allocate(4, 0);
    ASSERT_EQ(add_camera_metadata_entry(sorted.get(), ANDROID_FLASH_MODE, "\x01", 1), 0);
    ASSERT_EQ(sort_camera_metadata(sorted.get()), 0);
    ASSERT_EQ(add_camera_metadata_entry(full.get(), ANDROID_CONTROL_AE_MODE, "\x01", 1), 0);
    ASSERT_EQ(sort_camera_metadata(full.get()), 0);

    ASSERT_EQ(append_camera_metadata(empty.get(), sorted.get()), 0);
    EXPECT_EQ(headerWord(empty.get(), 8) & 1u, 1u);
    ASSERT_EQ(append_camera_metadata(full.get(), sorted.get()), 0);
    EXPECT_EQ(headerWord(full.get(), 8) & 1u, 0u);
}

class MetadataValidation : public ::testing::Test {
protected:
    void SetUp() override {
        m = allocate(3, 64);
        int32_t regions[5] = {1, 2, 3, 4, 5};
        ASSERT_EQ(add_camera_metadata_entry(m.get(), ANDROID_CONTROL_AE_REGIONS, regions, 5), 0);
        ASSERT_EQ(add_camera_metadata_entry(m.get(), ANDROID_FLASH_MODE, "\x01", 1), 0);
        size = get_camera_metadata_size(m.get());
        ASSERT_EQ(validate_camera_metadata_structure(m.get(), &size), 0);
    }
    Packet m;
    size_t size = 0;
};

TEST_F(MetadataValidation, RejectsCountsBeyondCapacity) {
    setHeaderWord(m.get(), 12, 4);  // entry_count > entry_capacity
    EXPECT_EQ(validate_camera_metadata_structure(m.get(), &size), CAMERA_METADATA_VALIDATION_ERROR);
    setHeaderWord(m.get(), 12, 2);
    setHeaderWord(m.get(), 24, 65);  // data_count > data_capacity
    EXPECT_EQ(validate_camera_metadata_structure(m.get(), &size), CAMERA_METADATA_VALIDATION_ERROR);
}

TEST_F(MetadataValidation, RejectsPayloadsOutsideTheDataArea) {
    uint32_t offset = 64;
    memcpy(entryRecord(m.get(), 0) + 8, &offset, sizeof(offset));
    EXPECT_EQ(validate_camera_metadata_structure(m.get(), &size), CAMERA_METADATA_VALIDATION_ERROR);
    camera_metadata_ro_entry_t e;
    EXPECT_NE(get_camera_metadata_ro_entry(m.get(), 0, &e), 0);
}

TEST_F(MetadataValidation, RejectsBadTypesAndTypesOtherThanTheTagsOwn) {
    entryRecord(m.get(), 1)[12] = NUM_TYPES;
    EXPECT_EQ(validate_camera_metadata_structure(m.get(), &size), CAMERA_METADATA_VALIDATION_ERROR);
    entryRecord(m.get(), 1)[12] = TYPE_INT32;  // android.flash.mode is a byte tag
    EXPECT_EQ(validate_camera_metadata_structure(m.get(), &size), CAMERA_METADATA_VALIDATION_ERROR);
}

TEST_F(MetadataValidation, RejectsAPacketLargerThanItsBufferOrOverlappingSections) {
    size_t shorter = size - 8;
    EXPECT_EQ(validate_camera_metadata_structure(m.get(), &shorter),
              CAMERA_METADATA_VALIDATION_ERROR);
    setHeaderWord(m.get(), 32, 64);  // data_start inside the entry records
    EXPECT_EQ(validate_camera_metadata_structure(m.get(), &size), CAMERA_METADATA_VALIDATION_ERROR);
    EXPECT_EQ(allocate_copy_camera_metadata_checked(m.get(), size), nullptr);
}

TEST_F(MetadataValidation, ReportsAShiftedButOtherwiseValidPacket) {
    std::vector<uint8_t> memory(size + 8);
    uint8_t* base = memory.data() + (8 - reinterpret_cast<uintptr_t>(memory.data()) % 8) % 8;
    memcpy(base + 4, m.get(), size);
    EXPECT_EQ(
        validate_camera_metadata_structure(reinterpret_cast<camera_metadata_t*>(base + 4), nullptr),
        CAMERA_METADATA_VALIDATION_SHIFTED);
    // The checked copy realigns it.
    Packet copy(allocate_copy_camera_metadata_checked(
        reinterpret_cast<camera_metadata_t*>(base + 4), size));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(get_camera_metadata_entry_count(copy.get()), 2u);
}

TEST(MetadataTags, NamesTypesAndSectionsMatchThePlatform) {
    EXPECT_STREQ(get_camera_metadata_section_name(ANDROID_CONTROL_AE_MODE), "android.control");
    EXPECT_STREQ(get_camera_metadata_tag_name(ANDROID_CONTROL_AE_MODE), "aeMode");
    EXPECT_STREQ(get_camera_metadata_section_name(ANDROID_FLASH_INFO_AVAILABLE),
                 "android.flash.info");
    EXPECT_STREQ(get_camera_metadata_tag_name(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS),
                 "availableStreamConfigurations");
    EXPECT_EQ(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS, 0x000D000Au);
    EXPECT_EQ(ANDROID_CONTROL_POST_RAW_SENSITIVITY_BOOST, 0x00010028u);
    EXPECT_EQ(ANDROID_INFO_SUPPORTED_HARDWARE_LEVEL, 0x00150000u);
    EXPECT_EQ(get_camera_metadata_tag_type(ANDROID_SENSOR_TIMESTAMP), TYPE_INT64);
    EXPECT_EQ(get_camera_metadata_tag_type(ANDROID_CONTROL_AE_COMPENSATION_STEP), TYPE_RATIONAL);
    EXPECT_EQ(ANDROID_SECTION_COUNT, 32);

    // Past a section's end, in an undefined section, or vendor without vendor operations.
    EXPECT_EQ(get_camera_metadata_tag_name(ANDROID_CONTROL_END), nullptr);
    EXPECT_EQ(get_camera_metadata_tag_type(ANDROID_CONTROL_END), -1);
    EXPECT_EQ(get_camera_metadata_section_name(ANDROID_SECTION_COUNT << 16), nullptr);
    EXPECT_EQ(get_camera_metadata_tag_type(0x80000000u), -1);
}

TEST(MetadataTags, EnumValuesPrintAndParseByName) {
    char text[CAMERA_METADATA_ENUM_STRING_MAX_SIZE];
    EXPECT_EQ(camera_metadata_enum_snprint(ANDROID_CONTROL_AE_MODE, 3, text, sizeof(text)), 0);
    EXPECT_STREQ(text, "ON_ALWAYS_FLASH");
    EXPECT_NE(camera_metadata_enum_snprint(ANDROID_CONTROL_AE_MODE, 99, text, sizeof(text)), 0);
    EXPECT_NE(camera_metadata_enum_snprint(ANDROID_JPEG_ORIENTATION, 0, text, sizeof(text)), 0);
    uint32_t value = 0;
    EXPECT_EQ(camera_metadata_enum_value(ANDROID_FLASH_MODE, "TORCH", 5, &value), 0);
    EXPECT_EQ(value, static_cast<uint32_t>(ANDROID_FLASH_MODE_TORCH));
}

TEST(MetadataDump, PrintsEntriesWithNamesAndEnumValues) {
    Packet m = allocate(2, 16);
    uint8_t mode = ANDROID_CONTROL_AE_MODE_ON_ALWAYS_FLASH;
    ASSERT_EQ(add_camera_metadata_entry(m.get(), ANDROID_CONTROL_AE_MODE, &mode, 1), 0);
    FILE* out = tmpfile();
    ASSERT_NE(out, nullptr);
    dump_camera_metadata(m.get(), fileno(out), 2);
    dump_camera_metadata(nullptr, fileno(out), 2);
    fflush(out);
    rewind(out);
    std::string text;
    char buf[256];
    while (fgets(buf, sizeof(buf), out) != nullptr) text += buf;
    fclose(out);
    EXPECT_NE(
        text.find("Dumping camera metadata array: 1 / 2 entries, 0 / 16 bytes of extra data."),
        std::string::npos);
    EXPECT_NE(text.find("android.control.aeMode (10003): byte[1]"), std::string::npos);
    EXPECT_NE(text.find("[ON_ALWAYS_FLASH ]"), std::string::npos);
    EXPECT_NE(text.find("Not allocated"), std::string::npos);
}

TEST(MetadataRobustness, NullPacketsFailCleanly) {
    camera_metadata_entry_t e;
    EXPECT_NE(find_camera_metadata_entry(nullptr, ANDROID_FLASH_MODE, &e), 0);
    EXPECT_NE(add_camera_metadata_entry(nullptr, ANDROID_FLASH_MODE, "\x01", 1), 0);
    EXPECT_NE(delete_camera_metadata_entry(nullptr, 0), 0);
    EXPECT_NE(update_camera_metadata_entry(nullptr, 0, "\x01", 1, nullptr), 0);
    EXPECT_NE(sort_camera_metadata(nullptr), 0);
    EXPECT_NE(append_camera_metadata(nullptr, nullptr), 0);
    EXPECT_NE(validate_camera_metadata_structure(nullptr, nullptr), 0);
    EXPECT_EQ(get_camera_metadata_size(nullptr), 1u);
    EXPECT_EQ(get_camera_metadata_entry_count(nullptr), 0u);
    EXPECT_EQ(allocate_copy_camera_metadata_checked(nullptr, 100), nullptr);
    EXPECT_EQ(place_camera_metadata(nullptr, 100, 1, 1), nullptr);
    Packet m = allocate(1, 8);
    EXPECT_NE(add_camera_metadata_entry(m.get(), ANDROID_CONTROL_AE_REGIONS, nullptr, 5), 0);
}

}  // namespace

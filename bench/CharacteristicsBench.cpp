// The characteristics query as a third-party app makes it on a MediaTek phone with size limits:
// a realistic table (200 stream configurations and 80 other tags) cut to 1920 x 1080.
// Goal: median at most 20 us, and within twice the floor, which is what any edit of that
// table costs: the copy the server hands over, one find and one update of the stream table.
// Both loops copy the table first, since the query edits it in place.
#include <benchmark/benchmark.h>
#include <stdio.h>
#include <stdlib.h>
#include <system/camera_metadata.h>

#include <filesystem>
#include <string>
#include <vector>

#include "CameraServiceExtImpl.h"
#include "hostctl/HostEnv.h"
#include "hostctl/Properties.h"
#include "platform/CameraServiceExtImpl_mt6893.h"

namespace {

using namespace android;

constexpr int kStreamEntries = 200;
constexpr int kOtherTags = 80;

constexpr char kConfig[] = R"({
  "default": {
    "feature_auth_enable": false,
    "thirdPartyAppWidthLimitForCam0": 1920, "thirdPartyAppHeightLimitForCam0": 1080,
    "skip_rus_check_list": ["com.tencent.mm", "com.whatsapp", "com.ss.android.ugc.aweme"]
  },
  "com.vantu.camera": {"thirdPartyAppWidthLimitForCam0": 0}
})";

CameraMetadata realisticTable() {
    CameraMetadata md;
    // Outputs and a few inputs of the usual formats from 8000 x 6000 down.
    const int32_t formats[] = {33, 34, 35, 32};
    std::vector<int32_t> streams;
    for (int i = 0; i < kStreamEntries; ++i) {
        const int32_t width = 8000 - (i / 4) * 150;
        const int32_t height = width * 3 / 4;
        streams.insert(streams.end(), {formats[i % 4], width, height, i % 25 == 0 ? 1 : 0});
    }
    md.update(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS, streams.data(), streams.size());

    // Other static tags with a handful of values each, as a HAL reports them.
    int added = 0;
    for (int section = 0; section < ANDROID_SECTION_COUNT && added < kOtherTags; ++section) {
        for (uint32_t tag = camera_metadata_section_bounds[section][0];
             tag < camera_metadata_section_bounds[section][1] && added < kOtherTags; ++tag) {
            if (tag == ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS) continue;
            status_t res = BAD_VALUE;
            switch (get_camera_metadata_tag_type(tag)) {
                case TYPE_BYTE: {
                    const uint8_t v[4] = {0, 1, 2, 3};
                    res = md.update(tag, v, 4);
                    break;
                }
                case TYPE_INT32: {
                    const int32_t v[4] = {1, 2, 3, 4};
                    res = md.update(tag, v, 4);
                    break;
                }
                case TYPE_INT64: {
                    const int64_t v[2] = {13000, 30000000000};
                    res = md.update(tag, v, 2);
                    break;
                }
                case TYPE_FLOAT: {
                    const float v[2] = {1.5f, 4.7f};
                    res = md.update(tag, v, 2);
                    break;
                }
                default:
                    break;
            }
            if (res == OK) ++added;
        }
    }
    // Sorted, as HALs hand over their static metadata, so that look-ups are binary searches.
    md.sort();
    return md;
}

// Device root, properties and configuration of the phone, for the life of the run.
struct Phone {
    Phone() {
        char dir[] = "/tmp/camext-bench-chars-XXXXXX";
        root = mkdtemp(dir) != nullptr ? dir : "/tmp";
        hostctl::setDeviceRoot(root);
        hostctl::clearProperties();
        hostctl::setProperty("ro.board.platform", "mt6893");
        hostctl::setProperty("ro.vantu.system.camera.name", "com.vantu.camera");
        const std::string configDir = root + "/odm/etc/camera";
        std::error_code ec;
        std::filesystem::create_directories(configDir, ec);
        ok = !ec;
        FILE* f = fopen((configDir + "/fwk_config.json").c_str(), "w");
        ok = ok && f != nullptr && fputs(kConfig, f) >= 0;
        if (f != nullptr) fclose(f);
        ext = new CameraServiceExtImpl_mt6893();
        ext->setAPKPackageName(String16("com.example.thirdparty"));
        table = realisticTable();
    }
    std::string root;
    bool ok = false;
    sp<CameraServiceExtImpl> ext;
    CameraMetadata table;
};

Phone& phone() {
    static Phone p;
    return p;
}

void BM_Characteristics_ThirdParty(benchmark::State& state) {
    Phone& p = phone();
    if (!p.ok) {
        state.SkipWithError("the phone's configuration could not be written");
        return;
    }
    const String16 cameraId("0");
    for (auto _ : state) {
        CameraMetadata info(p.table);
        p.ext->getCameraCharacteristics(cameraId, &info);
        benchmark::DoNotOptimize(info);
    }
    // The cut must really happen, or the figure means nothing.
    CameraMetadata info(p.table);
    p.ext->getCameraCharacteristics(cameraId, &info);
    const size_t kept = info.find(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS).count;
    if (kept == 0 || kept >= static_cast<size_t>(kStreamEntries) * 4) {
        state.SkipWithError("the size limit did not cut the table");
    }
}
BENCHMARK(BM_Characteristics_ThirdParty);

void BM_CharacteristicsFloor(benchmark::State& state) {
    Phone& p = phone();
    std::vector<int32_t> scratch;
    scratch.reserve(kStreamEntries * 4);
    for (auto _ : state) {
        CameraMetadata info(p.table);
        const camera_metadata_entry e = info.find(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS);
        scratch.assign(e.data.i32, e.data.i32 + e.count / 2);
        info.update(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS, scratch.data(), scratch.size());
        benchmark::DoNotOptimize(info.entryCount());
    }
}
BENCHMARK(BM_CharacteristicsFloor);

}  // namespace

// Writes the characteristics fuzzer's seed corpus: the queries that reach each rule of the
// characteristics filter on chips of both families.
//   characteristics_seeds --write DIR
// The checked-in tests/fuzz/characteristics/corpus is this tool's output; rewrite it when the
// input format in CharacteristicsInput.h changes.
#include <string.h>

#include <string>
#include <utility>
#include <vector>

#include "CharacteristicsInput.h"
#include "ExtFactory.h"
#include "common/SeedFiles.h"

namespace {

using namespace charfuzz;

// The board table row of a platform.
uint8_t chip(const char* platform) {
    for (size_t i = 0; i < android::boardTableSize(); ++i) {
        if (strcmp(android::boardTable()[i].platform, platform) == 0)
            return static_cast<uint8_t>(i);
    }
    fprintf(stderr, "no board table row for %s\n", platform);
    exit(1);
}

const std::vector<int32_t> kStreamTable = {
    33, 4000, 3000, 0, 35, 4000, 3000, 0, 35, 1920, 1080, 0, 34, 1920, 1080, 0,
    35, 1280, 720,  0, 34, 640,  480,  0, 35, 4000, 3000, 1, 32, 4000, 3000, 0,
};
const std::vector<int32_t> kHfrTable = {1920, 1080, 120, 120, 1, 1920, 1080, 30,  120, 4,
                                        1280, 720,  240, 240, 1, 1280, 720,  960, 960, 1};
const std::vector<int64_t> kLongExposure = {13611, 30000000000LL};
const std::vector<uint8_t> kAllFaceModes = {0, 1, 2};

// A full set of characteristics for `package` asking about `cameraId`.
Writer full(uint8_t row, uint8_t switches, const std::string& package, const std::string& cameraId) {
    Writer w(row, switches, package, cameraId);
    w.int32s(kStreams, kStreamTable)
        .int32s(kHfr, kHfrTable)
        .int64s(kExposure, kLongExposure)
        .bytes(kFaceModes, kAllFaceModes)
        .bytes(kFacing, {1});
    return w;
}

std::vector<std::pair<std::string, Writer>> seeds() {
    std::vector<std::pair<std::string, Writer>> s;
    auto add = [&s](const char* name, const Writer& w) { s.emplace_back(name, w); };
    const uint8_t open = kCameraOpen | kLogOn;

    add("mtk-third-party-cam0", full(chip("mt6893"), open, "com.whatsapp", "0"));
    add("mtk-third-party-cam1-quiet", full(chip("mt6983"), kCameraOpen, "com.whatsapp", "1"));
    add("mtk-other-camera", full(chip("mt6765"), open, "com.whatsapp", "3"));
    add("mtk-jpeg-limited", full(chip("mt6853"), open, "com.fuzz.jpeg", "0"));
    add("mtk-motor-size-list", full(chip("mt6885"), open, "com.fuzz.limited", "0"));
    add("mtk-skip-listed", full(chip("mt6877"), open, "com.fuzz.skipped", "0"));
    add("mtk-system-camera", full(chip("mt6895"), open, "com.vantu.camera", "0"));
    add("mtk-resolution-off", full(chip("mt6833"), open, "com.fuzz.free", "0"));
    add("mt6779-before-open", full(chip("mt6779"), kLogOn, "com.whatsapp", "0"));
    add("sm6125-third-party", full(chip("trinket"), open, "com.whatsapp", "1"));
    add("lahaina-cts-hfr", full(chip("lahaina"), open, "android.camera.cts", "0"));
    add("lahaina-cts-camera1", full(chip("lahaina"), open, "android.camera.cts", "1"));
    add("holi-cts-exposure", full(chip("holi"), open, "android.camera.cts", "0"));
    add("kona-verifier", full(chip("kona"), open, "com.android.cts.verifier", "0"));
    add("taro-verifier-no-exposure",
        Writer(chip("taro"), open, "com.android.cts.verifier.camera", "0")
            .bytes(kFaceModes, kAllFaceModes)
            .int32s(kStreams, kStreamTable));
    add("kalama-ordinary-app", full(chip("kalama"), kLogOn, "com.example.app", "0"));
    add("mtk-camera-id-not-a-number", full(chip("mt6789"), open, "com.whatsapp", "0x"));
    // Malformed entries: stray values, wrong types, an oversized high-speed table.
    add("mtk-stream-table-stray-values", Writer(chip("mt6873"), open, "com.whatsapp", "0")
                                             .int32s(kStreams, {35, 4000, 3000, 0, 35, 1920}));
    add("mtk-stream-table-as-int64", Writer(chip("mt6885"), open, "com.whatsapp", "0")
                                         .int64s(kStreams, {35, 4000, 3000, 0}, TYPE_INT64));
    add("lahaina-hfr-as-bytes", Writer(chip("lahaina"), open, "android.camera.cts", "0")
                                    .bytes(kHfr, {1, 2, 3, 4, 5}, TYPE_BYTE)
                                    .int64s(kExposure, kLongExposure));
    add("lahaina-hfr-oversized", Writer(chip("lahaina"), open, "android.camera.cts", "0")
                                     .int32s(kHfr, std::vector<int32_t>(520, 1)));
    add("cts-exposure-one-value",
        Writer(chip("kona"), open, "android.camera.cts", "0").int64s(kExposure, {5000}));
    add("cts-exposure-as-int32", Writer(chip("kona"), open, "android.camera.cts", "0")
                                     .int32s(kExposure, {1000, 2000, 3000, 4000}, TYPE_INT32));
    add("empty-characteristics", Writer(chip("mt6893"), open, "com.whatsapp", "0"));
    return s;
}

}  // namespace

int main(int argc, char** argv) {
    return fuzzworld::writeSeedFiles(
        argc, argv, seeds(), [](const auto& writer) -> const auto& { return writer.out(); });
}

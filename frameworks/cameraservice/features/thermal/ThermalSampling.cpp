#include "features/thermal/ThermalSampling.h"

#include <vector>

#include "features/thermal/ThermalService.h"
#include "utils/MetadataEntries.h"
#include "utils/VantuLog.h"
#include "utils/VendorTagLookup.h"

namespace android {
namespace vantu {

namespace {
constexpr char kThermalTag[] = "com.vantu.CTP.query.ALL";
constexpr size_t kThermalTagCount = 26;
}  // namespace

bool sampleThermal(ThermalSampling& sampling, Relaxed<uint32_t>& counter, uint32_t period,
                   uint32_t limit, bool enabled, bool force) {
    uint32_t count = counter;
    if (count >= limit) count = 0;
    if (enabled && period != 0 && count % period == 0) {
        // One list per request thread, so cameras sampling at once do not share it; it keeps
        // its storage, so a warm request thread allocates nothing here.
        thread_local std::vector<int> temperatures;
        const int status = ThermalService::getInstance().getAllTemperature(temperatures);
        if (status == 0 && temperatures.size() == ThermalService::kCount &&
            (temperatures[ThermalService::kBattery] != sampling.lastSent[ThermalService::kBattery] ||
             temperatures[ThermalService::kSkin] != sampling.lastSent[ThermalService::kSkin])) {
            for (int i = 0; i < ThermalService::kCount; ++i) sampling.lastSent[i] = temperatures[i];
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "%s: thermal matadata cputemp:%d,gputemp:%d,bttemp:%d,skintemp:%d",
                        "IsNewRequestThermalTemp", temperatures[ThermalService::kCpu],
                        temperatures[ThermalService::kGpu], temperatures[ThermalService::kBattery],
                        temperatures[ThermalService::kSkin]);
            }
            counter = count + 1;
            sampling.tagPending = true;
            return true;
        }
    }
    counter = count + 1;
    return force;
}

void writeThermalTag(ThermalSampling& sampling, uint64_t vendorId, CameraMetadata& request) {
    // Only the request whose sample changed carries the temperatures just sent.
    if (!sampling.tagPending.exchange(false)) return;
    uint32_t tag = sampling.tagId;
    if (tag == ThermalSampling::kTagUnknown) return;
    if (tag == 0) {
        if (!findVendorTag(kThermalTag, vendorId, &tag)) {
            // The message names the hot-spot tag; tools that read the log match this text.
            if (EXT_LOG_ON()) {
                EXT_LOG(1, "%s: [CTPthermal] Unknown tag com.vantu.CTP.hotspot.voltage, ignoring",
                        "updatethermaltemp");
            }
            sampling.tagId = ThermalSampling::kTagUnknown;
            return;
        }
        sampling.tagId = tag;
    }
    const int64_t now = monotonicNs();
    if (EXT_LOG_ON()) {
        EXT_LOG(1, "%s: thermal matadata log now is %ld ", "updatethermaltemp",
                static_cast<long>(now));
    }
    int32_t data[kThermalTagCount] = {};
    const uint64_t bits = static_cast<uint64_t>(now);
    data[0] = static_cast<int32_t>(static_cast<uint32_t>(bits & 0xFFFFFFFFu));
    data[1] = static_cast<int32_t>(static_cast<uint32_t>(bits >> 32));
    data[2] = sampling.lastSent[ThermalService::kCpu];
    data[3] = sampling.lastSent[ThermalService::kGpu];
    data[10] = sampling.lastSent[ThermalService::kSkin];
    data[11] = sampling.lastSent[ThermalService::kBattery];
    vantu::eraseEntries(request, tag);
    request.update(tag, data, kThermalTagCount);
    if (!EXT_LOG_ON()) return;
    camera_metadata_entry_t entry = request.find(tag);
    if (entry.count > 10) {
        EXT_LOG(1, "%s: thermal matadata log datatemp1 is %d datatemp2 id %d", "updatethermaltemp",
                entry.data.i32[2], entry.data.i32[10]);
    } else {
        EXT_LOG(1, "%s: thermal matadata log datatemp count is 0", "updatethermaltemp");
    }
}

}  // namespace vantu
}  // namespace android

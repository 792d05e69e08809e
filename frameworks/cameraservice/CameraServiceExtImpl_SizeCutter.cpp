/*
 * The stream-size cutter: drops the output stream configurations that exceed a size bound from
 * the characteristics, so that an app never configures them. The platform size rules call it.
 */
#include <string.h>

#include <vector>

#include "CameraServiceExtImpl.h"
#include "utils/JsonParser.h"
#include "utils/MetadataEntries.h"
#include "utils/VantuLog.h"

namespace android {

namespace {

// Values of ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS: format, width, height, direction.
constexpr size_t kStreamEntrySize = 4;
constexpr int32_t kFormatBlob = 33;                   // HAL_PIXEL_FORMAT_BLOB (JPEG)
constexpr int32_t kFormatImplementationDefined = 34;  // HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED
constexpr int32_t kFormatYCbCr420 = 35;               // HAL_PIXEL_FORMAT_YCbCr_420_888
constexpr int32_t kDirectionOutput = 0;

bool isCutFormat(int32_t format, bool limitJpeg) {
    return format == kFormatImplementationDefined || format == kFormatYCbCr420 ||
           (limitJpeg && format == kFormatBlob);
}

// Copies the whole entries of `values` that stay into `out` and returns how many values it
// wrote. The walk is made once per case of `kLog`, so that the silent one, which every query
// without the debug switch takes, tests nothing but the entries.
template <bool kLog>
size_t cutEntries(const int32_t* values, size_t count, int maxWidth, int maxHeight, bool limitJpeg,
                  int32_t* out) {
    size_t keptCount = 0;
    for (size_t i = 0; i + kStreamEntrySize <= count; i += kStreamEntrySize) {
        const int32_t format = values[i];
        const int32_t width = values[i + 1];
        const int32_t height = values[i + 2];
        const int32_t direction = values[i + 3];
        if (direction == kDirectionOutput && isCutFormat(format, limitJpeg) &&
            (width > maxWidth || height > maxHeight)) {
            if (kLog) {
                EXT_LOG(1, "%s, skip item isInput:%d, w*H:%d*%d", "limitSize", direction, width,
                        height);
            }
            continue;
        }
        if (kLog) {
            EXT_LOG(1, "%s, add,item,w*H*forma*isimput: %d*%d*%d*%d", "limitSize", width, height,
                    format, direction);
        }
        memcpy(out + keptCount, values + i, kStreamEntrySize * sizeof(int32_t));
        keptCount += kStreamEntrySize;
    }
    return keptCount;
}

}  // namespace

void CameraServiceExtImpl::limitSize(int maxWidth, int maxHeight, CameraMetadata* info,
                                     bool limitJpeg) {
    if (!getBool("feature_resolution_enable", true, nullptr) || info == nullptr) return;
    const camera_metadata_entry entry = info->find(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS);
    if (entry.count == 0) return;
    if (entry.type != TYPE_INT32) {
        EXT_LOG(0, "%s, stream configurations of type %u, left as they are", __func__,
                static_cast<unsigned>(entry.type));
        return;
    }
    if (entry.count % kStreamEntrySize != 0) {
        // Only whole entries describe a stream; the stray values are not written back.
        EXT_LOG(0, "%s, %zu stream configuration values are not whole entries, %zu dropped",
                __func__, entry.count, entry.count % kStreamEntrySize);
    }

    // The kept entries cannot be written from the packet itself (the update moves its data), so
    // they go through a copy that each binder thread keeps for its next query.
    thread_local std::vector<int32_t> kept;
    if (kept.size() < entry.count) kept.resize(entry.count);
    const bool logOn = EXT_LOG_ON();
    const size_t keptCount = logOn ? cutEntries<true>(entry.data.i32, entry.count, maxWidth,
                                                      maxHeight, limitJpeg, kept.data())
                                   : cutEntries<false>(entry.data.i32, entry.count, maxWidth,
                                                       maxHeight, limitJpeg, kept.data());
    const int32_t* out = kept.data();
    // The server's copy has no spare room: an update in place would reallocate and copy the
    // whole packet, while after an erase the kept entries fit in the space it freed. A faulty
    // packet can hold the tag more than once, and the update would land on the next copy, of
    // whatever type and size it has: every copy goes.
    const size_t copies = vantu::eraseEntries(*info, ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS);
    if (copies > 1) {
        EXT_LOG(0, "%s, stream configurations given %zu times, only the first kept", __func__,
                copies);
    }
    // An empty table still needs a real pointer for the packet functions.
    const int32_t none = 0;
    info->update(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS, keptCount == 0 ? &none : out,
                 keptCount);
    if (logOn) EXT_LOG(1, "%s, limit 3rd app size for %d*%d", "limitSize", maxWidth, maxHeight);
}

}  // namespace android

/*
 * The stamp that marks a meta buffer with the frame it carries: "[frameId;INT;<frame>;]".
 */
#ifndef VANTU_CAMERASERVICE_UTILS_FRAMESTAMP_H
#define VANTU_CAMERASERVICE_UTILS_FRAMESTAMP_H

#include <stddef.h>
#include <stdint.h>
#include <string.h>

namespace android {
namespace vantu {

// Writes the stamp of `frame` into `out` exactly as snprintf(out, size, "[frameId;INT;%u;]",
// frame) does (cut to size - 1 bytes and terminated; nothing for a size of 0), without the
// formatter's cost on the result thread.
inline void writeFrameStamp(uint8_t* out, size_t size, uint32_t frame) {
    if (out == nullptr || size == 0) return;
    static constexpr char kHead[] = "[frameId;INT;";
    char text[sizeof(kHead) + 12];
    size_t length = sizeof(kHead) - 1;
    memcpy(text, kHead, length);
    char digits[10];
    size_t count = 0;
    do {
        digits[count++] = static_cast<char>('0' + frame % 10);
        frame /= 10;
    } while (frame != 0);
    while (count > 0) text[length++] = digits[--count];
    text[length++] = ';';
    text[length++] = ']';
    const size_t kept = length < size - 1 ? length : size - 1;
    memcpy(out, text, kept);
    out[kept] = '\0';
}

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_FRAMESTAMP_H

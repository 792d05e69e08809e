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
// formatter's cost on the result thread. The text goes straight into `out` when it fits: built
// byte by byte on the stack and then copied, it would stall the copy's wide loads.
inline void writeFrameStamp(uint8_t* out, size_t size, uint32_t frame) {
    if (out == nullptr || size == 0) return;
    static constexpr char kHead[] = "[frameId;INT;";
    constexpr size_t kHeadLength = sizeof(kHead) - 1;
    char digits[10];
    size_t count = 0;
    do {
        digits[count++] = static_cast<char>('0' + frame % 10);
        frame /= 10;
    } while (frame != 0);
    const size_t length = kHeadLength + count + 2;
    if (length < size) {
        memcpy(out, kHead, kHeadLength);
        uint8_t* at = out + kHeadLength;
        while (count > 0) *at++ = static_cast<uint8_t>(digits[--count]);
        *at++ = ';';
        *at++ = ']';
        *at = '\0';
        return;
    }
    char text[kHeadLength + sizeof(digits) + 2];
    memcpy(text, kHead, kHeadLength);
    size_t at = kHeadLength;
    while (count > 0) text[at++] = digits[--count];
    text[at++] = ';';
    text[at++] = ']';
    const size_t kept = size - 1;
    memcpy(out, text, kept);
    out[kept] = '\0';
}

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_FRAMESTAMP_H

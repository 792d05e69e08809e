/*
 * The byte reader the structured fuzz targets decode their inputs with: fields are taken from the
 * front of the input, little-endian, and every read past the end gives zero, so a short input
 * ends wherever it runs out.
 */
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <string>
#include <vector>

namespace fuzzworld {

class InputReader {
public:
    InputReader(const uint8_t* data, size_t size) : mData(data), mSize(size) {}

    bool empty() const { return mPos >= mSize; }
    size_t remaining() const { return mSize - mPos; }
    const uint8_t* rest() const { return mData + mPos; }

    uint8_t u8() { return mPos < mSize ? mData[mPos++] : 0; }
    // Each read is its own statement: the bytes are taken low first whatever the compiler's
    // order of evaluation.
    uint16_t u16() {
        const uint16_t low = u8();
        return static_cast<uint16_t>(low | (u8() << 8));
    }
    uint32_t u32() {
        uint32_t v = 0;
        for (int i = 0; i < 4; ++i) v |= static_cast<uint32_t>(u8()) << (8 * i);
        return v;
    }
    uint64_t u64() {
        const uint64_t low = u32();
        return low | (static_cast<uint64_t>(u32()) << 32);
    }
    // `count` bytes into `out` (zeros past the end of the input).
    void fill(uint8_t* out, size_t count) {
        for (size_t i = 0; i < count; ++i) out[i] = u8();
    }
    // Up to `count` bytes, fewer when the input ends first.
    std::vector<uint8_t> bytes(size_t count) {
        const size_t n = count < remaining() ? count : remaining();
        std::vector<uint8_t> out(mData + mPos, mData + mPos + n);
        mPos += n;
        return out;
    }
    // A text of a length byte and that many bytes (fewer when the input ends first).
    std::string text() {
        std::string out;
        for (size_t n = u8(); n > 0 && !empty(); --n) out.push_back(static_cast<char>(u8()));
        return out;
    }
    // A reader of the next `count` bytes (fewer when the input ends first), which it skips.
    InputReader sub(size_t count) {
        const size_t n = count < remaining() ? count : remaining();
        InputReader r(mData + mPos, n);
        mPos += n;
        return r;
    }

private:
    const uint8_t* mData;
    size_t mSize;
    size_t mPos = 0;
};

}  // namespace fuzzworld

/*
 * The input format of the transaction fuzzer, shared by the fuzzer (which decodes it) and the
 * seed writer (which encodes one well-formed call per code).
 *
 * An input is read from the front:
 *   u32 code, u32 flags, u32 calling uid, u32 calling pid   (little-endian)
 *   u8  world: bit 0 SYSTEM_CAMERA granted, 1 a client connected, 2 avatar manager present,
 *       3 avatar switch, 4 frame-processing avatar support, 5 accessory-torch manager present,
 *       6 a client on camera 0, 7 a client on camera 3
 *   u8  parcel form: even -> the rest of the input is the parcel's bytes as they are;
 *       odd -> the rest is a list of typed items, each a u8 kind and its payload:
 *         0 int32 (4 bytes)          1 String16 (u8 count, then count UTF-16 units)
 *         2 null String16            3 strong binder (u8: which of four named binders)
 *         4 null binder              5 the interface token "android.hardware.camera"
 *         6 raw bytes (u8 count, then the bytes, padded as a write pads them)
 *         7 int64 (8 bytes)          other kinds are skipped
 * A short input ends wherever it runs out; missing header fields read as zero.
 */
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <string>
#include <vector>

namespace transactfuzz {

enum ItemKind : uint8_t {
    kInt32 = 0,
    kString16 = 1,
    kNullString16 = 2,
    kBinder = 3,
    kNullBinder = 4,
    kToken = 5,
    kRaw = 6,
    kInt64 = 7,
};

enum WorldBits : uint8_t {
    kGranted = 1 << 0,
    kConnected = 1 << 1,
    kAvatarManager = 1 << 2,
    kAvatarSwitch = 1 << 3,
    kAps2Avatar = 1 << 4,
    kTorchManager = 1 << 5,
    kClient0 = 1 << 6,
    kClient3 = 1 << 7,
};

constexpr int kNamedBinders = 4;
constexpr uint8_t kStructuredForm = 1;

// Reads bytes from the front of the input; past the end every read gives zero.
class Reader {
public:
    Reader(const uint8_t* data, size_t size) : mData(data), mSize(size) {}

    bool empty() const { return mPos >= mSize; }
    size_t remaining() const { return mSize - mPos; }
    const uint8_t* rest() const { return mData + mPos; }

    uint8_t u8() { return mPos < mSize ? mData[mPos++] : 0; }
    uint32_t u32() {
        uint32_t v = 0;
        for (int i = 0; i < 4; ++i) v |= static_cast<uint32_t>(u8()) << (8 * i);
        return v;
    }
    uint64_t u64() {
        const uint64_t low = u32();
        return low | (static_cast<uint64_t>(u32()) << 32);
    }
    // Up to `count` bytes, fewer when the input ends first.
    std::vector<uint8_t> bytes(size_t count) {
        const size_t n = count < remaining() ? count : remaining();
        std::vector<uint8_t> out(mData + mPos, mData + mPos + n);
        mPos += n;
        return out;
    }

private:
    const uint8_t* mData;
    size_t mSize;
    size_t mPos = 0;
};

// Builds inputs in the format above.
class Writer {
public:
    Writer& header(uint32_t code, uint32_t flags, uint32_t uid, uint32_t pid, uint8_t world) {
        u32(code).u32(flags).u32(uid).u32(pid);
        mOut.push_back(world);
        mOut.push_back(kStructuredForm);
        return *this;
    }
    Writer& token() { return kind(kToken); }
    Writer& int32(int32_t v) { return kind(kInt32).u32(static_cast<uint32_t>(v)); }
    Writer& string16(const std::string& ascii) {
        kind(kString16);
        mOut.push_back(static_cast<uint8_t>(ascii.size()));
        for (char c : ascii) {
            mOut.push_back(static_cast<uint8_t>(c));
            mOut.push_back(0);
        }
        return *this;
    }
    Writer& nullString16() { return kind(kNullString16); }
    Writer& binder(uint8_t which) {
        kind(kBinder);
        mOut.push_back(which);
        return *this;
    }
    Writer& nullBinder() { return kind(kNullBinder); }
    const std::vector<uint8_t>& bytes() const { return mOut; }

private:
    Writer& kind(ItemKind k) {
        mOut.push_back(k);
        return *this;
    }
    Writer& u32(uint32_t v) {
        for (int i = 0; i < 4; ++i) mOut.push_back(static_cast<uint8_t>(v >> (8 * i)));
        return *this;
    }

    std::vector<uint8_t> mOut;
};

}  // namespace transactfuzz

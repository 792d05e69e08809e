// AHardwareBuffer on the host: allocation checks, CPU locking rules and plane layouts.
#include <android/hardware_buffer.h>
#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string.h>
#include <unistd.h>

namespace {

AHardwareBuffer_Desc desc(uint32_t w, uint32_t h, uint32_t format,
                          uint64_t usage = AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN |
                                           AHARDWAREBUFFER_USAGE_CPU_WRITE_OFTEN) {
    AHardwareBuffer_Desc d = {};
    d.width = w;
    d.height = h;
    d.layers = 1;
    d.format = format;
    d.usage = usage;
    return d;
}

// Released at the end of the test.
struct Buffer {
    explicit Buffer(const AHardwareBuffer_Desc& d) { result = AHardwareBuffer_allocate(&d, &b); }
    ~Buffer() { AHardwareBuffer_release(b); }
    AHardwareBuffer* b = nullptr;
    int result;
};

TEST(HardwareBufferTest, AllocationRefusesWhatGrallocRefuses) {
    AHardwareBuffer* out = reinterpret_cast<AHardwareBuffer*>(1);
    AHardwareBuffer_Desc zero = desc(0, 16, AHARDWAREBUFFER_FORMAT_R8G8B8A8_UNORM);
    EXPECT_EQ(-EINVAL, AHardwareBuffer_allocate(&zero, &out));
    EXPECT_EQ(nullptr, out);
    AHardwareBuffer_Desc blob = desc(1024, 2, AHARDWAREBUFFER_FORMAT_BLOB);
    EXPECT_EQ(-EINVAL, AHardwareBuffer_allocate(&blob, &out));
    AHardwareBuffer_Desc oddYuv = desc(15, 16, AHARDWAREBUFFER_FORMAT_Y8Cb8Cr8_420);
    EXPECT_EQ(0, AHardwareBuffer_isSupported(&oddYuv));
    AHardwareBuffer_Desc unknown = desc(16, 16, 0x7777);
    EXPECT_EQ(-EINVAL, AHardwareBuffer_allocate(&unknown, &out));
    EXPECT_EQ(-EINVAL, AHardwareBuffer_allocate(nullptr, &out));
    EXPECT_EQ(-EINVAL, AHardwareBuffer_allocate(&zero, nullptr));
}

TEST(HardwareBufferTest, DescribeGivesBackTheDescriptionWithStride) {
    Buffer yv12(desc(100, 50, 0x32315659));
    ASSERT_EQ(0, yv12.result);
    AHardwareBuffer_Desc d;
    AHardwareBuffer_describe(yv12.b, &d);
    EXPECT_EQ(100u, d.width);
    EXPECT_EQ(50u, d.height);
    EXPECT_EQ(112u, d.stride);  // YV12 rows are 16-pixel aligned
    uint64_t a = 0, b = 0;
    Buffer other(desc(4, 4, AHARDWAREBUFFER_FORMAT_R8_UNORM));
    ASSERT_EQ(0, AHardwareBuffer_getId(yv12.b, &a));
    ASSERT_EQ(0, AHardwareBuffer_getId(other.b, &b));
    EXPECT_NE(a, b);
}

TEST(HardwareBufferTest, LockGivesWritableMemoryThatPersists) {
    Buffer rgba(desc(8, 4, AHARDWAREBUFFER_FORMAT_R8G8B8A8_UNORM));
    ASSERT_EQ(0, rgba.result);
    void* addr = nullptr;
    ASSERT_EQ(
        0, AHardwareBuffer_lock(rgba.b, AHARDWAREBUFFER_USAGE_CPU_WRITE_OFTEN, -1, nullptr, &addr));
    memset(addr, 0xab, 8 * 4 * 4);
    int32_t fence = 0;
    ASSERT_EQ(0, AHardwareBuffer_unlock(rgba.b, &fence));
    EXPECT_EQ(-1, fence);

    int32_t bpp = 0, bps = 0;
    ASSERT_EQ(0, AHardwareBuffer_lockAndGetInfo(rgba.b, AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN, -1,
                                                nullptr, &addr, &bpp, &bps));
    EXPECT_EQ(4, bpp);
    EXPECT_EQ(32, bps);
    EXPECT_EQ(0xab, static_cast<uint8_t*>(addr)[8 * 4 * 4 - 1]);
    EXPECT_EQ(0, AHardwareBuffer_unlock(rgba.b, nullptr));
    EXPECT_EQ(-EINVAL, AHardwareBuffer_unlock(rgba.b, nullptr));
}

TEST(HardwareBufferTest, LockRefusesNonCpuUsageBadRectAndNullBuffer) {
    Buffer rgba(desc(8, 4, AHARDWAREBUFFER_FORMAT_R8G8B8A8_UNORM));
    void* addr = reinterpret_cast<void*>(1);
    EXPECT_EQ(-EINVAL, AHardwareBuffer_lock(rgba.b, AHARDWAREBUFFER_USAGE_GPU_SAMPLED_IMAGE, -1,
                                            nullptr, &addr));
    EXPECT_EQ(nullptr, addr);
    ARect outside = {0, 0, 9, 4};
    EXPECT_EQ(-EINVAL, AHardwareBuffer_lock(rgba.b, AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN, -1,
                                            &outside, &addr));
    ARect inside = {2, 1, 8, 4};
    EXPECT_EQ(
        0, AHardwareBuffer_lock(rgba.b, AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN, -1, &inside, &addr));
    EXPECT_EQ(0, AHardwareBuffer_unlock(rgba.b, nullptr));
    EXPECT_EQ(-EINVAL, AHardwareBuffer_lock(nullptr, AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN, -1,
                                            nullptr, &addr));
}

// The fence is the caller's to give away: lock waits for it and closes it.
TEST(HardwareBufferTest, LockWaitsOnAndClosesTheFence) {
    Buffer rgba(desc(2, 2, AHARDWAREBUFFER_FORMAT_R8G8B8A8_UNORM));
    int fds[2];
    ASSERT_EQ(0, pipe(fds));
    ASSERT_EQ(1, write(fds[1], "x", 1));  // signalled
    void* addr = nullptr;
    EXPECT_EQ(0, AHardwareBuffer_lock(rgba.b, AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN, fds[0], nullptr,
                                      &addr));
    EXPECT_EQ(-1, fcntl(fds[0], F_GETFD));
    EXPECT_EQ(0, AHardwareBuffer_unlock(rgba.b, nullptr));
    close(fds[1]);
}

TEST(HardwareBufferTest, YuvPlanesFollowTheFormatsLayout) {
    struct Case {
        uint32_t format;
        ptrdiff_t cbOffset, crOffset;  // from the luma plane
        uint32_t chromaPixelStride;
    };
    const uint32_t w = 64, h = 32;
    const Case cases[] = {
        {AHARDWAREBUFFER_FORMAT_Y8Cb8Cr8_420, w * h, w * h + 1, 2},
        {0x11, w * h + 1, w * h, 2},                 // NV21
        {0x32315659, w * h + 32 * h / 2, w * h, 1},  // YV12: Cr plane first
        {AHARDWAREBUFFER_FORMAT_YCbCr_P010, 2 * w * h, 2 * w * h + 2, 4},
    };
    for (const Case& c : cases) {
        Buffer yuv(desc(w, h, c.format));
        ASSERT_EQ(0, yuv.result) << c.format;
        AHardwareBuffer_Planes planes;
        ASSERT_EQ(0, AHardwareBuffer_lockPlanes(yuv.b, AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN, -1,
                                                nullptr, &planes));
        ASSERT_EQ(3u, planes.planeCount);
        auto* y = static_cast<uint8_t*>(planes.planes[0].data);
        EXPECT_EQ(c.cbOffset, static_cast<uint8_t*>(planes.planes[1].data) - y) << c.format;
        EXPECT_EQ(c.crOffset, static_cast<uint8_t*>(planes.planes[2].data) - y) << c.format;
        EXPECT_EQ(c.chromaPixelStride, planes.planes[1].pixelStride) << c.format;
        EXPECT_EQ(0, AHardwareBuffer_unlock(yuv.b, nullptr));
    }
}

TEST(HardwareBufferTest, BufferLivesUntilLastRelease) {
    AHardwareBuffer_Desc d = desc(4, 4, AHARDWAREBUFFER_FORMAT_R8G8B8A8_UNORM);
    AHardwareBuffer* b = nullptr;
    ASSERT_EQ(0, AHardwareBuffer_allocate(&d, &b));
    AHardwareBuffer_acquire(b);
    AHardwareBuffer_release(b);
    // Still valid after one of two releases (the sanitizer build catches a use after free).
    AHardwareBuffer_Desc out;
    AHardwareBuffer_describe(b, &out);
    EXPECT_EQ(4u, out.width);
    AHardwareBuffer_release(b);
    AHardwareBuffer_release(nullptr);
    AHardwareBuffer_acquire(nullptr);
}

}  // namespace

// The fake frame-processing library in its shapes: loadable as a real shared object, missing
// exactly the entry points asked for, answering as configured and recording every call.
#include <android/hardware_buffer.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <string.h>
#include <vndksupport/linker.h>

#include <string>

#include "hostctl/Services.h"
#include "support/TestSupport.h"

namespace {

using IsSupported = bool (*)(const char*, void*);
using Create = bool (*)(void (*)(void*, void*), void*, void**);
using Memcpy = bool (*)(AHardwareBuffer*, AHardwareBuffer*);

class ApsLibraryTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearServiceCalls();
        std::string error;
        const std::string probe = mRoot.hostPath("/probe/libAlgoProcess.so");
        if (!hostctl::installApsLibrary(probe, {}, &error) &&
            error.find("is not built") != std::string::npos) {
            GTEST_SKIP() << error << " (the build does not include host/fakes)";
        }
    }
    void TearDown() override {
        for (void* h : mHandles) android_unload_sphal_library(h);
        hostctl::clearServiceCalls();
    }

    // Installs a shape under its own name (a loaded library is found again by its path) and
    // loads it as the library does.
    void* load(const std::string& name, const hostctl::ApsLibraryShape& shape) {
        const std::string path = mRoot.hostPath("/odm/lib64/" + name + "/libAlgoProcess.so");
        std::string error;
        EXPECT_TRUE(hostctl::installApsLibrary(path, shape, &error)) << error;
        void* handle = android_load_sphal_library(path.c_str(), RTLD_LAZY);
        EXPECT_NE(nullptr, handle) << dlerror();
        if (handle) mHandles.push_back(handle);
        return handle;
    }

    testsupport::TempDeviceRoot mRoot;
    std::vector<void*> mHandles;
};

TEST_F(ApsLibraryTest, FullShapeExportsEveryEntryPoint) {
    void* lib = load("full", {});
    ASSERT_NE(nullptr, lib);
    for (const auto& name : hostctl::apsEntryPoints()) {
        EXPECT_NE(nullptr, dlsym(lib, name.c_str())) << name;
    }
    auto isSupported = reinterpret_cast<IsSupported>(dlsym(lib, "isAPSFeatureSupport"));
    EXPECT_TRUE(isSupported("com.vantu.fwkBeauty", nullptr));
    auto create = reinterpret_cast<Create>(dlsym(lib, "createAPSInstance"));
    void* instance = nullptr;
    EXPECT_TRUE(create(nullptr, nullptr, &instance));
    EXPECT_NE(nullptr, instance);
    auto calls = hostctl::serviceCallsOf(hostctl::kApsLibrary);
    ASSERT_EQ(2u, calls.size());
    EXPECT_EQ("isAPSFeatureSupport(com.vantu.fwkBeauty, true)", calls[0].text());
    EXPECT_EQ("createAPSInstance(null)", calls[1].text());
}

TEST_F(ApsLibraryTest, MissingEntryPointsAreNotFoundButTheRestWork) {
    hostctl::ApsLibraryShape shape;
    shape.missing = {"initAPS", "APSProcessCaptureFrames"};
    void* lib = load("missing", shape);
    ASSERT_NE(nullptr, lib);
    dlerror();
    EXPECT_EQ(nullptr, dlsym(lib, "initAPS"));
    const char* why = dlerror();
    ASSERT_NE(nullptr, why);
    EXPECT_NE(nullptr, strstr(why, "undefined symbol: initAPS")) << why;
    EXPECT_EQ(nullptr, dlsym(lib, "APSProcessCaptureFrames"));
    // "uninitAPS" ends with the hidden name; it must survive the hiding.
    EXPECT_NE(nullptr, dlsym(lib, "uninitAPS"));
    auto isSupported = reinterpret_cast<IsSupported>(dlsym(lib, "isAPSFeatureSupport"));
    ASSERT_NE(nullptr, isSupported);
    EXPECT_TRUE(isSupported("x", nullptr));
}

TEST_F(ApsLibraryTest, AnswersFollowTheShape) {
    hostctl::ApsLibraryShape shape;
    shape.features = {{"com.vantu.fwkZumio", false}, {"com.vantu.fwkBeauty", true}};
    shape.engineSucceeds = false;
    void* lib = load("answers", shape);
    ASSERT_NE(nullptr, lib);
    auto isSupported = reinterpret_cast<IsSupported>(dlsym(lib, "isAPSFeatureSupport"));
    EXPECT_FALSE(isSupported("com.vantu.fwkZumio", nullptr));
    EXPECT_TRUE(isSupported("com.vantu.fwkBeauty", nullptr));
    EXPECT_TRUE(isSupported(nullptr, nullptr));
    auto create = reinterpret_cast<Create>(dlsym(lib, "createAPSInstance"));
    void* instance = reinterpret_cast<void*>(1);
    EXPECT_FALSE(create(nullptr, nullptr, &instance));
    EXPECT_EQ(nullptr, instance);
}

TEST_F(ApsLibraryTest, BufferCopyCopiesPixelsOfEqualBuffersOnly) {
    void* lib = load("copy", {});
    auto copy = reinterpret_cast<Memcpy>(dlsym(lib, "hardwarewbufferMemcpy"));
    ASSERT_NE(nullptr, copy);
    AHardwareBuffer_Desc d = {};
    d.width = 16;
    d.height = 8;
    d.layers = 1;
    d.format = AHARDWAREBUFFER_FORMAT_Y8Cb8Cr8_420;
    d.usage = AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN | AHARDWAREBUFFER_USAGE_CPU_WRITE_OFTEN;
    AHardwareBuffer *src = nullptr, *dst = nullptr, *other = nullptr;
    ASSERT_EQ(0, AHardwareBuffer_allocate(&d, &src));
    ASSERT_EQ(0, AHardwareBuffer_allocate(&d, &dst));
    d.width = 32;
    ASSERT_EQ(0, AHardwareBuffer_allocate(&d, &other));
    void* p = nullptr;
    ASSERT_EQ(0, AHardwareBuffer_lock(src, AHARDWAREBUFFER_USAGE_CPU_WRITE_OFTEN, -1, nullptr, &p));
    memset(p, 0x5a, 16 * 8 * 3 / 2);
    AHardwareBuffer_unlock(src, nullptr);

    EXPECT_TRUE(copy(dst, src));
    ASSERT_EQ(0, AHardwareBuffer_lock(dst, AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN, -1, nullptr, &p));
    EXPECT_EQ(0x5a, static_cast<uint8_t*>(p)[0]);
    EXPECT_EQ(0x5a, static_cast<uint8_t*>(p)[16 * 8 * 3 / 2 - 1]);
    AHardwareBuffer_unlock(dst, nullptr);
    EXPECT_FALSE(copy(other, src));
    EXPECT_FALSE(copy(nullptr, src));
    AHardwareBuffer_release(src);
    AHardwareBuffer_release(dst);
    AHardwareBuffer_release(other);
}

TEST_F(ApsLibraryTest, InstallRefusesUnknownEntryPoint) {
    hostctl::ApsLibraryShape shape;
    shape.missing = {"initAPSX"};
    std::string error;
    EXPECT_FALSE(
        hostctl::installApsLibrary(mRoot.hostPath("/odm/lib64/libAlgoProcess.so"), shape, &error));
    EXPECT_NE(std::string::npos, error.find("initAPSX"));
}

TEST_F(ApsLibraryTest, LoadingAnAbsentLibraryFailsWithTheLoadersReason) {
    EXPECT_EQ(nullptr, android_load_sphal_library(
                           mRoot.hostPath("/odm/lib64/libAlgoProcess.so").c_str(), RTLD_LAZY));
    const char* why = dlerror();
    ASSERT_NE(nullptr, why);
    EXPECT_NE(nullptr, strstr(why, "No such file"));
    EXPECT_EQ(nullptr, android_load_sphal_library(nullptr, RTLD_LAZY));
}

}  // namespace

// The library as the camera server sees it: dlopen the shared object, call its one entry, build
// the extension object and call hooks through ICameraServiceExt. The object is made once per
// process, so every case that builds one runs in a forked child.
#include <cxxabi.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <sstream>
#include <string>
#include <typeinfo>
#include <vector>

#include "CameraServiceExtFactory.h"
#include "hostctl/Properties.h"
#include "support/TestSupport.h"

namespace {

using android::CameraServiceExtFactory;
using android::ICameraServiceExt;

const std::string kLibraryPath = std::string(CAMEXT_BUILD_DIR) + "/lib/libcameraserviceext.so";

std::string demangle(const char* mangled) {
    int status = 0;
    char* text = abi::__cxa_demangle(mangled, nullptr, nullptr, &status);
    std::string name = status == 0 && text != nullptr ? text : mangled;
    free(text);
    return name;
}

std::string classOf(ICameraServiceExt* ext) {
    return ext == nullptr ? "(null)" : demangle(typeid(*ext).name());
}

// The library opened and its entry taken the way the server does.
struct Library {
    void* handle = nullptr;
    android::GetExtFactoryImplFn entry = nullptr;
    std::string error;
};

Library openLibrary() {
    Library lib;
    lib.handle = dlopen(kLibraryPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (lib.handle == nullptr) {
        lib.error = std::string("dlopen: ") + dlerror();
        return lib;
    }
    lib.entry = reinterpret_cast<android::GetExtFactoryImplFn>(
        dlsym(lib.handle, android::kExtFactoryEntryName));
    if (lib.entry == nullptr) lib.error = std::string("dlsym: ") + dlerror();
    return lib;
}

// Runs `body` in a forked child and returns the text it produced, or how the child failed.
std::string inChild(const std::function<std::string()>& body) {
    int fds[2];
    if (pipe(fds) != 0) return "pipe failed";
    pid_t pid = fork();
    if (pid == 0) {
        close(fds[0]);
        std::string out = body();
        size_t done = 0;
        while (done < out.size()) {
            ssize_t n = write(fds[1], out.data() + done, out.size() - done);
            if (n <= 0) break;
            done += static_cast<size_t>(n);
        }
        _exit(0);
    }
    close(fds[1]);
    std::string out;
    char buf[512];
    ssize_t n;
    while ((n = read(fds[0], buf, sizeof(buf))) > 0) out.append(buf, static_cast<size_t>(n));
    close(fds[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        return "child died (status " + std::to_string(status) + "): " + out;
    }
    return out;
}

// The class built for these property values, as a child process that loads the library sees it.
std::string classBuiltFor(const std::string& platform, const std::string& hardware) {
    return inChild([&] {
        if (!platform.empty()) hostctl::setProperty("ro.board.platform", platform);
        if (!hardware.empty()) hostctl::setProperty("ro.hardware", hardware);
        Library lib = openLibrary();
        if (lib.entry == nullptr) return lib.error;
        return classOf(lib.entry()->getCameraServiceExt());
    });
}

class LoadTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::clearProperties();
        mRoot.writeFile("odm/etc/camera/fwk_config.json", R"({"default": {}})");
        if (access(kLibraryPath.c_str(), R_OK) != 0) {
            GTEST_SKIP() << kLibraryPath << " is not built (target cameraserviceext)";
        }
    }
    void TearDown() override { hostctl::clearProperties(); }

    testsupport::TempDeviceRoot mRoot;
};

struct BoardRow {
    const char* platform;
    const char* className;
};

const BoardRow kBoards[] = {
    {"mt6779", "CameraServiceExtImpl_mt6779"},  {"mt6765", "CameraServiceExtImpl_mt6765"},
    {"mt6785", "CameraServiceExtImpl_mt6785"},  {"mt6789", "CameraServiceExtImpl_mt6789"},
    {"mt6885", "CameraServiceExtImpl_mt6885"},  {"mt6833", "CameraServiceExtImpl_mt6833"},
    {"mt6853", "CameraServiceExtImpl_mt6853"},  {"mt6873", "CameraServiceExtImpl_mt6873"},
    {"mt6893", "CameraServiceExtImpl_mt6893"},  {"mt6895", "CameraServiceExtImpl_mt6895"},
    {"mt6877", "CameraServiceExtImpl_mt6877"},  {"mt6983", "CameraServiceExtImpl_mt6983"},
    {"mt6985", "CameraServiceExtImpl_mt6985"},  {"trinket", "CameraServiceExtImpl_sm6125"},
    {"lahaina", "CameraServiceExtImpl_sm8350"}, {"kona", "CameraServiceExtImpl_sm8250"},
    {"holi", "CameraServiceExtImpl_sm4350"},    {"lito", "CameraServiceExtImpl_sm7250"},
    {"atoll", "CameraServiceExtImpl_sm7125"},   {"taro", "CameraServiceExtImpl_sm8450"},
    {"bengal", "CameraServiceExtImpl_sm6225"},  {"msmnile", "CameraServiceExtImpl_sm8150"},
    {"kalama", "CameraServiceExtImpl_sm8550"},
};

class BoardSelection : public LoadTest, public ::testing::WithParamInterface<BoardRow> {};

TEST_P(BoardSelection, BoardPlatformBuildsItsChipClass) {
    // A contrary "ro.hardware" shows that a matched board never reaches the fallback.
    const BoardRow& row = GetParam();
    bool mediaTek = strncmp(row.platform, "mt", 2) == 0;
    const char* hardware = mediaTek ? "qcom" : "mt6765";
    EXPECT_EQ(std::string("android::") + row.className, classBuiltFor(row.platform, hardware));
}

INSTANTIATE_TEST_SUITE_P(AllBoards, BoardSelection, ::testing::ValuesIn(kBoards),
                         [](const ::testing::TestParamInfo<BoardRow>& info) {
                             return std::string(info.param.platform);
                         });

TEST_F(LoadTest, UnknownBoardFallsBackOnHardwareName) {
    // Board names match whole strings only.
    EXPECT_EQ("android::CameraServiceExtImpl_mtk", classBuiltFor("mt6779x", ""));
    EXPECT_EQ("android::CameraServiceExtImpl_qcom", classBuiltFor("kona1", "qcom"));
    EXPECT_EQ("android::CameraServiceExtImpl_qcom", classBuiltFor("", "qcom"));
    // Any hardware name but exactly "qcom" gets the MediaTek family.
    EXPECT_EQ("android::CameraServiceExtImpl_mtk", classBuiltFor("", "qcom2"));
    EXPECT_EQ("android::CameraServiceExtImpl_mtk", classBuiltFor("", ""));
}

TEST_F(LoadTest, FallbackLogsHardwareNameEvenWithLoggingOff) {
    std::string out = inChild([] {
        hostctl::setProperty("ro.board.platform", "sdm845");
        hostctl::setProperty("ro.hardware", "qcom2");
        testsupport::LogCapture logs;
        Library lib = openLibrary();
        if (lib.entry == nullptr) return lib.error;
        lib.entry()->getCameraServiceExt();
        std::ostringstream s;
        s << "hardware=" << logs.count("getCameraServiceExt ro.hardware = qcom2")
          << " platform=" << logs.count("ro.board.platform");
        return s.str();
    });
    EXPECT_EQ("hardware=1 platform=0", out);
}

TEST_F(LoadTest, SecondCallReturnsTheSameObjectAndLogsNothing) {
    std::string out = inChild([] {
        hostctl::setProperty("persist.sys.assert.panic", "true");
        hostctl::setProperty("ro.board.platform", "mt6765");
        testsupport::LogCapture logs;
        Library lib = openLibrary();
        if (lib.entry == nullptr) return lib.error;
        CameraServiceExtFactory* factory = lib.entry();
        ICameraServiceExt* first = factory->getCameraServiceExt();
        size_t linesAfterFirst = logs.lines().size();
        // No re-selection: a later property change has no effect.
        hostctl::setProperty("ro.board.platform", "kona");
        ICameraServiceExt* second = factory->getCameraServiceExt();
        std::ostringstream s;
        s << "sameObject=" << (first == second) << " sameFactory=" << (factory == lib.entry())
          << " platformLines=" << logs.count("getCameraServiceExt ro.board.platform = mt6765")
          << " newLines=" << logs.lines().size() - linesAfterFirst << " " << classOf(second);
        return s.str();
    });
    EXPECT_EQ(
        "sameObject=1 sameFactory=1 platformLines=1 newLines=0 "
        "android::CameraServiceExtImpl_mt6765",
        out);
}

TEST_F(LoadTest, HooksAnswerThroughTheInterface) {
    std::string out = inChild([] {
        hostctl::setProperty("ro.board.platform", "taro");
        Library lib = openLibrary();
        if (lib.entry == nullptr) return lib.error;
        ICameraServiceExt* ext = lib.entry()->getCameraServiceExt();
        std::ostringstream s;
        android::Parcel data;
        s << ext->isVirtualCameraProvider("virtual/0") << ext->isVirtualCameraProvider("virtual/1")
          << ext->isEnableFwkTimer() << ext->isTorchIntensityChanged() << " "
          << ext->onTransact(10015, data, nullptr, 0);
        return s.str();
    });
    EXPECT_EQ("1010 " + std::to_string(android::INVALID_OPERATION), out);
}

// The server finds the library by one C symbol; anything else exported could collide with the
// server's own symbols.
TEST_F(LoadTest, OnlyTheEntryIsExported) {
    std::string command = "nm -D --defined-only " + kLibraryPath + " 2>/dev/null";
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) GTEST_SKIP() << "nm is not available";
    std::vector<std::string> exported;
    char line[1024];
    while (fgets(line, sizeof(line), pipe) != nullptr) {
        std::istringstream fields(line);
        std::string address, type, name;
        if (!(fields >> address >> type >> name)) continue;
        // Symbols of the absolute type are defined by the linker (version nodes and the like).
        if (type == "A") continue;
        exported.push_back(name);
    }
    int status = pclose(pipe);
    if (status != 0 && exported.empty()) GTEST_SKIP() << "nm failed on " << kLibraryPath;
    EXPECT_EQ(std::vector<std::string>{"getExtFactoryImpl"}, exported);
}

}  // namespace

// A stand-in of the device maker's frame-processing library. It records every call in the
// host's service record (service "aps") and answers from the file "<its own path>.answers"
// that hostctl::installApsLibrary writes beside it:
//     engine=1                       createAPSInstance, initAPS and the frame calls succeed
//     feature.com.vantu.fwkBeauty=0  isAPSFeatureSupport answers for a name (default 1)
// The file is read at each call, so a test may change answers while the library is loaded.
// The engine never calls its data callback: processed frames are not simulated.
#include <android/hardware_buffer.h>
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include <fstream>
#include <map>
#include <mutex>
#include <string>

#include "AlgoProcessApi.h"
#include "hostctl/Services.h"

#define APS_EXPORT __attribute__((visibility("default")))

namespace {

struct Instance {
    APSDataCallback callback;
    void* cookie;
};

std::mutex gLock;
Instance* gInstance = nullptr;

// An instance the caller never destroyed goes with the library when it is unloaded.
__attribute__((destructor)) void releaseInstance() {
    std::lock_guard<std::mutex> g(gLock);
    delete gInstance;
    gInstance = nullptr;
}

struct Answers {
    bool engine = true;
    std::map<std::string, bool> features;
};

std::string ownPath() {
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(&ownPath), &info) == 0 || info.dli_fname == nullptr) {
        return "";
    }
    return info.dli_fname;
}

Answers readAnswers() {
    Answers answers;
    std::ifstream in(ownPath() + ".answers");
    std::string line;
    while (std::getline(in, line)) {
        const size_t eq = line.rfind('=');
        if (line.empty() || line[0] == '#' || eq == std::string::npos) continue;
        const std::string key = line.substr(0, eq);
        const bool value = line.substr(eq + 1) != "0";
        if (key == "engine") answers.engine = value;
        if (key.compare(0, 8, "feature.") == 0) answers.features[key.substr(8)] = value;
    }
    return answers;
}

void record(const char* method, std::vector<std::string> args = {}) {
    hostctl::recordServiceCall(hostctl::kApsLibrary, method, std::move(args));
}

std::string describe(const AHardwareBuffer* buffer) {
    if (buffer == nullptr) return "null";
    AHardwareBuffer_Desc d;
    AHardwareBuffer_describe(buffer, &d);
    return std::to_string(d.width) + "x" + std::to_string(d.height);
}

bool frameCall(const char* method, int32_t count, AHardwareBuffer* buffer, int32_t fwkBeauty) {
    record(method, {std::to_string(count), describe(buffer), std::to_string(fwkBeauty)});
    return readAnswers().engine;
}

}  // namespace

extern "C" {

APS_EXPORT bool createAPSInstance(APSDataCallback callback, void* cookie, void** outInstance) {
    record("createAPSInstance", {callback ? "callback" : "null"});
    if (outInstance) *outInstance = nullptr;
    if (!readAnswers().engine) return false;
    std::lock_guard<std::mutex> g(gLock);
    delete gInstance;
    gInstance = new Instance{callback, cookie};
    if (outInstance) *outInstance = gInstance;
    return true;
}

APS_EXPORT bool destoryAPSInstance(void*) {
    record("destoryAPSInstance");
    std::lock_guard<std::mutex> g(gLock);
    delete gInstance;
    gInstance = nullptr;
    return true;
}

APS_EXPORT bool initAPS(void* instance, const void*, void*) {
    record("initAPS", {instance ? "instance" : "null"});
    return readAnswers().engine;
}

APS_EXPORT bool uninitAPS(void*) {
    record("uninitAPS");
    return true;
}

APS_EXPORT bool addPreviewFrameToAPS(const void*, const void*, int32_t count,
                                     AHardwareBuffer* buffer, int32_t fwkBeauty, void*, void*,
                                     void*) {
    return frameCall("addPreviewFrameToAPS", count, buffer, fwkBeauty);
}

APS_EXPORT bool APSProcessCaptureFrames(const void*, const void*, int32_t count,
                                        AHardwareBuffer* buffer, int32_t fwkBeauty, void*, void*,
                                        void*) {
    return frameCall("APSProcessCaptureFrames", count, buffer, fwkBeauty);
}

APS_EXPORT bool hardwarewbufferMemcpy(AHardwareBuffer* dst, AHardwareBuffer* src) {
    record("hardwarewbufferMemcpy", {describe(dst), describe(src)});
    if (dst == nullptr || src == nullptr) return false;
    AHardwareBuffer_Desc d, s;
    AHardwareBuffer_describe(dst, &d);
    AHardwareBuffer_describe(src, &s);
    if (d.width != s.width || d.height != s.height || d.format != s.format ||
        d.layers != s.layers || d.stride != s.stride) {
        return false;
    }
    AHardwareBuffer_Planes from, to;
    if (AHardwareBuffer_lockPlanes(src, AHARDWAREBUFFER_USAGE_CPU_READ_OFTEN, -1, nullptr, &from)) {
        return false;
    }
    if (AHardwareBuffer_lockPlanes(dst, AHARDWAREBUFFER_USAGE_CPU_WRITE_OFTEN, -1, nullptr, &to)) {
        AHardwareBuffer_unlock(src, nullptr);
        return false;
    }
    // Equal descriptions give equal layouts: copy the luma (or only) plane, then the chroma
    // planes, interleaved ones as the one block they share.
    auto copy = [](void* to, const void* from, size_t bytes) { memcpy(to, from, bytes); };
    copy(to.planes[0].data, from.planes[0].data,
         static_cast<size_t>(from.planes[0].rowStride) * s.height);
    if (from.planeCount == 3) {
        const size_t rows = s.height / 2;
        if (from.planes[1].pixelStride > 1) {
            const int first = from.planes[1].data < from.planes[2].data ? 1 : 2;
            copy(to.planes[first].data, from.planes[first].data, from.planes[1].rowStride * rows);
        } else {
            copy(to.planes[1].data, from.planes[1].data, from.planes[1].rowStride * rows);
            copy(to.planes[2].data, from.planes[2].data, from.planes[2].rowStride * rows);
        }
    }
    AHardwareBuffer_unlock(dst, nullptr);
    AHardwareBuffer_unlock(src, nullptr);
    return true;
}

APS_EXPORT bool isAPSFeatureSupport(const char* feature, void*) {
    const std::string name = feature ? feature : "";
    const Answers answers = readAnswers();
    auto it = answers.features.find(name);
    const bool supported = it == answers.features.end() || it->second;
    record("isAPSFeatureSupport", {name, supported ? "true" : "false"});
    return supported;
}

}  // extern "C"

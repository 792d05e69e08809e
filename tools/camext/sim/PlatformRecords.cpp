#include "sim/PlatformRecords.h"

#include <stdlib.h>
#include <string.h>

#include "hostctl/Binder.h"
#include "hostctl/Services.h"

namespace camext {
namespace sim {

namespace {

constexpr char kAonCallbackDescriptor[] = "android.hardware.IAONHECallbacks";

// The operation each HAL exists for; its calls are shown by their arguments alone.
bool isMainMethod(const std::string& service, const std::string& method) {
    return (service == hostctl::kPerformanceHal && method == "setUxThread") ||
           (service == hostctl::kCameraExtensionHal && method == "preOpenCamera") ||
           (service == hostctl::kCameraMdmHal && method == "notifyCameraPackage");
}

Json scalar(const std::string& text) {
    char* end = nullptr;
    long long v = strtoll(text.c_str(), &end, 10);
    if (!text.empty() && end && *end == '\0') return Json(v);
    return Json(text);
}

// A call as a scenario writes it: one argument alone ("Torch", 1), several as a list of texts,
// other operations of the service as their text ("linkToDeath(0)"); the frame-processing
// library's entry points by their symbol names alone.
Json callValue(const hostctl::ServiceCall& call) {
    if (call.service == hostctl::kApsLibrary) return Json(call.method);
    if (!isMainMethod(call.service, call.method)) return Json(call.text());
    if (call.args.size() == 1) return scalar(call.args[0]);
    Json list = Json::array();
    for (const auto& a : call.args) list.push(a);
    return list;
}

}  // namespace

std::string aonCallbackName(uint32_t code, bool hasArg, int32_t arg) {
    const std::string suffix = hasArg ? "(" + std::to_string(arg) + ")" : "";
    switch (code) {
        case 1:
            return "onOpened";
        case 2:
            return "onClosed";
        case 3:
            return "onError" + suffix;
        case 4:
            return "onHEDetected" + suffix;
        default:
            return "transact(" + std::to_string(code) + ")";
    }
}

void PlatformRecords::skipExisting() {
    mServiceCalls = hostctl::serviceCallCount();
    mMotorMessages = hostctl::motorMessages().size();
    mBinderCalls.clear();
    for (const auto& name : hostctl::binderNames()) {
        auto binder = hostctl::findBinder(name);
        if (binder != nullptr) mBinderCalls[name] = binder->transactions().size();
    }
}

void PlatformRecords::collect(StepRun& run) {
    for (const auto& call : hostctl::serviceCalls(mServiceCalls)) {
        ++mServiceCalls;
        run.serviceCall(call.service, callValue(call));
    }
    const auto motor = hostctl::motorMessages();
    for (size_t i = mMotorMessages; i < motor.size(); ++i) run.effect("motor", motor[i].bytes);
    mMotorMessages = motor.size();

    for (const auto& name : hostctl::binderNames()) {
        auto binder = hostctl::findBinder(name);
        if (binder == nullptr) continue;
        const auto calls = binder->transactions();
        size_t& seen = mBinderCalls[name];
        for (size_t i = seen; i < calls.size(); ++i) {
            const auto& t = calls[i];
            if (t.interfaceName == kAonCallbackDescriptor) {
                int32_t arg = 0;
                const bool hasArg = t.payloadOffset + 4 <= t.data.size();
                if (hasArg) memcpy(&arg, t.data.data() + t.payloadOffset, sizeof(arg));
                run.effect("aon_callbacks", aonCallbackName(t.code, hasArg, arg));
            } else {
                run.effect("binder_calls", name + ": transact(" + std::to_string(t.code) + ")");
            }
        }
        seen = calls.size();
    }
}

}  // namespace sim
}  // namespace camext

// One "hook" step: the arguments a scenario gave, converted to what the operation takes, and
// what the operation returned or changed, as the step's verdict.
#pragma once

#include <stdint.h>
#include <utils/Vector.h>

#include <string>
#include <vector>

#include "sim/HookTable.h"
#include "sim/Host.h"
#include "sim/Session.h"

namespace camext {
namespace sim {

class HookCall {
public:
    HookCall(Session& session, StepRun& run, const HookSpec& hookSpec, const Json& args);

    Host& host;
    Session& session;
    StepRun& run;
    android::ICameraServiceExt* ext;

    // Arguments by parameter index; omitted ones are neutral (empty, 0, false).
    const Json& arg(size_t i) const;
    std::string str(size_t i) const;
    bool flag(size_t i) const;
    int64_t num(size_t i) const;
    int32_t i32(size_t i) const { return static_cast<int32_t>(num(i)); }
    float real(size_t i) const;
    int cameraInt(size_t i) const;
    android::Vector<android::Size> sizes(size_t i) const;
    // A metadata argument as a packet of the provider; without one, the characteristics of
    // camera `cameraId` when `characteristics` is set, else an empty packet.
    bool metadata(size_t i, android::CameraMetadata* md, const std::string& cameraId = "",
                  bool characteristics = false);
    // The named scenario binder (created on first use), or null.
    android::sp<android::IBinder> binder(size_t i) const;

    // The operation's result, and the final values of in/out arguments.
    void result(Json value) {
        mResult = std::move(value);
        mHasResult = true;
    }
    void out(const char* name, Json value) { mOuts.set(name, std::move(value)); }
    static Json sizesJson(const android::Vector<android::Size>& sizes);
    // The metadata after the operation, for the diff and the "metadata" expectation.
    void metadataAfter(const android::CameraMetadata& md);
    void problem(const std::string& text) { run.problem = text; }

    // Files the call line and the verdict.
    void finish();

private:
    const HookSpec& mSpec;
    const Json& mArgs;
    bool mHasResult = false;
    Json mResult;
    Json mOuts = Json::object();
    Json mBefore;
};

using HookFn = void (*)(HookCall& call);
HookFn findHookFn(const std::string& name);

}  // namespace sim
}  // namespace camext

#include "sim/HookCall.h"

#include <stdlib.h>

#include "hostctl/Binder.h"
#include "hostctl/VendorTags.h"
#include "sim/Actions.h"

namespace camext {
namespace sim {

HookCall::HookCall(Session& s, StepRun& r, const HookSpec& hookSpec, const Json& args)
    : host(s.host()), session(s), run(r), ext(s.host().ext), mSpec(hookSpec), mArgs(args) {}

const Json& HookCall::arg(size_t i) const {
    return hookArg(mSpec, mArgs, i);
}

std::string HookCall::str(size_t i) const {
    const Json& v = arg(i);
    return v.isString() ? v.asString() : std::string();
}

bool HookCall::flag(size_t i) const {
    return arg(i).asBool();
}

int64_t HookCall::num(size_t i) const {
    return arg(i).asInt();
}

float HookCall::real(size_t i) const {
    return static_cast<float>(arg(i).asDouble());
}

int HookCall::cameraInt(size_t i) const {
    const Json& v = arg(i);
    if (v.isString()) return atoi(v.asString().c_str());
    return static_cast<int>(v.asInt());
}

android::Vector<android::Size> HookCall::sizes(size_t i) const {
    android::Vector<android::Size> out;
    for (const auto& s : arg(i).items()) {
        out.push_back(android::Size(static_cast<int>(s.items()[0].asInt()),
                                    static_cast<int>(s.items()[1].asInt())));
    }
    return out;
}

Json HookCall::sizesJson(const android::Vector<android::Size>& sizes) {
    Json out = Json::array();
    for (size_t i = 0; i < sizes.size(); ++i) {
        out.push(Json::array({Json(sizes[i].width), Json(sizes[i].height)}));
    }
    return out;
}

bool HookCall::metadata(size_t i, android::CameraMetadata* md, const std::string& cameraId,
                        bool characteristics) {
    CameraState* cam = cameraId.empty() ? nullptr : host.camera(cameraId);
    if (arg(i).isNull() && characteristics && cam != nullptr) {
        *md = cam->characteristics;
    } else {
        *md = newMetadata(host.tags);
        std::string error;
        if (!writeEntries(host.tags, arg(i), md, &error)) {
            problem("cannot write the metadata: " + error);
            return false;
        }
    }
    mBefore = readEntries(host.tags, *md);
    return true;
}

android::sp<android::IBinder> HookCall::binder(size_t i) const {
    if (!arg(i).isString()) return nullptr;
    auto b = hostctl::findBinder(arg(i).asString());
    if (b == nullptr) b = hostctl::createBinder(arg(i).asString());
    return b;
}

void HookCall::metadataAfter(const android::CameraMetadata& md) {
    const Json after = readEntries(host.tags, md);
    run.metadataChanges = diffEntries(host.tags, mBefore, after);
    run.metadataEntry = [after](const std::string& tag) { return after[tag]; };
}

void HookCall::finish() {
    std::string line = std::string(mSpec.name) + "(";
    for (size_t i = 0; i < mSpec.params.size(); ++i) {
        if (i) line += ", ";
        const Json& v = arg(i);
        line +=
            v.isNull() ? "-" : (mSpec.params[i].kind == ArgKind::Metadata ? "metadata" : v.dump());
    }
    line += ")";
    if (mHasResult) line += " = " + mResult.dump();
    if (mOuts.size() > 0) line += (mHasResult ? ", " : " -> ") + mOuts.dump();
    run.call(line);
    if (mHasResult) {
        run.setVerdict(mSpec.name, mResult);
    } else if (mOuts.size() > 0) {
        run.setVerdict(mSpec.name, mOuts);
    }
}

void actHook(Session& session, StepRun& run) {
    const std::string name = run.step.args["name"].asString();
    const HookSpec* hookSpec = findHook(name);
    HookFn fn = findHookFn(name);
    if (hookSpec == nullptr || fn == nullptr) {
        run.problem = "the simulator cannot call " + name;
        return;
    }
    HookCall call(session, run, *hookSpec, run.step.args["args"]);
    fn(call);
    if (run.problem.empty()) call.finish();
}

}  // namespace sim
}  // namespace camext

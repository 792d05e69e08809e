// One-line titles of steps for the timeline.
#include <stdio.h>

#include "sim/Session.h"

namespace camext {
namespace sim {

namespace {

std::string str(const Json& v) {
    return v.isString() ? v.asString() : v.dump();
}

std::string who(const Caller& c) {
    return "(uid " + std::to_string(c.uid) + ", pid " + std::to_string(c.pid) + ")";
}

std::string keys(const Json& obj) {
    std::string out;
    for (const auto& m : obj.members()) {
        out += (out.empty() ? "" : ", ") + m.first;
        if (m.second.isNull()) out += " (removed)";
    }
    return out;
}

}  // namespace

std::string stepTitle(const Step& step) {
    const Json& a = step.args;
    const std::string& act = step.action;
    const std::string cam = "camera " + str(a["camera"]);
    if (act == "open") {
        return "open " + cam + " for " + str(a["package"]) + " " + who(step.caller);
    }
    if (act == "close") return "close " + cam;
    if (act == "configure") {
        return "configure " + cam + " with " + std::to_string(a["streams"].size()) + " stream" +
               (a["streams"].size() == 1 ? "" : "s");
    }
    if (act == "request")
        return "request frame " + std::to_string(a["frame"].asInt()) + " on " + cam;
    if (act == "result")
        return "result of frame " + std::to_string(a["frame"].asInt()) + " on " + cam;
    if (act == "characteristics") {
        return "characteristics of " + cam + (a.has("package") ? " for " + str(a["package"]) : "");
    }
    if (act == "transact")
        return "transaction " + std::to_string(a["code"].asInt()) + " " + who(step.caller);
    if (act == "hook") {
        return a["name"].asString() + (a["args"].isNull() ? "()" : " " + a["args"].dump());
    }
    if (act == "set_properties") return "set properties: " + keys(a);
    if (act == "write_files") return "write files: " + keys(a);
    if (act == "advance_clock") {
        char buf[64];
        snprintf(buf, sizeof(buf), "advance the clocks by %.3f s",
                 a["seconds"].asDouble() + a["ms"].asDouble() / 1000.0);
        return buf;
    }
    if (act == "schedule") {
        return "schedule [" + (step.inner ? step.inner->path : std::string()) + "] in " +
               std::to_string(step.afterMs) + " ms";
    }
    if (act == "binder_died") return "binder \"" + str(a) + "\" dies";
    if (act == "sensor_event") return "magnetic sensor event " + a.dump();
    if (act == "signal") {
        return "signal " + std::to_string(a["signo"].asInt()) + " (code " +
               std::to_string(a["code"].asInt()) + ")";
    }
    return act;
}

}  // namespace sim
}  // namespace camext

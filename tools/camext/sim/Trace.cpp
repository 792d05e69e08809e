#include "sim/Trace.h"

#include <cutils/trace.h>
#include <stdio.h>

#include <mutex>

#include "hostctl/Atrace.h"

namespace camext {
namespace sim {

namespace {

// Fixed track ids; cameras and library threads get theirs as they appear.
constexpr int kBinderTrack = 1;
constexpr int kDeviceTrack = 2;
constexpr int kFirstCameraTrack = 100;

struct Captured {
    std::mutex lock;
    std::vector<hostctl::AtraceEvent> events;
};

Captured& captured() {
    static Captured* c = new Captured();  // lives for the scenario process
    return *c;
}

double msSince(nsecs_t t, nsecs_t start) {
    return static_cast<double>(t - start) / 1e6;
}

double usOf(double ms) {
    return ms * 1000.0;
}

// "beforeConnect(\"0\", ...) = 0" -> "beforeConnect"; "" when the text is not a call.
std::string callName(const std::string& text) {
    size_t i = 0;
    while (i < text.size() && (isalnum(static_cast<unsigned char>(text[i])) || text[i] == '_')) ++i;
    return i > 0 && i < text.size() && text[i] == '(' ? text.substr(0, i) : "";
}

std::string valueText(const Json& v) {
    return v.isString() ? v.asString() : v.dump();
}

}  // namespace

void startTraceCapture() {
    hostctl::setAtraceTags(ATRACE_TAG_CAMERA);
    hostctl::setAtraceSink([](const hostctl::AtraceEvent& e) {
        std::lock_guard<std::mutex> g(captured().lock);
        captured().events.push_back(e);
    });
}

void addTraceFields(const StepRun& run, nsecs_t start, Json* record) {
    Json times = Json::array();
    for (nsecs_t t : run.callTimes) times.push(msSince(t, start));
    record->set("call_at_ms", times);
    std::vector<hostctl::AtraceEvent> events;
    {
        std::lock_guard<std::mutex> g(captured().lock);
        events.swap(captured().events);
    }
    Json atrace = Json::array();
    for (const auto& e : events) {
        const char* ph = "B";
        switch (e.kind) {
            case hostctl::AtraceEvent::Kind::kBegin:
                ph = "B";
                break;
            case hostctl::AtraceEvent::Kind::kEnd:
                ph = "E";
                break;
            case hostctl::AtraceEvent::Kind::kAsyncBegin:
                ph = "b";
                break;
            case hostctl::AtraceEvent::Kind::kAsyncEnd:
                ph = "e";
                break;
            case hostctl::AtraceEvent::Kind::kCounter:
                ph = "C";
                break;
        }
        atrace.push(Json::object({{"ph", ph},
                                  {"name", e.name},
                                  {"value", static_cast<int64_t>(e.value)},
                                  {"tid", static_cast<int64_t>(static_cast<uint32_t>(e.tid))},
                                  {"at_ms", msSince(e.time, start)}}));
    }
    record->set("atrace", atrace);
}

std::string traceTrack(const Step& step) {
    if (step.action == "transact" || step.action == "binder_died") return "binder";
    const Json& a = step.args;
    if (a.isObject() && a["camera"].isString()) return "camera " + a["camera"].asString();
    if (step.action == "hook" && a["args"].isObject() && a["args"]["cameraId"].isString()) {
        return "camera " + a["args"]["cameraId"].asString();
    }
    return "device";
}

int TraceWriter::trackId(const std::string& track) {
    auto it = mTracks.find(track);
    if (it != mTracks.end()) return it->second;
    int id = kDeviceTrack;
    std::string name = "device";
    if (track == "binder") {
        id = kBinderTrack;
        name = "binder transactions";
    } else if (track.compare(0, 7, "camera ") == 0) {
        int cameras = 0;
        for (const auto& t : mTracks) cameras += t.first.compare(0, 7, "camera ") == 0;
        id = kFirstCameraTrack + cameras;
        name = track;
    }
    mTracks[track] = id;
    meta("thread_name", id, name);
    // Cameras first, then binder, then the rest.
    mEvents.push(
        Json::object({{"ph", "M"},
                      {"name", "thread_sort_index"},
                      {"pid", mPid},
                      {"tid", id},
                      {"args", Json::object({{"sort_index", id == kBinderTrack   ? 1000
                                                            : id == kDeviceTrack ? 1001
                                                                                 : id}})}}));
    return id;
}

void TraceWriter::meta(const char* what, int tid, const std::string& name) {
    mEvents.push(Json::object({{"ph", "M"},
                               {"name", what},
                               {"pid", mPid},
                               {"tid", tid},
                               {"args", Json::object({{"name", name}})}}));
}

void TraceWriter::record(const Json& r) {
    const std::string type = r["type"].asString();
    if (type == "scenario") {
        ++mPid;
        mTracks.clear();
        mOpen.clear();
        meta("process_name", 0, r["name"].asString() + " (" + r["file"].asString() + ")");
    } else if (type == "begin") {
        mOpen.push_back({r["at_ms"].asDouble(), r["track"].asString()});
    } else if (type == "step" && !mOpen.empty()) {
        Open open = mOpen.back();
        mOpen.pop_back();
        step(r, open);
    }
}

void TraceWriter::step(const Json& r, const Open& open) {
    const int tid = trackId(open.track.empty() ? "device" : open.track);
    const double end = r["at_ms"].asDouble();
    Json args = Json::object({{"path", r["path"]}, {"ok", r["ok"]}});
    if (!r["note"].asString().empty()) args.set("note", r["note"]);
    if (r.has("verdict")) args.set("verdict", r["verdict"]);
    if (r.has("problem")) args.set("problem", r["problem"]);
    Json failed = Json::array();
    for (const auto& e : r["expect"].items()) {
        if (!e["ok"].asBool()) failed.push(e);
    }
    if (failed.size() > 0) args.set("failed expectations", failed);
    if (r["changes"]["metadata"].size() > 0) args.set("metadata", r["changes"]["metadata"]);
    Json log = Json::array();
    for (const auto& l : r["log"].items()) {
        log.push(l["level"].asString() + "/" + l["tag"].asString() + ": " + l["text"].asString());
    }
    if (log.size() > 0) args.set("log", log);
    mEvents.push(Json::object({{"ph", "X"},
                               {"cat", "step"},
                               {"name", r["title"].asString()},
                               {"pid", mPid},
                               {"tid", tid},
                               {"ts", usOf(open.atMs)},
                               {"dur", usOf(end - open.atMs)},
                               {"args", args}}));

    // Each hook call from the return of the one before to its own return.
    const auto& calls = r["calls"].items();
    const auto& times = r["call_at_ms"].items();
    double from = open.atMs;
    for (size_t i = 0; i < calls.size(); ++i) {
        const std::string text = calls[i].asString();
        const double at = i < times.size() ? times[i].asDouble() : end;
        const std::string name = callName(text);
        if (name.empty()) {
            mEvents.push(Json::object({{"ph", "i"},
                                       {"s", "t"},
                                       {"cat", "event"},
                                       {"name", text},
                                       {"pid", mPid},
                                       {"tid", tid},
                                       {"ts", usOf(at)}}));
        } else {
            Json callArgs = Json::object({{"call", text}});
            const size_t eq = text.rfind(") = ");
            if (eq != std::string::npos) callArgs.set("verdict", text.substr(eq + 4));
            mEvents.push(Json::object({{"ph", "X"},
                                       {"cat", "hook"},
                                       {"name", name},
                                       {"pid", mPid},
                                       {"tid", tid},
                                       {"ts", usOf(from)},
                                       {"dur", usOf(at - from)},
                                       {"args", callArgs}}));
        }
        from = at;
    }

    // Side effects and property changes as instant events at the step's end.
    auto instant = [&](int track, const std::string& name, Json args) {
        mEvents.push(Json::object({{"ph", "i"},
                                   {"s", "t"},
                                   {"cat", "effect"},
                                   {"name", name},
                                   {"pid", mPid},
                                   {"tid", track},
                                   {"ts", usOf(end)},
                                   {"args", args}}));
    };
    for (const auto& kind : r["effects"].members()) {
        if (kind.first == "services") {
            for (const auto& s : kind.second.members()) {
                for (const auto& v : s.second.items()) {
                    instant(tid, "service " + s.first + ": " + valueText(v),
                            Json::object({{"service", s.first}, {"call", v}}));
                }
            }
            continue;
        }
        const int track = kind.first == "binder_calls" ? trackId("binder") : tid;
        for (const auto& v : kind.second.items()) {
            instant(track, kind.first + ": " + valueText(v), Json::object({{"value", v}}));
        }
    }
    for (const auto& p : r["changes"]["properties"].items()) {
        instant(tid, "property " + p["name"].asString() + " = " + valueText(p["after"]),
                Json::object({{"before", p["before"]}, {"after", p["after"]}}));
    }

    // The library's atrace sections, on the track of the thread that made them.
    for (const auto& e : r["atrace"].items()) {
        const int64_t thread = e["tid"].asInt();
        const std::string key = "thread " + std::to_string(thread);
        if (!mTracks.count(key)) {
            mTracks[key] = static_cast<int>(thread);
            meta("thread_name", static_cast<int>(thread), "thread " + std::to_string(thread));
        }
        const std::string ph = e["ph"].asString();
        Json ev = Json::object({{"ph", ph},
                                {"cat", "atrace"},
                                {"pid", mPid},
                                {"tid", thread},
                                {"ts", usOf(e["at_ms"].asDouble())}});
        if (ph != "E") ev.set("name", e["name"]);
        if (ph == "C") ev.set("args", Json::object({{"value", e["value"]}}));
        if (ph == "b" || ph == "e") ev.set("id", e["value"]);
        mEvents.push(ev);
    }
}

bool TraceWriter::write(const std::string& path, std::string* error) const {
    Json doc = Json::object({{"traceEvents", mEvents},
                             {"displayTimeUnit", "ms"},
                             {"otherData", Json::object({{"clock", "virtual time of each scenario"},
                                                         {"tool", "camext run --trace"}})}});
    FILE* f = fopen(path.c_str(), "w");
    if (f == nullptr) {
        *error = "cannot write the trace to " + path;
        return false;
    }
    const std::string text = doc.dump() + "\n";
    const bool ok = fwrite(text.data(), 1, text.size(), f) == text.size();
    if (fclose(f) != 0 || !ok) {
        *error = "cannot write the trace to " + path;
        return false;
    }
    return true;
}

}  // namespace sim
}  // namespace camext

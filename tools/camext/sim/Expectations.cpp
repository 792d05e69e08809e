// Expectations compare what the step recorded with what the scenario wrote; they never work out
// what the library should have done.
#include <math.h>

#include "sim/StepRun.h"

namespace camext {
namespace sim {

void StepRun::effect(const std::string& kind, Json value) {
    effects.member(kind).push(std::move(value));
}

void StepRun::serviceCall(const std::string& service, Json value) {
    effects.member("services").member(service).push(std::move(value));
}

Json canonicalMetadataValue(const Json& value) {
    if (value.isNumber()) return Json::array({value});
    if (value.isString()) {
        Json bytes = Json::array();
        for (unsigned char c : value.asString()) bytes.push(Json(static_cast<int>(c)));
        bytes.push(Json(0));
        return bytes;
    }
    return value;
}

namespace {

bool numbersMatch(const Json& a, const Json& b) {
    if (a.isInt() && b.isInt()) return a.asInt() == b.asInt();
    const double x = a.asDouble(), y = b.asDouble();
    if (x == y) return true;
    // Float entries hold about seven significant digits.
    const double scale = fmax(1.0, fmax(fabs(x), fabs(y)));
    return fabs(x - y) <= 1e-6 * scale;
}

// Truthiness for comparing a bool result with 0/1 written in a file, and the reverse.
bool sameVerdict(const Json& expected, const Json& actual) {
    if (expected.isBool() && actual.isInt()) return expected.asBool() == (actual.asInt() != 0);
    if (expected.isInt() && actual.isBool()) return (expected.asInt() != 0) == actual.asBool();
    return expected == actual;
}

void checkEntries(const std::string& key, const Json& expected,
                  const std::function<Json(const std::string&)>& lookup, std::vector<Verdict>* out) {
    for (const auto& m : expected.members()) {
        Json actual = lookup ? lookup(m.first) : Json();
        bool ok;
        if (m.second.isNull()) {
            ok = actual.isNull();
        } else {
            ok = metadataValuesMatch(m.second, actual);
            // Show a string tag as a string when that is how the file wrote it.
            if (m.second.isString() && actual.isArray()) {
                std::string text;
                bool printable = !actual.items().empty() && actual.items().back().asInt() == 0;
                for (size_t i = 0; printable && i + 1 < actual.size(); ++i) {
                    int64_t c = actual.items()[i].asInt();
                    printable = c >= 0x20 && c < 0x7f;
                    text += static_cast<char>(c);
                }
                if (printable) actual = Json(text);
            }
        }
        out->push_back({key + " " + m.first, ok, m.second, actual});
    }
}

}  // namespace

bool metadataValuesMatch(const Json& expected, const Json& actual) {
    if (actual.isNull()) return false;
    Json e = canonicalMetadataValue(expected);
    Json a = canonicalMetadataValue(actual);
    if (!e.isArray() || !a.isArray() || e.size() != a.size()) return false;
    for (size_t i = 0; i < e.size(); ++i) {
        if (!numbersMatch(e.items()[i], a.items()[i])) return false;
    }
    return true;
}

std::vector<Verdict> checkExpectations(const Json& expect, const StepRun& run,
                                       const std::map<std::string, std::string>& properties) {
    std::vector<Verdict> out;
    for (const auto& m : expect.members()) {
        const std::string& key = m.first;
        const Json& want = m.second;
        if (key == "return") {
            Json actual = run.hasVerdict ? run.verdict : Json();
            out.push_back({"return", run.hasVerdict && sameVerdict(want, actual), want, actual});
        } else if (key == "reply") {
            Json actual = run.readReply ? run.readReply(want) : Json();
            out.push_back({"reply", actual == want, want, actual});
        } else if (key == "properties") {
            for (const auto& p : want.members()) {
                auto it = properties.find(p.first);
                Json actual =
                    it == properties.end() || it->second.empty() ? Json() : Json(it->second);
                const bool ok = p.second.isNull() ? actual.isNull() : actual == p.second;
                out.push_back({"properties " + p.first, ok, p.second, actual});
            }
        } else if (key == "metadata") {
            checkEntries("metadata", want, run.metadataEntry, &out);
        } else if (key == "session_params_seen_by_hal") {
            checkEntries("session_params_seen_by_hal", want, run.halSessionEntry, &out);
        } else if (key == "hal_streams") {
            out.push_back({key, run.halStreams == want, want, run.halStreams});
        } else if (key == "streams") {
            const Json actual = run.streams.isObject() ? run.streams["after"] : Json();
            out.push_back({key, actual == want, want, actual});
        } else if (key == "log" || key == "log_absent") {
            const bool present = key == "log";
            for (const auto& needle : want.items()) {
                Json hits = Json::array();
                for (const auto& line : run.log) {
                    if (line.text.find(needle.asString()) != std::string::npos)
                        hits.push(line.text);
                }
                const bool found = hits.size() > 0;
                Json actual = found ? hits : Json("no log line of this step contains it");
                out.push_back({key, found == present, needle, actual});
            }
        } else if (key == "services") {
            const Json services = run.effects["services"];
            for (const auto& s : want.members()) {
                Json actual = services.has(s.first) ? services[s.first] : Json::array();
                if (s.second.isInt()) actual = Json(static_cast<int64_t>(actual.size()));
                out.push_back({"services " + s.first, actual == s.second, s.second, actual});
            }
        } else if (key == "files") {
            for (const auto& f : want.members()) {
                Json actual = run.fileText ? run.fileText(f.first) : Json();
                out.push_back({"files " + f.first, actual == f.second, f.second, actual});
            }
        } else {
            // motor, torch_status, aon_callbacks, client_events, meta_buffers: exactly these, in
            // order.
            Json actual = run.effects.has(key) ? run.effects[key] : Json::array();
            out.push_back({key, actual == want, want, actual});
        }
    }
    return out;
}

}  // namespace sim
}  // namespace camext

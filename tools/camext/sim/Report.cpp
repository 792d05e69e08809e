#include "sim/Report.h"

#include <algorithm>

namespace camext {
namespace sim {

namespace {

constexpr size_t kColumn = 38;

std::string pad(std::string s, size_t width) {
    if (s.size() > width) s = s.substr(0, width - 3) + "...";
    s.resize(width, ' ');
    return s;
}

// Pads without cutting: names stay whole even when they overrun the column.
std::string column(std::string s, size_t width) {
    if (s.size() < width) s.resize(width, ' ');
    return s;
}

// Virtual time since the scenario began, as h:mm:ss.mmm.
std::string clock(const Json& atMs) {
    if (!atMs.isNumber()) return "";
    const double ms = atMs.asDouble();
    const long long whole = static_cast<long long>(ms / 1000.0);
    char buf[48];
    snprintf(buf, sizeof(buf), "t=%lld:%02lld:%06.3f", whole / 3600, (whole / 60) % 60,
             ms / 1000.0 - static_cast<double>(whole - whole % 60));
    return buf;
}

}  // namespace

std::string show(const Json& v, bool bare) {
    if (v.isString() && bare) return v.asString();
    if (v.isNull()) return "(absent)";
    return v.dump();
}

std::vector<std::string> sideBySide(const Json& expected, const Json& actual, size_t width) {
    std::vector<std::string> rows;
    rows.push_back("  " + pad("expected", width) + " | actual");
    if (expected.isArray() && actual.isArray()) {
        const size_t n = std::max(expected.size(), actual.size());
        for (size_t i = 0; i < n; ++i) {
            const std::string e = i < expected.size() ? show(expected.items()[i], true) : "(none)";
            const std::string a = i < actual.size() ? show(actual.items()[i], true) : "(none)";
            const bool same = i < expected.size() && i < actual.size() &&
                              expected.items()[i] == actual.items()[i];
            rows.push_back((same ? "  " : "! ") + pad(e, width) + " | " + a);
        }
        if (n == 0) rows.push_back("  " + pad("(none)", width) + " | (none)");
        return rows;
    }
    rows.push_back("! " + pad(show(expected), width) + " | " + show(actual));
    return rows;
}

void Report::line(int depth, const std::string& text) {
    fprintf(mOut, "%*s%s\n", 4 * depth, "", text.c_str());
}

void Report::emitJson(const std::string& file, Json r) {
    Json out = Json::object({{"file", file}});
    for (const auto& m : r.members()) out.set(m.first, m.second);
    fprintf(mOut, "%s\n", out.dump().c_str());
    fflush(mOut);
}

void Report::malformed(const std::string& file, const std::vector<ParseError>& errors) {
    for (const auto& e : errors) {
        if (mJson) {
            emitJson(file,
                     Json::object({{"type", "error"}, {"path", e.path}, {"message", e.message}}));
        } else {
            const std::string where = e.path.empty() ? file : file + ": " + e.path;
            fprintf(mOut, "%s: %s\n", where.c_str(), e.message.c_str());
        }
    }
    fflush(mOut);
}

void Report::record(const std::string& file, const Json& r) {
    const std::string type = r["type"].asString();
    if (type == "scenario") mPid = static_cast<int>(r["pid"].asInt());
    if (mJson) {
        // One record per step; the other records only frame the run.
        if (type == "step" || type == "fatal") emitJson(file, r);
        return;
    }
    if (type == "scenario") renderScenario(r);
    if (type == "begin") renderBegin(r);
    if (type == "step") renderStep(r);
    if (type == "fatal") line(0, "error: " + r["message"].asString());
    if (type == "end") renderEnd(r);
    fflush(mOut);
}

void Report::renderScenario(const Json& r) {
    fprintf(mOut, "== %s: %s ==\n", r["file"].asString().c_str(), r["name"].asString().c_str());
    if (r.has("library")) line(0, "library: " + r["library"].asString());
}

void Report::renderBegin(const Json& r) {
    if (!mOpen.empty()) mOpen.back().interrupted = true;
    mOpen.push_back({r["path"].asString(), false});
    const int depth = static_cast<int>(r["depth"].asInt());
    std::string head = "[" + r["path"].asString() + "] " + r["title"].asString();
    if (depth > 0) head = "scheduled " + head;
    const std::string at = clock(r["at_ms"]);
    const size_t width = 92 - 4 * depth;
    if (head.size() + at.size() + 1 < width)
        head.resize(width - at.size(), ' ');
    else
        head += "  ";
    line(depth, head + at);
    if (!r["note"].asString().empty()) line(depth + 1, "note: " + r["note"].asString());
}

void Report::renderStep(const Json& r) {
    const int d = static_cast<int>(r["depth"].asInt()) + 1;
    if (!mOpen.empty()) {
        if (mOpen.back().interrupted) line(d - 1, "[" + r["path"].asString() + "] continued");
        mOpen.pop_back();
    }
    for (const auto& c : r["calls"].items()) line(d, "> " + c.asString());
    if (r.has("verdict")) {
        line(d, "verdict: " + r["verdict"]["call"].asString() + " = " + show(r["verdict"]["value"]));
    }
    if (r.has("problem")) line(d, "problem: " + r["problem"].asString());
    const Json& changes = r["changes"];
    if (changes["properties"].size() > 0) {
        line(d, "properties:");
        for (const auto& p : changes["properties"].items()) {
            line(d + 1, column(p["name"].asString(), 34) + " " + show(p["before"]) + " -> " +
                            show(p["after"]));
        }
    }
    if (changes["metadata"].size() > 0) {
        line(d, "metadata:");
        for (const auto& m : changes["metadata"].items()) {
            std::string before = show(m["before"]), after = show(m["after"]);
            if (m.has("before_name")) before += " (" + m["before_name"].asString() + ")";
            if (m.has("after_name")) after += " (" + m["after_name"].asString() + ")";
            line(d + 1, column(m["tag"].asString(), 34) + " " + before + " -> " + after);
        }
    }
    if (changes.has("streams")) {
        const Json& s = changes["streams"];
        line(d, "streams: " + show(s["configured"]) + " -> hardware " + show(s["hardware"]) +
                    " -> after " + show(s["after"]));
    }
    const Json& effects = r["effects"];
    if (effects.size() > 0) {
        line(d, "side effects:");
        for (const auto& e : effects.members()) {
            if (e.first == "services") {
                for (const auto& s : e.second.members()) {
                    for (const auto& call : s.second.items()) {
                        line(d + 1, "service " + s.first + ": " + show(call, true));
                    }
                }
                continue;
            }
            for (const auto& item : e.second.items())
                line(d + 1, e.first + ": " + show(item, true));
        }
    }
    if (r["log"].size() > 0) {
        line(d, "log:");
        for (const auto& l : r["log"].items()) {
            std::string text = l["text"].asString();
            while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
            char pid[16];
            snprintf(pid, sizeof(pid), "(%5d): ", mPid);
            line(d + 1, l["level"].asString() + "/" + l["tag"].asString() + pid + text);
        }
    }
    std::vector<std::string> held;
    for (const auto& v : r["expect"].items()) {
        if (v["ok"].asBool()) {
            if (std::find(held.begin(), held.end(), v["key"].asString()) == held.end()) {
                held.push_back(v["key"].asString());
            }
            continue;
        }
        std::string head = "FAIL expect " + v["key"].asString();
        line(d, head);
        for (const auto& row : sideBySide(v["expected"], v["actual"], kColumn)) line(d + 1, row);
    }
    if (!held.empty()) {
        std::string list;
        for (const auto& h : held) list += (list.empty() ? "" : ", ") + h;
        line(d, "ok: " + list);
    }
}

void Report::renderEnd(const Json& r) {
    for (const auto& p : r["pending"].items()) {
        line(0, "[" + p["path"].asString() + "] never ran: virtual time did not reach it" +
                    (p["expects"].asBool() ? " (its expectations count as failed)" : ""));
    }
}

void Report::crashed(const std::string& file, const std::string& step, const std::string& what) {
    if (mJson) {
        emitJson(file, Json::object({{"type", "crash"}, {"path", step}, {"message", what}}));
        return;
    }
    const std::string where = step.empty() ? "while loading the library" : "in [" + step + "]";
    fprintf(mOut, "CRASH %s: %s\n", where.c_str(), what.c_str());
    fflush(mOut);
}

void Report::fileDone(const std::string& file, int status, int steps, int failedSteps) {
    if (mJson) return;
    if (status == 2) {
        fprintf(mOut, "%s: not played\n\n", file.c_str());
    } else if (status == 0) {
        fprintf(mOut, "%s: %d steps, every expectation held\n\n", file.c_str(), steps);
    } else {
        fprintf(mOut, "%s: FAILED (%d of %d steps)\n\n", file.c_str(), failedSteps, steps);
    }
    fflush(mOut);
}

}  // namespace sim
}  // namespace camext

// Reads the steps of a scenario file: the caller, the action and its expectations.
#include "sim/HookTable.h"
#include "sim/ScenarioCheck.h"

namespace camext {
namespace sim {

bool Parser::caller(const Json& v, const std::string& path, Caller* out) {
    if (!want(v, Json::Type::Object, path)) return false;
    onlyKeys(v, path, {"uid", "pid", "tid", "permissions"});
    Caller c;
    bool ok = true;
    if (v.has("uid")) {
        ok = wantInt(v["uid"], memberPath(path, "uid"), 0, kInt32Max) && ok;
        c.uid = static_cast<int32_t>(v["uid"].asInt());
    }
    if (v.has("pid")) {
        ok = wantInt(v["pid"], memberPath(path, "pid"), 0, kInt32Max) && ok;
        c.pid = static_cast<int32_t>(v["pid"].asInt());
    }
    if (v.has("tid")) {
        // Thread ids are written as the kernel's unsigned text may show them, up to 2^32 - 1.
        ok = wantInt(v["tid"], memberPath(path, "tid"), 1, 0xFFFFFFFFLL) && ok;
        c.tid = static_cast<int32_t>(static_cast<uint32_t>(v["tid"].asInt()));
    }
    if (v.has("permissions")) {
        const std::string p = memberPath(path, "permissions");
        if (want(v["permissions"], Json::Type::Array, p)) {
            for (size_t i = 0; i < v["permissions"].size(); ++i) {
                const Json& perm = v["permissions"].items()[i];
                if (want(perm, Json::Type::String, indexPath(p, i))) {
                    c.permissions.push_back(perm.asString());
                }
            }
        }
    }
    if (ok) *out = c;
    return ok;
}

void Parser::step(const Json& v, const std::string& path, Caller* current, Step* out) {
    out->path = path;
    if (!want(v, Json::Type::Object, path)) return;
    std::vector<std::string> found;
    for (const auto& m : v.members()) {
        for (const auto& a : actionNames()) {
            if (m.first == a) found.push_back(a);
        }
    }
    if (found.size() != 1) {
        std::string list;
        for (const auto& a : actionNames()) list += (list.empty() ? "" : ", ") + a;
        error(path, found.empty() ? "names no action (one of: " + list + ")"
                                  : "names " + std::to_string(found.size()) +
                                        " actions; a step has exactly one");
        return;
    }
    out->action = found[0];
    std::set<std::string> allowed = {out->action, "as", "note", "expect"};
    if (out->action == "hook") allowed.insert("args");
    onlyKeys(v, path, allowed);
    if (v.has("as")) caller(v["as"], memberPath(path, "as"), current);
    out->caller = *current;
    if (v.has("note") && want(v["note"], Json::Type::String, memberPath(path, "note"))) {
        out->note = v["note"].asString();
    }
    action(out->action, v[out->action], v, memberPath(path, out->action), current, out);
    if (v.has("expect")) expect(v["expect"], memberPath(path, "expect"), out->action);
    if (v["expect"].isObject()) out->expect = v["expect"];
}

void Parser::action(const std::string& name, const Json& v, const Json& stepObj,
                    const std::string& path, Caller* current, Step* out) {
    out->args = v;
    auto object = [&](std::set<std::string> keys, std::set<std::string> required) {
        if (!want(v, Json::Type::Object, path)) return false;
        onlyKeys(v, path, keys);
        bool ok = true;
        for (const auto& r : required) ok = require(v, r, path) && ok;
        return ok;
    };
    auto cameraKey = [&]() {
        if (v.has("camera")) want(v["camera"], Json::Type::String, memberPath(path, "camera"));
    };
    auto intKey = [&](const char* key, int64_t min, int64_t max) {
        if (v.has(key)) wantInt(v[key], memberPath(path, key), min, max);
    };
    auto boolKey = [&](const char* key) {
        if (v.has(key)) want(v[key], Json::Type::Bool, memberPath(path, key));
    };

    if (name == "open") {
        object({"camera", "package", "apiLevel"}, {"camera", "package"});
        cameraKey();
        if (v.has("package")) want(v["package"], Json::Type::String, memberPath(path, "package"));
        intKey("apiLevel", kInt32Min, kInt32Max);
    } else if (name == "close") {
        object({"camera"}, {"camera"});
        cameraKey();
    } else if (name == "configure") {
        object({"camera", "streams", "sessionParams", "operatingMode"}, {"camera"});
        cameraKey();
        intKey("operatingMode", kInt32Min, kInt32Max);
        if (v.has("sessionParams"))
            metadata(v["sessionParams"], memberPath(path, "sessionParams"), false);
        const std::string sp = memberPath(path, "streams");
        if (v.has("streams") && want(v["streams"], Json::Type::Array, sp)) {
            std::set<int64_t> ids;
            for (size_t i = 0; i < v["streams"].size(); ++i) {
                const Json& s = v["streams"].items()[i];
                const std::string p = indexPath(sp, i);
                if (!want(s, Json::Type::Object, p)) continue;
                onlyKeys(s, p,
                         {"id", "width", "height", "format", "dataSpace", "usage", "rotation",
                          "lockFails"});
                if (s.has("lockFails"))
                    want(s["lockFails"], Json::Type::Bool, memberPath(p, "lockFails"));
                for (const char* k : {"id", "width", "height"}) {
                    if (require(s, k, p)) wantInt(s[k], memberPath(p, k), 0, kInt32Max);
                }
                for (const char* k : {"format", "dataSpace", "rotation"}) {
                    if (s.has(k)) wantInt(s[k], memberPath(p, k), kInt32Min, kInt32Max);
                }
                if (s.has("usage")) wantInt(s["usage"], memberPath(p, "usage"), 0, INT64_MAX);
                if (s["id"].isInt() && !ids.insert(s["id"].asInt()).second) {
                    error(memberPath(p, "id"),
                          "stream id " + std::to_string(s["id"].asInt()) + " is used twice");
                }
            }
        }
    } else if (name == "request") {
        object({"camera", "frame", "settings", "newRequest", "flag"}, {"camera"});
        cameraKey();
        intKey("frame", 0, 0xffffffffLL);
        if (v.has("settings")) metadata(v["settings"], memberPath(path, "settings"), false);
        boolKey("newRequest");
        boolKey("flag");
    } else if (name == "result") {
        object({"camera", "frame", "metadata", "inflight"}, {"camera"});
        cameraKey();
        intKey("frame", 0, 0xffffffffLL);
        if (v.has("metadata")) metadata(v["metadata"], memberPath(path, "metadata"), false);
        // true/false, or the in-flight request's flags by name.
        if (v.has("inflight") && !v["inflight"].isBool()) {
            const std::string p = memberPath(path, "inflight");
            if (want(v["inflight"], Json::Type::Object, p)) {
                onlyKeys(v["inflight"], p, {"hasInputBuffer", "stillCapture", "zslCapture"});
                for (const auto& m : v["inflight"].members())
                    want(m.second, Json::Type::Bool, memberPath(p, m.first));
            }
        }
    } else if (name == "characteristics") {
        object({"camera", "package"}, {"camera"});
        cameraKey();
        if (v.has("package")) want(v["package"], Json::Type::String, memberPath(path, "package"));
    } else if (name == "transact") {
        object({"code", "token", "parcel", "flags"}, {"code"});
        intKey("code", 0, 0xffffffffLL);
        intKey("flags", 0, 0xffffffffLL);
        boolKey("token");
        if (v.has("parcel")) parcel(v["parcel"], memberPath(path, "parcel"));
    } else if (name == "hook") {
        const HookSpec* hookSpec = nullptr;
        if (want(v, Json::Type::String, path)) {
            hookSpec = findHook(v.asString());
            if (hookSpec == nullptr) {
                error(path, "\"" + v.asString() + "\" is not an operation of the hook interface");
            }
        }
        if (hookSpec != nullptr)
            hookArgs(*hookSpec, stepObj["args"], memberPath(out->path, "args"));
        out->args = Json::object({{"name", v}, {"args", stepObj["args"]}});
    } else if (name == "set_properties" || name == "write_files") {
        stringMap(v, path, true, nullptr);
    } else if (name == "advance_clock") {
        object({"seconds", "ms"}, {});
        for (const char* k : {"seconds", "ms"}) {
            if (v.has(k) && wantNumber(v[k], memberPath(path, k)) && v[k].asDouble() < 0) {
                error(memberPath(path, k), "must not be negative");
            }
        }
    } else if (name == "schedule") {
        if (!object({"after_ms", "step"}, {"after_ms", "step"})) return;
        if (wantNumber(v["after_ms"], memberPath(path, "after_ms"))) {
            if (v["after_ms"].asDouble() < 0)
                error(memberPath(path, "after_ms"), "must not be negative");
            out->afterMs = v["after_ms"].asInt();
        }
        out->inner = std::make_shared<Step>();
        Caller innerCaller = *current;
        step(v["step"], memberPath(path, "step"), &innerCaller, out->inner.get());
    } else if (name == "binder_died") {
        want(v, Json::Type::String, path);
    } else if (name == "sensor_event") {
        object({"data3", "data", "timestamp"}, {});
        if (v.has("data3")) wantNumber(v["data3"], memberPath(path, "data3"));
        intKey("timestamp", 0, INT64_MAX);
        const std::string dp = memberPath(path, "data");
        if (v.has("data") && want(v["data"], Json::Type::Array, dp)) {
            if (v["data"].size() > 16) error(dp, "holds at most 16 values");
            for (size_t i = 0; i < v["data"].size(); ++i)
                wantNumber(v["data"].items()[i], indexPath(dp, i));
        }
    } else if (name == "signal") {
        object({"signo", "code", "value"}, {"signo"});
        intKey("signo", 1, 64);
        intKey("code", kInt32Min, kInt32Max);
        intKey("value", kInt32Min, kInt32Max);
    }
}

void Parser::parcel(const Json& v, const std::string& path) {
    if (!want(v, Json::Type::Array, path)) return;
    for (size_t i = 0; i < v.size(); ++i) {
        const Json& item = v.items()[i];
        const std::string p = indexPath(path, i);
        if (!item.isObject() || item.size() != 1) {
            error(p,
                  "must be an object with one key (string16, string8, int32, int64, bool, "
                  "float, double, binder, noException)");
            continue;
        }
        const std::string& kind = item.members()[0].first;
        const Json& value = item.members()[0].second;
        const std::string vp = memberPath(p, kind);
        if (kind == "string16" || kind == "string8" || kind == "binder") {
            if (!value.isString() && !value.isNull()) error(vp, "must be a string or null");
        } else if (kind == "int32") {
            wantInt(value, vp, kInt32Min, 0xffffffffLL);
        } else if (kind == "int64") {
            want(value, Json::Type::Int, vp);
        } else if (kind == "bool" || kind == "noException") {
            want(value, Json::Type::Bool, vp);
        } else if (kind == "float" || kind == "double") {
            wantNumber(value, vp);
        } else {
            error(vp,
                  "unknown parcel item (string16, string8, int32, int64, bool, float, double, "
                  "binder, noException)");
        }
    }
}

void Parser::hookArgs(const HookSpec& hookSpec, const Json& v, const std::string& path) {
    if (!v.isNull() && !v.isArray() && !v.isObject()) {
        error(path, std::string("must be an array or an object, not ") + v.typeName());
        return;
    }
    std::string sub, why;
    if (!checkHookArgs(hookSpec, v, &sub, &why)) {
        error(path + (sub.empty() || sub[0] == '[' ? sub : "." + sub), why);
        return;
    }
    for (size_t i = 0; i < hookSpec.params.size(); ++i) {
        const Json& a = hookArg(hookSpec, v, i);
        const std::string p =
            v.isArray() ? indexPath(path, i) : memberPath(path, hookSpec.params[i].name);
        if (hookSpec.params[i].kind == ArgKind::Metadata && a.isObject()) metadata(a, p, false);
        if (hookSpec.params[i].kind == ArgKind::Parcel && a.isArray()) parcel(a, p);
    }
}

void Parser::expect(const Json& v, const std::string& path, const std::string& action) {
    if (!want(v, Json::Type::Object, path)) return;
    onlyKeys(v, path,
             {"return", "reply", "properties", "metadata", "session_params_seen_by_hal",
              "hal_streams", "log", "log_absent", "motor", "torch_status", "aon_callbacks",
              "client_events", "services", "streams", "meta_buffers", "files"});
    auto onlyFor = [&](const char* key, std::set<std::string> actions) {
        if (v.has(key) && !actions.count(action)) {
            std::string list;
            for (const auto& a : actions) list += (list.empty() ? "" : ", ") + a;
            error(memberPath(path, key), "is checked only after " + list);
        }
    };
    onlyFor("return",
            {"open", "transact", "configure", "request", "result", "characteristics", "hook"});
    onlyFor("reply", {"transact"});
    onlyFor("metadata", {"configure", "request", "result", "characteristics", "hook"});
    onlyFor("session_params_seen_by_hal", {"configure"});
    onlyFor("hal_streams", {"configure"});
    onlyFor("streams", {"configure"});

    if (v.has("return")) {
        const Json& r = v["return"];
        const std::string p = memberPath(path, "return");
        if (r.isObject() && action == "hook") {
            // A hook's changed in/out arguments, by name.
        } else if (r.isObject()) {
            onlyKeys(r, p, {"serviceSpecificError"});
            if (require(r, "serviceSpecificError", p)) {
                wantInt(r["serviceSpecificError"], memberPath(p, "serviceSpecificError"), kInt32Min,
                        kInt32Max);
            }
        } else if (!r.isInt() && !r.isBool()) {
            error(p, "must be an integer, true/false or {\"serviceSpecificError\": n}");
        }
    }
    if (v.has("reply")) {
        const std::string p = memberPath(path, "reply");
        if (want(v["reply"], Json::Type::Array, p)) {
            for (size_t i = 0; i < v["reply"].size(); ++i) {
                const Json& item = v["reply"].items()[i];
                const std::string ip = indexPath(p, i);
                static const std::set<std::string> kinds = {"noException", "bool",     "int32",
                                                            "int64",       "string16", "string8"};
                if (!item.isObject() || item.size() != 1 || !kinds.count(item.members()[0].first)) {
                    error(ip,
                          "must be one of {\"noException\": true}, {\"bool\": b}, "
                          "{\"int32\": n}, {\"int64\": n}, {\"string16\": s}, {\"string8\": s}");
                }
            }
        }
    }
    if (v.has("properties"))
        stringMap(v["properties"], memberPath(path, "properties"), true, nullptr);
    if (v.has("metadata")) metadata(v["metadata"], memberPath(path, "metadata"), true);
    if (v.has("session_params_seen_by_hal")) {
        metadata(v["session_params_seen_by_hal"], memberPath(path, "session_params_seen_by_hal"),
                 true);
    }
    for (const char* key : {"hal_streams", "streams"}) {
        const std::string p = memberPath(path, key);
        if (v.has(key) && want(v[key], Json::Type::Array, p)) {
            for (size_t i = 0; i < v[key].size(); ++i) {
                wantInt(v[key].items()[i], indexPath(p, i), 0, kInt32Max);
            }
        }
    }
    for (const char* key : {"log", "log_absent", "aon_callbacks", "client_events", "meta_buffers"}) {
        if (v.has(key)) stringList(v[key], memberPath(path, key));
    }
    if (v.has("motor")) want(v["motor"], Json::Type::Array, memberPath(path, "motor"));
    if (v.has("torch_status")) {
        const std::string p = memberPath(path, "torch_status");
        if (want(v["torch_status"], Json::Type::Array, p)) {
            for (size_t i = 0; i < v["torch_status"].size(); ++i) {
                const Json& t = v["torch_status"].items()[i];
                const std::string ip = indexPath(p, i);
                if (!want(t, Json::Type::Object, ip)) continue;
                onlyKeys(t, ip, {"cameraId", "status"});
                if (require(t, "cameraId", ip))
                    want(t["cameraId"], Json::Type::String, memberPath(ip, "cameraId"));
                if (require(t, "status", ip))
                    wantInt(t["status"], memberPath(ip, "status"), kInt32Min, kInt32Max);
            }
        }
    }
    if (v.has("services")) {
        const std::string p = memberPath(path, "services");
        if (want(v["services"], Json::Type::Object, p)) {
            onlyKeys(v["services"], p,
                     {"performance", "camera_extension", "camera_mdm", "battery", "camera_service",
                      "kairo", "thermal_hal", "sensors", "aps", "media"});
            for (const auto& m : v["services"].members()) {
                // "kairo" counts the thermal service's transactions.
                if (m.first == "kairo" && m.second.isInt()) continue;
                want(m.second, Json::Type::Array, memberPath(p, m.first));
            }
        }
    }
    if (v.has("files")) stringMap(v["files"], memberPath(path, "files"), true, nullptr);
}

}  // namespace sim
}  // namespace camext

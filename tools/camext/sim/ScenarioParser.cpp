// Reads a scenario file into the model, checking every key and value; each fault is reported
// with its JSON path so that a scenario author finds it without guessing.
#include <stdio.h>

#include <fstream>
#include <set>
#include <sstream>

#include "sim/Scenario.h"
#include "sim/ScenarioPaths.h"

namespace camext {
namespace sim {

namespace {

constexpr int64_t kInt32Min = -2147483648LL;
constexpr int64_t kInt32Max = 2147483647LL;

class Parser {
public:
    Parser(const TagChecker& tags, std::vector<ParseError>* errors)
        : mTags(tags), mErrors(errors) {}

    void scenario(const Json& root, const std::string& dir, Scenario* out);

private:
    void error(const std::string& path, const std::string& message) {
        mErrors->push_back({path, message});
    }
    bool want(const Json& v, Json::Type type, const std::string& path);
    bool wantInt(const Json& v, const std::string& path, int64_t min, int64_t max);
    bool wantNumber(const Json& v, const std::string& path);
    void onlyKeys(const Json& obj, const std::string& path, std::set<std::string> allowed);
    bool require(const Json& obj, const std::string& key, const std::string& path);

    void device(const Json& v, const std::string& path, const std::string& dir, Device* out);
    void services(const Json& v, const std::string& path);
    void cameras(const Json& v, const std::string& path, Device* out);
    void metadata(const Json& v, const std::string& path, bool allowNull);
    void stringMap(const Json& v, const std::string& path, bool allowNull,
                   std::vector<std::pair<std::string, std::string>>* out);
    bool caller(const Json& v, const std::string& path, Caller* out);
    void step(const Json& v, const std::string& path, Caller* current, Step* out);
    void action(const std::string& name, const Json& v, const Json& stepObj,
                const std::string& path, Caller* current, Step* out);
    void parcel(const Json& v, const std::string& path);
    void hookArgs(const Json& v, const std::string& path);
    void expect(const Json& v, const std::string& path, const std::string& action);
    void stringList(const Json& v, const std::string& path);

    const TagChecker& mTags;
    std::vector<ParseError>* mErrors;
};

const char* typeWord(Json::Type t) {
    switch (t) {
        case Json::Type::Null:
            return "null";
        case Json::Type::Bool:
            return "true or false";
        case Json::Type::Int:
            return "an integer";
        case Json::Type::Double:
            return "a number";
        case Json::Type::String:
            return "a string";
        case Json::Type::Array:
            return "an array";
        case Json::Type::Object:
            return "an object";
    }
    return "?";
}

bool Parser::want(const Json& v, Json::Type type, const std::string& path) {
    bool ok = v.type() == type || (type == Json::Type::Double && v.isNumber());
    if (!ok) error(path, std::string("must be ") + typeWord(type) + ", not " + v.typeName());
    return ok;
}

bool Parser::wantInt(const Json& v, const std::string& path, int64_t min, int64_t max) {
    if (!v.isInt()) {
        error(path, std::string("must be an integer, not ") + v.typeName());
        return false;
    }
    if (v.asInt() < min || v.asInt() > max) {
        error(path, "must be between " + std::to_string(min) + " and " + std::to_string(max));
        return false;
    }
    return true;
}

bool Parser::wantNumber(const Json& v, const std::string& path) {
    return want(v, Json::Type::Double, path);
}

void Parser::onlyKeys(const Json& obj, const std::string& path, std::set<std::string> allowed) {
    for (const auto& m : obj.members()) {
        if (!allowed.count(m.first)) {
            std::string list;
            for (const auto& a : allowed) list += (list.empty() ? "" : ", ") + a;
            error(memberPath(path, m.first), "unknown key (known here: " + list + ")");
        }
    }
}

bool Parser::require(const Json& obj, const std::string& key, const std::string& path) {
    if (obj.has(key)) return true;
    error(memberPath(path, key), "is required");
    return false;
}

void Parser::scenario(const Json& root, const std::string& dir, Scenario* out) {
    if (!want(root, Json::Type::Object, "")) return;
    onlyKeys(root, "", {"name", "description", "device", "steps"});
    if (root.has("name") && want(root["name"], Json::Type::String, "name")) {
        out->name = root["name"].asString();
    }
    if (root.has("description")) want(root["description"], Json::Type::String, "description");
    if (root.has("device")) device(root["device"], "device", dir, &out->device);
    if (out->device.cameras.empty() && !root["device"].has("cameras")) {
        out->device.cameras.push_back({"0", "back", Json::object()});
        out->device.cameras.push_back({"1", "front", Json::object()});
    }
    if (!require(root, "steps", "") || !want(root["steps"], Json::Type::Array, "steps")) return;
    Caller current;
    const auto& steps = root["steps"].items();
    for (size_t i = 0; i < steps.size(); ++i) {
        Step s;
        step(steps[i], indexPath("steps", i), &current, &s);
        out->steps.push_back(std::move(s));
    }
}

void Parser::stringMap(const Json& v, const std::string& path, bool allowNull,
                       std::vector<std::pair<std::string, std::string>>* out) {
    if (!want(v, Json::Type::Object, path)) return;
    for (const auto& m : v.members()) {
        const std::string p = memberPath(path, m.first);
        if (m.second.isNull() && allowNull) {
            if (out) out->emplace_back(m.first, std::string());
        } else if (m.second.isString()) {
            if (out) out->emplace_back(m.first, m.second.asString());
        } else {
            error(p, std::string("must be a string") + (allowNull ? " or null" : "") + ", not " +
                         m.second.typeName());
        }
    }
}

void Parser::device(const Json& v, const std::string& path, const std::string& dir, Device* out) {
    if (!want(v, Json::Type::Object, path)) return;
    onlyKeys(v, path,
             {"properties", "properties_file", "config", "config_file", "files", "vendor_tags",
              "vendor_tags_global", "vendor_id", "cameras", "services", "aps_library", "clock"});
    if (v.has("properties")) {
        stringMap(v["properties"], memberPath(path, "properties"), false, &out->properties);
    }
    if (v.has("properties_file") &&
        want(v["properties_file"], Json::Type::String, memberPath(path, "properties_file"))) {
        out->propertiesFile = resolvePath(dir, v["properties_file"].asString());
        if (!fileReadable(out->propertiesFile)) {
            error(memberPath(path, "properties_file"), "cannot read " + out->propertiesFile);
        }
    }
    if (v.has("config") && v.has("config_file")) {
        error(memberPath(path, "config_file"), "give either config or config_file, not both");
    }
    if (v.has("config") && want(v["config"], Json::Type::Object, memberPath(path, "config"))) {
        out->hasConfig = true;
        out->config = v["config"];
    }
    if (v.has("config_file") &&
        want(v["config_file"], Json::Type::String, memberPath(path, "config_file"))) {
        out->configFile = resolvePath(dir, v["config_file"].asString());
        if (!fileReadable(out->configFile)) {
            error(memberPath(path, "config_file"), "cannot read " + out->configFile);
        }
    }
    if (v.has("files")) stringMap(v["files"], memberPath(path, "files"), false, &out->files);
    if (v.has("vendor_tags")) {
        const Json& t = v["vendor_tags"];
        const std::string p = memberPath(path, "vendor_tags");
        if (t.isString() && t.asString() == "all") {
            out->allVendorTags = true;
        } else if (t.isArray()) {
            out->allVendorTags = false;
            for (size_t i = 0; i < t.size(); ++i) {
                const std::string ip = indexPath(p, i);
                if (!want(t.items()[i], Json::Type::String, ip)) continue;
                const std::string& name = t.items()[i].asString();
                std::string why;
                if (name.compare(0, 10, "com.vantu.") != 0) {
                    error(ip, "\"" + name + "\" is not a vendor tag (com.vantu....)");
                } else if (mTags && !mTags(name, Json(), &why)) {
                    error(ip, why);
                } else {
                    out->vendorTags.push_back(name);
                }
            }
        } else {
            error(p, "must be \"all\" or a list of tag names");
        }
    }
    if (v.has("vendor_tags_global") &&
        want(v["vendor_tags_global"], Json::Type::Bool, memberPath(path, "vendor_tags_global"))) {
        out->vendorTagsGlobal = v["vendor_tags_global"].asBool();
    }
    if (v.has("vendor_id") && wantInt(v["vendor_id"], memberPath(path, "vendor_id"), 0, INT64_MAX)) {
        out->vendorId = static_cast<uint64_t>(v["vendor_id"].asInt());
    }
    if (v.has("cameras")) cameras(v["cameras"], memberPath(path, "cameras"), out);
    if (v.has("services")) {
        services(v["services"], memberPath(path, "services"));
        out->services = v["services"];
    }
    if (v.has("aps_library")) {
        const Json& a = v["aps_library"];
        const std::string p = memberPath(path, "aps_library");
        if (a.isNull() || (a.isString() && a.asString() == "full")) {
            out->apsLibrary = a;
        } else if (a.isObject()) {
            onlyKeys(a, p, {"missing", "features"});
            if (a.has("missing")) stringList(a["missing"], memberPath(p, "missing"));
            if (a.has("features") &&
                want(a["features"], Json::Type::Object, memberPath(p, "features"))) {
                for (const auto& f : a["features"].members()) {
                    want(f.second, Json::Type::Bool, memberPath(memberPath(p, "features"), f.first));
                }
            }
            out->apsLibrary = a;
        } else {
            error(p, "must be null, \"full\" or {\"missing\": [...], \"features\": {...}}");
        }
    }
    if (v.has("clock")) {
        const Json& c = v["clock"];
        const std::string p = memberPath(path, "clock");
        if (want(c, Json::Type::Object, p)) {
            onlyKeys(c, p, {"wall", "monotonic_ns"});
            if (c.has("wall") &&
                wantInt(c["wall"], memberPath(p, "wall"), 0, INT64_MAX / 2000000000LL)) {
                out->wallSeconds = c["wall"].asInt();
            }
            if (c.has("monotonic_ns") &&
                wantInt(c["monotonic_ns"], memberPath(p, "monotonic_ns"), 0, INT64_MAX / 2)) {
                out->monotonicNs = c["monotonic_ns"].asInt();
            }
        }
    }
}

void Parser::services(const Json& v, const std::string& path) {
    if (!want(v, Json::Type::Object, path)) return;
    onlyKeys(v, path,
             {"motor", "kairo", "thermal_hal", "sensors", "performance", "camera_extension",
              "camera_mdm", "media"});
    for (const char* flag :
         {"motor", "thermal_hal", "performance", "camera_extension", "camera_mdm"}) {
        if (v.has(flag)) want(v[flag], Json::Type::Bool, memberPath(path, flag));
    }
    if (v.has("kairo")) {
        const Json& k = v["kairo"];
        const std::string p = memberPath(path, "kairo");
        if (k.isObject()) {
            onlyKeys(k, p, {"temperature"});
            if (require(k, "temperature", p))
                wantNumber(k["temperature"], memberPath(p, "temperature"));
        } else if (!(k.isBool() && !k.asBool()) && !k.isNull()) {
            error(p, "must be {\"temperature\": n} or false");
        }
    }
    if (v.has("sensors")) {
        const Json& s = v["sensors"];
        const std::string p = memberPath(path, "sensors");
        if (want(s, Json::Type::Object, p)) {
            onlyKeys(s, p, {"magnetic"});
            if (s.has("magnetic")) want(s["magnetic"], Json::Type::Bool, memberPath(p, "magnetic"));
        }
    }
    if (v.has("media")) {
        const Json& m = v["media"];
        const std::string p = memberPath(path, "media");
        if (want(m, Json::Type::Object, p)) {
            onlyKeys(m, p, {"model", "sensors"});
            if (m.has("model")) want(m["model"], Json::Type::String, memberPath(p, "model"));
            if (m.has("sensors") &&
                want(m["sensors"], Json::Type::Array, memberPath(p, "sensors"))) {
                for (size_t i = 0; i < m["sensors"].size(); ++i) {
                    const Json& s = m["sensors"].items()[i];
                    const std::string sp = indexPath(memberPath(p, "sensors"), i);
                    if (!want(s, Json::Type::Object, sp)) continue;
                    onlyKeys(s, sp, {"name", "position"});
                    if (require(s, "name", sp))
                        want(s["name"], Json::Type::String, memberPath(sp, "name"));
                    if (require(s, "position", sp)) {
                        wantInt(s["position"], memberPath(sp, "position"), 0, kInt32Max);
                    }
                }
            }
        }
    }
}

void Parser::cameras(const Json& v, const std::string& path, Device* out) {
    if (!want(v, Json::Type::Object, path)) return;
    for (const auto& m : v.members()) {
        const std::string p = memberPath(path, m.first);
        if (!want(m.second, Json::Type::Object, p)) continue;
        onlyKeys(m.second, p, {"facing", "characteristics"});
        CameraSpec cam{m.first, "back", Json::object()};
        if (m.second.has("facing")) {
            const Json& f = m.second["facing"];
            if (f.isString() &&
                (f.asString() == "back" || f.asString() == "front" || f.asString() == "external")) {
                cam.facing = f.asString();
            } else {
                error(memberPath(p, "facing"), "must be \"back\", \"front\" or \"external\"");
            }
        }
        if (m.second.has("characteristics")) {
            metadata(m.second["characteristics"], memberPath(p, "characteristics"), false);
            cam.characteristics = m.second["characteristics"];
        }
        out->cameras.push_back(std::move(cam));
    }
}

void Parser::metadata(const Json& v, const std::string& path, bool allowNull) {
    if (!want(v, Json::Type::Object, path)) return;
    for (const auto& m : v.members()) {
        const std::string p = memberPath(path, m.first);
        const Json& value = m.second;
        bool shapeOk = value.isNumber() || value.isString() || (allowNull && value.isNull());
        if (value.isArray()) {
            shapeOk = true;
            for (const auto& item : value.items()) shapeOk = shapeOk && item.isNumber();
        }
        if (!shapeOk) {
            error(p, std::string("must be a number, an array of numbers or a string") +
                         (allowNull ? " (or null: absent)" : "") + ", not " + value.typeName());
            continue;
        }
        std::string why;
        if (mTags && !mTags(m.first, value, &why)) error(p, why);
    }
}

void Parser::stringList(const Json& v, const std::string& path) {
    if (!want(v, Json::Type::Array, path)) return;
    for (size_t i = 0; i < v.size(); ++i)
        want(v.items()[i], Json::Type::String, indexPath(path, i));
}

bool Parser::caller(const Json& v, const std::string& path, Caller* out) {
    if (!want(v, Json::Type::Object, path)) return false;
    onlyKeys(v, path, {"uid", "pid", "permissions"});
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
                         {"id", "width", "height", "format", "dataSpace", "usage", "rotation"});
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
        boolKey("inflight");
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
        if (want(v, Json::Type::String, path) && !hookKnown(v.asString())) {
            error(path, "\"" + v.asString() + "\" is not an operation of the hook interface");
        }
        if (stepObj.has("args")) {
            const std::string ap = path.substr(0, path.size() - 4) + "args";
            hookArgs(stepObj["args"], ap);
        }
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

void Parser::hookArgs(const Json& v, const std::string& path) {
    if (v.isArray()) {
        for (size_t i = 0; i < v.size(); ++i) {
            const Json& a = v.items()[i];
            if (a.isObject()) metadata(a, indexPath(path, i), false);
        }
    } else if (v.isObject()) {
        if (v.has("metadata")) metadata(v["metadata"], memberPath(path, "metadata"), false);
    } else {
        error(path, std::string("must be an array or an object, not ") + v.typeName());
    }
}

void Parser::expect(const Json& v, const std::string& path, const std::string& action) {
    if (!want(v, Json::Type::Object, path)) return;
    onlyKeys(v, path,
             {"return", "reply", "properties", "metadata", "session_params_seen_by_hal",
              "hal_streams", "log", "log_absent", "motor", "torch_status", "aon_callbacks",
              "client_events", "services"});
    auto onlyFor = [&](const char* key, std::set<std::string> actions) {
        if (v.has(key) && !actions.count(action)) {
            std::string list;
            for (const auto& a : actions) list += (list.empty() ? "" : ", ") + a;
            error(memberPath(path, key), "is checked only after " + list);
        }
    };
    onlyFor("return", {"open", "transact", "configure", "hook"});
    onlyFor("reply", {"transact"});
    onlyFor("metadata", {"configure", "request", "result", "characteristics", "hook"});
    onlyFor("session_params_seen_by_hal", {"configure"});
    onlyFor("hal_streams", {"configure"});

    if (v.has("return")) {
        const Json& r = v["return"];
        const std::string p = memberPath(path, "return");
        if (r.isObject()) {
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
    if (v.has("hal_streams")) {
        const std::string p = memberPath(path, "hal_streams");
        if (want(v["hal_streams"], Json::Type::Array, p)) {
            for (size_t i = 0; i < v["hal_streams"].size(); ++i) {
                wantInt(v["hal_streams"].items()[i], indexPath(p, i), 0, kInt32Max);
            }
        }
    }
    for (const char* key : {"log", "log_absent", "aon_callbacks", "client_events"}) {
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
                      "kairo", "thermal_hal", "sensors"});
            for (const auto& m : v["services"].members())
                want(m.second, Json::Type::Array, memberPath(p, m.first));
        }
    }
}

}  // namespace

const std::vector<std::string>& actionNames() {
    static const std::vector<std::string> kNames = {
        "open",           "close",           "configure",     "request",
        "result",         "characteristics", "transact",      "hook",
        "set_properties", "write_files",     "advance_clock", "schedule",
        "binder_died",    "sensor_event",    "signal"};
    return kNames;
}

bool parseScenario(const std::string& text, const std::string& file, const TagChecker& tags,
                   Scenario* out, std::vector<ParseError>* errors) {
    errors->clear();
    *out = Scenario();
    out->file = file;
    out->dir = parentDir(file);
    std::string syntax;
    Json root = Json::parse(text, &syntax);
    if (!syntax.empty()) {
        errors->push_back({"", syntax});
        return false;
    }
    Parser(tags, errors).scenario(root, out->dir, out);
    if (out->name.empty()) out->name = baseName(file);
    return errors->empty();
}

bool loadScenario(const std::string& file, const TagChecker& tags, Scenario* out,
                  std::vector<ParseError>* errors) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        errors->assign(1, {"", "cannot read the file"});
        return false;
    }
    std::stringstream ss;
    ss << in.rdbuf();
    return parseScenario(ss.str(), file, tags, out, errors);
}

}  // namespace sim
}  // namespace camext

// Reads a scenario file into the model: the top level and the device.
#include <fstream>
#include <sstream>

#include "sim/ScenarioCheck.h"

namespace camext {
namespace sim {

namespace {

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

}  // namespace

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
                    onlyKeys(s, sp, {"name", "position", "power_fails"});
                    if (require(s, "name", sp))
                        want(s["name"], Json::Type::String, memberPath(sp, "name"));
                    // The driver answers the position request with 16 bits.
                    if (require(s, "position", sp)) {
                        wantInt(s["position"], memberPath(sp, "position"), 0, 65535);
                    }
                    if (s.has("power_fails"))
                        want(s["power_fails"], Json::Type::Bool, memberPath(sp, "power_fails"));
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

#include "sim/MetadataJson.h"

#include <math.h>
#include <stdio.h>
#include <stdlib.h>

#include "hostctl/VendorTags.h"

namespace camext {
namespace sim {

namespace {

// A float as the shortest decimal that reads back as the same float.
Json floatJson(float f) {
    if (!std::isfinite(f)) return Json();
    char buf[32];
    for (int precision = 1; precision <= 9; ++precision) {
        snprintf(buf, sizeof(buf), "%.*g", precision, static_cast<double>(f));
        if (strtof(buf, nullptr) == f) break;
    }
    return Json(strtod(buf, nullptr));
}

Json entryValues(const camera_metadata_ro_entry& e) {
    Json values = Json::array();
    for (size_t i = 0; i < e.count; ++i) {
        switch (e.type) {
            case TYPE_BYTE:
                values.push(Json(static_cast<int>(e.data.u8[i])));
                break;
            case TYPE_INT32:
                values.push(Json(e.data.i32[i]));
                break;
            case TYPE_FLOAT:
                values.push(floatJson(e.data.f[i]));
                break;
            case TYPE_INT64:
                values.push(Json(static_cast<long long>(e.data.i64[i])));
                break;
            case TYPE_DOUBLE:
                values.push(Json(e.data.d[i]));
                break;
            case TYPE_RATIONAL:
                values.push(Json(e.data.r[i].numerator));
                values.push(Json(e.data.r[i].denominator));
                break;
        }
    }
    return values;
}

// Byte values that read as text ending in a zero, shown as that text.
Json display(const Json& values) {
    if (!values.isArray() || values.size() < 2 || values.items().back().asInt() != 0) {
        return values;
    }
    std::string text;
    for (size_t i = 0; i + 1 < values.size(); ++i) {
        const int64_t c = values.items()[i].asInt();
        if (c < 0x20 || c >= 0x7f) return values;
        text += static_cast<char>(c);
    }
    return Json(text);
}

Json enumName(uint32_t tag, const Json& values) {
    if (!values.isArray() || values.size() != 1 || !values.items()[0].isInt()) return Json();
    char buf[64];
    if (camera_metadata_enum_snprint(tag, static_cast<uint32_t>(values.items()[0].asInt()), buf,
                                     sizeof(buf)) != 0) {
        return Json();
    }
    return Json(buf);
}

}  // namespace

bool findTag(const TagSpace& space, const std::string& name, uint32_t* tag, int* type,
             std::string* why) {
    if (!hostctl::lookupTag(name, space.vendorId, tag, type) || *type < 0) {
        if (why) {
            *why = "unknown tag \"" + name + "\"" +
                   (name.compare(0, 4, "com.") == 0 ? " (not among this device's vendor tags)" : "");
        }
        return false;
    }
    return true;
}

std::string tagName(const TagSpace& space, uint32_t tag) {
    return hostctl::tagName(tag, space.vendorId);
}

bool valueFitsType(const Json& value, int type, std::string* why) {
    if (value.isString()) {
        if (type == TYPE_BYTE) return true;
        *why = "a string is only for a byte tag";
        return false;
    }
    const std::vector<Json> one = {value};
    const std::vector<Json>& items = value.isArray() ? value.items() : one;
    for (const auto& v : items) {
        if (!v.isNumber()) {
            *why = "values must be numbers";
            return false;
        }
        const bool integral = v.isInt();
        switch (type) {
            case TYPE_BYTE:
                if (!integral || v.asInt() < -128 || v.asInt() > 255) {
                    *why = "a byte tag takes integers from -128 to 255";
                    return false;
                }
                break;
            case TYPE_INT32:
            case TYPE_RATIONAL:
                if (!integral || v.asInt() < -2147483648LL || v.asInt() > 4294967295LL) {
                    *why = "an int32 tag takes 32-bit integers";
                    return false;
                }
                break;
            case TYPE_INT64:
                if (!integral) {
                    *why = "an int64 tag takes integers";
                    return false;
                }
                break;
            default:
                break;
        }
    }
    if (type == TYPE_RATIONAL && items.size() % 2 != 0) {
        *why = "a rational tag takes numerator, denominator pairs";
        return false;
    }
    return true;
}

bool writeEntries(const TagSpace& space, const Json& entries, android::CameraMetadata* md,
                  std::string* error) {
    for (const auto& m : entries.members()) {
        uint32_t tag;
        int type;
        std::string why;
        if (!findTag(space, m.first, &tag, &type, &why) || !valueFitsType(m.second, type, &why)) {
            *error = m.first + ": " + why;
            return false;
        }
        Json values = m.second;
        if (values.isString()) {
            Json bytes = Json::array();
            for (unsigned char c : values.asString()) bytes.push(Json(static_cast<int>(c)));
            bytes.push(Json(0));
            values = bytes;
        } else if (!values.isArray()) {
            values = Json::array({values});
        }
        const auto& v = values.items();
        android::status_t res = android::OK;
        switch (type) {
            case TYPE_BYTE: {
                std::vector<uint8_t> data;
                for (const auto& x : v) data.push_back(static_cast<uint8_t>(x.asInt()));
                res = md->update(tag, data.data(), data.size());
                break;
            }
            case TYPE_INT32: {
                std::vector<int32_t> data;
                for (const auto& x : v) data.push_back(static_cast<int32_t>(x.asInt()));
                res = md->update(tag, data.data(), data.size());
                break;
            }
            case TYPE_FLOAT: {
                std::vector<float> data;
                for (const auto& x : v) data.push_back(static_cast<float>(x.asDouble()));
                res = md->update(tag, data.data(), data.size());
                break;
            }
            case TYPE_INT64: {
                std::vector<int64_t> data;
                for (const auto& x : v) data.push_back(x.asInt());
                res = md->update(tag, data.data(), data.size());
                break;
            }
            case TYPE_DOUBLE: {
                std::vector<double> data;
                for (const auto& x : v) data.push_back(x.asDouble());
                res = md->update(tag, data.data(), data.size());
                break;
            }
            case TYPE_RATIONAL: {
                std::vector<camera_metadata_rational_t> data;
                for (size_t i = 0; i + 1 < v.size(); i += 2) {
                    data.push_back({static_cast<int32_t>(v[i].asInt()),
                                    static_cast<int32_t>(v[i + 1].asInt())});
                }
                res = md->update(tag, data.data(), data.size());
                break;
            }
            default:
                res = android::BAD_TYPE;
        }
        if (res != android::OK) {
            *error = m.first + ": the metadata refused the entry (" + std::to_string(res) + ")";
            return false;
        }
    }
    return true;
}

Json readEntries(const TagSpace& space, const camera_metadata_t* md) {
    Json out = Json::object();
    if (md == nullptr) return out;
    const size_t n = get_camera_metadata_entry_count(md);
    for (size_t i = 0; i < n; ++i) {
        camera_metadata_ro_entry e;
        if (get_camera_metadata_ro_entry(md, i, &e) != 0) continue;
        out.set(tagName(space, e.tag), entryValues(e));
    }
    return out;
}

Json readEntries(const TagSpace& space, const android::CameraMetadata& md) {
    const camera_metadata_t* raw = md.getAndLock();
    Json out = readEntries(space, raw);
    md.unlock(raw);
    return out;
}

Json diffEntries(const TagSpace& space, const Json& before, const Json& after) {
    Json changes = Json::array();
    auto add = [&](const std::string& name, const Json& b, const Json& a) {
        Json c = Json::object({{"tag", name}, {"before", display(b)}, {"after", display(a)}});
        uint32_t tag;
        int type;
        if (findTag(space, name, &tag, &type, nullptr)) {
            Json bn = enumName(tag, b), an = enumName(tag, a);
            if (!bn.isNull()) c.set("before_name", bn);
            if (!an.isNull()) c.set("after_name", an);
        }
        changes.push(c);
    };
    for (const auto& m : before.members()) {
        const Json* a = after.find(m.first);
        if (a == nullptr) {
            add(m.first, m.second, Json());
        } else if (!(*a == m.second)) {
            add(m.first, m.second, *a);
        }
    }
    for (const auto& m : after.members()) {
        if (!before.has(m.first)) add(m.first, Json(), m.second);
    }
    return changes;
}

android::CameraMetadata newMetadata(const TagSpace& space) {
    android::CameraMetadata md(10, 64);
    hostctl::setMetadataVendorId(&md, space.vendorId);
    return md;
}

}  // namespace sim
}  // namespace camext

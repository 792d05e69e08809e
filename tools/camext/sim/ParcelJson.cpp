#include "sim/ParcelJson.h"

#include <string.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include "hostctl/Binder.h"

namespace camext {
namespace sim {

bool writeParcelItems(const Json& items, android::Parcel* parcel, std::string* error) {
    for (const auto& item : items.items()) {
        if (!item.isObject() || item.size() != 1) continue;
        const std::string& kind = item.members()[0].first;
        const Json& v = item.members()[0].second;
        android::status_t res = android::OK;
        if (kind == "string16") {
            res = v.isNull() ? parcel->writeString16(std::optional<android::String16>())
                             : parcel->writeString16(android::String16(v.asString().c_str()));
        } else if (kind == "string8") {
            res = v.isNull() ? parcel->writeInt32(-1)
                             : parcel->writeString8(android::String8(v.asString().c_str()));
        } else if (kind == "int32") {
            res = parcel->writeInt32(static_cast<int32_t>(v.asInt()));
        } else if (kind == "int64") {
            res = parcel->writeInt64(v.asInt());
        } else if (kind == "bool") {
            res = parcel->writeBool(v.asBool());
        } else if (kind == "float") {
            res = parcel->writeFloat(static_cast<float>(v.asDouble()));
        } else if (kind == "double") {
            res = parcel->writeDouble(v.asDouble());
        } else if (kind == "noException") {
            res = parcel->writeNoException();
        } else if (kind == "binder") {
            android::sp<android::IBinder> binder;
            if (v.isString()) {
                auto named = hostctl::findBinder(v.asString());
                if (named == nullptr) named = hostctl::createBinder(v.asString());
                binder = named;
            }
            res = parcel->writeStrongBinder(binder);
        }
        if (res != android::OK) {
            *error = "cannot write " + item.dump() + " (" + std::to_string(res) + ")";
            return false;
        }
    }
    return true;
}

Json readParcelAs(const android::Parcel& parcel, const Json& shapes) {
    Json out = Json::array();
    parcel.setDataPosition(0);
    for (const auto& shape : shapes.items()) {
        if (!shape.isObject() || shape.size() != 1) continue;
        const std::string& kind = shape.members()[0].first;
        if (parcel.dataAvail() < 4) {
            out.push(Json::object({{"missing", kind}}));
            continue;
        }
        if (kind == "noException") {
            const int32_t code = parcel.readExceptionCode();
            out.push(code == 0 ? Json::object({{"noException", true}})
                               : Json::object({{"exception", code}}));
        } else if (kind == "bool") {
            out.push(Json::object({{"bool", parcel.readBool()}}));
        } else if (kind == "int32") {
            out.push(Json::object({{"int32", parcel.readInt32()}}));
        } else if (kind == "int64") {
            out.push(Json::object({{"int64", static_cast<long long>(parcel.readInt64())}}));
        } else if (kind == "string16") {
            std::optional<android::String16> s;
            parcel.readString16(&s);
            out.push(Json::object({{"string16", s ? Json(android::String8(*s).string()) : Json()}}));
        } else if (kind == "string8") {
            android::String8 s;
            out.push(parcel.readString8(&s) == android::OK ? Json::object({{"string8", s.string()}})
                                                           : Json::object({{"string8", Json()}}));
        }
    }
    return out;
}

Json parcelWords(const android::Parcel& parcel) {
    Json words = Json::array();
    const uint8_t* data = parcel.data();
    for (size_t i = 0; data != nullptr && i + 4 <= parcel.dataSize(); i += 4) {
        int32_t w;
        memcpy(&w, data + i, sizeof(w));
        words.push(Json(w));
    }
    return words;
}

}  // namespace sim
}  // namespace camext

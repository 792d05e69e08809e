// Parcels as scenarios write them: lists of typed items ({"string16": "com.app"}, {"int32": 7},
// {"binder": "name"}), and replies read back in the shapes an expectation names.
#pragma once

#include <binder/Parcel.h>

#include <string>

#include "sim/Json.h"

namespace camext {
namespace sim {

// Writes the items in order; a named binder is the scenario binder of that name (created on
// first use, so later steps can kill it).
bool writeParcelItems(const Json& items, android::Parcel* parcel, std::string* error);
// Reads `parcel` from its start as the list of shapes, each item reporting what was there:
// {"int32": 5} for an int32 shape; {"noException": true} or {"exception": code}; a short
// parcel gives {"missing": "int32"}.
Json readParcelAs(const android::Parcel& parcel, const Json& shapes);
// The parcel's data as int32 words, for the report.
Json parcelWords(const android::Parcel& parcel);

}  // namespace sim
}  // namespace camext

// Parcels written from scenario items and replies read back in the shapes a scenario expects.
#include <gtest/gtest.h>
#include <utils/String16.h>

#include "hostctl/Binder.h"
#include "sim/ParcelJson.h"

namespace {

using namespace camext::sim;

Json parse(const std::string& text) {
    std::string error;
    Json v = Json::parse(text, &error);
    EXPECT_TRUE(error.empty()) << error;
    return v;
}

TEST(SimParcelJson, ItemsReadBackInOrderAsTheirShapes) {
    android::Parcel p;
    std::string error;
    ASSERT_TRUE(writeParcelItems(parse(R"([{"int32": -7}, {"string16": "com.app"},
        {"string16": null}, {"bool": true}, {"int64": 8589934592}, {"string8": "x"}])"),
                                 &p, &error))
        << error;
    const Json shapes = parse(R"([{"int32": 0}, {"string16": ""}, {"string16": ""},
        {"bool": false}, {"int64": 0}, {"string8": ""}])");
    EXPECT_EQ(parse(R"([{"int32": -7}, {"string16": "com.app"}, {"string16": null},
        {"bool": true}, {"int64": 8589934592}, {"string8": "x"}])"),
              readParcelAs(p, shapes));
}

TEST(SimParcelJson, ShortReplyReportsWhatIsMissingAndExceptionsByCode) {
    android::Parcel ok;
    ok.writeNoException();
    EXPECT_EQ(parse(R"([{"noException": true}, {"missing": "bool"}])"),
              readParcelAs(ok, parse(R"([{"noException": true}, {"bool": true}])")));
    android::Parcel failed;
    failed.writeInt32(-8);  // EX_SERVICE_SPECIFIC
    failed.writeString16(android::String16("no"));
    failed.writeInt32(0);
    failed.writeInt32(1);
    EXPECT_EQ(parse(R"([{"exception": -8}])"),
              readParcelAs(failed, parse(R"([{"noException": true}])")));
}

TEST(SimParcelJson, NamedBindersAreMadeOnceAndCanBeKilledLater) {
    hostctl::clearBinders();
    android::Parcel first, second;
    std::string error;
    ASSERT_TRUE(writeParcelItems(parse(R"([{"binder": "cb"}, {"binder": null}])"), &first, &error));
    auto made = hostctl::findBinder("cb");
    ASSERT_NE(nullptr, made.get());
    ASSERT_TRUE(writeParcelItems(parse(R"([{"binder": "cb"}])"), &second, &error));
    EXPECT_EQ(made.get(), hostctl::findBinder("cb").get());
    first.setDataPosition(0);
    EXPECT_EQ(made.get(), first.readStrongBinder().get());
    EXPECT_EQ(nullptr, first.readStrongBinder().get());
    EXPECT_TRUE(hostctl::killBinder("cb"));
    hostctl::clearBinders();
}

TEST(SimParcelJson, WordsShowTheRawData) {
    android::Parcel p;
    p.writeInt32(1);
    p.writeInt32(-2);
    EXPECT_EQ(Json::array({1, -2}), parcelWords(p));
}

}  // namespace

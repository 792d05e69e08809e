// The checks shared by the readers of a scenario file: each fault is reported with its JSON
// path so that a scenario author finds it without guessing.
#pragma once

#include <stdint.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "sim/HookTable.h"
#include "sim/Scenario.h"
#include "sim/ScenarioPaths.h"

namespace camext {
namespace sim {

constexpr int64_t kInt32Min = -2147483648LL;
constexpr int64_t kInt32Max = 2147483647LL;

// Reads one scenario file; every fault found goes to `errors`.
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
    void hookArgs(const HookSpec& hookSpec, const Json& v, const std::string& path);
    void expect(const Json& v, const std::string& path, const std::string& action);
    void stringList(const Json& v, const std::string& path);

    const TagChecker& mTags;
    std::vector<ParseError>* mErrors;
};

}  // namespace sim
}  // namespace camext

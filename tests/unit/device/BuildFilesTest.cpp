// The device build's files against the code: Android.bp lists the sources the CMake build
// compiles, the maker's .hal files declare the methods the host headers offer, and the policy's
// property contexts cover every property the library writes.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

const std::string kSourceDir = CAMEXT_SOURCE_DIR;
const std::string kBuildDir = CAMEXT_BUILD_DIR;
const std::string kLibraryDir = kSourceDir + "/frameworks/cameraservice/";

std::string readFile(const std::string& path) {
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string joined(const std::set<std::string>& names) {
    std::string text;
    for (const std::string& n : names) text += "\n    " + n;
    return text;
}

// The srcs of the library module, relative to its folder.
std::set<std::string> androidBpSources(std::string* error) {
    const std::string bp = readFile(kLibraryDir + "Android.bp");
    const size_t module = bp.find("name: \"libcameraserviceext\"");
    const size_t open = bp.find("srcs: [", module);
    const size_t close = bp.find(']', open);
    if (module == std::string::npos || open == std::string::npos || close == std::string::npos) {
        *error = "no srcs list of libcameraserviceext in " + kLibraryDir + "Android.bp";
        return {};
    }
    const std::string list = bp.substr(open, close - open);
    std::set<std::string> sources;
    const std::regex quoted("\"([^\"]+)\"");
    for (std::sregex_iterator it(list.begin(), list.end(), quoted), end; it != end; ++it) {
        sources.insert((*it)[1]);
    }
    return sources;
}

// The library's sources as CMake compiles them, relative to the library's folder.
std::set<std::string> cmakeSources(std::string* error) {
    const std::string listPath = kBuildDir + "/cameraserviceext_sources.txt";
    std::istringstream lines(readFile(listPath));
    std::set<std::string> sources;
    std::string line;
    while (std::getline(lines, line)) {
        if (line.empty()) continue;
        if (line.compare(0, kLibraryDir.size(), kLibraryDir) == 0)
            line.erase(0, kLibraryDir.size());
        sources.insert(line);
    }
    if (sources.empty()) *error = "no source list at " + listPath;
    return sources;
}

TEST(AndroidBp, ListsExactlyTheSourcesCMakeBuilds) {
    std::string error;
    const std::set<std::string> cmake = cmakeSources(&error);
    ASSERT_TRUE(error.empty()) << error;
    const std::set<std::string> bp = androidBpSources(&error);
    ASSERT_TRUE(error.empty()) << error;
    std::set<std::string> missing, extra;
    std::set_difference(cmake.begin(), cmake.end(), bp.begin(), bp.end(),
                        std::inserter(missing, missing.end()));
    std::set_difference(bp.begin(), bp.end(), cmake.begin(), cmake.end(),
                        std::inserter(extra, extra.end()));
    EXPECT_TRUE(missing.empty())
        << "frameworks/cameraservice/Android.bp lacks sources that CMake builds; add them to "
           "the srcs of libcameraserviceext:"
        << joined(missing);
    EXPECT_TRUE(extra.empty())
        << "frameworks/cameraservice/Android.bp lists sources that CMake does not build:"
        << joined(extra);
}

// "name(type a, type b)" -> {name: [type, type]}, from a .hal file or a stand-in header's C++.
using Methods = std::map<std::string, std::vector<std::string>>;

std::vector<std::string> parameterTypes(const std::string& params, bool cpp) {
    std::vector<std::string> types;
    std::istringstream list(params);
    std::string param;
    while (std::getline(list, param, ',')) {
        if (param.find_first_not_of(" \t\n") == std::string::npos) continue;
        // HIDL string is hidl_string in C++; int32_t stays.
        if (cpp) {
            types.push_back(param.find("hidl_string") != std::string::npos ? "string"
                            : param.find("int32_t") != std::string::npos   ? "int32_t"
                                                                           : param);
        } else {
            std::istringstream words(param);
            std::string type;
            words >> type;
            types.push_back(type);
        }
    }
    return types;
}

Methods halMethods(const std::string& text) {
    Methods methods;
    const std::regex method(R"((\w+)\s*\(([^)]*)\)\s*generates\s*\(\s*int32_t\s+\w+\s*\)\s*;)");
    for (std::sregex_iterator it(text.begin(), text.end(), method), end; it != end; ++it) {
        methods[(*it)[1]] = parameterTypes((*it)[2], false);
    }
    return methods;
}

Methods headerMethods(const std::string& text) {
    Methods methods;
    const std::regex method(
        R"(virtual\s+::android::hardware::Return<int32_t>\s+(\w+)\s*\(([^)]*)\)\s*=\s*0\s*;)");
    for (std::sregex_iterator it(text.begin(), text.end(), method), end; it != end; ++it) {
        methods[(*it)[1]] = parameterTypes((*it)[2], true);
    }
    return methods;
}

struct HalCase {
    const char* hal;     // under interfaces/
    const char* header;  // under host/include/
};

void PrintTo(const HalCase& c, std::ostream* os) {
    *os << c.hal;
}

class MakerHal : public ::testing::TestWithParam<HalCase> {};

TEST_P(MakerHal, HostHeaderOffersTheHalsMethodsOneForOne) {
    const std::string hal = readFile(kSourceDir + "/interfaces/" + GetParam().hal);
    const std::string header = readFile(kSourceDir + "/host/include/" + GetParam().header);
    ASSERT_FALSE(hal.empty()) << GetParam().hal;
    ASSERT_FALSE(header.empty()) << GetParam().header;
    const Methods fromHal = halMethods(hal);
    EXPECT_FALSE(fromHal.empty()) << GetParam().hal;
    EXPECT_EQ(fromHal, headerMethods(header)) << GetParam().hal << " vs " << GetParam().header;

    // The package line and the interface name are what the header's namespace and class say.
    std::smatch package;
    ASSERT_TRUE(std::regex_search(hal, package, std::regex(R"(package\s+([\w.]+)@1\.0;)")));
    std::string ns = package[1];
    std::replace(ns.begin(), ns.end(), '.', '/');
    EXPECT_EQ(0u, std::string(GetParam().header).find(ns + "/1.0/")) << ns;
    std::smatch iface;
    ASSERT_TRUE(std::regex_search(hal, iface, std::regex(R"(interface\s+(\w+))")));
    EXPECT_NE(std::string::npos, header.find("struct " + iface[1].str() + " :")) << iface[1];
}

INSTANTIATE_TEST_SUITE_P(
    Interfaces, MakerHal,
    ::testing::Values(HalCase{"cameraMDM/1.0/IVantuCameraMDM.hal",
                              "vendor/vantu/hardware/cameraMDM/1.0/IVantuCameraMDM.h"},
                      HalCase{"performance/1.0/IPerformance.hal",
                              "vendor/vantu/hardware/performance/1.0/IPerformance.h"},
                      HalCase{
                          "cameraextension/1.0/ICameraExtensionService.hal",
                          "vendor/vantu/hardware/cameraextension/1.0/ICameraExtensionService.h"}),
    [](const ::testing::TestParamInfo<HalCase>& info) {
        const std::string hal = info.param.hal;
        return hal.substr(0, hal.find('/'));
    });

// Names the library writes with property_set, from its sources.
std::set<std::string> writtenProperties() {
    std::set<std::string> names;
    const std::string cmakeList = readFile(kBuildDir + "/cameraserviceext_sources.txt");
    std::istringstream lines(cmakeList);
    std::string path;
    const std::regex write(R"(property_set\(\s*"([^"]+)\")");
    while (std::getline(lines, path)) {
        if (path.empty()) continue;
        const std::string text = readFile(path);
        for (std::sregex_iterator it(text.begin(), text.end(), write), end; it != end; ++it) {
            names.insert((*it)[1]);
        }
    }
    return names;
}

TEST(Sepolicy, PropertyContextsCoverEveryPropertyTheLibraryWrites) {
    const std::string contexts = readFile(kSourceDir + "/sepolicy/private/property_contexts");
    ASSERT_FALSE(contexts.empty());
    std::vector<std::pair<std::string, bool>> entries;  // (name, exact)
    std::istringstream lines(contexts);
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        std::string name, context, kind;
        if (!(fields >> name >> context) || name[0] == '#') continue;
        fields >> kind;
        entries.emplace_back(name, kind == "exact");
    }
    const std::set<std::string> written = writtenProperties();
    ASSERT_FALSE(written.empty());
    std::set<std::string> uncovered;
    for (const std::string& property : written) {
        const bool covered = std::any_of(entries.begin(), entries.end(), [&](const auto& e) {
            return e.second ? property == e.first
                            : property.compare(0, e.first.size(), e.first) == 0;
        });
        if (!covered) uncovered.insert(property);
    }
    EXPECT_TRUE(uncovered.empty()) << "sepolicy/private/property_contexts has no entry for "
                                      "properties the library writes (a phone "
                                      "refuses those writes):"
                                   << joined(uncovered);
}

}  // namespace

// Feature configuration lookups as the per-frame hooks make them, on a configuration of the
// size a shipping device carries: a "default" section of 60 keys and 30 app sections of 40.
// Scalar lookups should stay well under 60 ns and allocate nothing.
#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

#include "utils/ConfigKeys.h"
#include "utils/JsonParser.h"

namespace {

using android::JsonParser;
using android::sp;
using android::vantu::ConfigKey;
using android::vantu::ConfigType;

constexpr int kApps = 30;
constexpr size_t kDefaultKeys = 60;
constexpr size_t kAppKeys = 40;

std::string appName(int i) {
    return "com.example.app" + std::to_string(100 + i);
}

std::vector<const ConfigKey*> scalarKeys() {
    std::vector<const ConfigKey*> keys;
    for (const ConfigKey& key : android::vantu::configKeys()) {
        if (key.type == ConfigType::Bool || key.type == ConfigType::Int) keys.push_back(&key);
        if (keys.size() == kDefaultKeys) break;
    }
    return keys;
}

std::string section(const std::vector<const ConfigKey*>& keys, size_t count, int seed) {
    std::string s = "{";
    for (size_t i = 0; i < count && i < keys.size(); ++i) {
        if (i > 0) s += ",\n";
        s += "\"" + std::string(keys[i]->name) + "\": ";
        s += keys[i]->type == ConfigType::Bool ? ((i + seed) % 2 ? "true" : "false")
                                               : std::to_string(1000 + seed * 7 + int(i));
    }
    return s;
}

// Loads the configuration once for the whole run; its file lives in a temporary folder.
struct Fixture {
    Fixture() {
        char dir[] = "/tmp/camext-bench-XXXXXX";
        if (mkdtemp(dir) != nullptr) path = std::string(dir) + "/fwk_config.json";
        const auto keys = scalarKeys();
        std::string text = "{\"default\": " + section(keys, kDefaultKeys, 0) +
                           ",\n\"privileged_app_list\": [\"com.a\", \"com.b\", \"com.c\", "
                           "\"com.d\", \"com.e\"],\n"
                           "\"limitSizeListForCts\": [4000, 3000, 3840, 2160, 1920, 1080, 1280, "
                           "720, 640, 480, 320, 240]}";
        for (int i = 0; i < kApps; ++i) {
            text += ",\n\"" + appName(i) + "\": " + section(keys, kAppKeys, i + 1) + "}";
        }
        text += "}\n";
        std::ofstream(path) << text;
        parser = new JsonParser(path.c_str());
        android::initJsonParser(path.c_str());
        app = appName(kApps / 2);
        android::setJsonPackageName(app.c_str());
        // An integer key that every app section holds, and a key only "default" holds.
        for (size_t i = 0; i < kAppKeys; ++i) {
            if (keys[i]->type == ConfigType::Int) hit = keys[i]->name;
        }
        for (size_t i = kAppKeys; i < keys.size(); ++i) {
            if (keys[i]->type == ConfigType::Int) fallback = keys[i]->name;
        }
    }
    ~Fixture() {
        unlink(path.c_str());
        rmdir(path.substr(0, path.rfind('/')).c_str());
    }

    std::string path;
    sp<JsonParser> parser;
    std::string app;
    const char* hit = nullptr;
    const char* fallback = nullptr;
};

Fixture& fixture() {
    static Fixture f;
    return f;
}

void BM_ScalarHitInAppSection(benchmark::State& state) {
    Fixture& f = fixture();
    const char* app = f.app.c_str();
    for (auto _ : state) benchmark::DoNotOptimize(f.parser->getInt(f.hit, app, 0));
}
BENCHMARK(BM_ScalarHitInAppSection);

void BM_ScalarFallbackToDefault(benchmark::State& state) {
    Fixture& f = fixture();
    const char* app = f.app.c_str();
    for (auto _ : state) benchmark::DoNotOptimize(f.parser->getInt(f.fallback, app, 0));
}
BENCHMARK(BM_ScalarFallbackToDefault);

void BM_ScalarMiss(benchmark::State& state) {
    Fixture& f = fixture();
    const char* app = f.app.c_str();
    for (auto _ : state) {
        benchmark::DoNotOptimize(f.parser->getBool("feature_not_in_this_file", app, true));
    }
}
BENCHMARK(BM_ScalarMiss);

// The form the hooks use: no package, so the current one.
void BM_FreeGetterForCurrentPackage(benchmark::State& state) {
    Fixture& f = fixture();
    for (auto _ : state) benchmark::DoNotOptimize(android::getInt(f.hit, 0));
}
BENCHMARK(BM_FreeGetterForCurrentPackage);

void BM_StringArrayFromDefault(benchmark::State& state) {
    Fixture& f = fixture();
    const char* app = f.app.c_str();
    for (auto _ : state) {
        std::vector<std::string> out;
        f.parser->getStringArray("privileged_app_list", app, out);
        benchmark::DoNotOptimize(out.data());
    }
}
BENCHMARK(BM_StringArrayFromDefault);

void BM_IntArrayFromDefault(benchmark::State& state) {
    Fixture& f = fixture();
    const char* app = f.app.c_str();
    std::vector<int> out;
    out.reserve(64);
    for (auto _ : state) {
        out.clear();
        f.parser->getIntArray("limitSizeListForCts", app, out);
        benchmark::DoNotOptimize(out.data());
    }
}
BENCHMARK(BM_IntArrayFromDefault);

void BM_ArrayMiss(benchmark::State& state) {
    Fixture& f = fixture();
    const char* app = f.app.c_str();
    std::vector<std::string> out;
    for (auto _ : state) {
        f.parser->getStringArray("skip_connect_app_list", app, out);
        benchmark::DoNotOptimize(out.data());
    }
}
BENCHMARK(BM_ArrayMiss);

// Once per extension object: reading and indexing the whole file.
void BM_LoadFile(benchmark::State& state) {
    Fixture& f = fixture();
    for (auto _ : state) {
        sp<JsonParser> p = new JsonParser(f.path.c_str());
        benchmark::DoNotOptimize(p.get());
    }
}
BENCHMARK(BM_LoadFile)->Unit(benchmark::kMicrosecond);

}  // namespace

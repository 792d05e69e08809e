// Start-up cost of the library as the camera server pays it: open the shared object, call its
// entry and build the extension object (configuration file, properties, managers) for the
// example device. Goal: at most 5 ms per load.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <string>

#include "CameraServiceExtFactory.h"
#include "hostctl/HostEnv.h"
#include "hostctl/Properties.h"

namespace {

const std::string kLibraryPath = std::string(CAMEXT_BUILD_DIR) + "/lib/libcameraserviceext.so";
const std::string kExampleDevice = std::string(CAMEXT_SOURCE_DIR) + "/examples/device";

// The extension object lives in the shared object, so each iteration unloads it to get a fresh
// one; an iteration that finds it still loaded would measure nothing and is reported instead.
void BM_LoadLibraryAndBuildExtension(benchmark::State& state) {
    hostctl::setDeviceRoot(kExampleDevice);
    hostctl::clearProperties();
    std::string error;
    if (!hostctl::loadPropertyFile(kExampleDevice + "/build.prop", &error)) {
        state.SkipWithError(error.c_str());
        return;
    }

    for (auto _ : state) {
        void* handle = dlopen(kLibraryPath.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (handle == nullptr) {
            state.SkipWithError(dlerror());
            break;
        }
        auto entry = reinterpret_cast<android::GetExtFactoryImplFn>(
            dlsym(handle, android::kExtFactoryEntryName));
        if (entry == nullptr) {
            state.SkipWithError("the library has no getExtFactoryImpl");
            dlclose(handle);
            break;
        }
        android::ICameraServiceExt* extension = entry()->getCameraServiceExt();
        benchmark::DoNotOptimize(extension);
        dlclose(handle);

        state.PauseTiming();
        void* stillLoaded = dlopen(kLibraryPath.c_str(), RTLD_NOW | RTLD_NOLOAD);
        state.ResumeTiming();
        if (stillLoaded != nullptr) {
            dlclose(stillLoaded);
            state.SkipWithError("the library stays loaded after dlclose");
            break;
        }
    }

    hostctl::clearProperties();
    hostctl::setDeviceRoot("/");
}
BENCHMARK(BM_LoadLibraryAndBuildExtension)->Unit(benchmark::kMillisecond);

}  // namespace

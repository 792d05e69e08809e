/*
 * The downloadable lists under "/data/.camera/": the first byte picks the file the rest of the
 * input becomes (0 the motor-control list, 1 the magnetic torch's app and ISO list, 2
 * "updateInfo"); the other two hold valid contents. The motor manager reads them as on a connect
 * with "camera.3rd.update" set, then what uses the lists is asked: the size limits, the torch's
 * app check and its ISO table. `camext lint` checks the fuzzed file as its command does.
 *
 * What must hold whatever the files say:
 *  - every text taken from a list fits its 64-byte field, and a bad file spoils only its list;
 *  - without an "updateInfo" naming this build the torch keeps no list;
 *  - an app on the torch's list is enabled; a size limit is set only by an entry naming the app;
 *  - the torch's brightness is 0 for a request of 0, and otherwise a level of the table in use
 *    (the file's when it holds whole rows, else the built-in one) or 0.
 */
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <set>
#include <string>
#include <vector>

#include "CameraServiceExtImpl.h"
#include "ListLint.h"
#include "common/FuzzWorld.h"
#include "features/motor/MotorManager.h"
#include "features/rio/MagneticSensorManger.h"
#include "hostctl/Properties.h"

namespace {

using android::CameraServiceRus;
using android::String8;

constexpr const char* kFiles[] = {
    "/data/.camera/camera_hardware_motorctrl_applist",
    "/data/.camera/camera_hardware_rio_applist",
    "/data/.camera/updateInfo",
};
constexpr char kBuildDate[] = "1700000000";
constexpr const char* kGoodContents[] = {
    "<filter-conf><version>3</version>"
    "<PackageFilterList><PackageIndex>1</PackageIndex>"
    "<PackageName>com.tencent.mm.main.preview</PackageName></PackageFilterList>"
    "</filter-conf>\n",
    "<filter-conf><version>5</version>"
    "<PackageFilterList><PackageIndex>1</PackageIndex>"
    "<PackageName>com.whatsapp</PackageName></PackageFilterList>"
    "<IsoIntensityList><IsoValue>1000</IsoValue><LowLevel>40</LowLevel>"
    "<HighLevel>46</HighLevel></IsoIntensityList>"
    "<IsoIntensityList><IsoValue>-1</IsoValue><LowLevel>11</LowLevel>"
    "<HighLevel>16</HighLevel></IsoIntensityList>"
    "</filter-conf>\n",
    "version:1700000000,md5:0123456789abcdef0123456789abcdef,state:1\n",
};
constexpr int32_t kBuiltInLevels[] = {40, 46, 30, 40, 11, 16};

// The extension as the server builds it, with its managers in reach.
class ListsExtension : public android::CameraServiceExtImpl {
public:
    android::MotorManager* motor() const { return mMotorManager.get(); }
    android::MagnecticSensorManager* torch() const { return mMagneticSensorManager.get(); }
};

ListsExtension* gExt = nullptr;

void checkMotor(android::MotorManager* motor) {
    const std::vector<CameraServiceRus::MotorCtrlEntry> list = motor->motorCtrlList();
    size_t asked = 0;
    for (const auto& entry : list) {
        FUZZ_CHECK(strnlen(entry.index, sizeof(entry.index)) < sizeof(entry.index));
        FUZZ_CHECK(strnlen(entry.name, sizeof(entry.name)) < sizeof(entry.name));
        if (asked++ >= 4) continue;
        // The app named by the entry's text up to its first marker.
        std::string package(entry.name);
        const size_t dot = package.find(".main.");
        if (dot != std::string::npos) package.resize(dot);
        const String8 name(package.c_str());
        motor->resetThirdAppParameters();
        motor->checkIfLimitSize(name, 0);
        bool named = false;
        for (const auto& other : list) {
            named = named || (strncmp(other.name, package.c_str(), package.size()) == 0 &&
                              strstr(other.name, ".main.preview") != nullptr);
        }
        FUZZ_CHECK(motor->isMainPreviewLimited() == named);
        motor->checkIfLimitSize(name, 1);
    }
    motor->resetThirdAppParameters();
}

void checkTorch(android::MagnecticSensorManager* torch, bool updateInfoMatches) {
    const std::vector<String8> apps = torch->whiteList();
    const std::vector<int32_t> iso = torch->isoIntensityMap();
    if (!updateInfoMatches) FUZZ_CHECK(apps.empty() && iso.empty());
    size_t asked = 0;
    for (const String8& app : apps) {
        FUZZ_CHECK(app.length() < CameraServiceRus::kValueSize);
        if (asked++ >= 4) continue;
        torch->init(app);
        FUZZ_CHECK(torch->isEnableRIOApp());
    }
    torch->init(String8("com.fuzz.notlisted"));

    std::set<int32_t> levels(std::begin(kBuiltInLevels), std::end(kBuiltInLevels));
    if (!iso.empty() && iso.size() % 3 == 0) {
        levels.clear();
        for (size_t k = 0; k < iso.size(); k += 3) {
            levels.insert(iso[k + 1]);
            levels.insert(iso[k + 2]);
        }
    }
    levels.insert(0);
    for (int32_t value : {INT32_MIN, -1, 0, 999, 1000, 3999, 4000, 6400, INT32_MAX}) {
        FUZZ_CHECK(torch->torchIntensityAdapter(value, 0) == 0);
        for (int32_t requested : {1, 99, 100}) {
            FUZZ_CHECK(levels.count(torch->torchIntensityAdapter(value, requested)) == 1);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    if (gExt != nullptr) return 0;
    fuzzworld::quietLogs();
    fuzzworld::useDeviceRoot();
    const char config[] =
        R"({"default": {"feature_aps_enable": false, "feature_auth_enable": false,
                        "feature_motor_enable": true, "feature_rio_enable": true}})";
    fuzzworld::writeDeviceFile("odm/etc/camera/fwk_config.json", config, strlen(config));
    hostctl::setProperty("ro.build.date.utc", kBuildDate);
    // Every connect reads the lists again.
    hostctl::setProperty("camera.3rd.update", "1");
    gExt = new ListsExtension();
    gExt->incStrong(nullptr);
    if (gExt->motor() == nullptr || gExt->torch() == nullptr) abort();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    LLVMFuzzerInitialize(nullptr, nullptr);
    const size_t which = size > 0 ? data[0] % 3 : 0;
    const std::string text =
        size > 0 ? std::string(reinterpret_cast<const char*>(data) + 1, size - 1) : std::string();
    for (size_t k = 0; k < 3; ++k) {
        const std::string& contents = k == which ? text : std::string(kGoodContents[k]);
        fuzzworld::writeDeviceFile(kFiles[k], contents.data(), contents.size());
    }
    gExt->motor()->checkToReadRusFile();

    // Whether "updateInfo" names this build, read as its reader reads it.
    bool matches = gExt->torch()->isNeedUpdateRIOWhiteList();
    checkMotor(gExt->motor());
    checkTorch(gExt->torch(), matches);
    // A bad file spoils only its own list.
    if (which != 0) {
        const auto list = gExt->motor()->motorCtrlList();
        FUZZ_CHECK(list.size() == 1 && strcmp(list[0].name, "com.tencent.mm.main.preview") == 0);
    }
    if (which != 1 && matches) {
        const std::vector<String8> apps = gExt->torch()->whiteList();
        FUZZ_CHECK(apps.size() == 1 && apps[0] == String8("com.whatsapp"));
        FUZZ_CHECK(gExt->torch()->isoIntensityMap() ==
                   std::vector<int32_t>({1000, 40, 46, -1, 11, 16}));
    }

    camext::lintListFile(fuzzworld::hostPath(kFiles[which]).c_str(), text, fuzzworld::nullStream(),
                         fuzzworld::nullStream());
    return 0;
}

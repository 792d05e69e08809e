/*
 * The avatar support file: the input (after a first byte of choices) is the file, at the
 * updatable path or the built-in one. A fresh avatar manager answers isSupportZumio for fixed
 * apps and for names the input itself holds, for capture and for video calls, with the file's
 * switch on; and once with it off.
 *
 * What must hold whatever the file says: the answer is the file's when it names the app with
 * "1" and the activity with "1" (true) or the activity with "0" (false), and the built-in lists'
 * otherwise; a version property naming the file's version (kept parse) or another one (parse
 * again) changes nothing.
 */
#include <stddef.h>
#include <stdint.h>

#include <memory>
#include <string>
#include <vector>

#include "common/FuzzWorld.h"
#include "features/aps/JsonParserZumio.h"
#include "features/aps/ZumioManager.h"
#include "hostctl/Properties.h"

namespace {

using android::JsonParserZumio;
using android::ZumioManager;

constexpr const char* kPaths[] = {
    "/data/vantu/common/zumio/app_zumio_videocall_config.json",
    "/my_plinth/Zumio/app_zumio_videocall_config.json",
};
constexpr char kVersionProperty[] = "persist.sys.vantu.zumio.voip.version";
constexpr char kSwitchProperty[] = "persist.sys.vantu.zumio.voip.switch";

// The decision as the file and the built-in lists make it, from a parse of its own.
bool expected(const JsonParserZumio* file, const std::string& package, const std::string& activity,
              bool forCapture) {
    if (file != nullptr) {
        std::string packageValue;
        std::string activityValue;
        file->getString("packages", package.c_str(), packageValue);
        file->getString("activitys", activity.c_str(), activityValue);
        if (packageValue == "1" && activityValue == "1") return true;
        if (activityValue == "0") return false;
    }
    return ZumioManager::isSupportByBuiltInList(package.c_str(), activity.c_str(), forCapture);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzzworld::useDeviceRoot();
    const uint8_t choices = size > 0 ? data[0] : 0;
    const std::string text =
        size > 0 ? std::string(reinterpret_cast<const char*>(data) + 1, size - 1) : std::string();
    const char* path = kPaths[choices & 1];
    for (const char* p : kPaths) fuzzworld::removeDeviceFile(p);
    fuzzworld::writeDeviceFile(path, text.data(), text.size());

    std::unique_ptr<JsonParserZumio> file =
        JsonParserZumio::parse(JsonParserZumio::findSupportFile());
    std::string fileVersion;
    if (file != nullptr) file->getString("version", "str", fileVersion);
    hostctl::setProperty(kSwitchProperty, "1");
    if (choices & 2) {
        hostctl::setProperty(kVersionProperty, (choices & 4) ? fileVersion : "fuzz-other");
    } else {
        hostctl::setProperty(kVersionProperty, "");
    }

    std::vector<std::string> packages = {"com.tencent.mm", "com.ss.android.ugc.aweme"};
    std::vector<std::string> activities = {"com.tencent.mm.plugin.voip.ui.VideoActivity",
                                           "com.bytedance.RecordActivity"};
    const std::vector<std::string> names = fuzzworld::quotedStrings(text, 8);
    for (size_t k = 0; k < names.size(); ++k) (k % 2 ? activities : packages).push_back(names[k]);

    android::sp<ZumioManager> manager = new ZumioManager();
    for (const std::string& package : packages) {
        for (const std::string& activity : activities) {
            for (bool forCapture : {true, false}) {
                const bool answer =
                    manager->isSupportZumio(package.c_str(), activity.c_str(), forCapture);
                FUZZ_CHECK(answer == expected(file.get(), package, activity, forCapture));
            }
        }
    }
    hostctl::setProperty(kSwitchProperty, "0");
    FUZZ_CHECK(manager->isSupportZumio(packages.back().c_str(), activities.back().c_str(), true) ==
               ZumioManager::isSupportByBuiltInList(packages.back().c_str(),
                                                    activities.back().c_str(), true));
    return 0;
}

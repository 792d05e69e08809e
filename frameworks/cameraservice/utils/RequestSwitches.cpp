#include "utils/RequestSwitches.h"

#include <string.h>

#include "utils/JsonParser.h"

namespace android {
namespace vantu {

namespace {

// Package names are interned by setJsonPackageName and parsers live for the process, so the two
// addresses name the answers for good.
struct SwitchMemo {
    const JsonParser* parser = nullptr;
    const char* package = nullptr;
    RequestSwitches switches{true, false, false, nullptr, false};
};

thread_local SwitchMemo tMemo;

}  // namespace

RequestSwitches requestSwitches() {
    SwitchMemo& memo = tMemo;
    const JsonParser* parser = currentJsonParser();
    const char* package = getJsonPackageName();
    if (memo.package != package || memo.parser != parser) {
        memo.switches.flashEnable = getBool("feature_flash_enable", true, package);
        memo.switches.foldEnable = getBool("feature_fold_enable", false, package);
        memo.switches.motorFlash = getBool("motor_flash", false, package);
        memo.switches.package = package;
        memo.switches.rejectStopPreview =
            package != nullptr && stringArrayHas("reject_3rd_app_stop_preview", package, package);
        memo.parser = parser;
        memo.package = package;
    }
    return memo.switches;
}

bool rejectsStopPreview(const RequestSwitches& switches, const char* package) {
    if (package == nullptr) return false;
    if (switches.package != nullptr && strcmp(switches.package, package) == 0) {
        return switches.rejectStopPreview;
    }
    return stringArrayHas("reject_3rd_app_stop_preview", package);
}

}  // namespace vantu
}  // namespace android

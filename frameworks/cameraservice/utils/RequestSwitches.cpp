#include "utils/RequestSwitches.h"

#include "utils/JsonParser.h"

namespace android {
namespace vantu {

namespace {

// Package names are interned by setJsonPackageName and parsers live for the process, so the two
// addresses name the answers for good.
struct SwitchMemo {
    const JsonParser* parser = nullptr;
    const char* package = nullptr;
    RequestSwitches switches{true, false};
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
        memo.parser = parser;
        memo.package = package;
    }
    return memo.switches;
}

}  // namespace vantu
}  // namespace android

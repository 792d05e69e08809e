/*
 * The configuration switches that the request rules test on every request, for the current
 * package. The configuration is loaded once at start-up, so their values change only with the
 * current package (or a newly loaded configuration); each request thread keeps the answers of
 * the last pair it saw and looks the keys up again when that pair changes.
 */
#ifndef VANTU_CAMERASERVICE_UTILS_REQUESTSWITCHES_H
#define VANTU_CAMERASERVICE_UTILS_REQUESTSWITCHES_H

namespace android {
namespace vantu {

struct RequestSwitches {
    bool flashEnable;  // "feature_flash_enable", default true
    bool foldEnable;   // "feature_fold_enable", default false
    bool motorFlash;   // "motor_flash", default false
    // The package the answers are for, and whether "reject_3rd_app_stop_preview" names it.
    const char* package;
    bool rejectStopPreview;
};

// The switches as getBool and stringArrayHas answer them for the current package.
RequestSwitches requestSwitches();

// Whether "reject_3rd_app_stop_preview" names `package`: from the memo when it is the current
// package, else looked up.
bool rejectsStopPreview(const RequestSwitches& switches, const char* package);

}  // namespace vantu
}  // namespace android

#endif  // VANTU_CAMERASERVICE_UTILS_REQUESTSWITCHES_H

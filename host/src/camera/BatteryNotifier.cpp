// The battery statistics notifier. The host's battery statistics service is a record of what it
// was told, read through hostctl.
#define LOG_TAG "BatteryNotifier"

#include "mediautils/BatteryNotifier.h"

#include <log/log.h>

#include <mutex>
#include <string>
#include <vector>

#include "hostctl/CameraHost.h"

namespace android {

// The one definition of the singleton's storage in the process.
ANDROID_SINGLETON_STATIC_INSTANCE(BatteryNotifier);

namespace {

struct BatteryStatsRecord {
    std::mutex lock;
    std::vector<std::string> events;
};

BatteryStatsRecord& batteryStats() {
    static BatteryStatsRecord* record = new BatteryStatsRecord();
    return *record;
}

// What the battery statistics service receives.
void tellBatteryStats(std::string event) {
    std::lock_guard<std::mutex> lock(batteryStats().lock);
    batteryStats().events.push_back(std::move(event));
}

std::string withId(const char* what, const String8& id, uid_t uid) {
    return std::string(what) + " " + id.string() + " " + std::to_string(uid);
}

}  // namespace

BatteryNotifier::BatteryNotifier() {}

BatteryNotifier::~BatteryNotifier() {}

void BatteryNotifier::noteResetVideo() {
    Mutex::Autolock _l(mLock);
    mVideoRefCounts.clear();
    tellBatteryStats("reset video");
}

void BatteryNotifier::noteStartVideo(uid_t uid) {
    Mutex::Autolock _l(mLock);
    if (mVideoRefCounts[uid] == 0) {
        tellBatteryStats("start video " + std::to_string(uid));
    }
    mVideoRefCounts[uid]++;
}

void BatteryNotifier::noteStopVideo(uid_t uid) {
    Mutex::Autolock _l(mLock);
    if (mVideoRefCounts.find(uid) == mVideoRefCounts.end()) {
        ALOGW("%s: video refcount is broken for uid(%d).", __FUNCTION__, (int)uid);
        return;
    }
    mVideoRefCounts[uid]--;
    if (mVideoRefCounts[uid] == 0) {
        tellBatteryStats("stop video " + std::to_string(uid));
        mVideoRefCounts.erase(uid);
    }
}

void BatteryNotifier::noteResetAudio() {
    Mutex::Autolock _l(mLock);
    mAudioRefCounts.clear();
    tellBatteryStats("reset audio");
}

void BatteryNotifier::noteStartAudio(uid_t uid) {
    Mutex::Autolock _l(mLock);
    if (mAudioRefCounts[uid] == 0) {
        tellBatteryStats("start audio " + std::to_string(uid));
    }
    mAudioRefCounts[uid]++;
}

void BatteryNotifier::noteStopAudio(uid_t uid) {
    Mutex::Autolock _l(mLock);
    if (mAudioRefCounts.find(uid) == mAudioRefCounts.end()) {
        ALOGW("%s: audio refcount is broken for uid(%d).", __FUNCTION__, (int)uid);
        return;
    }
    mAudioRefCounts[uid]--;
    if (mAudioRefCounts[uid] == 0) {
        tellBatteryStats("stop audio " + std::to_string(uid));
        mAudioRefCounts.erase(uid);
    }
}

void BatteryNotifier::noteFlashlightOn(const String8& id, uid_t uid) {
    Mutex::Autolock _l(mLock);
    auto key = std::make_pair(id, uid);
    if (!mFlashlightState[key]) {
        mFlashlightState[key] = true;
        tellBatteryStats(withId("flashlight on", id, uid));
    }
}

void BatteryNotifier::noteFlashlightOff(const String8& id, uid_t uid) {
    Mutex::Autolock _l(mLock);
    auto key = std::make_pair(id, uid);
    if (mFlashlightState[key]) {
        mFlashlightState[key] = false;
        tellBatteryStats(withId("flashlight off", id, uid));
    }
}

void BatteryNotifier::noteResetFlashlight() {
    Mutex::Autolock _l(mLock);
    mFlashlightState.clear();
    tellBatteryStats("reset flashlight");
}

void BatteryNotifier::noteStartCamera(const String8& id, uid_t uid) {
    Mutex::Autolock _l(mLock);
    auto key = std::make_pair(id, uid);
    if (!mCameraState[key]) {
        mCameraState[key] = true;
        tellBatteryStats(withId("start", id, uid));
    }
}

void BatteryNotifier::noteStopCamera(const String8& id, uid_t uid) {
    Mutex::Autolock _l(mLock);
    auto key = std::make_pair(id, uid);
    if (mCameraState[key]) {
        mCameraState[key] = false;
        tellBatteryStats(withId("stop", id, uid));
    }
}

void BatteryNotifier::noteResetCamera() {
    Mutex::Autolock _l(mLock);
    mCameraState.clear();
    tellBatteryStats("reset camera");
}

}  // namespace android

namespace hostctl {

std::vector<std::string> batteryEvents() {
    std::lock_guard<std::mutex> lock(android::batteryStats().lock);
    return android::batteryStats().events;
}

void clearBatteryEvents() {
    // A reset of every kind brings the notifier back to its starting state; the records of the
    // resets themselves are dropped with the rest.
    android::BatteryNotifier& notifier = android::BatteryNotifier::getInstance();
    notifier.noteResetCamera();
    notifier.noteResetFlashlight();
    notifier.noteResetVideo();
    notifier.noteResetAudio();
    std::lock_guard<std::mutex> lock(android::batteryStats().lock);
    android::batteryStats().events.clear();
}

}  // namespace hostctl

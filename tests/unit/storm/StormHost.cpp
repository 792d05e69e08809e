#include "StormHost.h"

#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>

namespace stormtest {

using android::sp;
using android::String16;
using android::String8;

namespace {

constexpr int kAONSignal = 29;
constexpr int kDetectionCode = 1;

// What the calling thread is doing for the server, to tell who disconnected a client.
thread_local bool tServerDisconnect = false;
thread_local bool tAdmitting = false;

}  // namespace

// ---- StormServer ----

StormServer::StormServer(android::CameraServiceExtImpl* ext)
    : mExt(ext), mService(new hostctl::HostCameraService()) {}

int32_t StormServer::connect(int id, const char* component, uid_t uid, pid_t pid) {
    Camera& cam = mCameras[id];
    std::lock_guard<std::mutex> serial(cam.connectLock);
    const String8 cameraId(std::to_string(id).c_str());
    String16 package(component);
    // Before admitting a compatibility-test client the server clears the other clients (all
    // of them, since the storm's configuration turns the test-package exemption off).
    if (strncmp(component, "android.camera.cts", 18) == 0) mExt->clearNonCTSClient(package);
    tAdmitting = true;
    const int32_t verdict = mExt->beforeConnect(cameraId, package, false);
    tAdmitting = false;
    if (verdict != 0) return verdict;

    // The server evicts the camera's earlier client itself when the library let it stay.
    Held old;
    {
        std::lock_guard<std::mutex> lock(mLock);
        old = mClients[id];
    }
    if (old.client != nullptr) disconnectAndWait(old);

    mExt->setCurrentPackageName(package);
    Held held;
    held.client = new hostctl::HostCameraClient(cameraId, package, uid, pid);
    held.closed = std::make_shared<std::atomic<bool>>(false);
    std::shared_ptr<std::atomic<bool>> closed = held.closed;
    held.client->setOnDisconnect(
        [this, closed](hostctl::HostCameraClient& c) { closeSequence(c, *closed); });
    sp<android::CameraService::BasicClient> basic = held.client;
    mExt->afterConnect(cameraId, package, false, basic, held.client.get(), 1, 2);
    mExt->onClientChange(cameraId, basic, true);
    std::lock_guard<std::mutex> lock(mLock);
    mClients[id] = held;
    return verdict;
}

void StormServer::disconnect(int id) {
    Camera& cam = mCameras[id];
    std::lock_guard<std::mutex> serial(cam.connectLock);
    Held held;
    {
        std::lock_guard<std::mutex> lock(mLock);
        held = mClients[id];
    }
    if (held.client != nullptr) disconnectAndWait(held);
}

sp<hostctl::HostCameraClient> StormServer::client(int id) {
    std::lock_guard<std::mutex> lock(mLock);
    return mClients[id].client;
}

void StormServer::closeAll() {
    for (int id = 0; id < kCameras; ++id) disconnect(id);
}

void StormServer::closeSequence(hostctl::HostCameraClient& client, std::atomic<bool>& closed) {
    const String8 cameraId = client.cameraId();
    const int id = atoi(cameraId.string());
    if (!tServerDisconnect) ++(tAdmitting ? mEvictions : mLibraryCloses);
    {
        Camera& cam = mCameras[id];
        std::lock_guard<std::mutex> device(cam.deviceLock);
        mExt->beforeDisconnect(false, false, cameraId);
        mExt->afterDisconnect(cameraId, client.getPackageName(), mService);
        sp<android::CameraService::BasicClient> basic(&client);
        mExt->onClientChange(cameraId, basic, false);
        cam.configured = false;
    }
    {
        std::lock_guard<std::mutex> lock(mLock);
        if (mClients[id].client.get() == &client) mClients[id] = Held();
    }
    closed.store(true);
}

void StormServer::disconnectAndWait(const Held& held) {
    tServerDisconnect = true;
    held.client->disconnect();
    tServerDisconnect = false;
    while (!held.closed->load()) std::this_thread::yield();
}

// ---- SignalTarget ----

namespace {

// The kernel takes a detection code only from the thread that is its own target.
int raiseDetectionOnSelf() {
    siginfo_t info;
    memset(&info, 0, sizeof(info));
    info.si_signo = kAONSignal;
    info.si_code = kDetectionCode;
    info.si_pid = getpid();
    info.si_uid = getuid();
    return static_cast<int>(syscall(SYS_rt_tgsigqueueinfo, getpid(),
                                    static_cast<pid_t>(syscall(SYS_gettid)), kAONSignal, &info));
}

}  // namespace

SignalTarget::SignalTarget() {
    mThread = std::thread([this] {
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, kAONSignal);
        pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
        mStarted = true;
        for (;;) {
            if (mPending.load() > 0) {
                if (raiseDetectionOnSelf() == 0) mRaised.fetch_add(1);
                mPending.fetch_sub(1);
            } else if (mStop.load()) {
                break;
            } else {
                std::this_thread::yield();
            }
        }
    });
    while (!mStarted.load()) std::this_thread::yield();
}

SignalTarget::~SignalTarget() {
    stop();
}

void SignalTarget::kill() {
    pthread_kill(mThread.native_handle(), kAONSignal);
}

void SignalTarget::stop() {
    mStop = true;
    if (mThread.joinable()) mThread.join();
}

BlockAONSignal::BlockAONSignal() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, kAONSignal);
    pthread_sigmask(SIG_BLOCK, &set, &mOld);
}

BlockAONSignal::~BlockAONSignal() {
    pthread_sigmask(SIG_SETMASK, &mOld, nullptr);
}

// ---- Watchdog ----

Watchdog::Watchdog(int threads, int boundSeconds) : mProgress(threads) {
    mThread = std::thread([this, boundSeconds] {
        std::unique_lock<std::mutex> lock(mLock);
        const bool done = mCondition.wait_for(lock, std::chrono::seconds(boundSeconds),
                                              [this] { return mDisarmed; });
        if (done) return;
        fprintf(stderr, "storm: not finished after %d s, deadlock; threads still running:\n",
                boundSeconds);
        for (size_t t = 0; t < mProgress.size(); ++t) {
            if (mProgress[t].done.load()) continue;
            fprintf(stderr, "  thread %zu at iteration %d in %s\n", t,
                    mProgress[t].iteration.load(), mProgress[t].op.load());
        }
        fflush(stderr);
        abort();
    });
}

Watchdog::~Watchdog() {
    disarm();
}

void Watchdog::enter(int thread, int iteration, const char* op) {
    mProgress[thread].iteration.store(iteration);
    mProgress[thread].op.store(op);
}

void Watchdog::finished(int thread) {
    mProgress[thread].done.store(true);
}

void Watchdog::disarm() {
    {
        std::lock_guard<std::mutex> lock(mLock);
        mDisarmed = true;
    }
    mCondition.notify_all();
    if (mThread.joinable()) mThread.join();
}

}  // namespace stormtest

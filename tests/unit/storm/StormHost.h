/*
 * The camera server as the storm plays it: per-camera connect serialisation and device locks,
 * the server's close sequence of a client, the always-on driver's signal target thread, and a
 * watchdog that turns a deadlock into a failed run.
 */
#pragma once

#include <CameraService.h>
#include <hostctl/CameraHost.h>
#include <hostctl/HostCaptureOutputStates.h>
#include <hostctl/HostOutputStream.h>
#include <pthread.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "CameraServiceExtImpl.h"

namespace stormtest {

constexpr int kCameras = 4;

// One camera of the simulated server. The server serialises connect and disconnect of one
// camera (connectLock) and runs the configuration, request and result hooks of an open device
// under its device lock, which the close sequence also takes, as the device's own lock does.
struct Camera {
    std::mutex connectLock;
    std::mutex deviceLock;
    // Under deviceLock.
    android::camera3::StreamSet streams;
    android::sp<hostctl::HostOutputStream> meta;
    std::unique_ptr<hostctl::HostCaptureOutputStates> states;
    uint32_t frame = 0;
    bool configured = false;
};

class StormServer {
public:
    explicit StormServer(android::CameraServiceExtImpl* ext);

    android::CameraServiceExtImpl& ext() { return *mExt; }
    Camera& camera(int id) { return mCameras[id]; }

    // Plays the server's connect of `component` on camera `id` as (uid, pid); the verdict of
    // beforeConnect.
    int32_t connect(int id, const char* component, uid_t uid, pid_t pid);
    // The app closes its camera: the server disconnects the client it holds for `id`.
    void disconnect(int id);
    // The client the server holds for `id` (may be one that is closing or closed).
    android::sp<hostctl::HostCameraClient> client(int id);
    // Closes every client the server still holds, one by one.
    void closeAll();
    // Clients the library disconnected: while admitting another client (evictions), and
    // otherwise (disconnect-all).
    int evictions() const { return mEvictions.load(); }
    int libraryCloses() const { return mLibraryCloses.load(); }

private:
    struct Held {
        android::sp<hostctl::HostCameraClient> client;
        // Set once the client's close sequence has finished.
        std::shared_ptr<std::atomic<bool>> closed;
    };
    // The server's close sequence for `client`, run by the client's first disconnect().
    void closeSequence(hostctl::HostCameraClient& client, std::atomic<bool>& closed);
    // Disconnects the client and returns once its close sequence has finished, on whichever
    // thread it runs: the server's own disconnect waits for a close already under way.
    static void disconnectAndWait(const Held& held);

    android::sp<android::CameraServiceExtImpl> mExt;
    android::sp<hostctl::HostCameraService> mService;
    Camera mCameras[kCameras];
    // Guards the clients and their closed marks (never held across a library call).
    std::mutex mLock;
    Held mClients[kCameras];
    std::atomic<int> mEvictions{0};
    std::atomic<int> mLibraryCloses{0};
};

// A thread with the driver's signal unblocked, which the driver targets: it raises detection
// signals on itself on request, and takes signals other threads send it.
class SignalTarget {
public:
    SignalTarget();
    ~SignalTarget();
    // Asks for one detection signal, raised on the target thread.
    void requestDetection() { mPending.fetch_add(1); }
    void kill();
    // Waits until every requested detection was raised, then stops the thread.
    void stop();
    int raised() const { return mRaised.load(); }

private:
    std::atomic<bool> mStarted{false};
    std::atomic<bool> mStop{false};
    std::atomic<int> mPending{0};
    std::atomic<int> mRaised{0};
    std::thread mThread;
};

// Blocks the driver's signal on the calling thread while it lives.
class BlockAONSignal {
public:
    BlockAONSignal();
    ~BlockAONSignal();

private:
    sigset_t mOld;
};

// Fails the run when the storm's threads do not finish within the bound: a deadlock detector,
// not a timing goal (the bound is far above any sanitizer slow-down). Prints each thread's
// iteration and the operation it is in, then aborts.
class Watchdog {
public:
    Watchdog(int threads, int boundSeconds);
    ~Watchdog();
    void enter(int thread, int iteration, const char* op);
    void finished(int thread);
    // Stops watching (all threads joined).
    void disarm();

private:
    struct Progress {
        std::atomic<int> iteration{0};
        std::atomic<const char*> op{"start"};
        std::atomic<bool> done{false};
    };
    std::vector<Progress> mProgress;
    std::mutex mLock;
    std::condition_variable mCondition;
    bool mDisarmed = false;
    std::thread mThread;
};

}  // namespace stormtest

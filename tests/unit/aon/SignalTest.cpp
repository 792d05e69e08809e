// The driver's signal: delivery to real threads, the handler's choices, and a storm of signals
// while open and close run.
#include <pthread.h>
#include <signal.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "AONTestSupport.h"
#include "utils/VantuLog.h"

namespace {

using namespace android;
using aontest::AONTest;
using aontest::callbackCalls;

constexpr int kSignal = 29;

// Queues signal 29 with `code` to the calling thread, as the driver raises it: the kernel takes a
// detection code only from the thread that is its own target.
int queueSignalToSelf(int code) {
    siginfo_t info;
    memset(&info, 0, sizeof(info));
    info.si_signo = kSignal;
    info.si_code = code;
    info.si_pid = getpid();
    info.si_uid = getuid();
    return static_cast<int>(syscall(SYS_rt_tgsigqueueinfo, getpid(),
                                    static_cast<pid_t>(syscall(SYS_gettid)), kSignal, &info));
}

// A thread with signal 29 unblocked that receives signals from others (pthread_kill) and, when
// asked, raises detections on itself, until told to stop.
class Receiver {
public:
    Receiver() {
        mThread = std::thread([this] {
            sigset_t set;
            sigemptyset(&set);
            sigaddset(&set, kSignal);
            pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
            mStarted = true;
            while (!mStop.load()) {
                if (mDetections.load() > 0) {
                    if (queueSignalToSelf(1) == 0) ++mRaised;
                    --mDetections;
                } else {
                    std::this_thread::yield();
                }
            }
        });
        while (!mStarted.load()) std::this_thread::yield();
    }
    ~Receiver() { stop(); }
    // Raises `count` detections on the receiver and waits until they are raised.
    void raiseDetections(int count) {
        mDetections += count;
        while (mDetections.load() > 0) std::this_thread::yield();
    }
    void stop() {
        mStop = true;
        if (mThread.joinable()) mThread.join();
    }
    int raised() const { return mRaised; }
    pthread_t handle() { return mThread.native_handle(); }

private:
    std::atomic<bool> mStarted{false};
    std::atomic<bool> mStop{false};
    std::atomic<int> mDetections{0};
    std::atomic<int> mRaised{0};
    std::thread mThread;
};

// Blocks signal 29 on the calling thread while it lives.
class BlockSignal {
public:
    BlockSignal() {
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, kSignal);
        pthread_sigmask(SIG_BLOCK, &set, &mOld);
    }
    ~BlockSignal() { pthread_sigmask(SIG_SETMASK, &mOld, nullptr); }

private:
    sigset_t mOld;
};

using SignalTest = AONTest;

TEST_F(SignalTest, DetectionOnAnotherThreadReachesTheCallback) {
    probeFront();
    sp<hostctl::HostBinder> app = hostctl::createBinder("aon-sig", aontest::kCallbackDescriptor);
    ASSERT_EQ(OK, open(app));
    app->clearTransactions();
    {
        Receiver receiver;
        receiver.raiseDetections(1);
        receiver.stop();
        EXPECT_EQ(1, receiver.raised());
    }
    EXPECT_EQ(std::vector<std::string>{"onHEDetected"}, callbackCalls(*app));
}

TEST_F(SignalTest, PthreadKillIsAbsorbedWithoutACallback) {
    // pthread_kill's signal carries the thread-kill code, not the driver's detection code: the
    // handler runs on that thread (the default action would end the process) and calls nothing.
    probeFront();
    sp<hostctl::HostBinder> app = hostctl::createBinder("aon-kill", aontest::kCallbackDescriptor);
    ASSERT_EQ(OK, open(app));
    app->clearTransactions();
    Receiver receiver;
    for (int i = 0; i < 100; ++i) ASSERT_EQ(0, pthread_kill(receiver.handle(), kSignal));
    receiver.stop();
    EXPECT_TRUE(callbackCalls(*app).empty());
}

TEST_F(SignalTest, HandlerReportsOtherSignalsAndIgnoresOtherCodes) {
    probeFront();
    sp<hostctl::HostBinder> app = hostctl::createBinder("aon-codes", aontest::kCallbackDescriptor);
    ASSERT_EQ(OK, open(app));
    app->clearTransactions();
    setExtLogSwitch(1);
    testsupport::LogCapture log;
    siginfo_t info;
    memset(&info, 0, sizeof(info));
    info.si_signo = 30;
    info.si_code = 7;
    CameraServiceExtImpl::aon_signal_handler(30, &info, nullptr);
    EXPECT_TRUE(log.contains("aon_signal_handler not defined code 7"));
    info.si_signo = kSignal;
    info.si_code = 2;
    CameraServiceExtImpl::aon_signal_handler(kSignal, &info, nullptr);
    CameraServiceExtImpl::aon_signal_handler(kSignal, nullptr, nullptr);
    EXPECT_FALSE(log.contains("receive aon irq signal"));
    EXPECT_TRUE(callbackCalls(*app).empty());

    info.si_code = 1;
    errno = EAGAIN;
    CameraServiceExtImpl::aon_signal_handler(kSignal, &info, nullptr);
    EXPECT_EQ(EAGAIN, errno);
    EXPECT_TRUE(log.contains("send aon irq signal to aon app"));
    EXPECT_EQ(std::vector<std::string>{"onHEDetected"}, callbackCalls(*app));
    setExtLogSwitch(0);
}

TEST_F(SignalTest, StormWhileOpenAndCloseRunOnTwoThreads) {
    probeFront();
    sp<hostctl::HostBinder> app = hostctl::createBinder("aon-storm", aontest::kCallbackDescriptor);
    Receiver receiver;
    std::atomic<bool> stop{false};
    // Open and close keep the signal blocked so that only the receiver takes it.
    auto opener = std::thread([&] {
        BlockSignal block;
        sp<IBinder> binder = app;
        while (!stop.load()) ext->openAON(binder);
    });
    auto closer = std::thread([&] {
        BlockSignal block;
        while (!stop.load()) ext->closeAON();
    });
    // Half the storm comes from another thread (pthread_kill), half is raised by the receiver on
    // itself with the detection code, both while open and close run.
    int sent = 0;
    std::thread detections([&] { receiver.raiseDetections(5000); });
    {
        BlockSignal block;
        for (int i = 0; i < 5000; ++i) {
            if (pthread_kill(receiver.handle(), kSignal) == 0) ++sent;
        }
    }
    detections.join();
    stop = true;
    opener.join();
    closer.join();
    receiver.stop();
    EXPECT_EQ(5000, sent);
    EXPECT_EQ(5000, receiver.raised());
    EXPECT_EQ(OK, ext->closeAON());
    EXPECT_EQ(AON_IDLE, static_cast<int32_t>(gAONStatus));
    EXPECT_EQ(nullptr, mAONHECallback.get());
    EXPECT_EQ(0, hostctl::openMediaDescriptors());
}

}  // namespace

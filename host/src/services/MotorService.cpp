// The motor service's socket: a listener on the abstract Unix stream socket "motor_socket", as
// the pop-up camera's motor service has it on a phone. Each connection carries one command
// text; the listener keeps what every connection sent, in the order the connections were made.
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sched.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <mutex>
#include <string>
#include <vector>

#include "ServiceControl.h"
#include "hostctl/Services.h"

namespace hostsvc {

namespace {

constexpr char kSocketName[] = "motor_socket";
// A client that neither sends nor closes is given up after this long.
constexpr int kReadTimeoutMs = 2000;
// Far above the 1024 bytes a command fits in; the rest of a longer message is dropped.
constexpr size_t kMaxMessageBytes = 64 * 1024;

// The lock is a pthread mutex so that a forked child can reinitialise it (see onForkChild).
struct Motor {
    pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
    bool running = false;
    pid_t owner = 0;
    int listenFd = -1;
    int stopPipe[2] = {-1, -1};
    pthread_t thread{};
    std::vector<hostctl::MotorMessage> messages;
    int bindTimeoutMs = 10000;
};

Motor& motor() {
    static Motor* m = new Motor();  // lives for the process
    return *m;
}

class Locked {
public:
    Locked() { pthread_mutex_lock(&motor().lock); }
    ~Locked() { pthread_mutex_unlock(&motor().lock); }
};

bool parseInt(const std::string& text, int32_t* out) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    long v = strtol(text.c_str(), &end, 10);
    if (errno != 0 || *end != '\0' || v < INT32_MIN || v > INT32_MAX) return false;
    *out = static_cast<int32_t>(v);
    return true;
}

// "cmd,pid,package,cameraId"; the package is what lies between the second and the last comma.
hostctl::MotorMessage decode(std::string bytes) {
    hostctl::MotorMessage m;
    m.bytes = std::move(bytes);
    const size_t first = m.bytes.find(',');
    const size_t second = first == std::string::npos ? first : m.bytes.find(',', first + 1);
    const size_t last = m.bytes.rfind(',');
    if (second == std::string::npos || last <= second) return m;
    m.wellFormed = parseInt(m.bytes.substr(0, first), &m.command) &&
                   parseInt(m.bytes.substr(first + 1, second - first - 1), &m.pid) &&
                   parseInt(m.bytes.substr(last + 1), &m.cameraId);
    if (m.wellFormed) m.package = m.bytes.substr(second + 1, last - second - 1);
    return m;
}

int64_t nowMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

// Reads one connection to its end (or the timeout) and keeps what it sent.
void readConnectionLocked(int fd) {
    std::string bytes;
    const int64_t deadline = nowMs() + kReadTimeoutMs;
    char buf[1024];
    for (;;) {
        const int64_t left = deadline - nowMs();
        if (left <= 0) break;
        struct pollfd p = {fd, POLLIN, 0};
        int r = poll(&p, 1, static_cast<int>(left));
        if (r < 0 && errno == EINTR) continue;
        if (r <= 0) break;
        ssize_t n = read(fd, buf, sizeof(buf));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        if (bytes.size() < kMaxMessageBytes) {
            bytes.append(buf, std::min(static_cast<size_t>(n), kMaxMessageBytes - bytes.size()));
        }
    }
    motor().messages.push_back(decode(std::move(bytes)));
}

// Takes every connection waiting on the listening socket, oldest first.
void drainLocked() {
    if (!motor().running || motor().owner != getpid()) return;
    for (;;) {
        int fd = accept4(motor().listenFd, nullptr, nullptr, SOCK_CLOEXEC);
        if (fd < 0) {
            if (errno == EINTR || errno == ECONNABORTED) continue;
            return;  // EAGAIN: none left
        }
        readConnectionLocked(fd);
        close(fd);
    }
}

void* listenLoop(void*) {
    const int listenFd = motor().listenFd;
    const int stopFd = motor().stopPipe[0];
    for (;;) {
        struct pollfd fds[2] = {{listenFd, POLLIN, 0}, {stopFd, POLLIN, 0}};
        int r = poll(fds, 2, -1);
        if (r < 0 && errno == EINTR) continue;
        if (r < 0 || fds[1].revents != 0) return nullptr;
        if (fds[0].revents != 0) {
            Locked g;
            drainLocked();
        }
    }
}

void closeFds() {
    for (int* fd : {&motor().listenFd, &motor().stopPipe[0], &motor().stopPipe[1]}) {
        if (*fd >= 0) close(*fd);
        *fd = -1;
    }
}

void onForkPrepare() {
    pthread_mutex_lock(&motor().lock);
}

void onForkParent() {
    pthread_mutex_unlock(&motor().lock);
}

// The child has no listening thread: it drops its copies of the parent's sockets, so only the
// parent keeps serving the name, and starts afresh with a usable lock.
void onForkChild() {
    pthread_mutex_init(&motor().lock, nullptr);
    if (motor().running) {
        closeFds();
        motor().running = false;
    }
}

std::string bindError(int err) {
    return std::string("cannot listen on the abstract socket \"") + kSocketName +
           "\": " + strerror(err);
}

// A bound, listening socket, waiting for the name while another process holds it.
int openListener(int timeoutMs, std::string* error) {
    struct sockaddr_un addr;
    memset(&addr, 0, sizeof(addr));
    addr.sun_family = AF_UNIX;
    memcpy(addr.sun_path + 1, kSocketName, sizeof(kSocketName) - 1);
    const socklen_t len = offsetof(struct sockaddr_un, sun_path) + 1 + sizeof(kSocketName) - 1;
    const int64_t deadline = nowMs() + timeoutMs;
    for (;;) {
        int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        if (fd < 0) {
            if (error) *error = bindError(errno);
            return -1;
        }
        if (bind(fd, reinterpret_cast<struct sockaddr*>(&addr), len) == 0) {
            if (listen(fd, 64) == 0) return fd;
            if (error) *error = bindError(errno);
            close(fd);
            return -1;
        }
        const int err = errno;
        close(fd);
        if (err != EADDRINUSE || nowMs() >= deadline) {
            if (error) *error = bindError(err);
            return -1;
        }
        struct timespec pause = {0, 10 * 1000 * 1000};
        nanosleep(&pause, nullptr);
    }
}

class MotorControl : public ServiceControl {
public:
    bool start(std::string* error) override {
        static std::once_flag atfork;
        std::call_once(atfork, [] { pthread_atfork(onForkPrepare, onForkParent, onForkChild); });
        int timeoutMs;
        {
            Locked g;
            if (motor().running) return true;
            timeoutMs = motor().bindTimeoutMs;
        }
        int fd = openListener(timeoutMs, error);
        if (fd < 0) return false;
        Locked g;
        if (motor().running) {  // started meanwhile by another thread
            close(fd);
            return true;
        }
        motor().listenFd = fd;
        if (pipe2(motor().stopPipe, O_CLOEXEC) != 0 ||
            pthread_create(&motor().thread, nullptr, listenLoop, nullptr) != 0) {
            if (error) *error = std::string("cannot start the motor listener: ") + strerror(errno);
            closeFds();
            return false;
        }
        motor().running = true;
        motor().owner = getpid();
        return true;
    }

    // Connections already made are read first, so their messages are not lost.
    void stop() override {
        pthread_t thread;
        {
            Locked g;
            if (!motor().running) return;
            const char byte = 0;
            if (write(motor().stopPipe[1], &byte, 1) < 0) {
                // The pipe is ours and empty; a failed write leaves the thread to the close below.
            }
            thread = motor().thread;
        }
        pthread_join(thread, nullptr);
        Locked g;
        drainLocked();
        closeFds();
        motor().running = false;
    }

    bool kill() override { return false; }

    bool running() override {
        Locked g;
        return motor().running;
    }

    void reset() override {
        Locked g;
        motor().messages.clear();
        motor().bindTimeoutMs = 10000;
    }
};

}  // namespace

ServiceControl& motorControl() {
    static auto* c = new MotorControl();
    return *c;
}

}  // namespace hostsvc

namespace hostctl {

std::string MotorMessage::describe() const {
    if (!wellFormed) return "\"" + bytes + "\" (not a motor command)";
    static const char* const kMeanings[] = {"lower the module", "raise the module",
                                            "module flash off", "module flash on",
                                            "torch mode off",   "torch mode on"};
    const char* meaning = command >= 0 && command <= 5 ? kMeanings[command] : "unknown command";
    return bytes + " (" + meaning + ", pid " + std::to_string(pid) + ", " + package + ", camera " +
           std::to_string(cameraId) + ")";
}

std::vector<MotorMessage> motorMessages() {
    hostsvc::Locked g;
    hostsvc::drainLocked();
    return hostsvc::motor().messages;
}

void clearMotorMessages() {
    hostsvc::Locked g;
    hostsvc::drainLocked();
    hostsvc::motor().messages.clear();
}

void setMotorBindTimeoutMs(int timeoutMs) {
    hostsvc::Locked g;
    hostsvc::motor().bindTimeoutMs = timeoutMs < 0 ? 0 : timeoutMs;
}

bool isolateAbstractSockets(std::string* error) {
    if (unshare(CLONE_NEWNET) == 0) return true;
    int err = errno;
    if (err == EPERM) {
        // Without privilege a new user namespace grants it; map our ids so they stay the same.
        const uid_t uid = getuid();
        const gid_t gid = getgid();
        if (unshare(CLONE_NEWUSER | CLONE_NEWNET) == 0) {
            std::ofstream("/proc/self/setgroups") << "deny";
            std::ofstream("/proc/self/uid_map") << uid << " " << uid << " 1";
            std::ofstream("/proc/self/gid_map") << gid << " " << gid << " 1";
            return true;
        }
        err = errno;
    }
    if (error) *error = std::string("cannot enter a private network namespace: ") + strerror(err);
    return false;
}

}  // namespace hostctl

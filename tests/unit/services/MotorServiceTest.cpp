// The motor service's listener on the abstract socket "motor_socket": what a client writes
// is received whole, in connection order, also across fork and while another process holds
// the name.
#include <errno.h>
#include <gtest/gtest.h>
#include <stddef.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "hostctl/Services.h"

namespace {

// This test process gets its own socket names when it may, so that parallel test processes
// neither see nor block each other's listener.
const bool gIsolated = hostctl::isolateAbstractSockets();

sockaddr_un motorAddress(socklen_t* len) {
    sockaddr_un addr;
    memset(&addr, 0, sizeof(addr));
    addr.sun_family = AF_UNIX;
    memcpy(addr.sun_path + 1, "motor_socket", 12);
    *len = offsetof(sockaddr_un, sun_path) + 1 + 12;
    return addr;
}

// Connects as the library does and writes `text` once; the connect error, or 0.
int sendToMotor(const std::string& text) {
    int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    socklen_t len;
    sockaddr_un addr = motorAddress(&len);
    if (connect(fd, reinterpret_cast<sockaddr*>(&addr), len) != 0) {
        int err = errno;
        close(fd);
        return err;
    }
    EXPECT_EQ(static_cast<ssize_t>(text.size()), write(fd, text.data(), text.size()));
    close(fd);
    return 0;
}

class MotorServiceTest : public ::testing::Test {
protected:
    void SetUp() override { hostctl::resetServices(); }
    void TearDown() override { hostctl::resetServices(); }
};

TEST_F(MotorServiceTest, MessageIsReceivedWholeAndDecoded) {
    ASSERT_TRUE(hostctl::startService(hostctl::kMotorService));
    ASSERT_EQ(0, sendToMotor("1,1234,com.example.app,1"));
    auto messages = hostctl::motorMessages();
    ASSERT_EQ(1u, messages.size());
    const auto& m = messages[0];
    EXPECT_EQ("1,1234,com.example.app,1", m.bytes);
    ASSERT_TRUE(m.wellFormed);
    EXPECT_EQ(1, m.command);
    EXPECT_EQ(1234, m.pid);
    EXPECT_EQ("com.example.app", m.package);
    EXPECT_EQ(1, m.cameraId);
    EXPECT_EQ("1,1234,com.example.app,1 (raise the module, pid 1234, com.example.app, camera 1)",
              m.describe());
}

TEST_F(MotorServiceTest, ConnectionsKeepTheirOrderWhateverTheySend) {
    ASSERT_TRUE(hostctl::startService(hostctl::kMotorService));
    ASSERT_EQ(0, sendToMotor("4,-1,NULL,0"));
    ASSERT_EQ(0, sendToMotor("not a command"));
    ASSERT_EQ(0, sendToMotor(""));
    ASSERT_EQ(0, sendToMotor("5,7,a,b,2"));
    auto messages = hostctl::motorMessages();
    ASSERT_EQ(4u, messages.size());
    EXPECT_TRUE(messages[0].wellFormed);
    EXPECT_EQ(-1, messages[0].pid);
    EXPECT_FALSE(messages[1].wellFormed);
    EXPECT_FALSE(messages[2].wellFormed);
    EXPECT_EQ("", messages[2].bytes);
    EXPECT_EQ("a,b", messages[3].package);
    hostctl::clearMotorMessages();
    EXPECT_TRUE(hostctl::motorMessages().empty());
}

TEST_F(MotorServiceTest, StoppingKeepsWhatWasAlreadySent) {
    ASSERT_TRUE(hostctl::startService(hostctl::kMotorService));
    ASSERT_EQ(0, sendToMotor("0,1,com.a,1"));
    hostctl::stopService(hostctl::kMotorService);
    EXPECT_EQ(1u, hostctl::motorMessages().size());
}

TEST_F(MotorServiceTest, NothingListensUntilStarted) {
    if (!gIsolated) GTEST_SKIP() << "another process may be listening on motor_socket";
    EXPECT_EQ(ECONNREFUSED, sendToMotor("1,1,com.a,1"));
    ASSERT_TRUE(hostctl::startService(hostctl::kMotorService));
    hostctl::stopService(hostctl::kMotorService);
    EXPECT_EQ(ECONNREFUSED, sendToMotor("1,1,com.a,1"));
}

// The simulator plays each scenario in a forked child: the child starts its own listener,
// and one the parent runs keeps serving the parent.
TEST_F(MotorServiceTest, ForkedChildRunsItsOwnListener) {
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        bool ok = hostctl::startService(hostctl::kMotorService) &&
                  sendToMotor("1,2,com.child,1") == 0 && hostctl::motorMessages().size() == 1;
        hostctl::stopService(hostctl::kMotorService);
        _exit(ok ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);

    ASSERT_TRUE(hostctl::startService(hostctl::kMotorService));
    child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        bool ok = !hostctl::isServiceRunning(hostctl::kMotorService);
        hostctl::clearMotorMessages();
        _exit(ok ? 0 : 1);
    }
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    ASSERT_EQ(0, sendToMotor("1,3,com.parent,1"));
    ASSERT_EQ(1u, hostctl::motorMessages().size());
}

TEST_F(MotorServiceTest, WaitsForTheNameWhileAnotherProcessHoldsIt) {
    int ready[2];
    ASSERT_EQ(0, pipe(ready));
    pid_t holder = fork();
    ASSERT_GE(holder, 0);
    if (holder == 0) {
        int fd = socket(AF_UNIX, SOCK_STREAM, 0);
        socklen_t len;
        sockaddr_un addr = motorAddress(&len);
        bool bound = bind(fd, reinterpret_cast<sockaddr*>(&addr), len) == 0 && listen(fd, 1) == 0;
        char byte = bound ? 1 : 0;
        if (write(ready[1], &byte, 1) != 1) _exit(1);
        usleep(300 * 1000);
        _exit(0);
    }
    char bound = 0;
    ASSERT_EQ(1, read(ready[0], &bound, 1));
    ASSERT_EQ(1, bound);

    hostctl::setMotorBindTimeoutMs(0);
    std::string error;
    EXPECT_FALSE(hostctl::startService(hostctl::kMotorService, &error));
    EXPECT_NE(std::string::npos, error.find("Address already in use")) << error;
    hostctl::setMotorBindTimeoutMs(5000);
    EXPECT_TRUE(hostctl::startService(hostctl::kMotorService, &error)) << error;
    waitpid(holder, nullptr, 0);
    close(ready[0]);
    close(ready[1]);
}

}  // namespace

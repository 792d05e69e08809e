// The log switch follows two debug properties exactly, levels decide what reaches the platform
// log, and camera ids parse only when they are one clean number.
#include <android/log.h>
#include <errno.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "hostctl/Properties.h"
#include "support/TestSupport.h"
#include "utils/VantuLog.h"

namespace {

class LogSwitchTest : public ::testing::Test {
protected:
    void SetUp() override { reset(); }
    void TearDown() override { reset(); }
    static void reset() {
        hostctl::clearProperties();
        android::setExtLogSwitch(0);
        clearLogFlag();
        initLogSwitch();
        clearLogFlag();
    }
};

// Either property exactly "true" turns the switch on; near misses of "true" leave it off.
TEST_F(LogSwitchTest, SwitchFollowsEitherPropertyExactlyTrue) {
    EXPECT_EQ(0, android::readLogSwitchProperties());
    struct {
        const char* sys;
        const char* camera;
        int on;
    } cases[] = {{"true", "", 1},     {"", "true", 1}, {"True", "True", 0}, {"true ", "true ", 0},
                 {"TRUE", "TRUE", 0}, {"1", "1", 0},   {"yes", "yes", 0},   {" true", " true", 0}};
    for (const auto& c : cases) {
        hostctl::clearProperties();
        hostctl::setProperty("persist.sys.assert.panic", c.sys);
        hostctl::setProperty("persist.camera.assert.panic", c.camera);
        EXPECT_EQ(c.on, android::readLogSwitchProperties())
            << "[" << c.sys << "] [" << c.camera << "]";
    }
}

TEST_F(LogSwitchTest, UtilitySwitchIsReadOnceUntilCleared) {
    hostctl::setProperty("persist.sys.assert.panic", "true");
    initLogSwitch();
    EXPECT_EQ(1, getLogLevel());

    hostctl::setProperty("persist.sys.assert.panic", "false");
    initLogSwitch();
    EXPECT_EQ(1, getLogLevel()) << "the properties must not be read again before clearLogFlag";

    clearLogFlag();
    initLogSwitch();
    EXPECT_EQ(0, getLogLevel());
}

TEST_F(LogSwitchTest, ErrorsAlwaysWriteAndInformationOnlyWhileOn) {
    testsupport::LogCapture log;
    android::log_print(0, "ext error %d", 1);
    android::log_print(1, "ext info %d", 1);
    ::log_print(0, "util error %d", 1);
    ::log_print(1, "util info %d", 1);
    EXPECT_EQ(1u, log.count("ext error 1"));
    EXPECT_EQ(1u, log.count("util error 1"));
    EXPECT_EQ(0u, log.count("info")) << log.dump();

    android::setExtLogSwitch(1);
    android::log_print(1, "ext info %d", 2);
    ::log_print(1, "util info %d", 2);
    EXPECT_EQ(1u, log.count("ext info 2"));
    EXPECT_EQ(0u, log.count("util info 2")) << "the free log_print reads the utility switch";
}

TEST_F(LogSwitchTest, VerboseLinesStaySilentWhateverTheProperties) {
    hostctl::setProperty("persist.sys.assert.panic", "true");
    hostctl::setProperty("persist.camera.assert.panic", "true");
    android::setExtLogSwitch(android::readLogSwitchProperties());
    initLogSwitch();
    testsupport::LogCapture log;
    android::log_print(2, "ext verbose");
    ::log_print(2, "util verbose");
    EXPECT_TRUE(log.lines().empty()) << log.dump();
}

TEST_F(LogSwitchTest, PriorityAndTagFollowLevelAndModule) {
    android::setExtLogSwitch(1);
    hostctl::setProperty("persist.sys.assert.panic", "true");
    initLogSwitch();
    testsupport::LogCapture log;
    android::log_print(0, "a");
    android::log_print(1, "b");
    ::log_print(0, "c");
    ::log_print(1, "d");
    const auto lines = log.lines();
    ASSERT_EQ(4u, lines.size()) << log.dump();
    for (size_t i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(i % 2 == 0 ? ANDROID_LOG_ERROR : ANDROID_LOG_INFO, lines[i].priority) << i;
        EXPECT_EQ(i < 2, lines[i].tag == "VantuCameraService") << i << ": " << lines[i].tag;
    }
}

TEST_F(LogSwitchTest, LongMessagesAreCutAt1023Characters) {
    testsupport::LogCapture log;
    const std::string text(2000, 'x');
    android::log_print(0, "%s", text.c_str());
    ::log_print(0, "%s", text.c_str());
    const auto lines = log.lines();
    ASSERT_EQ(2u, lines.size());
    EXPECT_EQ(std::string(1023, 'x'), lines[0].text);
    EXPECT_EQ(std::string(1023, 'x'), lines[1].text);
}

TEST_F(LogSwitchTest, MacrosStampTheFileBaseNameAndLine) {
    testsupport::LogCapture log;
    const int line = __LINE__ + 1;
    EXT_LOG(0, "%s stamped", "here");
    UTIL_LOG(0, "no arguments");
    const auto lines = log.lines();
    ASSERT_EQ(2u, lines.size());
    EXPECT_EQ("VantuLogTest.cpp: " + std::to_string(line) + " here stamped", lines[0].text);
    EXPECT_EQ("VantuLogTest.cpp: " + std::to_string(line + 1) + " no arguments", lines[1].text);
    EXPECT_FALSE(EXT_LOG_ON());
    EXPECT_FALSE(UTIL_LOG_ON());
}

TEST_F(LogSwitchTest, NullFormatWritesNothing) {
    testsupport::LogCapture log;
    // Called through plain pointers: the format check would refuse a null format at compile time.
    void (*ext)(int, const char*, ...) = android::log_print;
    void (*util)(int, const char*, ...) = ::log_print;
    ext(0, nullptr);
    util(0, nullptr);
    EXPECT_TRUE(log.lines().empty());
}

// Under TSan: the switches and the once-flag are shared by host threads without a lock.
TEST_F(LogSwitchTest, ConcurrentSwitchUseIsRaceFree) {
    hostctl::setProperty("persist.sys.assert.panic", "true");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 200; ++i) {
                if (t % 2 == 0) {
                    initLogSwitch();
                    android::setExtLogSwitch(android::readLogSwitchProperties());
                } else {
                    clearLogFlag();
                    ::log_print(2, "%d", getLogLevel());
                    android::log_print(2, "%d", android::getExtLogSwitch());
                }
            }
        });
    }
    for (auto& t : threads) t.join();
    initLogSwitch();
    EXPECT_EQ(1, android::getExtLogSwitch());
}

struct IdCase {
    const char* text;
    int value;
    int error;  // expected errno on failure, 0 on success
};

void PrintTo(const IdCase& c, std::ostream* os) {
    *os << ::testing::PrintToString(std::string(c.text));
}

class CameraIdToIntTest : public ::testing::TestWithParam<IdCase> {};

TEST_P(CameraIdToIntTest, ParsesOnlyOneCleanNumber) {
    const IdCase& c = GetParam();
    errno = 12345;
    EXPECT_EQ(c.value, cameraIdToInt(android::String8(c.text)));
    if (c.error != 0) {
        EXPECT_EQ(c.error, errno);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Ids, CameraIdToIntTest,
    ::testing::Values(IdCase{"0", 0, 0}, IdCase{" 7", 7, 0}, IdCase{"\t\n1", 1, 0},
                      IdCase{"0x10", 16, 0}, IdCase{"0X1f", 31, 0}, IdCase{"010", 10, 0},
                      IdCase{"2147483647", 2147483647, 0}, IdCase{"3a", -1, EINVAL},
                      IdCase{"", -1, EINVAL}, IdCase{"   ", -1, EINVAL}, IdCase{"7 ", -1, EINVAL},
                      IdCase{"0x", -1, EINVAL}, IdCase{"x1", -1, EINVAL},
                      IdCase{"2147483648", -1, ERANGE}, IdCase{"0x80000000", -1, ERANGE},
                      IdCase{"99999999999999999999", -1, ERANGE}));

TEST(CameraIdToInt, TextAfterAnEmbeddedNulIsNotIgnored) {
    errno = 0;
    EXPECT_EQ(-1, cameraIdToInt(android::String8("1\0"
                                                 "2",
                                                 3)));
    EXPECT_EQ(EINVAL, errno);
}

}  // namespace

// The UX thread table: one service call per change of a thread's flag, 64 places, and a
// defined outcome when thousands of threads ask at once.
#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <thread>
#include <vector>

#include "UxThreadTable.h"
#include "hostctl/HostEnv.h"
#include "hostctl/Services.h"

namespace {

using android::sp;
using android::UxThreadTable;
using vendor::vantu::hardware::performance::V1_0::IPerformance;
using Result = UxThreadTable::Result;

class UxThreadTableTest : public ::testing::Test {
protected:
    void SetUp() override {
        hostctl::resetServices();
        ASSERT_TRUE(hostctl::startService(hostctl::kPerformanceHal));
    }
    void TearDown() override {
        hostctl::setThisThreadIds(0, 0);
        hostctl::resetServices();
    }

    static std::vector<std::string> calls() {
        std::vector<std::string> out;
        for (const auto& c : hostctl::serviceCallsOf(hostctl::kPerformanceHal)) {
            if (c.method == "setUxThread") out.push_back(c.text());
        }
        return out;
    }

    UxThreadTable mTable;
};

// Boosting once, releasing and freeing the place, thread ids above 2^31 and the absent service
// are played through the hook in ux_thread_boost.json and ux_thread_no_service.json.

TEST_F(UxThreadTableTest, AnyFlagOtherThanOneSendsTheNormalClassAndStays) {
    hostctl::setThisThreadIds(5000, 5001);
    EXPECT_EQ(Result::kSet, mTable.apply(2, 129, nullptr));
    EXPECT_EQ(2u, mTable.flagAt(mTable.find(5001)));
    EXPECT_EQ(Result::kAlreadySet, mTable.apply(2, 129, nullptr));
    EXPECT_EQ((std::vector<std::string>{"setUxThread(8, 5000, 5001)"}), calls());
}

TEST_F(UxThreadTableTest, SixtyFifthThreadFindsTheTableFull) {
    for (uint32_t t = 1; t <= UxThreadTable::kEntries; ++t) {
        hostctl::setThisThreadIds(5000, static_cast<pid_t>(6000 + t));
        ASSERT_EQ(Result::kSet, mTable.apply(1, 136, nullptr));
    }
    hostctl::setThisThreadIds(5000, 7000);
    EXPECT_EQ(Result::kFull, mTable.apply(1, 136, nullptr));
    EXPECT_EQ(-1, mTable.find(7000));
    EXPECT_EQ(static_cast<size_t>(UxThreadTable::kEntries), calls().size());
    // Reading outside the table answers a free entry.
    EXPECT_EQ(0u, mTable.threadAt(UxThreadTable::kEntries));
    EXPECT_EQ(0u, mTable.flagAt(-1));
}

TEST_F(UxThreadTableTest, KeptServiceThatDiedIsFetchedAgain) {
    sp<IPerformance> cache;
    hostctl::setThisThreadIds(5000, 5001);
    EXPECT_EQ(Result::kSet, mTable.apply(1, 129, &cache));
    ASSERT_NE(nullptr, cache);
    ASSERT_TRUE(hostctl::killService(hostctl::kPerformanceHal));
    // The call reaches a dead service: the entry still records the flag, the cache is dropped.
    EXPECT_EQ(Result::kSet, mTable.apply(0, 129, &cache));
    EXPECT_EQ(nullptr, cache);
    ASSERT_TRUE(hostctl::startService(hostctl::kPerformanceHal));
    hostctl::clearServiceCalls();
    EXPECT_EQ(Result::kSet, mTable.apply(1, 129, &cache));
    EXPECT_NE(nullptr, cache);
    EXPECT_EQ((std::vector<std::string>{"setUxThread(129, 5000, 5001)"}), calls());
}

// 10,000 distinct threads boost at once: exactly 64 get a place and a service call, every
// other one finds the table full, and no two share a place.
TEST_F(UxThreadTableTest, TenThousandThreadsAtOnce) {
    constexpr int kWorkers = 16;
    constexpr int kPerWorker = 625;
    std::atomic<int> set{0}, full{0}, other{0};
    sp<IPerformance> cache;
    std::vector<std::thread> workers;
    for (int w = 0; w < kWorkers; ++w) {
        workers.emplace_back([&, w] {
            for (int k = 0; k < kPerWorker; ++k) {
                hostctl::setThisThreadIds(5000, 100000 + w * kPerWorker + k);
                switch (mTable.apply(1, 136, &cache)) {
                    case Result::kSet:
                        ++set;
                        break;
                    case Result::kFull:
                        ++full;
                        break;
                    default:
                        ++other;
                }
            }
        });
    }
    for (auto& t : workers) t.join();
    EXPECT_EQ(UxThreadTable::kEntries, set.load());
    EXPECT_EQ(kWorkers * kPerWorker - UxThreadTable::kEntries, full.load());
    EXPECT_EQ(0, other.load());
    std::set<uint32_t> tids;
    for (int i = 0; i < UxThreadTable::kEntries; ++i) {
        EXPECT_EQ(1u, mTable.flagAt(i));
        tids.insert(mTable.threadAt(i));
    }
    EXPECT_EQ(static_cast<size_t>(UxThreadTable::kEntries), tids.size());
    EXPECT_EQ(static_cast<size_t>(UxThreadTable::kEntries), calls().size());
}

// Threads boosting and releasing themselves at once leave the table empty.
TEST_F(UxThreadTableTest, ConcurrentBoostAndReleaseLeavesNoEntry) {
    std::vector<std::thread> workers;
    for (int w = 0; w < 8; ++w) {
        workers.emplace_back([this, w] {
            for (int k = 0; k < 200; ++k) {
                hostctl::setThisThreadIds(5000, 200000 + w * 200 + k);
                mTable.apply(1, 136, nullptr);
                mTable.apply(0, 136, nullptr);
            }
        });
    }
    for (auto& t : workers) t.join();
    for (int i = 0; i < UxThreadTable::kEntries; ++i) EXPECT_EQ(0u, mTable.threadAt(i)) << i;
}

}  // namespace

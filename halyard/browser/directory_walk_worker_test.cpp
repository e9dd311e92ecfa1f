#include "halyard/browser/directory_walk_worker.hpp"

#include <chrono>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/typed_input.hpp"

namespace halyard {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

std::vector<DirectoryEntry> one(const std::string& name) { return {{name, "/" + name, DirectoryEntry::Kind::file}}; }

/// Runs until it is told to end.
std::vector<DirectoryEntry> endless(const std::atomic<bool>& isCancelled) {
  while (!isCancelled) std::this_thread::sleep_for(1ms);
  return one("late");
}

template <typename Condition>
bool becomes(Condition condition) {
  const auto end = Clock::now() + 10s;
  while (!condition() && Clock::now() < end) std::this_thread::sleep_for(1ms);
  return condition();
}

TEST(DirectoryWalkWorker, HandsItsResultOverOnce) {
  DirectoryWalkWorker worker;
  EXPECT_EQ(worker.takeResult(), std::nullopt);
  worker.start([](const std::atomic<bool>&) { return one("a"); });
  ASSERT_TRUE(becomes([&] { return !worker.isRunning(); }));
  EXPECT_EQ(worker.takeResult(), one("a"));
  EXPECT_EQ(worker.takeResult(), std::nullopt);
}

TEST(DirectoryWalkWorker, ACancelledWalkEndsAndItsResultIsNeverSeen) {
  DirectoryWalkWorker worker;
  worker.start(endless);
  EXPECT_TRUE(worker.isRunning());
  worker.cancel();
  ASSERT_TRUE(becomes([&] { return !worker.isRunning(); }));
  EXPECT_EQ(worker.takeResult(), std::nullopt);
}

TEST(DirectoryWalkWorker, AResultThatCameBeforeTheCancellingIsDropped) {
  DirectoryWalkWorker worker;
  worker.start([](const std::atomic<bool>&) { return one("a"); });
  ASSERT_TRUE(becomes([&] { return !worker.isRunning(); }));
  worker.cancel();
  EXPECT_EQ(worker.takeResult(), std::nullopt);
}

TEST(DirectoryWalkWorker, TwoWalksNeverRunAtATime) {
  std::atomic<int> running = 0;
  std::atomic<int> most = 0;
  const auto counted = [&](const std::atomic<bool>& isCancelled) {
    most = std::max(most.load(), ++running);
    auto hits = endless(isCancelled);
    --running;
    return hits;
  };
  {
    DirectoryWalkWorker worker;
    for (int count = 0; count < 20; ++count) {
      worker.start(counted);
      if (count % 2 == 0) worker.cancel();
    }
    worker.start([](const std::atomic<bool>&) { return one("last"); });
    ASSERT_TRUE(becomes([&] { return !worker.isRunning(); }));
    EXPECT_EQ(worker.takeResult(), one("last"));
    worker.start(counted);
  }
  EXPECT_EQ(most, 1);
  EXPECT_EQ(running, 0) << "the worker's end waits for the walk's";
}

TEST(WalkCancelledByKey, XInEitherCaseIsSeenAtOnce) {
  for (const char* typed : {"x", "X", "abcx", "\x1b[A\x1b[Bx", "\n\x03x"}) {
    const TypedInput input(typed);
    const auto start = Clock::now();
    EXPECT_TRUE(walkCancelledByKey()) << typed;
    EXPECT_LT(Clock::now() - start, 110ms) << typed;
  }
}

TEST(WalkCancelledByKey, OtherKeysAreDroppedAndThePeriodIsWaitedOut) {
  for (const char* typed : {"", "abc \n", "\x1b[A", "\x1b"}) {
    const TypedInput input(typed);
    const auto start = Clock::now();
    EXPECT_FALSE(walkCancelledByKey()) << typed;
    EXPECT_GE(Clock::now() - start, 119ms) << typed;
    EXPECT_LT(Clock::now() - start, 1s) << typed;
  }
}

}  // namespace
}  // namespace halyard

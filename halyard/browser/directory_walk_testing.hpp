// For tests of search and filter: a view whose walks are polled to their end.
#pragma once

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "halyard/browser/browser_testing.hpp"
#include "halyard/browser/directory_walk_worker.hpp"

namespace halyard {

class WalkTest : public BrowserTest {
 protected:
  ~WalkTest() override {
    directoryWalkWorker().cancel();
    while (directoryWalkWorker().isRunning()) std::this_thread::yield();
  }

  /// As the main loop polls, until the walk's mode has changed.
  static void pollToTheEnd() {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (isWalking() && std::chrono::steady_clock::now() < limit) {
      view().appMode == DirectoryAppMode::searching ? runDirectorySearchStep() : runDirectoryFilterStep();
    }
    ASSERT_FALSE(isWalking());
  }

  static bool isWalking() {
    return view().appMode == DirectoryAppMode::searching || view().appMode == DirectoryAppMode::filterRunning;
  }

  static void search(std::string_view text) {
    press("s");
    press(text);
    press(RawKey::Kind::enter);
    pollToTheEnd();
    EXPECT_EQ(view().appMode, DirectoryAppMode::searchResults);
  }

  /// With the groups of these numbers, from 0.
  static void filter(const std::vector<int>& groups) {
    press("d");
    int cursor = 0;
    for (const int group : groups) {
      for (; cursor < group; ++cursor) press(RawKey::Kind::down);
      press(" ");
    }
    press(RawKey::Kind::enter);
    pollToTheEnd();
    EXPECT_EQ(view().appMode, DirectoryAppMode::filterResults);
  }

  /// Keys as a terminal's bytes arrive: one scalar each.
  static void typeBytes(std::string_view bytes) {
    for (const char each : bytes) {
      bool isFirst = true;
      handleDirectoryKey(decodeKey([&](bool) -> std::optional<std::uint8_t> {
        return std::exchange(isFirst, false) ? std::optional(static_cast<std::uint8_t>(each)) : std::nullopt;
      }));
    }
  }
};

}  // namespace halyard

// What the tests of the runs share.
#pragma once

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "core/string_catalog.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/platform/process_table.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/temporary_folder.hpp"

#if defined(__has_feature)
#if __has_feature(thread_sanitizer) || __has_feature(address_sanitizer)
#define HALYARD_SLOWED 1
#endif
#elif defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
#define HALYARD_SLOWED 1
#endif

namespace halyard {

/// An abort gives the prompt back in this time.
#ifdef HALYARD_SLOWED
inline constexpr std::chrono::milliseconds abortTime(1600);
#else
inline constexpr std::chrono::milliseconds abortTime(800);
#endif

struct Runs : testing::Test {
  Runs() {
    // A group of our own: an aborted run ends the orphans of its group, and tests run side by side.
    setpgid(0, 0);
    loadStringCatalog("");
    setCurrentLanguage("en");
    AppContext::shared().reset();
  }
  ~Runs() override { AppContext::shared().reset(); }

  void TearDown() override { EXPECT_TRUE(waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD) << "a child is left"; }

  [[nodiscard]] std::string quoted(std::string_view name) const { return shellQuote(folder.at(name)); }
  /// A command that waits for a file.
  [[nodiscard]] std::string untilThereIs(std::string_view name) const {
    return "while [ ! -e " + quoted(name) + " ]; do sleep 0.01; done";
  }

  TemporaryFolder folder;
  DefaultCommandRunner runner;
};

inline bool eventually(const std::function<bool()>& condition) {
  for (int i = 0; i < 1000; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

/// One that has ended and that nobody has reaped yet is none.
inline bool isAlive(pid_t process) {
  ProcessRecord record;
  return readProcess(process, record) && !record.ended;
}

/// Of a file that a command of a test writes: the id of a process.
inline pid_t processIn(const TemporaryFolder& folder, std::string_view name) {
  const std::string text = folder.read(name);
  return text.empty() ? -1 : static_cast<pid_t>(std::stol(text));
}

}  // namespace halyard

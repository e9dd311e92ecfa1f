// For tests: a project's folder and the answers of the tools that find out what it uses.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "halyard/packages/package_readers.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/temporary_folder.hpp"
#include "tests/support/typed_input.hpp"

namespace halyard {

inline constexpr const char* packageDetection =
    R"(find . \( -name 'Package.swift' -not -path '*/Pods/*' -not -path '*/Carthage/*' -not -path '*/.build/*' \) )"
    R"(-maxdepth 3 -o \( -name 'Package.resolved' -not -path '*/Carthage/*' -not -path '*/Pods/*' \) -maxdepth 6 )"
    R"(2>/dev/null | head -1)";

/// Stands in an empty folder. Nothing is detected and no package is pinned until a test says so.
class PackagesTest : public testing::Test {
 protected:
  PackagesTest() {
    std::filesystem::current_path(folder.path());
    usePackages(false);
    context.runner.allow(std::string(packageResolvedSearch)).allow("which pod 2>/dev/null", "/opt/bin/pod");
    context.runner.allow("which carthage 2>/dev/null", "/opt/bin/carthage");
  }

  void usePackages(bool used = true) { context.runner.allow(packageDetection, used ? "./Package.swift\n" : ""); }
  void usePods() { context.files.addFile("Podfile"); }
  void useCarthage() { context.files.addFile("Cartfile"); }
  void removeTool(const std::string& tool) { context.runner.allow("which " + tool + " 2>/dev/null"); }
  /// For what reads these from the disk and for what asks whether they are there.
  void writeLock(const std::string& name, std::string_view content) {
    folder.write(name, content);
    context.files.addFile(name);
  }
  void pinPackages(std::string_view identity) {
    context.runner.allow(std::string(packageResolvedSearch), "./Package.resolved\n");
    folder.write("Package.resolved", R"({"pins": [{"identity": ")" + std::string(identity) +
                                         R"(", "location": "https://example.com/x", "state": {"version": "1.2.3"}}]})");
  }

  /// What an action prints while these keys are typed, without colours.
  template <typename Action>
  std::string shown(std::string_view keys, Action&& action) {
    const TypedInput typed(keys);
    const CapturedOutput output;
    action();
    return stripAnsi(output.text());
  }

  ContextReset context;
  ScriptedCommandRunner& runner = context.runner;
  TemporaryFolder folder;
};

/// Until this stands in what shown() collects: for what another thread draws.
inline void waitUntilShown(std::string_view text) {
  std::string all(1U << 16U, '\0');
  for (int attempt = 0; attempt < 500; ++attempt) {
    const ssize_t size = pread(STDOUT_FILENO, all.data(), all.size(), 0);
    if (size > 0 && std::string_view(all.data(), static_cast<std::size_t>(size)).find(text) != std::string::npos)
      return;
    usleep(10'000);
  }
  ADD_FAILURE() << "never shown: " << text;
}

inline std::size_t occurrences(std::string_view text, std::string_view what) {
  std::size_t found = 0;
  for (auto at = text.find(what); at != std::string_view::npos; at = text.find(what, at + what.size())) ++found;
  return found;
}

}  // namespace halyard

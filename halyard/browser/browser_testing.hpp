// For tests: the browser in a folder on the disk, with no desktop behind it and toasts that take no time.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "halyard/browser/directory_list.hpp"
#include "halyard/browser/directory_state.hpp"
#include "halyard/browser/directory_view.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "halyard/terminal/keys.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/temporary_folder.hpp"
#include "tests/support/typed_input.hpp"

namespace halyard {

class BrowserTest : public testing::Test {
 protected:
  BrowserTest() : files_({&context.runner, &disk_, &AppContext::shared()}) {
    directoryViewState() = {};
    DirectoryViewHost host;
    host.drawHeader = [this](const DirectoryHeaderContent& content) { toasts.push_back(content); };
    host.pause = [this](std::chrono::milliseconds time) { paused += time; };
    installDirectoryViewHost(std::move(host));
  }
  ~BrowserTest() override { directoryViewState() = {}; }

  static DirectoryViewState& view() { return directoryViewState(); }
  static DirectoryViewListState& list() { return directoryViewState().list; }

  /// The view as on its first display, in the test's folder or below it.
  void openAt(std::string_view relativePath = {}) {
    setSelectedWorkingDirectory(folder.at(relativePath));
    prepareDirectoryView();
  }

  static void press(std::string_view characters) {
    for (const char each : characters) handleDirectoryKey({RawKey::Kind::character, std::string(1, each)});
  }
  static void press(RawKey::Kind kind) { handleDirectoryKey({kind, {}}); }

  static std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const DirectoryEntry& entry : list().entries) all.push_back(entry.name);
    return all;
  }
  static std::string selectedName() {
    const DirectoryEntry* entry = selectedDirectoryEntry();
    return entry == nullptr ? "nothing" : entry->name;
  }
  /// The last toast as "text|detail"; empty where there was none.
  [[nodiscard]] std::string lastToast() const {
    return toasts.empty() ? std::string() : toasts.back().toast + "|" + toasts.back().toastDetail;
  }
  /// Selects by name; fails the test where it isn't listed.
  static void select(std::string_view name) {
    for (int index = 0; index < static_cast<int>(list().entries.size()); ++index) {
      if (list().entries[static_cast<std::size_t>(index)].name != name) continue;
      list().selectedIndex = index;
      return keepSelectionVisible();
    }
    ADD_FAILURE() << "not listed: " << name;
  }

  TemporaryFolder folder;
  ContextReset context;
  std::vector<DirectoryHeaderContent> toasts;
  std::chrono::milliseconds paused{0};

 private:
  DefaultFileSystemClient disk_;
  DependenciesGuard files_;
  const TypedInput noInput_{""};  // a toast discards what is typed: not the tester's own
};

}  // namespace halyard

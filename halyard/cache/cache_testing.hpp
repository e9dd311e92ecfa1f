// For tests: what an action prints while keys are typed, and a home folder on the disk whose whole tree is watched.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/app_context.hpp"
#include "halyard/build/project_location.hpp"
#include "halyard/cache/cache_locations.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/temporary_folder.hpp"
#include "tests/support/typed_input.hpp"

namespace halyard {

/// Without colours, and without what spinners drew.
template <typename Action>
std::string shownBy(Action&& action, std::string_view keys = {}) {
  constexpr std::string_view spinnerStart = "\x1b[?25l";
  constexpr std::string_view spinnerEnd = "\x1b[?25h";
  const TypedInput typed(keys);
  const CapturedOutput output;
  action();
  std::string text = stripAnsi(output.text());
  for (auto at = text.find(spinnerStart); at != std::string::npos; at = text.find(spinnerStart)) {
    const std::size_t end = text.find(spinnerEnd, at);
    text.erase(at, end == std::string::npos ? end : end + spinnerEnd.size() - at);
  }
  return text;
}

/// Empty where it isn't set.
inline std::string environmentText(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

/// Sets $HOME, or unsets it, and sets it back.
class HomeSetting {
 public:
  explicit HomeSetting(const char* value) : saved_(environmentText("HOME")) {
    value == nullptr ? unsetenv("HOME") : setenv("HOME", value, 1);
  }
  ~HomeSetting() { setenv("HOME", saved_.c_str(), 1); }
  HomeSetting(const HomeSetting&) = delete;
  HomeSetting& operator=(const HomeSetting&) = delete;

 private:
  std::string saved_;
};

/// The project Harbor at /w/Harbor.xcodeproj, in the home /Users/demo in memory.
class CacheTest : public testing::Test {
 public:
  CacheTest() {
    files.addFolder("/w/Harbor.xcodeproj");
    setSelectedProjectFilePath("/w/Harbor.xcodeproj");
    detectProject();
  }

  static std::string home(std::string_view relativePath) { return "/Users/demo/" + std::string(relativePath); }
  /// The next measurement of a path, which is there.
  CacheTest& measured(const std::string& path, const std::string& size) {
    files.addFolder(path);
    runner.expect("du -sh " + shellQuote(path) + " 2>/dev/null | awk '{print $1}'", size + "\n");
    return *this;
  }
  CacheTest& ran(const std::string& command) {
    runner.expect(command);
    return *this;
  }

  ContextReset context;
  ScriptedCommandRunner& runner = context.runner;
  InMemoryFileSystem& files = context.files;
  const std::string buildFolder = home("Library/Developer/Xcode/DerivedData/CapstanLightBuild-Harbor");
};

/// Each path below a folder, with a file's content, a link's target, or "/" for a folder.
using Tree = std::map<std::string, std::string>;

inline Tree treeOf(const std::filesystem::path& folder) {
  namespace fs = std::filesystem;
  Tree tree;
  for (fs::recursive_directory_iterator entry(folder), end; entry != end; ++entry) {
    std::string value = "/";
    if (entry->is_symlink()) {
      value = "-> " + fs::read_symlink(entry->path()).string();
    } else if (entry->is_regular_file()) {
      std::ifstream file(entry->path());
      value.assign(std::istreambuf_iterator<char>(file), {});
    }
    tree[entry->path().lexically_relative(folder).string()] = value;
  }
  return tree;
}

/// Paths that are in one tree only, or differ.
inline std::vector<std::string> differences(const Tree& before, const Tree& after) {
  std::vector<std::string> paths;
  for (const auto& [path, value] : before) {
    if (const auto found = after.find(path); found == after.end() || found->second != value) paths.push_back(path);
  }
  for (const auto& [path, value] : after) {
    if (!before.contains(path)) paths.push_back(path);
  }
  return paths;
}

/// A home on the disk with something in every place, other data round each, and the real shell. `xcrun` only writes
/// down what it was called with: on a Mac the real one would delete the developer's simulators.
class DiskHome {
 public:
  explicit DiskHome(const std::string& name = "home")
      : homeFolder(folder.makeFolder("world/" + name)),
        home_(homeFolder.c_str()),
        path_(environmentText("PATH")),
        dependencies_({&shell_, &disk_, &AppContext::shared()}) {
    folder.makeFolder("world/work");
    writeTool("xcrun", "echo \"$@\" >> '" + folder.at("calls") + "'");
    setenv("PATH", (folder.at("tools") + ":" + path_).c_str(), 1);
    std::filesystem::current_path(folder.at("world/work"));
    fill(homeFolder);
    fillDecoy(folder.at("world/work"));
  }
  ~DiskHome() {
    setenv("PATH", path_.c_str(), 1);
    std::filesystem::current_path("/");
  }
  DiskHome(const DiskHome&) = delete;
  DiskHome& operator=(const DiskHome&) = delete;

  void writeTool(const std::string& name, const std::string& script) const {
    const std::string tool = folder.write("tools/" + name, "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  }
  [[nodiscard]] Tree world() const { return treeOf(folder.at("world")); }
  [[nodiscard]] std::string calls() const { return folder.read("calls"); }
  [[nodiscard]] std::string at(std::string_view relativePath) const {
    return homeFolder + "/" + std::string(relativePath);
  }
  [[nodiscard]] bool has(std::string_view relativePath) const {
    return std::filesystem::exists(std::filesystem::symlink_status(at(relativePath)));
  }

  /// Something in every place, and neighbours that must stay.
  static void fill(const std::string& home) {
    for (const CacheLocation& location : cacheLocations) {
      if (location.path.empty()) continue;
      const std::string place = home + std::string(location.path.substr(1));
      write(place + "/some thing/file", "x");
      write(place + "/.hidden", "x");
      write(place + " beside", "stays");
      write(place + "X", "stays");
    }
    for (const char* path : {"Documents/letter", "Library/Keychains/login", "Library/Caches/other/x", ".profile",
                             "-rf/x", "~/Library/Caches/CocoaPods/x"}) {
      write(home + "/" + path, "stays");
    }
  }
  /// What a command that went astray would find.
  static void fillDecoy(const std::string& folder) {
    for (const char* path : {"Library/Caches/CocoaPods/x", "Library/org.swift.swiftpm/x", "Library/Developer/x"}) {
      write(folder + "/" + path, "stays");
    }
  }
  static void write(const std::filesystem::path& path, std::string_view text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << text;
  }

 private:
  ContextReset context_;

 public:
  const TemporaryFolder folder;
  const std::string homeFolder;

 private:
  HomeSetting home_;
  std::string path_;
  DefaultCommandRunner shell_;
  DefaultFileSystemClient disk_;
  DependenciesGuard dependencies_;
};

}  // namespace halyard

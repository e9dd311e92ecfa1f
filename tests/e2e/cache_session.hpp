// The program at its menu, with the demo's caches in its home folder, and a row of the group that deletes.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/e2e/build_flow_session.hpp"
#include "tests/support/terminal_session.hpp"

namespace halyard {

/// Places below the home folder, and one thing in each that the demo put there.
namespace CacheFolder {
inline constexpr std::string_view derivedData = "Library/Developer/Xcode/DerivedData";
inline constexpr std::string_view moduleCache = "Library/Developer/Xcode/ModuleCache";
inline constexpr std::string_view previews = "Library/Developer/Xcode/Previews";
inline constexpr std::string_view xcodeCaches = "Library/Caches/com.apple.dt.Xcode";
inline constexpr std::string_view packages = "Library/Caches/org.swift.swiftpm";
inline constexpr std::string_view packageData = "Library/org.swift.swiftpm";
inline constexpr std::string_view simulatorCache = "Library/Developer/CoreSimulator/Caches";
inline constexpr std::string_view devices = "Library/Developer/CoreSimulator/Devices";
inline constexpr std::string_view logs = "Library/Developer/Xcode/Logs";
inline constexpr std::string_view reports = "Library/Logs/DiagnosticReports";
inline constexpr std::string_view archives = "Library/Developer/Xcode/Archives";
inline constexpr std::string_view deviceSupport = "Library/Developer/Xcode/iOS DeviceSupport";
inline constexpr std::string_view sourcePackages = "Library/Developer/Xcode/SourcePackages";
inline constexpr std::string_view pods = "Library/Caches/CocoaPods";
inline constexpr std::string_view carthage = "Library/Caches/org.carthage.CarthageKit";
}  // namespace CacheFolder

inline SessionOptions cacheOptions(std::string_view language = "en") {
  SessionOptions options;
  options.rows = 60;
  options.preferences = {{"language", std::string(language)}};
  // Large enough for its size not to depend on what the file system takes for the folders above it.
  options.homeFiles = {{std::string(demoBuildFolder) + "/Build/product", std::string(3'000'000, 'x')},
                       {"Documents/letter", "stays"}};
  return options;
}

/// Runs the row with this label of the first group; the menu shows the group's rows when it comes up.
inline bool runCacheRow(TerminalSession& session, std::string_view label) {
  if (!isAtMenu(session)) return false;
  session.send(Key::right);
  for (int i = 0; i < 16; ++i) {
    if (!session.waitUntilIdle()) return false;
    // The rows have a rule before them and blanks behind, so that no label is found inside another.
    const CellPosition at = session.find("│ " + std::string(label) + "  ");
    if (at.row >= 0 && session.cell(at.row, at.column + 2).background == CellColor::rgb(0, 0, 0)) break;
    session.send(Key::down);
  }
  session.send(Key::enter);
  return session.waitFor("▶  ") && session.waitUntilIdle();
}

inline bool isThere(const TerminalSession& session, std::string_view place) {
  return std::filesystem::exists(session.inHome(place));
}

inline bool isEmptyFolder(const TerminalSession& session, std::string_view place) {
  return isThere(session, place) && std::filesystem::is_empty(session.inHome(place));
}

/// Number of files and folders below the home folder, without what the demo's tools keep.
inline std::size_t itemsInHome(const TerminalSession& session) {
  std::size_t count = 0;
  for (std::filesystem::recursive_directory_iterator entry(session.home()), end; entry != end; ++entry) {
    if (entry->path().filename() == ".halyard-demo") {
      entry.disable_recursion_pending();
    } else {
      ++count;
    }
  }
  return count;
}

}  // namespace halyard

// What a manager's output says about each package while it runs. Lines in, changes of rows out; nothing is printed
// here.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "halyard/packages/package_readers.hpp"

namespace halyard {

enum class SPMResolveStatus { pending, loading, done, failed };

enum class PackageTool { spm, cocoaPods, carthage };

struct PackageRow {
  std::string name;
  std::string url;  ///< may be empty
  SPMResolveStatus status = SPMResolveStatus::pending;

  bool operator==(const PackageRow&) const = default;
};

/// The rows of a run. It isn't locked: whoever shares it between threads does that.
struct PackageTable {
  PackageTool tool = PackageTool::spm;
  std::vector<PackageRow> rows = {};
  bool started = false;  ///< the first line has come
  bool sawError = false;
  std::size_t lastChanged = 0;  ///< row that a line moved last

  /// One line of output, with or without its carriage returns. True where it changed something.
  bool takeLine(std::string_view line);
  /// The tool has ended: what isn't failed is done, or, where it failed, what was loading is failed.
  void finish(bool succeeded);

  [[nodiscard]] std::size_t count(SPMResolveStatus status) const;
};

/// "Swift Package Manager", "CocoaPods", "Carthage": the same in every language.
std::string_view packageToolTitle(PackageTool tool);

PackageTable packageTable(const std::vector<SPMPackageInfo>& packages);
PackageTable packageTable(const std::vector<PodInfo>& pods);
PackageTable packageTable(const std::vector<CarthageFWInfo>& frameworks);

/// The lines by which the tool tells its errors, each with the indented ones behind it; without any the last lines. At
/// most `limit`, the last ones.
std::vector<std::string> packageErrorLines(PackageTool tool, std::string_view output, std::size_t limit = 12);

/// The table as one frame for a terminal of this size: the title and tally, the rows or as many as fit round the one
/// that changed last, and below them the cursor on the spinner's line. It is drawn over the one before it.
std::string packageFrame(const PackageTable& table, int rows, int columns);

}  // namespace halyard

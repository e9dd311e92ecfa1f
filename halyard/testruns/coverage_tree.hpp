// The project's Swift files as a tree, each with its code coverage.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "halyard/testruns/coverage_data.hpp"

namespace halyard {

/// The search for the Swift files below the current directory, without hidden folders and those that builds and
/// package managers fill. Each path ends in a NUL, as it may hold a line end.
std::string swiftFilesCommand();
/// The paths that the search printed, without the leading "./".
std::vector<std::string> readSwiftFiles(std::string_view output);

/// A file, or a folder with what is in it: folders first, each kind by name.
struct CoverageNode {
  std::string name;
  bool isFolder = false;
  LineCount lines = {};                ///< of a folder: of all files below it
  const CoverageFile* file = nullptr;  ///< of the report, which must outlive the tree; null where it isn't in there
  std::vector<CoverageNode> children = {};
};

/// `files`: relative to `root`, which is absolute. A file of the report is matched by its path, else by the end of
/// its path, as the same folder may have two paths, else by its name where that is the only one.
CoverageNode coverageTree(const std::vector<std::string>& files, std::string_view root,
                          const std::vector<CoverageTarget>& targets);

/// One line per node, the root's name first.
std::string drawCoverageTree(const CoverageNode& root);

}  // namespace halyard

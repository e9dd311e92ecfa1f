#include "halyard/testruns/coverage_tree.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <tuple>
#include <unordered_map>
#include <utility>

#include <fmt/format.h>

#include "core/text.hpp"
#include "halyard/build/target_names.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/screen.hpp"
#include "halyard/testruns/coverage_drawing.hpp"

namespace halyard {

namespace {

// What is found by another tool than the developer: hidden folders, and these.
constexpr auto skippedFolders =
    std::to_array<std::string_view>({".?*", "build", "DerivedData", "SourcePackages", "Pods", "Carthage"});

constexpr std::string_view branch = "├── ";
constexpr std::string_view lastBranch = "└── ";
constexpr std::string_view trunk = "│   ";
constexpr std::string_view noTrunk = "    ";

// Percentages stand in a column behind the names, unless the names are very long.
constexpr int widestColumn = 100;

/// The files of a report, found again by what is known of a file on disk.
class FileIndex {
 public:
  explicit FileIndex(const std::vector<CoverageTarget>& targets) {
    for (const CoverageTarget& target : targets) {
      for (const CoverageFile& file : target.files) add(file);
    }
  }

  [[nodiscard]] const CoverageFile* find(const std::string& absolute, std::string_view relative,
                                         bool isOnlyName) const {
    if (const auto known = byPath_.find(absolute); known != byPath_.end()) return known->second;
    const auto known = byName_.find(lastPathComponent(relative));
    if (known == byName_.end()) return nullptr;
    const std::string ending = "/" + std::string(relative);
    for (const CoverageFile* file : known->second) {
      if (file->path.ends_with(ending)) return file;
    }
    return isOnlyName && known->second.size() == 1 ? known->second.front() : nullptr;
  }

 private:
  void add(const CoverageFile& file) {
    if (!file.path.empty()) {
      const auto [known, isNew] = byPath_.try_emplace(file.path, &file);
      if (!isNew) {
        // A file of several targets: where more of it ran.
        if (known->second->coveredLines < file.coveredLines) known->second = &file;
        return;
      }
    }
    byName_[lastPathComponent(file.path.empty() ? file.name : file.path)].push_back(&file);
  }

  std::unordered_map<std::string_view, const CoverageFile*> byPath_;
  std::unordered_map<std::string_view, std::vector<const CoverageFile*>> byName_;
};

std::unordered_map<std::string_view, int> nameCounts(const std::vector<std::string>& files) {
  std::unordered_map<std::string_view, int> counts;
  for (const std::string& file : files) ++counts[lastPathComponent(file)];
  return counts;
}

/// The folder's node among the children, which is the last one: files come sorted by their folders.
CoverageNode& folderIn(CoverageNode& parent, std::string_view name) {
  if (parent.children.empty() || !parent.children.back().isFolder || parent.children.back().name != name) {
    parent.children.push_back({.name = std::string(name), .isFolder = true});
  }
  return parent.children.back();
}

void addFile(CoverageNode& root, std::string_view path, const CoverageFile* file) {
  const LineCount lines = file == nullptr ? LineCount{} : linesOf(*file);
  CoverageNode* folder = &root;
  for (std::size_t slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/')) {
    folder->lines += lines;
    folder = &folderIn(*folder, path.substr(0, slash));
    path.remove_prefix(slash + 1);
  }
  folder->lines += lines;
  folder->children.push_back({.name = std::string(path), .lines = lines, .file = file});
}

void sortChildren(CoverageNode& node) {
  std::vector<std::pair<std::string, CoverageNode>> keyed;
  keyed.reserve(node.children.size());
  for (CoverageNode& child : node.children) {
    sortChildren(child);
    keyed.emplace_back(caseFolded(child.name), std::move(child));
  }
  std::ranges::sort(keyed, [](const auto& left, const auto& right) {
    if (left.second.isFolder != right.second.isFolder) return left.second.isFolder;
    return std::tie(left.first, left.second.name) < std::tie(right.first, right.second.name);
  });
  node.children.clear();
  for (auto& [key, child] : keyed) node.children.push_back(std::move(child));
}

struct TreeLine {
  std::string lead;  // trunks and branch
  std::string name;  // fit to be shown
  const CoverageNode* node;
};

void collectLines(const CoverageNode& node, const std::string& trunks, std::vector<TreeLine>& lines) {
  for (const CoverageNode& child : node.children) {
    const bool isLast = &child == &node.children.back();
    lines.push_back({trunks + std::string(isLast ? lastBranch : branch),
                     displaySafe(child.name) + (child.isFolder ? "/" : ""), &child});
    if (child.isFolder) collectLines(child, trunks + std::string(isLast ? noTrunk : trunk), lines);
  }
}

/// What ends a line: a file's percentage, a folder's lines; of what can't be executed nothing.
std::string measureOf(const CoverageNode& node) {
  if (!node.isFolder) {
    if (node.file == nullptr) return {};
    return fmt::format("{} {}{}", Color::dim, coveragePercentage(node.file->coverage), Color::reset);
  }
  if (node.lines.executable == 0) return {};
  return fmt::format("  {}{}/{}{}", coverageColor(node.lines.coverage()), node.lines.covered, node.lines.executable,
                     Color::reset);
}

void drawLine(std::string& drawn, const TreeLine& line, int width) {
  const bool isFolder = line.node->isFolder;
  const std::string measure = measureOf(*line.node);
  const int left = width - visibleWidth(line.lead);
  fmt::format_to(std::back_inserter(drawn), "  {}{}{}{}{}{}{}\n", Color::dim, line.lead, Color::reset,
                 isFolder ? Color::boldBlue : std::string_view(),
                 measure.empty() || isFolder ? line.name : padVisible(line.name, left),
                 isFolder ? Color::reset : std::string_view(), measure);
}

}  // namespace

std::string swiftFilesCommand() {
  std::string command = "find . -type d \\(";
  for (const std::string_view folder : skippedFolders) {
    if (folder != skippedFolders.front()) command += " -o";
    command += fmt::format(" -name '{}'", folder);
  }
  return command + " \\) -prune -o -type f -name '*.swift' -print0 2>/dev/null";
}

std::vector<std::string> readSwiftFiles(std::string_view output) {
  std::vector<std::string> files;
  while (!output.empty()) {
    const std::size_t end = std::min(output.find('\0'), output.size());
    std::string_view path = output.substr(0, end);
    output.remove_prefix(std::min(end + 1, output.size()));
    if (path.starts_with("./")) path.remove_prefix(2);
    if (!path.empty()) files.emplace_back(path);
  }
  return files;
}

CoverageNode coverageTree(const std::vector<std::string>& files, std::string_view root,
                          const std::vector<CoverageTarget>& targets) {
  const FileIndex index(targets);
  const auto counts = nameCounts(files);
  std::vector<std::string_view> sorted(files.begin(), files.end());
  std::ranges::sort(sorted);
  CoverageNode tree{.name = std::string(lastPathComponent(root)), .isFolder = true};
  for (const std::string_view path : sorted) {
    const std::string absolute = std::string(root) + "/" + std::string(path);
    addFile(tree, path, index.find(absolute, path, counts.at(lastPathComponent(path)) == 1));
  }
  sortChildren(tree);
  return tree;
}

std::string drawCoverageTree(const CoverageNode& root) {
  std::vector<TreeLine> lines;
  lines.push_back({{}, displaySafe(root.name) + "/", &root});
  collectLines(root, {}, lines);
  int width = 0;
  for (const TreeLine& line : lines) {
    if (!line.node->isFolder) width = std::max(width, visibleWidth(line.lead) + visibleWidth(line.name));
  }
  width = std::min(width, widestColumn);
  std::string drawn;
  for (const TreeLine& line : lines) drawLine(drawn, line, width);
  return drawn;
}

}  // namespace halyard

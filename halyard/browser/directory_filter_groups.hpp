// The groups of file types that a filter offers, and what the ticked ones let through.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "halyard/browser/directory_state.hpp"
#include "halyard/browser/directory_walk.hpp"

namespace halyard {

/// All groups in their order, none ticked.
std::vector<DirectoryFilterGroup> directoryFilterGroups();

class DirectoryFilter {
 public:
  explicit DirectoryFilter(const std::vector<DirectoryFilterGroup>& groups);

  [[nodiscard]] WalkVerdict judge(const char* name, bool isDirectory) const;

 private:
  [[nodiscard]] bool lets(const std::string& extension) const;

  std::set<std::string> selected_;
  std::set<std::string> defined_;
  bool wantsRemaining_ = false;
};

}  // namespace halyard

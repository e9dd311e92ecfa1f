// A deletion that takes several steps, each shown while it runs and closed by a line of its own.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "halyard/cache/cache_locations.hpp"

namespace halyard {

struct CacheStep {
  std::string label;    ///< behind the spinner
  std::string command;  ///< its output and status don't matter
  std::string success;
  std::vector<CachePlace> kept = {};  ///< symbolic links that the command leaves alone

  bool operator==(const CacheStep&) const = default;
};

/// Deletes a place of the table.
CacheStep deletionStep(std::string_view labelKey, CachePlace place, std::string_view successKey);
/// Empties places of the table.
CacheStep contentsStep(std::string_view labelKey, std::span<const CachePlace> places, std::string_view successKey);

/// An abort ends the row. Nothing runs while the home folder isn't usable.
void performCacheSteps(const std::vector<CacheStep>& steps);

/// The warning that a symbolic link was left alone.
void printLinkKept(std::string_view path);

}  // namespace halyard

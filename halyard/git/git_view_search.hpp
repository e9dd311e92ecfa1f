// Search in what the Git view has loaded: branches, commits, authors.
#pragma once

#include <string_view>
#include <vector>

#include "halyard/git/git_records.hpp"

namespace halyard::GitView {

/// Hits of a query, regardless of case: branches first, then for each commit it and its author.
std::vector<GitSearchHit> searchHitsOf(const GitSnapshot& snapshot, std::string_view query);

/// Searches for the typed query; a blank one changes nothing.
void runSearch();
/// Closes the overlay and selects what the hit stands for.
void openSelectedHit();

}  // namespace halyard::GitView

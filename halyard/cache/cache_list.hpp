// How a deletion tells beforehand what goes and what it costs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "halyard/cache/cache_locations.hpp"

namespace halyard {

struct CacheListRow {
  std::string label;
  std::string path;  ///< as it is shown: with a tilde
};

/// The row of a place of the table.
CacheListRow cacheListRow(CachePlace place);

/// The text wrapped at blanks to at most `width` characters a line; a longer word gets a line of its own.
std::vector<std::string> wrappedText(std::string_view text, std::size_t width);

/// The wrapped description, then the places, their labels in one column.
void printCacheList(std::string_view description, const std::vector<CacheListRow>& rows);
/// What is to be done afterwards.
void printAfterNote(std::string_view text);

}  // namespace halyard

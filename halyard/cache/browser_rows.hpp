// How the cache browser's two levels show folders and their sizes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

struct SizedRow {
  std::string label;  ///< fit to be shown
  std::string size;
  std::string section = {};  ///< a head above the row
};

/// "  [01] Label     1.2G": numbered through from 1, the sizes in one column. A long label is shortened.
std::string sizedRows(const std::vector<SizedRow>& rows);
/// "  Total size  4.5G"
std::string totalRow(std::string_view label, std::string_view size);

}  // namespace halyard

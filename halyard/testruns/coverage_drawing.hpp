// How code coverage looks: percentages, the table by target.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "halyard/testruns/coverage_data.hpp"

namespace halyard {

/// " 82.4%": five columns and the sign.
std::string coveragePercentage(double coverage);
/// Green from 80 %, yellow from 50 %, else red.
std::string_view coverageColor(double coverage);

/// A row for each target, with its files beneath it where asked for, and the total over all lines.
std::string drawCoverageTable(const std::vector<CoverageTarget>& targets, bool withFiles);

}  // namespace halyard

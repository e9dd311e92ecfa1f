#pragma once

#include <string>

namespace halyard {

/// A line of a detail panel: a label and its value, each in its colour.
struct MetaLine {
  std::string label;
  std::string labelColor;
  std::string value;
  std::string valueColor;
};

/// Two blanks, the label with ":", a blank, the value.
std::string metaLine(const MetaLine& line);

}  // namespace halyard

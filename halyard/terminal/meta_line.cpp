#include "halyard/terminal/meta_line.hpp"

#include "halyard/terminal/colors.hpp"

namespace halyard {

std::string metaLine(const MetaLine& line) {
  const std::string reset(Color::reset);
  return "  " + line.labelColor + line.label + ":" + reset + " " + line.valueColor + line.value + reset;
}

}  // namespace halyard

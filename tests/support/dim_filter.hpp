#pragma once

#include <string>
#include <string_view>

namespace halyard {

/// The emulator doesn't know the dim attribute. Here its code becomes a font number (which no program of ours uses), so
/// that a cell can tell. Other output passes as it is.
class DimFilter {
 public:
  static constexpr unsigned dimFont = 2;

  std::string filtered(std::string_view output);

 private:
  std::string pending_;  // a control sequence that has not ended
};

}  // namespace halyard

#include "halyard/exec/shell_quote.hpp"

namespace halyard {

std::string shellQuote(std::string_view text) {
  std::string quoted = "'";
  quoted.reserve(text.size() + 2);
  for (const char character : text) {
    if (character == '\'') {
      quoted += R"('\'')";
    } else if (character != '\0') {
      quoted += character;
    }
  }
  return quoted += '\'';
}

}  // namespace halyard

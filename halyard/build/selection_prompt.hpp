// The list prompts of the selection screens: numbered rows, orders below them, one line of answer.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace halyard {

struct ListPrompt {
  std::string_view labelKey;
  std::size_t rowCount = 0;
  bool showsClearHint = false;   ///< names "-" in the prompt itself
  std::string_view orders = {};  ///< characters that are answers besides the numbers
};

struct ListAnswer {
  enum class Kind { left, order, row, invalid };
  Kind kind = Kind::left;
  std::size_t row = 0;  ///< index, from 0
  char order = 0;
};

/// "▶ Scheme [1–3]  - = clear [RETURN]", and what came. An empty line, "x" and the end of input leave.
ListAnswer askList(const ListPrompt& prompt);
/// What a line means at a prompt.
ListAnswer readListAnswer(std::string_view line, const ListPrompt& prompt);

/// "  [01] text", and "◀" behind the current row. The text is drawn as it is.
std::string listRow(std::size_t index, std::string_view text, bool isCurrent);
/// "[x] Back" in the look of the orders below a list.
std::string listOrder(char order, std::string_view label);

/// The message for a number that isn't a row.
void printInvalidSelection();

}  // namespace halyard

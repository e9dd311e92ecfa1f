// Measures and the small printing helpers that make all screens look alike.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "halyard/terminal/terminal_size.hpp"

namespace halyard {

namespace Layout {
inline constexpr int ruleWidth = 79;
inline constexpr int contentWidth = 75;
inline constexpr int narrowWidth = 42;
inline constexpr int frameWidth = 83;  ///< inner width of the full-screen views
}  // namespace Layout

/// State of a view whose first load takes time: whether to draw its body, a loading line or the message.
struct ScreenLoadingState {
  enum class Kind { loading, loaded, failed };
  Kind kind = Kind::loading;
  std::string message;  ///< of a failure
};

/// Grapheme clusters without colour sequences; an emoji counts as one, whatever the terminal makes of it.
int visibleWidth(std::string_view text);
/// Blanks added up to the width; never cuts.
std::string padVisible(std::string_view text, int width);
/// The text without colour, cursor and other CSI sequences that end in a letter.
std::string stripAnsi(std::string_view text);
/// The text cut to `width` visible columns. Sequences are kept and don't count; what follows the cut is dropped but
/// for its sequences, so that a colour ends where it would have ended.
std::string clippedVisible(std::string_view text, int width);
/// `count` times the text, which may be one multi-byte character.
std::string repeated(std::string_view text, int count);

void clearScreen();

void printSuccess(std::string_view text);
void printError(std::string_view text);
void printWarning(std::string_view text);
void printInfo(std::string_view text);
void printStep(std::string_view text);
void printCtrlCHint();

/// The error line and, where given, lines for its context, reason and solution.
void printErrorDetail(std::string_view message, std::optional<std::string_view> context = {},
                      std::optional<std::string_view> reason = {}, std::optional<std::string_view> solution = {});
void printBullet(std::string_view text);
void printTag(std::string_view tag, std::string_view text);
void printKeyValue(std::string_view key, std::string_view value);
void printRule();
void printSection(std::string_view title);

/// Opens the screen of an action: a box with the title and the wrapped description.
void printActionHeader(std::string_view title, std::string_view description, bool clear = true);

/// "│", the text padded to 83 columns, "│". A text of 83 or more columns gets no padding.
std::string boxLine(std::string_view text, std::string_view frameColor);
/// One blank, the label with ":" padded to 8 columns, the value, one blank.
std::string boxLabel(std::string_view label, std::string_view value);

}  // namespace halyard

// Whole lines and pasted text from the keyboard.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "halyard/terminal/keys.hpp"

namespace halyard {

/// One line in cooked mode, without its line end; nothing at the end of input or when an abort interrupts it.
std::optional<std::string> readLine();

/// Asks in one line; an empty answer or the end of input gives the default.
std::string promptWithDefault(std::string_view question, std::string_view defaultValue);

/// The line editor for values that may hold line ends: bracketed paste, Backspace by whole characters; Enter on blank
/// text is ignored. Returns the text trimmed.
std::string readPastedText();

/// The editor's core, free of the terminal: bytes in, echo out. Ends when the source ends.
std::string editPastedText(const std::function<std::optional<std::uint8_t>()>& nextByte,
                           const std::function<void(std::string_view)>& echo);

}  // namespace halyard

#include "halyard/shell/hotkey_mark.hpp"

#include <cctype>

#include <fmt/format.h>

#include "halyard/terminal/colors.hpp"

namespace halyard {

namespace {

// Hotkeys are ASCII letters, and no byte of a longer character looks like one.
std::size_t letterPosition(std::string_view name, char letter) {
  const char lower = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  const char upper = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
  const char both[] = {lower, upper, '\0'};
  return name.find_first_of(both);
}

}  // namespace

bool holdsLetter(std::string_view name, char letter) { return letterPosition(name, letter) != std::string_view::npos; }

std::string markedHotkey(std::string_view name, char letter, std::string_view letterStyle,
                         std::string_view resumeStyle) {
  const std::size_t at = letterPosition(name, letter);
  if (at == std::string_view::npos) return std::string(name);
  return fmt::format("{}{}{}{}{}{}{}{}", name.substr(0, at), letterStyle, Color::underline, name[at], Color::noBold,
                     Color::noUnderline, resumeStyle, name.substr(at + 1));
}

}  // namespace halyard

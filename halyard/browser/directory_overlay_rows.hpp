// Rows that the boxes of search, filter and hotkeys have in common.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// The label and the path, which loses its front to a "…" where the widest box is too narrow.
std::string overlayPathRow(std::string_view path);
/// The label, the typed text, of which the end is seen, and the cursor block.
std::string overlayInputRow(std::string_view label, std::string_view text);
/// Of a running walk: the spinner's picture and the text.
std::vector<std::string> runningWalkRows(int spinnerFrame, std::string_view text);
/// A dim row.
std::string overlayHint(std::string_view text);

inline constexpr int spinnerFrames = 10;

}  // namespace halyard

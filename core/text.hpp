// Text as people count it, and text from outside made fit to be shown.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// White space and line ends removed at both ends (Unicode's White_Space).
std::string_view trimmed(std::string_view text);
/// Blanks and tabs only.
std::string_view trimmedBlanks(std::string_view text);

bool isValidUtf8(std::string_view bytes);
/// Any bytes as UTF-8 text: as they are when valid, else read as ISO Latin-1, byte by byte.
std::string decodedText(std::string_view bytes);

/// Number of grapheme clusters; plain ASCII is counted without the library.
std::size_t graphemeCount(std::string_view text);
/// Byte offset at which the first `count` clusters end; the whole length where there are fewer.
std::size_t graphemePrefix(std::string_view text, std::size_t count);
/// Byte offset at which the last cluster begins; 0 for an empty text.
std::size_t lastGraphemeStart(std::string_view text);
/// The clusters of the text, each as a view into it.
std::vector<std::string_view> graphemes(std::string_view text);

/// At most `count` clusters: a longer text keeps its first `count - 1` and ends in "…".
std::string shortened(std::string_view text, std::size_t count);
/// The same from the front: a longer text keeps its last `count - 1` behind "…".
std::string shortenedFront(std::string_view text, std::size_t count);

/// Case folded for comparing regardless of case.
std::string caseFolded(std::string_view text);
/// Lower and upper case by the root locale.
std::string lowercased(std::string_view text);
std::string uppercased(std::string_view text);

/// Text from outside for a frame of ours: each control character (C0, DEL, C1, and the format characters that turn
/// the writing direction or break lines) shows as a visible stand-in ("␛", "␊", … or "�"); invalid UTF-8 as "�".
/// Tabs become one blank. The result holds no byte that a terminal could obey.
std::string displaySafe(std::string_view text);

bool replaceAll(std::string& text, std::string_view what, std::string_view with);
std::vector<std::string_view> splitLines(std::string_view text);

}  // namespace halyard

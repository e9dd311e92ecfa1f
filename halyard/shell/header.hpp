// The box on top of every full-screen frame: what is selected, so that the user sees what an action will use.
#pragma once

#include <optional>
#include <string>

namespace halyard {

/// What the header shows beyond the selection. The versions are asked for once per run, the branch after each action.
struct HeaderFacts {
  std::string xcodeVersion;
  std::string swiftVersion;
  std::string branch;
};

/// What a view adds to the compact header. A toast stands in place of the links, the clipboard in place of the credit.
struct HeaderNotice {
  std::string toast;
  std::string toastDetail;
  std::string clipboard;
};

/// Number of lines with and without the selection.
inline constexpr int headerLines = 14;
inline constexpr int compactHeaderLines = 4;

/// Draws the header, after the clear sequence where wanted. With a split column (from 0) the lower border hands over to
/// two panes. `compact` leaves out everything but the title lines.
void drawHeader(bool clear, std::optional<int> splitColumn, bool compact = false, const HeaderNotice& notice = {});

/// The lines alone, from what is known.
std::string headerFrame(const HeaderFacts& facts, std::optional<int> splitColumn, bool compact,
                        const HeaderNotice& notice = {});

/// The branch is read again on the next frame.
void resetHeaderCache();
/// All that was read is forgotten: a fresh run for a test.
void forgetHeaderFacts();

}  // namespace halyard

// The picture of the Git view: three lines of summary, the two panes, the keys. It has its size whatever the
// terminal's.
#pragma once

#include <string>
#include <string_view>

#include "halyard/git/git_view_state.hpp"

namespace halyard::GitView {

/// The lines below the header. `home` is shown as "~". Expects a settled state (see settleForDrawing).
std::string drawnFrame(const GitViewState& view, std::string_view home);

/// Whether a terminal draws anything here wider than it is counted.
bool holdsWideCharacters(std::string_view frame);

}  // namespace halyard::GitView

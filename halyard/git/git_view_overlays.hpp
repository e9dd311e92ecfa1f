// The boxes over the Git view, one for each mode but the normal one.
#pragma once

#include <string>

#include "halyard/git/git_view_state.hpp"

namespace halyard::GitView {

/// The box of the state's mode, placed by cursor addressing; empty where there is none.
std::string drawnOverlay(const GitViewState& view);

}  // namespace halyard::GitView

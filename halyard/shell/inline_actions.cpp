#include "halyard/shell/inline_actions.hpp"

#include "halyard/build/selection.hpp"

namespace halyard {

void selectSchemeFromMenu() { selectScheme(true, false); }

void selectTestSchemeFromMenu() { selectTestScheme(true, false); }

}  // namespace halyard

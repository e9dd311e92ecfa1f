// The selections that the menu's letters open: with their header, without its explanation.
#pragma once

namespace halyard {

void selectSchemeFromMenu();
void selectTestSchemeFromMenu();

}  // namespace halyard

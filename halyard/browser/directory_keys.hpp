// Keys of the modes that show the list alone or ask about it. The results of a search or a filter hand on what they
// don't know better themselves.
#pragma once

#include "halyard/terminal/keys.hpp"

namespace halyard {

void handleNormalDirectoryKey(const RawKey& key);
void handleDirectoryHelpKey(const RawKey& key);
void handleDeleteHotkeysKey(const RawKey& key);

}  // namespace halyard

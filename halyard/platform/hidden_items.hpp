#pragma once

namespace halyard {

/// Whether the system's own mark, beside a name that begins with a dot, hides this item. The name is relative to the
/// folder of the descriptor, or absolute.
bool isMarkedHidden(int folder, const char* name);

}  // namespace halyard

#pragma once

namespace halyard {

/// To be asked before anything below the home folder is deleted: false, and an error that says why, where a tilde would
/// lead somewhere else.
bool requireUsableHome();

}  // namespace halyard

#pragma once

namespace halyard {

/// Menu action: chooses a file and opens it with the app that the system has for it.
void openFileWithApp();

}  // namespace halyard

// Before anything else: the tools without which nothing works.
#pragma once

#include <string>

namespace halyard {

/// Returns if all required tools exist. Otherwise it tells which are missing and how to get them, waits for Enter and
/// ends the process with status 1. `mock`: every tool counts as missing, and none is looked up.
void runPreflight(bool mock);

/// Whether a tool of this name is on the path. The name is a plain word.
bool toolExists(const std::string& name);

}  // namespace halyard

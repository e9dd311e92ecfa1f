// Where test runs leave their result bundles.
#pragma once

#include <string>

namespace halyard {

/// The search for the newest bundle of the project's test runs: their names end in the time, so the last one in sort
/// order.
std::string newestResultBundleCommand();
/// Its path; empty where no run has left one.
std::string newestBundle();

}  // namespace halyard

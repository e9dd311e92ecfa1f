// The menu actions that show the code coverage of the last test run.
#pragma once

namespace halyard {

/// A table by target, with its files on request.
void showCoverageReport();
/// The Swift files of the working directory as a tree.
void showCoverageTree();

}  // namespace halyard

// The project's schemes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// From `xcodebuild -list -json`; nothing where it holds no list of schemes.
std::optional<std::vector<std::string>> readSchemeJson(std::string_view output);
/// From the plain `xcodebuild -list`: the lines below "Schemes:" up to an empty one.
std::vector<std::string> readSchemeText(std::string_view output);
/// In the tool's order; empty without a project. Without a spinner.
std::vector<std::string> listSchemes();

/// The folder that scheme files and test plans of the project are searched in: the one that holds the project.
std::string projectFolder();
/// Path of a scheme's file; empty where there is none.
std::string schemeFilePath(std::string_view scheme);

}  // namespace halyard

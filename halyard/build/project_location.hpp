// Where the project is, and the folder of its own that all builds of this program use.
#pragma once

#include <string>

namespace halyard {

/// Finds the project: the chosen file, else the first workspace, else the first project below the current directory.
/// A chosen file that is gone is forgotten.
void detectProject();
/// "-workspace", "-project", or "" without a project.
const std::string& projectFlag();
const std::string& projectPath();

/// "CapstanLightBuild", with "-" and the project's base name where there is a project.
std::string privateDerivedDataName();
std::string privateDerivedDataPath();
/// The same as messages show it.
std::string privateDerivedDataDisplay();

}  // namespace halyard

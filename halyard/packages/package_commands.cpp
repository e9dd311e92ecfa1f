#include "halyard/packages/package_commands.hpp"

#include "core/app_dependencies.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace PackageCommand {

std::string showPackageResolved(std::string_view file) {
  const std::string quoted = shellQuote(file);
  return "python3 -m json.tool " + quoted + " 2>/dev/null || cat " + quoted;
}

std::string inFolder(std::string_view folder, std::string_view command) {
  return "(cd " + shellQuote(folder) + " && " + std::string(command) + ")";
}

}  // namespace PackageCommand

bool packageToolExists(std::string_view tool) { return !run("which " + std::string(tool) + " 2>/dev/null").empty(); }

}  // namespace halyard

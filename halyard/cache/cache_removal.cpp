#include "halyard/cache/cache_removal.hpp"

#include "core/app_dependencies.hpp"
#include "halyard/cache/cache_locations.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/platform/home_directory.hpp"

namespace halyard {

std::string pathWord(std::string_view path) {
  // What find reads as the begin of its expression; the rest reads a dash only.
  const bool isTakenForMore = path.find_first_of("-(),!") == 0;
  return shellQuote(isTakenForMore ? "./" + std::string(path) : std::string(path));
}

void removePath(std::string_view word) {
  if (homeIsUsable()) run("rm -rf " + std::string(word));
}

void clearContents(std::string_view path) {
  if (!homeIsUsable()) return;
  run("find " + pathWord(expandedTilde(path)) + " -maxdepth 1 -mindepth 1 -exec rm -rf {} + 2>/dev/null");
}

void runDeletion(const std::string& label, const std::string& command) {
  if (homeIsUsable()) runQuiet(label, command);
}

}  // namespace halyard

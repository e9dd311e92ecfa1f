#include "halyard/exec/shell_child.hpp"

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include <sys/wait.h>

#include "halyard/platform/child_start.hpp"
#include "halyard/platform/home_directory.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

namespace {

bool currentDirectoryExists() {
  std::error_code error;
  const std::filesystem::path current = std::filesystem::current_path(error);
  return !error || error != std::errc::no_such_file_or_directory;
}

}  // namespace

int startShell(const std::string& command, int output, pid_t& child) {
  // An argument ends at a NUL byte; half a command is not what was asked for.
  if (command.find('\0') != std::string::npos) return EINVAL;
  std::string shell = "/bin/bash";
  std::string option = "-c";
  std::string text = command;
  const std::array<char*, 4> arguments = {shell.data(), option.data(), text.data(), nullptr};
  const std::string home = currentDirectoryExists() ? std::string() : homeDirectory();
  return startChild(
      {.arguments = arguments.data(), .directory = home.empty() ? nullptr : home.c_str(), .output = output}, child);
}

std::int32_t reap(pid_t child) noexcept {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return 0;
  }
  return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
}

void printStartFailure(int error) {
  printError("Subprozess konnte nicht gestartet werden: " + std::generic_category().message(error));
}

}  // namespace halyard

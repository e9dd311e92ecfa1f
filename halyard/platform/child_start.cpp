#include "halyard/platform/child_start.hpp"

#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include "halyard/platform/child_inheritance.hpp"

extern char** environ;

namespace halyard {

namespace {

int addActions(const ChildStart& start, posix_spawn_file_actions_t& actions, short& flags) noexcept {
  int error = 0;
  if (start.directory != nullptr) error = posix_spawn_file_actions_addchdir_np(&actions, start.directory);
  if (start.output >= 0) {
    if (error == 0) error = posix_spawn_file_actions_adddup2(&actions, start.output, STDOUT_FILENO);
    if (error == 0) error = posix_spawn_file_actions_adddup2(&actions, start.output, STDERR_FILENO);
  }
  return error == 0 ? inheritStandardStreamsOnly(actions, flags) : error;
}

int setAttributes(posix_spawnattr_t& attributes, short flags) noexcept {
  const sigset_t all = everySignal();
  sigset_t none;
  sigemptyset(&none);
  int error = posix_spawnattr_setsigdefault(&attributes, &all);
  if (error == 0) error = posix_spawnattr_setsigmask(&attributes, &none);
  flags = static_cast<short>(flags | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  return error == 0 ? posix_spawnattr_setflags(&attributes, flags) : error;
}

}  // namespace

int startChild(const ChildStart& start, pid_t& child) noexcept {
  posix_spawn_file_actions_t actions;
  int error = posix_spawn_file_actions_init(&actions);
  if (error != 0) return error;
  posix_spawnattr_t attributes;
  error = posix_spawnattr_init(&attributes);
  if (error == 0) {
    short flags = 0;
    error = addActions(start, actions, flags);
    if (error == 0) error = setAttributes(attributes, flags);
    if (error == 0) error = posix_spawn(&child, start.arguments[0], &actions, &attributes, start.arguments, environ);
    posix_spawnattr_destroy(&attributes);
  }
  posix_spawn_file_actions_destroy(&actions);
  return error;
}

}  // namespace halyard

#include "halyard/platform/processes.hpp"

#include <cerrno>
#include <cstddef>

#include <signal.h>
#include <unistd.h>

#include "halyard/platform/process_table.hpp"

namespace halyard {

namespace {

constexpr int deepestFamily = 256;  // a bound for the walk up: parents can change while it is under way

/// Found first and signalled afterwards: a signal that ends a parent would hide its children from the walk.
struct Found {
  ProcessRecord self;
  unsigned long long oldest = 0;
  bool withOrphans = false;
  std::size_t count = 0;
  pid_t ids[1024] = {};

  [[nodiscard]] bool isFull() const { return count == sizeof(ids) / sizeof(ids[0]); }
};

bool isAncestor(pid_t ancestor, ProcessRecord record) noexcept {
  for (int step = 0; step < deepestFamily; ++step) {
    if (record.parent == ancestor) return true;
    if (record.parent <= 1 || !readProcess(record.parent, record)) return false;
  }
  return false;
}

/// An orphan's new parent is the system's first process, or a stand-in for it from outside the terminal's session. A
/// parent within the session is a living one of its own: a script's shell, say, that started us as well. So is the
/// first process where it shares our group.
bool isOrphanOfGroup(const ProcessRecord& record, const ProcessRecord& self) noexcept {
  if (record.group != self.group || isAncestor(record.id, self)) return false;
  ProcessRecord parent;
  if (!readProcess(record.parent, parent)) return record.parent <= 1;
  if (parent.id == 1) return parent.group != self.group;
  return parent.session != self.session;
}

void keepWanted(pid_t process, void* context) {
  Found& found = *static_cast<Found*>(context);
  ProcessRecord record;
  if (process <= 1 || process == found.self.id || found.isFull() || !readProcess(process, record)) return;
  if (record.ended || record.startMark < found.oldest) return;
  if (isAncestor(found.self.id, record) || (found.withOrphans && isOrphanOfGroup(record, found.self))) {
    found.ids[found.count++] = process;
  }
}

std::size_t signalFound(Found& found, int signal) noexcept {
  const int saved = errno;
  found.self.id = getpid();
  if (readProcess(found.self.id, found.self)) eachProcess(keepWanted, &found);
  for (std::size_t i = 0; i < found.count; ++i) kill(found.ids[i], signal);
  errno = saved;
  return found.count;
}

}  // namespace

void signalDescendants(int signal) noexcept {
  Found found;
  signalFound(found, signal);
}

std::size_t signalRunLeftovers(unsigned long long childStart, int signal) noexcept {
  if (childStart == 0) return 0;
  Found found;
  found.oldest = childStart;
  found.withOrphans = true;
  return signalFound(found, signal);
}

unsigned long long processStartMark(pid_t process) noexcept {
  ProcessRecord record;
  return readProcess(process, record) ? record.startMark : 0;
}

}  // namespace halyard

// libproc's calls used here are thin wrappers of one system call each and don't allocate.
#include <libproc.h>
#include <sys/proc.h>
#include <sys/proc_info.h>
#include <unistd.h>

#include "halyard/platform/process_table.hpp"

namespace halyard {

bool readProcess(pid_t process, ProcessRecord& record) noexcept {
  proc_bsdinfo info{};
  constexpr int alsoEnded = 1;  // the argument that finds a process which waits to be reaped
  const int size = proc_pidinfo(process, PROC_PIDTBSDINFO, alsoEnded, &info, static_cast<int>(sizeof info));
  if (size != static_cast<int>(sizeof info)) return false;
  record.id = process;
  record.parent = static_cast<pid_t>(info.pbi_ppid);
  record.group = static_cast<pid_t>(info.pbi_pgid);
  record.session = getsid(process);
  record.ended = info.pbi_status == SZOMB;
  record.startMark = info.pbi_start_tvsec * 1'000'000ULL + info.pbi_start_tvusec;
  return true;
}

void eachProcess(void (*visit)(pid_t process, void* context), void* context) noexcept {
  pid_t ids[8192];
  const int count = proc_listallpids(ids, static_cast<int>(sizeof ids));
  for (int i = 0; i < count; ++i) visit(ids[i], context);
}

}  // namespace halyard

#include <cstdint>

#include <sys/mman.h>
#include <unistd.h>

#include "halyard/platform/memory_hints.hpp"

namespace halyard {

namespace {

/// Only pages that lie in the memory whole.
void advise(void* memory, std::size_t size, int advice) noexcept {
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const std::uintptr_t skipped = (page - reinterpret_cast<std::uintptr_t>(memory) % page) % page;
  if (size < skipped + page) return;
  madvise(static_cast<char*>(memory) + skipped, (size - skipped) / page * page, advice);
}

}  // namespace

void preferLargePages(void* memory, std::size_t size) noexcept { advise(memory, size, MADV_HUGEPAGE); }

void discardContents(void* memory, std::size_t size) noexcept { advise(memory, size, MADV_DONTNEED); }

}  // namespace halyard

#include <cstdint>

#include <sys/mman.h>
#include <unistd.h>

#include "halyard/platform/memory_hints.hpp"

namespace halyard {

void preferLargePages(void*, std::size_t) noexcept {}

void discardContents(void* memory, std::size_t size) noexcept {
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const std::uintptr_t skipped = (page - reinterpret_cast<std::uintptr_t>(memory) % page) % page;
  if (size < skipped + page) return;
  madvise(static_cast<char*>(memory) + skipped, (size - skipped) / page * page, MADV_FREE);
}

}  // namespace halyard

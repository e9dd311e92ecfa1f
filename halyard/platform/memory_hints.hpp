// Hints to the system about memory that we hold. They may change nothing but what is resident.
#pragma once

#include <cstddef>

namespace halyard {

/// This memory will be filled from its beginning on: large pages are welcome. Any address will do.
void preferLargePages(void* memory, std::size_t size) noexcept;

/// What stands in this memory is of no more use. It stays allocated and holds anything afterwards.
void discardContents(void* memory, std::size_t size) noexcept;

}  // namespace halyard

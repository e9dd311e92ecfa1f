// Any bytes read as pins without a fault, and each pin has an identity.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "halyard/packages/package_readers.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace halyard;
  for (const SPMPackageInfo& package : readPackageResolved({reinterpret_cast<const char*>(data), size})) {
    if (package.identity.empty()) std::abort();
  }
  return 0;
}

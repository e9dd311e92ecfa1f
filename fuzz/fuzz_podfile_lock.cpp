// Any bytes read as pods without a fault; a name is one line of text and never holds its version.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "halyard/packages/package_readers.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace halyard;
  for (const PodInfo& pod : readPodfileLock({reinterpret_cast<const char*>(data), size})) {
    if (pod.name.empty() || pod.name.find_first_of("(\n") != std::string::npos) std::abort();
    if (pod.version.find_first_of(")\n") != std::string::npos) std::abort();
  }
  return 0;
}

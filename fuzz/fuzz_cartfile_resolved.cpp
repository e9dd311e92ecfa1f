// Any bytes read as frameworks without a fault; name and version are words without quotes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "halyard/packages/package_readers.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace halyard;
  for (const CarthageFWInfo& framework : readCartfileResolved({reinterpret_cast<const char*>(data), size})) {
    for (const std::string& word : {framework.name, framework.version}) {
      if (word.empty() || word.find_first_of("\" \t\n") != std::string::npos) std::abort();
    }
    if (framework.name.find('/') != std::string::npos) std::abort();
  }
  return 0;
}

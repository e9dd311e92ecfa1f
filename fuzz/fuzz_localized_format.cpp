// Any bytes as a format, with arguments of each kind: no crash, and a result in proportion to what went in.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>

#include "core/string_catalog.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace halyard;
  const std::string_view format(reinterpret_cast<const char*>(data), size);
  const FormatArgument arguments[] = {std::string("text"), std::int64_t{-7}, 2.5, 1e300, std::int64_t{INT64_MAX}};
  for (std::size_t count = 0; count <= std::size(arguments); ++count) {
    const std::string result = formatted(format, arguments, count);
    // Two bytes of a format are the shortest placeholder; a field is bounded, and so is the longest number.
    if (result.size() > format.size() + (format.size() / 2 + 1) * 2048) std::abort();
    if (format.find('%') == std::string_view::npos && result != format) std::abort();
  }
  return 0;
}

// Any bytes as a catalog: no crash, a document that is refused changes nothing, and a look-up never fails.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/string_catalog.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace halyard;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  if (catalogSize() == 0) {
    if (!readStringCatalog(R"({"strings":{"k":{"localizations":{"en":{"stringUnit":{"value":"v"}}}}}})")) std::abort();
  }
  const std::size_t before = catalogSize();
  const bool taken = readStringCatalog(input);
  if (!taken && catalogSize() != before) std::abort();
  for (const char* language : {"en", "de", "fr"}) {
    setCurrentLanguage(language);
    // The first word of the input may well be one of its keys, and all of it is a key as good as any.
    for (const std::string_view key : {input.substr(0, input.find(' ')), input, std::string_view("k")}) {
      if (!catalogHasKey(key) && localized(key).size() > 1U << 30U) std::abort();
      static_cast<void>(localizedFormat(key, "argument", 7));
    }
  }
  unloadStringCatalog();
  if (localized(input) != input) std::abort();
  return 0;
}

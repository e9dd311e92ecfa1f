// Any bytes as saved preferences: no crash, and what is taken over comes back the same from a second reading.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <nlohmann/json.hpp>

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "halyard/shell/preferences.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace halyard;
  const auto values = readPreferences({reinterpret_cast<const char*>(data), size});
  if (!values) return 0;
  AppContext::shared().reset();
  setCurrentLanguage("en");
  applyPreferences(*values);
  if (!(autoBuildIntervalHours() > 0)) std::abort();
  const PreferenceValues saved = collectPreferences();
  const auto again = readPreferences(nlohmann::json(saved).dump());
  if (!again || *again != saved) std::abort();
  return 0;
}

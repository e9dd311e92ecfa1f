// Every text that the program shows, by key, in two languages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

namespace halyard {

/// Fills the catalog from the copy inside the program, else from a Localizable.xcstrings beside or above the
/// executable or in the working directory; prints why and ends the process where there is none. A second call does
/// nothing. `executablePath` is the first word of the command line.
void loadStringCatalog(std::string_view executablePath);
/// The same with another embedded copy: base64 text, or empty for none.
void loadStringCatalog(std::string_view embedded, std::string_view executablePath);
/// Where the document is looked for without an embedded copy, in this order.
std::vector<std::string> catalogSearchPaths(std::string_view executablePath);
/// Back to the state before the first load; texts handed out before are gone.
void unloadStringCatalog();

/// The text of a key in the current language, else in English, else the key as it was given. Blanks at the ends, double
/// blanks inside and escaped line ends don't count. The view lives as long as the catalog, or as the key.
std::string_view localized(std::string_view key);

/// One value for a placeholder.
using FormatArgument = std::variant<std::string, std::int64_t, double>;

/// The text used as a format: %@, %d, %lld, %f, %.2f, %s, %% and numbered forms like %1$@. A placeholder without an
/// argument yields nothing; one that doesn't fit its argument's kind shows the argument in its own plain form.
std::string formatted(std::string_view format, const FormatArgument* arguments, std::size_t count);

template <typename... Arguments>
std::string localizedFormat(std::string_view key, Arguments&&... arguments);

std::string_view currentLanguage();
void setCurrentLanguage(std::string_view code);
/// "en" becomes "de", anything else "en". The preferences are kept after the change.
void toggleLanguage();
std::string languageName(std::string_view code);

/// Reads a document in the .xcstrings format into the catalog, replacing what was there. False, and nothing changed,
/// where it isn't JSON or its top level isn't an object. Entries that lack a level are skipped.
bool readStringCatalog(std::string_view json);
/// Keys of the catalog; for checks.
std::size_t catalogSize();
bool catalogHasKey(std::string_view key);

namespace detail {

template <typename Value>
FormatArgument formatArgument(const Value& value) {
  if constexpr (std::is_floating_point_v<Value>) {
    return static_cast<double>(value);
  } else if constexpr (std::is_integral_v<Value>) {
    return static_cast<std::int64_t>(value);
  } else {
    return std::string(value);
  }
}

}  // namespace detail

template <typename... Arguments>
std::string localizedFormat(std::string_view key, Arguments&&... arguments) {
  if constexpr (sizeof...(Arguments) == 0) {
    return formatted(localized(key), nullptr, 0);
  } else {
    const FormatArgument list[] = {detail::formatArgument(arguments)...};
    return formatted(localized(key), list, sizeof...(Arguments));
  }
}

}  // namespace halyard

#include "halyard/platform/utf8_locale.hpp"

#include <initializer_list>

#include <locale.h>  // NOLINT(modernize-deprecated-headers): newlocale(3) and uselocale(3) are POSIX
#if __has_include(<xlocale.h>)
#include <xlocale.h>  // where a Mac declares them
#endif

namespace halyard {

namespace {

/// Made once; null where the system has none.
locale_t utf8Locale() {
  static const locale_t locale = [] {
    for (const char* name : {"C.UTF-8", "UTF-8", "en_US.UTF-8"}) {
      if (const locale_t made = newlocale(LC_CTYPE_MASK, name, nullptr)) return made;
    }
    return locale_t{};
  }();
  return locale;
}

}  // namespace

Utf8LocaleScope::Utf8LocaleScope() : before_(utf8Locale() != locale_t{} ? uselocale(utf8Locale()) : locale_t{}) {}

Utf8LocaleScope::~Utf8LocaleScope() {
  if (before_ != nullptr) uselocale(static_cast<locale_t>(before_));
}

}  // namespace halyard

#include "halyard/platform/core_foundation.hpp"
#include "halyard/platform/user_defaults_source.hpp"

namespace halyard {

namespace {

std::optional<std::string> utf8Text(CFStringRef text) {
  const CFIndex room = CFStringGetMaximumSizeForEncoding(CFStringGetLength(text), kCFStringEncodingUTF8) + 1;
  std::string bytes(static_cast<std::size_t>(room), '\0');
  if (!CFStringGetCString(text, bytes.data(), room, kCFStringEncodingUTF8)) return std::nullopt;
  bytes.resize(bytes.find('\0'));
  return bytes;
}

}  // namespace

std::optional<std::string> systemGlobalUserDefault(std::string_view key) {
  const Owned<CFStringRef> name = coreFoundationText(key);
  if (name == nullptr) return std::nullopt;
  // The program lives long and the user may change the look meanwhile: without this the first answer would stay.
  CFPreferencesSynchronize(kCFPreferencesAnyApplication, kCFPreferencesCurrentUser, kCFPreferencesAnyHost);
  const Owned<CFPropertyListRef> value(CFPreferencesCopyValue(name.get(), kCFPreferencesAnyApplication,
                                                              kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
  if (value == nullptr || CFGetTypeID(value.get()) != CFStringGetTypeID()) return std::nullopt;
  return utf8Text(static_cast<CFStringRef>(value.get()));
}

}  // namespace halyard

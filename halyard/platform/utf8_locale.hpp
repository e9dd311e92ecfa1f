#pragma once

namespace halyard {

/// As long as it lives, the C library takes this thread's bytes for UTF-8, whatever the user's locale. Without effect
/// where the system has no such locale.
class Utf8LocaleScope {
 public:
  Utf8LocaleScope();
  ~Utf8LocaleScope();
  Utf8LocaleScope(const Utf8LocaleScope&) = delete;
  Utf8LocaleScope& operator=(const Utf8LocaleScope&) = delete;

 private:
  void* before_;  // a locale_t; null: nothing was changed
};

}  // namespace halyard

#include "core/app_context.hpp"

namespace halyard {

namespace {

void (*&preferencesSaver())() {
  static void (*save)() = nullptr;
  return save;
}

}  // namespace

void installPreferencesSaver(void (*save)()) { preferencesSaver() = save; }

void keepPreferences() {
  if (preferencesSaver() != nullptr) preferencesSaver()();
}

AppContext& AppContext::shared() {
  static AppContext context;
  return context;
}

void AppContext::reset() {
#define HALYARD_FIELD(Type, name, Name, ...) \
  {                                          \
    Type fresh = __VA_ARGS__;                \
    name##_ = std::move(fresh);              \
  }
  HALYARD_APP_CONTEXT_FIELDS(HALYARD_FIELD)
#undef HALYARD_FIELD
  operationAborted_ = false;
}

}  // namespace halyard

#include "tests/support/context_reset.hpp"

#include <system_error>

#include "core/string_catalog.hpp"
#include "halyard/git/git_view_state.hpp"
#include "halyard/terminal/dialogs.hpp"

namespace halyard {

namespace {

void resetEverything() {
  AppContext::shared().reset();
  loadStringCatalog({});
  setCurrentLanguage("en");
  setLaunchedByHotkey(false);
  setSuppressBackPrompt(false);
  GitView::state() = {};
}

}  // namespace

ContextReset::ContextReset()
    : dependencies_({&runner, &files, &AppContext::shared()}), workingDirectory_(std::filesystem::current_path()) {
  resetEverything();
}

ContextReset::~ContextReset() {
  resetEverything();
  std::error_code ignored;
  std::filesystem::current_path(workingDirectory_, ignored);
}

}  // namespace halyard

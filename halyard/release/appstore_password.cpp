#include "halyard/release/appstore_password.hpp"

#include "core/string_catalog.hpp"
#include "halyard/terminal/dialogs.hpp"

namespace halyard {

void savePassword(std::string_view value) {
  const SecretStatus status = saveSecret(appStorePasswordItem, value);
  if (status == secretStored) return;
  printResult(localizedFormat("appstore_keychain_save_failed_var", std::to_string(status)), ResultStyle::failure);
}

std::string readPassword() { return readSecret(appStorePasswordItem); }

bool hasPassword() { return !readPassword().empty(); }

void deletePassword() { savePassword(""); }

void saveAccountField(std::string_view value) { saveSecret(accountFieldItem, value); }

std::string readAccountField() { return readSecret(accountFieldItem); }

}  // namespace halyard

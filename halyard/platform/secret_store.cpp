#include "halyard/platform/secret_store.hpp"

#include <utility>

#include "core/text.hpp"

namespace halyard {

namespace {

SecretStoring* replacement = nullptr;

SecretStoring& currentStore() { return replacement != nullptr ? *replacement : systemSecretStore(); }

}  // namespace

SecretStatus saveSecret(const SecretName& item, std::string_view value) {
  SecretStoring& store = currentStore();
  store.remove(item);
  return value.empty() ? secretStored : store.add(item, value);
}

std::string readSecret(const SecretName& item) {
  std::optional<std::string> value = currentStore().find(item);
  return value && isValidUtf8(*value) ? *std::move(value) : std::string();
}

SecretStoreGuard::SecretStoreGuard(SecretStoring& store) : outer_(std::exchange(replacement, &store)) {}

SecretStoreGuard::~SecretStoreGuard() { replacement = outer_; }

}  // namespace halyard

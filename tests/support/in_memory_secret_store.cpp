#include "tests/support/in_memory_secret_store.hpp"

namespace halyard {

namespace {

constexpr SecretStatus alreadyThere = -25299;

std::pair<std::string, std::string> keyOf(const SecretName& item) {
  return {std::string(item.service), std::string(item.account)};
}

}  // namespace

SecretStatus InMemorySecretStore::add(const SecretName& item, std::string_view value) {
  if (failure_ != secretStored) return failure_;
  return values_.emplace(keyOf(item), value).second ? secretStored : alreadyThere;
}

std::optional<std::string> InMemorySecretStore::find(const SecretName& item) {
  const auto found = values_.find(keyOf(item));
  if (failure_ != secretStored || found == values_.end()) return std::nullopt;
  return found->second;
}

SecretStatus InMemorySecretStore::remove(const SecretName& item) {
  if (failure_ == secretStored) values_.erase(keyOf(item));
  return failure_;
}

}  // namespace halyard

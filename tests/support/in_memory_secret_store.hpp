#pragma once

#include <map>
#include <string>
#include <utility>

#include "halyard/platform/secret_store.hpp"

namespace halyard {

/// A keychain in memory, the current one as long as it lives.
class InMemorySecretStore final : public SecretStoring {
 public:
  SecretStatus add(const SecretName& item, std::string_view value) override;
  std::optional<std::string> find(const SecretName& item) override;
  SecretStatus remove(const SecretName& item) override;

  /// From here on adding gives this status, nothing is found, and nothing is removed.
  void fail(SecretStatus status) { failure_ = status; }
  /// From here on it works again.
  void recover() { failure_ = secretStored; }
  [[nodiscard]] std::size_t size() const { return values_.size(); }

 private:
  std::map<std::pair<std::string, std::string>, std::string> values_;  // service, account -> value
  SecretStatus failure_ = secretStored;
  SecretStoreGuard guard_{*this};
};

}  // namespace halyard

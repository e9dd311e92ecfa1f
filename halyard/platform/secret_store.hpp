// Passwords of the user, in the keychain of the system: never in a file of the program's own.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace halyard {

/// Names one secret: a generic password item.
struct SecretName {
  std::string_view service;
  std::string_view account;
};

/// 0 is success, everything else the number of a failure as the Keychain gives it. Other systems use the same numbers
/// for what is theirs as well.
using SecretStatus = std::int32_t;
inline constexpr SecretStatus secretStored = 0;
inline constexpr SecretStatus secretStoreFailed = -36;         // it answered with an error
inline constexpr SecretStatus secretStoreMissing = -25291;     // none can be reached
inline constexpr SecretStatus secretStoreNotAllowed = -25308;  // it is locked, and asking for its password isn't ours

/// What a store must be able to do. Values are any bytes, not empty. No operation waits for a person.
class SecretStoring {
 public:
  SecretStoring() = default;
  SecretStoring(const SecretStoring&) = delete;
  SecretStoring& operator=(const SecretStoring&) = delete;
  virtual ~SecretStoring() = default;

  /// Adds the item, which isn't there.
  virtual SecretStatus add(const SecretName& item, std::string_view value) = 0;
  /// Nothing where there is none, and on every failure.
  virtual std::optional<std::string> find(const SecretName& item) = 0;
  /// That there is none is a success.
  virtual SecretStatus remove(const SecretName& item) = 0;
};

/// The user's own; one source per system.
SecretStoring& systemSecretStore();

/// Deletes the item and then, unless the value is empty, adds it anew. The status is that of the adding; an empty value
/// always gives success.
SecretStatus saveSecret(const SecretName& item, std::string_view value);
/// The item's value; empty where there is none, where it isn't UTF-8, and on every failure.
std::string readSecret(const SecretName& item);

/// Uses another store than the system's until destroyed: for tests. One within another hides the outer one.
class SecretStoreGuard {
 public:
  explicit SecretStoreGuard(SecretStoring& store);
  ~SecretStoreGuard();
  SecretStoreGuard(const SecretStoreGuard&) = delete;
  SecretStoreGuard& operator=(const SecretStoreGuard&) = delete;

 private:
  SecretStoring* outer_;
};

}  // namespace halyard

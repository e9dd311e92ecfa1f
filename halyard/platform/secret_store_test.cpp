#include "halyard/platform/secret_store.hpp"

#include <gtest/gtest.h>

#include "tests/support/in_memory_secret_store.hpp"
#include "tests/support/secret_store_contract.hpp"

namespace halyard {
namespace {

INSTANTIATE_TYPED_TEST_SUITE_P(InMemory, SecretStoreContract, InMemorySecretStore);

constexpr SecretName item = {"service", "account"};

TEST(SecretStore, AFailureIsToldByItsStatusAndReadsAsEmpty) {
  InMemorySecretStore store;
  saveSecret(item, "old");
  store.fail(secretStoreNotAllowed);
  EXPECT_EQ(saveSecret(item, "new"), secretStoreNotAllowed);
  EXPECT_EQ(readSecret(item), "");
  store.recover();
  EXPECT_EQ(readSecret(item), "old");
}

TEST(SecretStore, DeletingTellsNoFailure) {
  InMemorySecretStore store;
  store.fail(secretStoreMissing);
  EXPECT_EQ(saveSecret(item, ""), secretStored);
}

TEST(SecretStore, TheInnerGuardHidesTheOuterOneUntilItsEnd) {
  InMemorySecretStore outer;
  saveSecret(item, "outer");
  {
    const InMemorySecretStore inner;
    EXPECT_EQ(readSecret(item), "");
    saveSecret(item, "inner");
  }
  EXPECT_EQ(readSecret(item), "outer");
}

/// Adds beside what is there, as a keychain would refuse to.
class StubbornStore final : public SecretStoring {
 public:
  SecretStatus add(const SecretName&, std::string_view) override {
    calls += "add ";
    return secretStored;
  }
  std::optional<std::string> find(const SecretName&) override { return std::nullopt; }
  SecretStatus remove(const SecretName&) override {
    calls += "remove ";
    return secretStoreFailed;
  }

  std::string calls;
};

TEST(SecretStore, SavingRemovesFirstAndAddsWhateverCameOfIt) {
  StubbornStore store;
  const SecretStoreGuard guard(store);
  EXPECT_EQ(saveSecret(item, "value"), secretStored);
  EXPECT_EQ(saveSecret(item, ""), secretStored);
  EXPECT_EQ(store.calls, "remove add remove ");
}

}  // namespace
}  // namespace halyard

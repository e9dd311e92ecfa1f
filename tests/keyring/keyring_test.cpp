// The system's own secret store, against a real keyring service. with_keyring.py makes the situation that a suite is
// named after, and runs each in a process of its own: the connection to the bus is the process'.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>

#include <gtest/gtest.h>
#include <libsecret/secret.h>

#include "halyard/platform/home_directory.hpp"
#include "halyard/platform/secret_store.hpp"
#include "tests/support/secret_store_contract.hpp"

namespace halyard {
namespace {

constexpr SecretName item = {"com.example.halyard-test", "first"};

/// The test program's home folder is another one than the service's, and nothing but the service may keep a secret.
testing::AssertionResult homeIsUntouched() {
  for (const auto& entry : std::filesystem::recursive_directory_iterator(homeDirectory())) {
    if (entry.is_regular_file()) return testing::AssertionFailure() << entry.path() << " was written";
  }
  return testing::AssertionSuccess();
}

template <typename Work>
double seconds(Work work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

pid_t processOf(const char* variable) { return static_cast<pid_t>(std::atoi(std::getenv(variable))); }

void lockKeyring() {
  GError* error = nullptr;
  SecretService* service = secret_service_get_sync(SECRET_SERVICE_LOAD_COLLECTIONS, nullptr, &error);
  ASSERT_NE(service, nullptr);
  GList* collections = secret_service_get_collections(service);
  EXPECT_GT(secret_service_lock_sync(service, collections, nullptr, nullptr, &error), 0);
  g_list_free_full(collections, g_object_unref);
  g_object_unref(service);
}

/// Those of the item's service, locked or not.
std::size_t itemsInKeyring() {
  SecretService* service = secret_service_get_sync(SECRET_SERVICE_NONE, nullptr, nullptr);
  if (service == nullptr) return 0;
  GHashTable* attributes = g_hash_table_new(g_str_hash, g_str_equal);
  g_hash_table_insert(attributes, const_cast<char*>("service"), const_cast<char*>(item.service.data()));
  GList* items = secret_service_search_sync(service, nullptr, attributes, SECRET_SEARCH_ALL, nullptr, nullptr);
  const std::size_t count = g_list_length(items);
  g_list_free_full(items, g_object_unref);
  g_hash_table_unref(attributes);
  g_object_unref(service);
  return count;
}

struct UnlockedKeyring {};
using Unlocked = SecretStoreContract<UnlockedKeyring>;
INSTANTIATE_TYPED_TEST_SUITE_P(Unlocked, SecretStoreContract, UnlockedKeyring);

TEST(UnlockedKeyring, ASecretIsInTheServiceAndInNoFileOfOurs) {
  EXPECT_EQ(saveSecret(item, "value"), secretStored);
  EXPECT_TRUE(homeIsUntouched());
  saveSecret(item, "");
}

TEST(UnlockedKeyring, ManyOperationsLeaveNoDescriptorBehind) {
  const auto open = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
  };
  saveSecret(item, "value");
  const auto before = open();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(readSecret(item), "value");
  EXPECT_LE(open(), before + 2);
  saveSecret(item, "");
}

TEST(LockedKeyring, NeitherHangsNorGivesNorLosesTheSecret) {
  ASSERT_EQ(saveSecret(item, "kept"), secretStored);
  lockKeyring();
  EXPECT_LT(seconds([] {
              EXPECT_EQ(readSecret(item), "");
              EXPECT_EQ(saveSecret(item, "other"), secretStoreNotAllowed);
              EXPECT_EQ(saveSecret(item, ""), secretStored);
            }),
            4.0);
  EXPECT_EQ(itemsInKeyring(), 1U);
}

TEST(KeyringWithoutCollection, CantSaveAndReadsEmpty) {
  EXPECT_LT(seconds([] {
              EXPECT_EQ(saveSecret(item, "value"), secretStoreMissing);
              EXPECT_EQ(readSecret(item), "");
            }),
            8.0);
  EXPECT_TRUE(homeIsUntouched());
}

TEST(AbsentKeyring, CantSaveAndReadsEmpty) {
  EXPECT_LT(seconds([] {
              EXPECT_EQ(readSecret(item), "");
              EXPECT_EQ(saveSecret(item, "value"), secretStoreMissing);
              EXPECT_EQ(saveSecret(item, ""), secretStored);
              EXPECT_EQ(readSecret(item), "");
            }),
            8.0);
  EXPECT_TRUE(homeIsUntouched());
}

TEST(SilentKeyring, IsGivenUpAfterAWhile) {
  ASSERT_EQ(kill(processOf("HALYARD_TEST_KEYRING"), SIGSTOP), 0);
  std::string value = "unset";
  const double taken = seconds([&] { value = readSecret(item); });
  kill(processOf("HALYARD_TEST_KEYRING"), SIGCONT);
  EXPECT_EQ(value, "");
  EXPECT_GT(taken, 1.0) << "it wasn't silent";
  EXPECT_LT(taken, 9.0);
}

TEST(VanishingBus, TakesTheProgramNotWithIt) {
  ASSERT_EQ(saveSecret(item, "value"), secretStored);
  ASSERT_EQ(kill(processOf("HALYARD_TEST_BUS"), SIGTERM), 0);
  for (int i = 0; i < 3; ++i) {
    g_usleep(100'000);
    EXPECT_EQ(readSecret(item), "");
  }
  EXPECT_EQ(saveSecret(item, "value"), secretStoreMissing);
}

}  // namespace
}  // namespace halyard

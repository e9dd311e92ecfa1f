#include "halyard/release/appstore_password.hpp"

#include <gtest/gtest.h>

#include "core/string_catalog.hpp"
#include "tests/support/captured_output.hpp"
#include "tests/support/in_memory_secret_store.hpp"

namespace halyard {
namespace {

struct AppStorePassword : testing::Test {
  AppStorePassword() {
    loadStringCatalog("");
    setCurrentLanguage("en");
  }
  ~AppStorePassword() override { setCurrentLanguage("en"); }

  InMemorySecretStore store;
};

TEST_F(AppStorePassword, IsKeptUnderItsServiceAndAccount) {
  EXPECT_FALSE(hasPassword());
  savePassword("abcd-efgh-ijkl-mnop");
  EXPECT_TRUE(hasPassword());
  EXPECT_EQ(readPassword(), "abcd-efgh-ijkl-mnop");
  EXPECT_EQ(store.find({"com.capstan-light.appstore", "appSpecificPassword"}), "abcd-efgh-ijkl-mnop");
}

TEST_F(AppStorePassword, SavingReplacesAndEmptyDeletes) {
  savePassword("one");
  savePassword("two");
  EXPECT_EQ(readPassword(), "two");
  savePassword("");
  EXPECT_FALSE(hasPassword());
  savePassword("three");
  deletePassword();
  EXPECT_EQ(readPassword(), "");
  EXPECT_EQ(store.size(), 0U);
}

TEST_F(AppStorePassword, WhatIsNoTextIsNoPassword) {
  savePassword("\xc3\x28");
  EXPECT_FALSE(hasPassword());
}

TEST_F(AppStorePassword, AFailureNamesTheStatus) {
  store.fail(-25308);
  const CapturedOutput shown;
  savePassword("value");
  EXPECT_NE(shown.text().find("Keychain save failed (status -25308)."), std::string::npos);
}

TEST_F(AppStorePassword, AFailureNamesTheStatusInGermanToo) {
  setCurrentLanguage("de");
  store.fail(-36);
  const CapturedOutput shown;
  savePassword("value");
  EXPECT_NE(shown.text().find("Speichern im Schlüsselbund fehlgeschlagen (Status -36)."), std::string::npos);
}

TEST_F(AppStorePassword, DeletingSaysNothing) {
  store.fail(-25308);
  const CapturedOutput shown;
  deletePassword();
  EXPECT_EQ(shown.text(), "");
}

TEST_F(AppStorePassword, TheAccountFieldIsAnItemOfItsOwnAndNeverComplains) {
  savePassword("password");
  saveAccountField("kim@example.com");
  EXPECT_EQ(store.find({"com.capstan-light", "username"}), "kim@example.com");
  EXPECT_EQ(readAccountField(), "kim@example.com");
  EXPECT_EQ(readPassword(), "password");
  saveAccountField("");
  EXPECT_EQ(readAccountField(), "");
  EXPECT_EQ(readPassword(), "password");
  store.fail(-25291);
  const CapturedOutput shown;
  saveAccountField("kim@example.com");
  EXPECT_EQ(readAccountField(), "");
  EXPECT_EQ(shown.text(), "");
}

}  // namespace
}  // namespace halyard

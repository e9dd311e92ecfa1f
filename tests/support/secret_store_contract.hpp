// What every store of secrets must do, the one in memory and the system's own: the same cases for both.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "halyard/platform/secret_store.hpp"

namespace halyard {

/// `Place` makes the store the current one as long as it lives.
template <typename Place>
struct SecretStoreContract : testing::Test {
  SecretStoreContract() { clear(); }
  ~SecretStoreContract() override { clear(); }

  static constexpr SecretName item = {"com.example.halyard-test", "first"};
  static constexpr SecretName otherAccount = {"com.example.halyard-test", "second"};
  static constexpr SecretName otherService = {"com.example.halyard-test.more", "first"};

  Place place;

 private:
  static void clear() {
    for (const SecretName& each : {item, otherAccount, otherService}) saveSecret(each, "");
  }
};

TYPED_TEST_SUITE_P(SecretStoreContract);

TYPED_TEST_P(SecretStoreContract, WhatWasSavedIsRead) {
  EXPECT_EQ(readSecret(this->item), "");
  EXPECT_EQ(saveSecret(this->item, "abcd-efgh-ijkl-mnop"), secretStored);
  EXPECT_EQ(readSecret(this->item), "abcd-efgh-ijkl-mnop");
}

TYPED_TEST_P(SecretStoreContract, SavingReplaces) {
  EXPECT_EQ(saveSecret(this->item, "old"), secretStored);
  EXPECT_EQ(saveSecret(this->item, "new"), secretStored);
  EXPECT_EQ(readSecret(this->item), "new");
  // Had the old one been left beside it, it would come to light now.
  EXPECT_EQ(saveSecret(this->item, ""), secretStored);
  EXPECT_EQ(readSecret(this->item), "");
}

TYPED_TEST_P(SecretStoreContract, AnEmptyValueDeletes) {
  saveSecret(this->item, "value");
  EXPECT_EQ(saveSecret(this->item, ""), secretStored);
  EXPECT_EQ(readSecret(this->item), "");
  EXPECT_EQ(saveSecret(this->item, ""), secretStored) << "deleting what isn't there is a success";
}

TYPED_TEST_P(SecretStoreContract, OtherAccountsAndServicesAreLeftAlone) {
  saveSecret(this->item, "one");
  saveSecret(this->otherAccount, "two");
  saveSecret(this->otherService, "three");
  saveSecret(this->item, "");
  EXPECT_EQ(readSecret(this->item), "");
  EXPECT_EQ(readSecret(this->otherAccount), "two");
  EXPECT_EQ(readSecret(this->otherService), "three");
}

TYPED_TEST_P(SecretStoreContract, AValueThatIsntUtf8ReadsEmpty) {
  EXPECT_EQ(saveSecret(this->item, "\xff\xfe\x80"), secretStored);
  EXPECT_EQ(readSecret(this->item), "");
  EXPECT_EQ(saveSecret(this->item, "readable"), secretStored);
  EXPECT_EQ(readSecret(this->item), "readable");
}

TYPED_TEST_P(SecretStoreContract, AValueWithANulIsKeptWhole) {
  const std::string value("before\0after\0", 13);
  EXPECT_EQ(saveSecret(this->item, value), secretStored);
  EXPECT_EQ(readSecret(this->item), value);
}

TYPED_TEST_P(SecretStoreContract, AnyTextIsKeptAsItIs) {
  for (const std::string& value : {std::string(" \t\r\n blank ends \n"), std::string("Schlüssel 🔑 e\u0301"),
                                   std::string("'\"$(touch x)`y`\\\x1b[31m"), std::string(20'000, 'x')}) {
    EXPECT_EQ(saveSecret(this->item, value), secretStored);
    EXPECT_EQ(readSecret(this->item), value);
  }
}

REGISTER_TYPED_TEST_SUITE_P(SecretStoreContract, WhatWasSavedIsRead, SavingReplaces, AnEmptyValueDeletes,
                            OtherAccountsAndServicesAreLeftAlone, AValueThatIsntUtf8ReadsEmpty,
                            AValueWithANulIsKeptWhole, AnyTextIsKeptAsItIs);

}  // namespace halyard

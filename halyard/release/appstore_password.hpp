// The app-specific password, which App Store Connect's tools ask for, and the program's own account field: both are
// kept in the keychain and nowhere else.
#pragma once

#include <string>
#include <string_view>

#include "halyard/platform/secret_store.hpp"

namespace halyard {

inline constexpr SecretName appStorePasswordItem = {"com.capstan-light.appstore", "appSpecificPassword"};
inline constexpr SecretName accountFieldItem = {"com.capstan-light", "username"};

/// Replaces the password; an empty one deletes it. Prints a failure with its status.
void savePassword(std::string_view value);
/// Empty where there is none, and on every failure.
std::string readPassword();
bool hasPassword();
void deletePassword();

/// The same for the account field, without a word about a failure.
void saveAccountField(std::string_view value);
std::string readAccountField();

}  // namespace halyard

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace halyard {

/// A text of the user's global defaults. Systems without user defaults have none.
std::optional<std::string> globalUserDefault(std::string_view key);

/// Answers every read with this value until destroyed: for tests and screens in either look.
class GlobalUserDefaultOverride {
 public:
  explicit GlobalUserDefaultOverride(std::optional<std::string> value);
  ~GlobalUserDefaultOverride();
  GlobalUserDefaultOverride(const GlobalUserDefaultOverride&) = delete;
  GlobalUserDefaultOverride& operator=(const GlobalUserDefaultOverride&) = delete;
};

}  // namespace halyard

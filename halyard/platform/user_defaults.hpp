#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace halyard {

/// A text of the user's global defaults. Systems without user defaults have none.
std::optional<std::string> globalUserDefault(std::string_view key);

/// Answers every read with this value until destroyed: for tests and screens in either look. One within another hides
/// the outer one.
class GlobalUserDefaultOverride {
 public:
  explicit GlobalUserDefaultOverride(std::optional<std::string> value);
  ~GlobalUserDefaultOverride();
  GlobalUserDefaultOverride(const GlobalUserDefaultOverride&) = delete;
  GlobalUserDefaultOverride& operator=(const GlobalUserDefaultOverride&) = delete;

 private:
  std::optional<std::string> value_;
  const GlobalUserDefaultOverride* outer_;

  friend std::optional<std::string> globalUserDefault(std::string_view key);
};

}  // namespace halyard

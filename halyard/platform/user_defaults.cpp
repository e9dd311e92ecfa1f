#include "halyard/platform/user_defaults.hpp"

#include <utility>

#include "halyard/platform/user_defaults_source.hpp"

namespace halyard {

namespace {

const GlobalUserDefaultOverride* innermostOverride = nullptr;

}  // namespace

std::optional<std::string> globalUserDefault(std::string_view key) {
  return innermostOverride != nullptr ? innermostOverride->value_ : systemGlobalUserDefault(key);
}

GlobalUserDefaultOverride::GlobalUserDefaultOverride(std::optional<std::string> value)
    : value_(std::move(value)), outer_(std::exchange(innermostOverride, this)) {}

GlobalUserDefaultOverride::~GlobalUserDefaultOverride() { innermostOverride = outer_; }

}  // namespace halyard

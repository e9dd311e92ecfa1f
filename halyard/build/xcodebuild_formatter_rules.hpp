// What kind of step a line of xcodebuild tells of, by the words it begins with.
#pragma once

#include <cstdint>
#include <string_view>

namespace halyard {

enum class BuildLineKind : std::uint8_t { other, ignored, prepare, resolve, fetch, compile, link, resource };

/// Of a line without blanks at its ends. `other` may still be an error or a warning.
BuildLineKind buildLineKind(std::string_view line);

}  // namespace halyard

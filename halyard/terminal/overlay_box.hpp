#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// Where the cursor rests after a box over the frame, from 1: what erases from there on leaves the frame alone.
inline constexpr int rowBelowFrame = 34;

/// A box over the finished frame, placed by cursor addressing in the accent style. Lines may hold colours; what is too
/// wide for the widest box is cut. The cursor ends below the frame.
void drawOverlayBox(std::optional<std::string_view> title, const std::vector<std::string>& lines,
                    std::optional<std::string_view> leftHint = {}, std::string_view rightHint = {},
                    bool centreLastLine = false);

/// What drawOverlayBox() prints.
std::string overlayBox(std::optional<std::string_view> title, const std::vector<std::string>& lines,
                       std::optional<std::string_view> leftHint = {}, std::string_view rightHint = {},
                       bool centreLastLine = false);

}  // namespace halyard

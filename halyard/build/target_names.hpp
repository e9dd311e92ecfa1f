// Names that the step lines of xcodebuild hold. All of them are views into the line, as the tool wrote them.
#pragma once

#include <optional>
#include <string_view>

namespace halyard {

/// The target that a step line works for: "(in target 'App' from project 'P')" and older forms that name it in a fixed
/// place. The line has no blanks at its ends.
std::optional<std::string_view> extractTargetName(std::string_view line);

/// What a step line copies or makes: the last file that it names, or empty.
std::string_view resourceDetail(std::string_view line);

/// "a/b.c" and "a/b.c/" give "b.c".
std::string_view lastPathComponent(std::string_view path);

}  // namespace halyard

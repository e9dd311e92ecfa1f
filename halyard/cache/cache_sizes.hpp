// How much room places take, as `du` tells it to people: "1.2G".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// What is shown for a place that isn't there or can't be measured.
inline constexpr std::string_view unknownSize = "—";

/// Size of a file or folder; the path may begin with a tilde.
std::string pathSize(std::string_view path);
/// Size of all of them together; empty for none. The paths may begin with a tilde.
std::string totalSize(const std::vector<std::string>& paths);

/// The bytes that such a text stands for, for putting sizes in order; 0 for no size.
double bytesOfSize(std::string_view size);

/// The paths without those that lie inside another of them, so that nothing counts twice.
std::vector<std::string> outermostPaths(std::vector<std::string> paths);

}  // namespace halyard

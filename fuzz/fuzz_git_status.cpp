// Any bytes read as a status: no fault, each record of a line of its own, and its frame never obeys what they say. The
// exit code told from them is that of the slow, plain way.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/git/git_command_runner.hpp"
#include "halyard/git/git_repository.hpp"
#include "halyard/git/git_view_frame.hpp"
#include "halyard/git/git_view_overlays.hpp"

namespace {

using namespace halyard;

void require(bool holds) {
  if (!holds) std::abort();
}

std::int32_t plainExitCode(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  const bool failed = lower.starts_with("fatal:") || lower.starts_with("error:") ||
                      lower.find("not a git repository") != std::string::npos;
  return failed ? 128 : 0;
}

void checkFrame(const GitSnapshot& snapshot, std::string_view text) {
  GitViewState view;
  view.snapshot = snapshot;
  const std::string frame = GitView::drawnFrame(view, "/home");
  require(isValidUtf8(frame) && std::ranges::count(frame, '\n') == 28);
  view.mode = GitViewMode::messageOverlay;
  view.messageText = text;
  const std::string box = GitView::drawnOverlay(view);
  require(isValidUtf8(box) && box.find('\n') == std::string::npos && box.find('\x07') == std::string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool isLoaded = (loadStringCatalog({}), true);
  require(isLoaded);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  GitSnapshot snapshot;
  auto parsed = GitRepository::parseStatus(text, text);
  const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
  require(parsed.files.size() <= 2 * lines);
  require(parsed.header.dirtyFileCount == static_cast<int>(parsed.files.size()));
  require(!parsed.header.isDetached || (parsed.header.currentBranch.empty() && !parsed.header.hasUpstream));
  for (const GitFileChange& file : parsed.files) {
    require(file.path.find('\n') == std::string::npos);
    require(!file.originalPath || file.originalPath->find(" -> ") == std::string::npos);
  }
  require(!GitRepository::statusSummary(parsed.header).empty());
  require(GitCommandRunner::derivedExitCode(text) == plainExitCode(text));
  snapshot.status = std::move(parsed.header);
  checkFrame(snapshot, text);
  return 0;
}

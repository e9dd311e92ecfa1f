// Any bytes read as branches: no fault, at most one for each line, remote ones without their prefix.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/git/git_repository.hpp"
#include "halyard/git/git_view_frame.hpp"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace halyard;
  static const bool isLoaded = (loadStringCatalog({}), true);
  require(isLoaded);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  GitViewState view;
  view.snapshot.branches = GitRepository::parseBranches(text, text.substr(0, text.find('\n')));
  require(view.snapshot.branches.size() <= static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1);
  for (const GitBranch& branch : view.snapshot.branches) {
    const bool isRemote = branch.kind == GitBranch::Kind::remote;
    require(branch.fullName.ends_with(branch.name));
    require(isRemote ? !branch.isCurrent : branch.name == branch.fullName);
    require(branch.fullName.find('\n') == std::string::npos && branch.fullName.find("HEAD -> ") == std::string::npos);
  }
  const std::string frame = GitView::drawnFrame(view, "/home");
  require(isValidUtf8(frame) && std::ranges::count(frame, '\n') == 28);
  return 0;
}

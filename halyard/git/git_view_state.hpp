// What the Git view knows between two keys. It lives for the whole run.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "halyard/git/git_records.hpp"
#include "halyard/terminal/typed_text.hpp"

namespace halyard {

enum class GitViewMode {
  normal,
  help,
  loading,
  searchOverlay,
  searchResults,
  commitOverlay,
  confirmOverlay,
  diffOverlay,
  messageOverlay
};

enum class GitViewPane { branches, commits };

/// What a confirmation asks for.
struct GitConfirmKind {
  enum class Kind { checkout, push, pull, discardChanges };

  Kind kind = Kind::push;
  std::string branch = {};  ///< of a checkout

  bool operator==(const GitConfirmKind&) const = default;
};

/// No key leads to the diff overlay or to discardChanges: the view has no list of files yet.
struct GitViewState {
  GitSnapshot snapshot;
  bool didLoadOnce = false;
  GitViewMode mode = GitViewMode::normal;
  GitViewPane activePane = GitViewPane::branches;
  int branchSelection = 0;
  int branchScroll = 0;
  int commitSelection = 0;
  int commitScroll = 0;
  std::string searchQuery;
  std::vector<GitSearchHit> searchHits;
  int searchSelection = 0;
  int searchScroll = 0;
  std::string commitMessage;
  TypedBytes typedBytes;  ///< of the query or the message
  std::optional<GitConfirmKind> pendingConfirm;
  std::string diffTitle;
  std::vector<std::string> diffLines;
  int diffScroll = 0;
  std::string messageText;
  std::string messageDetail;
  bool messageIsError = false;
  bool drewWideCharacters = false;  ///< the last frame
};

namespace GitView {

inline constexpr int historyLimit = 500;
inline constexpr int paneRows = 20;
inline constexpr int searchRows = 14;
inline constexpr int diffRows = 16;

/// The one state of the process; a test puts `{}` in its place.
GitViewState& state();

/// reload(), the first time it is called.
void enterOnce();
/// A fresh snapshot, the current branch selected. Pane and mode stay.
void reload();
/// Back to the normal mode; what the overlays held is gone.
void closeOverlay();
void showMessage(std::string_view text, std::string_view detail, bool isError);

/// True where anything waits in the index to be committed.
bool hasStagedFiles();

/// The offset at which a window onto a list shows the selection, as near to the present one as can be.
int scrolledOffset(int selection, int size, int window, int offset);
/// Brings selections into their lists and offsets to their selections.
void settleForDrawing();

}  // namespace GitView

}  // namespace halyard

// The boxes of the search.
#include "core/string_catalog.hpp"
#include "halyard/browser/directory_overlay_rows.hpp"
#include "halyard/browser/directory_search.hpp"
#include "halyard/terminal/overlay_box.hpp"

namespace halyard {

void drawSearchOverlay() {
  const DirectoryViewState& view = directoryViewState();
  if (!view.searchState) return;
  drawOverlayBox(localized("dirview_search_title"),
                 {"", overlayHint(localized("dirview_search_hint")), "",
                  overlayInputRow(localized("dirview_search_prompt"), view.searchState->inputText), "",
                  overlayPathRow(view.list.currentPath), ""},
                 localized("dirview_overlay_cancel"), localized("dirview_overlay_search_action"));
}

void drawSearchRunning() {
  const DirectoryViewState& view = directoryViewState();
  if (!view.searchState) return;
  drawOverlayBox(localized("dirview_search_running_title"),
                 runningWalkRows(view.searchState->spinnerFrame, localized("dirview_search_running")),
                 localized("dirview_search_cancel"));
}

}  // namespace halyard

#include "halyard/cache/cache_steps.hpp"

#include "core/app_context.hpp"
#include "core/string_catalog.hpp"
#include "core/text.hpp"
#include "halyard/cache/cache_removal.hpp"
#include "halyard/terminal/screen.hpp"

namespace halyard {

CacheStep deletionStep(std::string_view labelKey, CachePlace place, std::string_view successKey) {
  return {.label = std::string(localized(labelKey)),
          .command = deletionCommand(place),
          .success = std::string(localized(successKey))};
}

CacheStep contentsStep(std::string_view labelKey, std::span<const CachePlace> places, std::string_view successKey) {
  return {.label = std::string(localized(labelKey)),
          .command = contentsCommand(places),
          .success = std::string(localized(successKey)),
          .kept = linkedPlaces(places)};
}

void performCacheSteps(const std::vector<CacheStep>& steps) {
  for (const CacheStep& step : steps) {
    if (operationAborted()) return;
    runDeletion(step.label, step.command);
    for (const CachePlace place : step.kept) printLinkKept(cacheLocation(place).path);
    printSuccess(step.success);
  }
}

void printLinkKept(std::string_view path) { printWarning(localizedFormat("cache_link_kept_var", displaySafe(path))); }

}  // namespace halyard

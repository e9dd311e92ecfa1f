// What the flows say that depends on the kind of target.
#pragma once

#include <string>
#include <string_view>

#include "halyard/build/active_target.hpp"

namespace halyard {

struct FlowLabels {
  std::string_view icon;
  std::string_view buildAndRunKey;
  std::string_view quickResetKey;
  std::string_view fullResetKey;
  std::string_view launchKey;
};

const FlowLabels& flowLabels(ActiveTarget::Kind kind);

/// Name and system, fit to be shown: "iPhone 16 (iOS 18.2)".
std::string targetText(const ActiveTarget& target);

/// Above the output of a run: target, scheme, configuration, how to stop.
void printRunHeader(const ActiveTarget& target);

/// The failure block of the flows. Texts are shown as they are; an empty reason or detail is left out.
struct FailurePanel {
  std::string_view titleKey;
  std::string reason = {};
  std::string_view hintKey;
  std::string detail = {};
};
void printFailurePanel(const FailurePanel& panel);

/// What a tool said, as the reason of a failure: its lines, made safe, below one another.
std::string shownToolOutput(std::string_view output);

}  // namespace halyard

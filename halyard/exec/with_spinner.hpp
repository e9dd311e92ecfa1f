#pragma once

#include <string>
#include <utility>

#include "halyard/terminal/activity_spinner.hpp"

namespace halyard {

/// Turns while it lives.
class RunningSpinner {
 public:
  explicit RunningSpinner(std::string label) : spinner_(std::move(label)) { spinner_.start(); }
  ~RunningSpinner() { spinner_.stop(); }
  RunningSpinner(const RunningSpinner&) = delete;
  RunningSpinner& operator=(const RunningSpinner&) = delete;

 private:
  ActivitySpinner spinner_;
};

/// Runs `work` behind a spinner and returns what it returns.
template <typename Work>
auto withSpinner(std::string label, Work&& work) {
  const RunningSpinner spinner(std::move(label));
  return std::forward<Work>(work)();
}

}  // namespace halyard

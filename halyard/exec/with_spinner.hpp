#pragma once

#include <string>
#include <utility>

#include "halyard/terminal/activity_spinner.hpp"

namespace halyard {

/// Runs `work` behind a spinner and returns what it returns.
template <typename Work>
auto withSpinner(std::string label, Work&& work) {
  struct Running {
    explicit Running(std::string text) : spinner(std::move(text)) { spinner.start(); }
    ~Running() { spinner.stop(); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ActivitySpinner spinner;
  } running(std::move(label));
  return std::forward<Work>(work)();
}

}  // namespace halyard

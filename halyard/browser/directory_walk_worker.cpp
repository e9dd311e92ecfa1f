#include "halyard/browser/directory_walk_worker.hpp"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

#include "halyard/platform/all_signals_held.hpp"
#include "halyard/terminal/keyboard_input.hpp"
#include "halyard/terminal/keys.hpp"

namespace halyard {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto pollingPeriod = std::chrono::milliseconds(120);
constexpr int sequenceSilence = 20;  // milliseconds: the rest of a sequence comes at once

int millisecondsUntil(Clock::time_point time) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - Clock::now());
  return static_cast<int>(std::max<long long>(left.count(), 0));
}

}  // namespace

DirectoryWalkWorker::~DirectoryWalkWorker() { end(); }

void DirectoryWalkWorker::start(Job job) {
  end();
  isCancelled_ = false;
  isRunning_ = true;
  result_.reset();
  const AllSignalsHeld signals;
  try {
    thread_ = std::thread([this, job = std::move(job)] {
      std::vector<DirectoryEntry> hits = job(isCancelled_);
      const std::lock_guard held(lock_);
      if (!isCancelled_) result_ = std::move(hits);
      isRunning_ = false;
    });
  } catch (const std::system_error&) {
    result_.emplace();
    isRunning_ = false;
  }
}

void DirectoryWalkWorker::cancel() {
  isCancelled_ = true;
  const std::lock_guard held(lock_);
  result_.reset();
}

std::optional<std::vector<DirectoryEntry>> DirectoryWalkWorker::takeResult() {
  const std::lock_guard held(lock_);
  return std::exchange(result_, std::nullopt);
}

void DirectoryWalkWorker::end() {
  isCancelled_ = true;
  if (thread_.joinable()) thread_.join();
}

DirectoryWalkWorker& directoryWalkWorker() {
  static DirectoryWalkWorker worker;
  return worker;
}

bool walkCancelledByKey() {
  const Clock::time_point end = Clock::now() + pollingPeriod;
  while (Clock::now() < end) {
    InputByte::Outcome outcome = InputByte::Outcome::ended;
    const RawKey key = decodeKey([&](bool isFirst) -> std::optional<std::uint8_t> {
      const InputByte input = inputByteWithin(isFirst ? millisecondsUntil(end) : sequenceSilence);
      if (isFirst) outcome = input.outcome;
      return input.outcome == InputByte::Outcome::byte ? std::optional(input.byte) : std::nullopt;
    });
    if (key.is("x") || key.is("X")) return true;
    if (outcome == InputByte::Outcome::ended) std::this_thread::sleep_until(end);
  }
  return false;
}

}  // namespace halyard

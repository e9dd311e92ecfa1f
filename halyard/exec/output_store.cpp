#include "halyard/exec/output_store.hpp"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "core/text.hpp"
#include "halyard/platform/memory_hints.hpp"

namespace halyard {

namespace {

constexpr std::size_t kilobyte = 1024;
constexpr std::size_t megabyte = kilobyte * kilobyte;
constexpr std::size_t firstChunk = 64 * kilobyte;
constexpr std::size_t largestChunk = 256 * kilobyte;
constexpr std::size_t firstCapacity = megabyte;
constexpr std::size_t growth = 32;
constexpr std::size_t worthLargePages = 16 * megabyte;
constexpr std::size_t moveStep = 4 * megabyte;

/// A string with room for `wanted` or, where the system allows it, much more.
std::string roomyString(std::size_t wanted, std::size_t capacity) {
  std::string text;
  for (; capacity > wanted; capacity /= 4) {
    try {
      text.reserve(capacity);
      return text;
    } catch (const std::bad_alloc&) {
    }
  }
  text.reserve(wanted);
  return text;
}

}  // namespace

/// The old text goes back to the system while it is copied.
void OutputStore::moveTo(std::size_t wanted) {
  const std::size_t capacity = text_.empty() ? firstCapacity : std::max(firstCapacity, text_.capacity() * growth);
  std::string roomy = roomyString(wanted, capacity);
  if (roomy.capacity() >= worthLargePages) preferLargePages(roomy.data(), roomy.capacity());
  for (std::size_t moved = 0; moved < used_; moved += moveStep) {
    const std::size_t step = std::min(moveStep, used_ - moved);
    roomy.append(text_, moved, step);
    if (used_ > moveStep) discardContents(text_.data() + moved, step);
  }
  text_ = std::move(roomy);
}

void OutputStore::makeRoom(std::size_t wanted) {
  if (text_.size() - used_ >= wanted) return;
  if (text_.capacity() - used_ < wanted) moveTo(used_ + wanted);
  text_.resize(used_ + wanted);
}

std::span<char> OutputStore::room() {
  dropLeadingSpace();
  const std::size_t chunk = used_ < firstChunk ? firstChunk : largestChunk;
  makeRoom(chunk);
  return std::span(text_).subspan(used_, chunk);
}

std::string_view OutputStore::keep(std::size_t size) {
  std::string_view chunk(text_.data() + used_, size);
  if (!isValidUtf8(chunk)) {
    const std::string decoded = decodedText(chunk);
    makeRoom(decoded.size());
    std::memcpy(text_.data() + used_, decoded.data(), decoded.size());
    chunk = {text_.data() + used_, decoded.size()};
  }
  used_ += chunk.size();
  return chunk;
}

/// Done while the text is one chunk: later all of it would have to move.
void OutputStore::dropLeadingSpace() {
  if (begun_ || used_ == 0) return;
  const std::string_view kept(text_.data(), used_);
  const std::string_view inner = trimmed(kept);
  begun_ = !inner.empty();
  const std::size_t leading = begun_ ? static_cast<std::size_t>(inner.data() - kept.data()) : used_;
  used_ -= leading;
  if (leading > 0) std::memmove(text_.data(), text_.data() + leading, used_);
}

std::string OutputStore::takeTrimmed() {
  dropLeadingSpace();
  text_.resize(trimmed({text_.data(), used_}).size());
  if (text_.size() < firstCapacity / 2) text_.shrink_to_fit();
  used_ = 0;
  begun_ = false;
  return std::exchange(text_, {});
}

}  // namespace halyard

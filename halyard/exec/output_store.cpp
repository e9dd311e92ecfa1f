#include "halyard/exec/output_store.hpp"

#include <algorithm>
#include <cstring>
#include <new>

#include <sys/mman.h>

#include "core/text.hpp"

namespace halyard {

namespace {

constexpr std::size_t segmentSize = std::size_t{4} << 20U;
constexpr std::size_t largestChunk = std::size_t{256} << 10U;
constexpr std::size_t smallestRoom = std::size_t{64} << 10U;
static_assert(2 * largestChunk <= segmentSize, "a chunk read as Latin-1 doubles at most and must fit a fresh segment");

}  // namespace

void OutputStore::Unmap::operator()(char* memory) const noexcept { munmap(memory, segmentSize); }

std::size_t OutputStore::left() const { return segments_.empty() ? 0 : segmentSize - segments_.back().size; }

void OutputStore::addSegment() {
  void* memory = mmap(nullptr, segmentSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  segments_.push_back({.memory = std::unique_ptr<char, Unmap>(static_cast<char*>(memory)), .size = 0, .text = {}});
}

std::span<char> OutputStore::room() {
  if (left() < smallestRoom) addSegment();
  const Segment& last = segments_.back();
  return {last.memory.get() + last.size, std::min(left(), largestChunk)};
}

std::string_view OutputStore::keep(std::size_t size) {
  const std::string_view chunk(segments_.back().memory.get() + segments_.back().size, size);
  if (isValidUtf8(chunk)) {
    segments_.back().size += size;
    return chunk;
  }
  const std::string text = decodedText(chunk);
  if (left() < text.size()) addSegment();
  Segment& last = segments_.back();
  char* place = last.memory.get() + last.size;
  std::memcpy(place, text.data(), text.size());
  last.size += text.size();
  return {place, text.size()};
}

/// Each chunk is whole text, so no character lies across two segments.
std::size_t OutputStore::trimSegments() {
  for (Segment& segment : segments_) segment.text = {segment.memory.get(), segment.size};
  for (Segment& segment : segments_) {
    const std::string_view inner = trimmed(segment.text);
    if (inner.empty()) {
      segment.text = {};
      continue;
    }
    segment.text.remove_prefix(static_cast<std::size_t>(inner.data() - segment.text.data()));
    break;
  }
  for (auto segment = segments_.rbegin(); segment != segments_.rend(); ++segment) {
    const std::string_view inner = trimmed(segment->text);
    segment->text = segment->text.substr(
        0, inner.empty() ? 0 : static_cast<std::size_t>(inner.data() + inner.size() - segment->text.data()));
    if (!segment->text.empty()) break;
  }
  std::size_t total = 0;
  for (const Segment& segment : segments_) total += segment.text.size();
  return total;
}

std::string OutputStore::joinedTrimmed() {
  std::string joined;
  joined.reserve(trimSegments());
  for (Segment& segment : segments_) {
    joined += segment.text;
    segment.memory.reset();
  }
  segments_.clear();
  return joined;
}

}  // namespace halyard

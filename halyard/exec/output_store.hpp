#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace halyard {

/// Keeps the output of a run chunk by chunk and joins it once. Its memory comes in segments straight from the system
/// and goes back there one by one while the result is built, so that a large output is never held twice.
class OutputStore {
 public:
  /// Where the next chunk is to be read to. Never empty; valid until the next call.
  std::span<char> room();
  /// The first `size` bytes of the room are a chunk: keeps it, as text. The view holds until the store is joined.
  std::string_view keep(std::size_t size);
  /// All chunks without what is white space at either end. Leaves the store empty.
  std::string joinedTrimmed();

 private:
  struct Unmap {
    void operator()(char* memory) const noexcept;
  };
  struct Segment {
    std::unique_ptr<char, Unmap> memory;
    std::size_t size = 0;
    std::string_view text;  ///< set when joining
  };

  [[nodiscard]] std::size_t left() const;
  void addSegment();
  std::size_t trimSegments();

  std::vector<Segment> segments_;
};

}  // namespace halyard

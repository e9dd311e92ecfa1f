#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace halyard {

/// Keeps the output of a run, chunk by chunk, where the result will stand, so that a large output is neither joined at
/// the end nor held twice. It reserves far ahead, which costs address space only.
class OutputStore {
 public:
  /// Where the next chunk is to be read to. Never empty; valid until the next call.
  std::span<char> room();
  /// The first `size` bytes of the room are a chunk: keeps it, as text. The view holds until the next call.
  std::string_view keep(std::size_t size);
  /// All chunks without what is white space at either end. Leaves the store empty.
  std::string takeTrimmed();

 private:
  void makeRoom(std::size_t wanted);
  void moveTo(std::size_t capacity);
  void dropLeadingSpace();

  std::string text_;      // as long as what was ever made room for: a string's unused room may not be written to
  std::size_t used_ = 0;  // of the text
  bool begun_ = false;    // the text begins with something else than white space
};

}  // namespace halyard

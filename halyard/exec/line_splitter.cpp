#include "halyard/exec/line_splitter.hpp"

#include <algorithm>
#include <cstring>

namespace halyard {

namespace {

/// The places of one character in a text, found one after another; a place ahead is kept rather than sought again.
class Places {
 public:
  Places(std::string_view text, char wanted, bool any)
      : text_(text), wanted_(wanted), next_(any ? find(0) : text.size()) {}

  /// The first place at or behind `from`, which never goes back; the text's size when there is none.
  std::size_t from(std::size_t from) {
    if (next_ < from) next_ = find(from);
    return next_;
  }

 private:
  [[nodiscard]] std::size_t find(std::size_t from) const {
    const void* found = from < text_.size() ? std::memchr(text_.data() + from, wanted_, text_.size() - from) : nullptr;
    return found == nullptr ? text_.size() : static_cast<std::size_t>(static_cast<const char*>(found) - text_.data());
  }

  std::string_view text_;
  char wanted_;
  std::size_t next_;
};

constexpr std::size_t keptRoom = std::size_t{1} << 16U;

}  // namespace

void LineSplitter::feed(std::string_view chunk, const std::function<void(std::string_view)>& onLine) {
  Places feeds(chunk, '\n', true);
  Places returns(chunk, '\r', ends_ == LineEnds::lineFeedOrCarriageReturn);
  std::size_t begin = 0;
  for (;;) {
    const std::size_t end = std::min(feeds.from(begin), returns.from(begin));
    if (end == chunk.size()) break;
    endLine(chunk.substr(begin, end - begin), onLine);
    begin = end + 1;
  }
  carried_ += chunk.substr(begin);
}

void LineSplitter::dropRemainder() {
  carried_.clear();
  if (carried_.capacity() > keptRoom) carried_.shrink_to_fit();
}

void LineSplitter::endLine(std::string_view piece, const std::function<void(std::string_view)>& onLine) {
  if (carried_.empty()) return onLine(piece);
  carried_ += piece;
  onLine(carried_);
  dropRemainder();
}

}  // namespace halyard

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace halyard {

enum class LineEnds { lineFeed, lineFeedOrCarriageReturn };

/// Cuts a stream of chunks into lines. Only a line that crosses chunks is copied, and each byte is looked at once.
class LineSplitter {
 public:
  explicit LineSplitter(LineEnds ends) : ends_(ends) {}

  /// Calls `onLine` with each line that ends in this chunk, without its end. The views hold during the call only.
  void feed(std::string_view chunk, const std::function<void(std::string_view)>& onLine);

  /// What came after the last line end.
  [[nodiscard]] std::string_view remainder() const { return carried_; }
  void dropRemainder();

 private:
  void endLine(std::string_view piece, const std::function<void(std::string_view)>& onLine);

  LineEnds ends_;
  std::string carried_;
};

}  // namespace halyard

// The JSON that `xcrun devicectl … --json-output -` writes: {"info": …, "result": {"<list>": [{…}, …]}}.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <simdjson.h>

namespace halyard {

/// An object that may be absent.
using JsonRecord = std::optional<simdjson::dom::object>;

/// One answer of the tool. What isn't JSON, lacks a level or has another type there is an empty answer.
class DevicectlAnswer {
 public:
  /// Text before the first "{" is skipped: the tool may write a table on the same stream.
  explicit DevicectlAnswer(std::string_view output);

  /// The objects of the first of these lists that the result has. They live as long as the answer.
  [[nodiscard]] std::vector<simdjson::dom::object> records(std::initializer_list<std::string_view> listKeys) const;

 private:
  simdjson::dom::parser parser_;
  JsonRecord result_;
};

JsonRecord childRecord(const JsonRecord& record, std::string_view key);
/// The first of these fields that is a text and not empty; else an empty text.
std::string firstText(const JsonRecord& record, std::initializer_list<std::string_view> keys);
std::optional<std::int64_t> wholeNumber(const JsonRecord& record, std::string_view key);

}  // namespace halyard

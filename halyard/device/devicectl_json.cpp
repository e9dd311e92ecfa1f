#include "halyard/device/devicectl_json.hpp"

namespace halyard {

DevicectlAnswer::DevicectlAnswer(std::string_view output) {
  const std::size_t start = output.find('{');
  if (start == std::string_view::npos) return;
  output.remove_prefix(start);
  simdjson::dom::object document;
  if (parser_.parse(output.data(), output.size()).get(document) != simdjson::SUCCESS) return;
  result_ = childRecord(document, "result");
}

std::vector<simdjson::dom::object> DevicectlAnswer::records(std::initializer_list<std::string_view> listKeys) const {
  std::vector<simdjson::dom::object> found;
  if (!result_) return found;
  for (const std::string_view key : listKeys) {
    simdjson::dom::array list;
    if ((*result_)[key].get(list) != simdjson::SUCCESS) continue;
    for (const simdjson::dom::element element : list) {
      simdjson::dom::object record;
      if (element.get(record) == simdjson::SUCCESS) found.push_back(record);
    }
    break;
  }
  return found;
}

JsonRecord childRecord(const JsonRecord& record, std::string_view key) {
  simdjson::dom::object child;
  if (!record || (*record)[key].get(child) != simdjson::SUCCESS) return std::nullopt;
  return child;
}

std::string firstText(const JsonRecord& record, std::initializer_list<std::string_view> keys) {
  if (!record) return {};
  for (const std::string_view key : keys) {
    std::string_view text;
    if ((*record)[key].get(text) == simdjson::SUCCESS && !text.empty()) return std::string(text);
  }
  return {};
}

std::optional<std::int64_t> wholeNumber(const JsonRecord& record, std::string_view key) {
  std::int64_t number = 0;
  if (!record || (*record)[key].get(number) != simdjson::SUCCESS) return std::nullopt;
  return number;
}

}  // namespace halyard

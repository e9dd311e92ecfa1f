#include "tests/support/dim_filter.hpp"

#include <cstddef>
#include <vector>

namespace halyard {

namespace {

std::vector<std::string_view> splitParameters(std::string_view text) {
  std::vector<std::string_view> parameters;
  for (std::size_t end = text.find(';'); end != std::string_view::npos; end = text.find(';')) {
    parameters.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  parameters.push_back(text);
  return parameters;
}

// 38;5;n and 38;2;r;g;b: what follows belongs to the colour.
std::size_t colorArguments(const std::vector<std::string_view>& parameters, std::size_t index) {
  if (parameters[index] != "38" && parameters[index] != "48") return 0;
  if (index + 1 == parameters.size()) return 0;
  if (parameters[index + 1] == "5") return 2;
  return parameters[index + 1] == "2" ? 4 : 0;
}

std::string rewritten(std::string_view sequence) {
  const auto parameters = splitParameters(sequence.substr(2, sequence.size() - 3));
  std::string result = "\x1b[";
  std::size_t verbatim = 0;
  for (std::size_t index = 0; index < parameters.size(); ++index) {
    if (index > 0) result += ';';
    if (verbatim > 0) {
      --verbatim;
      result += parameters[index];
    } else if (parameters[index] == "2") {
      result += "12";
    } else if (parameters[index] == "22") {
      result += "22;10";
    } else {
      result += parameters[index];
      verbatim = colorArguments(parameters, index);
    }
  }
  return result + 'm';
}

bool endsSequence(const std::string& pending) {
  const auto last = static_cast<unsigned char>(pending.back());
  if (pending.size() == 2) return last != '[';
  return pending.size() > 2 && (last < 0x20 || last >= 0x40);
}

}  // namespace

std::string DimFilter::filtered(std::string_view output) {
  std::string result;
  for (const char byte : output) {
    if (byte == '\x1b') {
      result += pending_;
      pending_ = byte;
    } else if (pending_.empty()) {
      result += byte;
    } else {
      pending_ += byte;
      if (!endsSequence(pending_)) continue;
      result += pending_.size() > 2 && byte == 'm' ? rewritten(pending_) : pending_;
      pending_.clear();
    }
  }
  return result;
}

}  // namespace halyard

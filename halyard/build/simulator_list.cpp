#include "halyard/build/simulator_list.hpp"

#include <algorithm>
#include <compare>
#include <optional>

#include <simdjson.h>

#include "core/text.hpp"
#include "halyard/simulator/simulator_commands.hpp"
#include "halyard/simulator/simulator_runtimes.hpp"

namespace halyard {

namespace {

using simdjson::dom::element;

constexpr std::size_t udidLength = 36;

bool contains(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

bool isPhoneOrPad(std::string_view text) { return contains(text, "iPhone") || contains(text, "iPad"); }

std::string_view textOf(const element& object, std::string_view key) {
  std::string_view value;
  return object[key].get(value) == simdjson::SUCCESS ? value : std::string_view();
}

/// The tool's versions tell it as a Boolean, as "YES" or in words.
bool isUnavailable(const element& device) {
  bool flag = true;
  if (device["isAvailable"].get(flag) == simdjson::SUCCESS) return !flag;
  const std::string_view word = textOf(device, "isAvailable");
  if (!word.empty()) return word != "YES" && word != "true";
  const std::string_view words = textOf(device, "availability");
  return contains(words, "unavailable") || contains(words, "not available");
}

SimInfo::State stateOf(const element& device) {
  if (isUnavailable(device)) return SimInfo::State::unavailable;
  return textOf(device, "state") == "Booted" ? SimInfo::State::booted : SimInfo::State::shutdown;
}

void appendDevices(std::vector<SimInfo>& simulators, std::string_view runtime, const simdjson::dom::array& devices) {
  const std::string label = runtimeLabel(runtime);
  for (const element& device : devices) {
    const std::string_view name = textOf(device, "name");
    const std::string_view udid = textOf(device, "udid");
    const std::string_view type = textOf(device, "deviceTypeIdentifier");
    if (udid.empty() || !(isPhoneOrPad(name) || isPhoneOrPad(type))) continue;
    simulators.push_back({std::string(name), std::string(udid), label, stateOf(device), std::string(type)});
  }
}

bool isUdidCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f') || c == '-';
}

/// The first 36 characters in a row that an identifier is made of.
std::string_view udidIn(std::string_view line) {
  std::size_t length = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    length = isUdidCharacter(line[i]) ? length + 1 : 0;
    if (length == udidLength) return line.substr(i + 1 - udidLength, udidLength);
  }
  return {};
}

struct TextSection {
  std::string label;
  bool isUnavailable = false;
};

/// "-- iOS 17.2 --" or "-- Unavailable: com.apple.CoreSimulator.SimRuntime.iOS-16-4 --".
std::optional<TextSection> sectionHead(std::string_view line) {
  if (line.size() < 4 || !line.starts_with("--") || !line.ends_with("--")) return std::nullopt;
  std::string_view title = trimmed(line.substr(2, line.size() - 4));
  constexpr std::string_view mark = "Unavailable:";
  const bool unavailable = title.starts_with(mark);
  if (unavailable) title = trimmed(title.substr(mark.size()));
  return TextSection{runtimeLabel(title), unavailable};
}

std::optional<SimInfo> simulatorOfLine(std::string_view line, const TextSection& section) {
  const std::string_view udid = udidIn(line);
  if (udid.empty() || !isPhoneOrPad(line)) return std::nullopt;
  SimInfo info{std::string(line.substr(0, line.find(" ("))), std::string(udid), section.label};
  if (section.isUnavailable || contains(line, "(unavailable")) {
    info.state = SimInfo::State::unavailable;
  } else if (contains(line, "(Booted)")) {
    info.state = SimInfo::State::booted;
  }
  return info;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string_view takeNumber(std::string_view& text) {
  std::size_t length = 0;
  while (length < text.size() && isDigit(text[length])) ++length;
  std::string_view number = text.substr(0, length);
  text.remove_prefix(length);
  while (number.size() > 1 && number.front() == '0') number.remove_prefix(1);
  return number;
}

/// Case doesn't count, and runs of digits compare by value: "iPhone 9" stands before "iPhone 16".
std::strong_ordering naturalOrder(std::string_view a, std::string_view b) {
  while (!a.empty() && !b.empty()) {
    if (isDigit(a.front()) && isDigit(b.front())) {
      const std::string_view left = takeNumber(a);
      const std::string_view right = takeNumber(b);
      if (left.size() != right.size()) return left.size() <=> right.size();
      if (const auto order = left <=> right; std::is_neq(order)) return order;
      continue;
    }
    const auto left = static_cast<unsigned char>(lower(a.front()));
    const auto right = static_cast<unsigned char>(lower(b.front()));
    if (left != right) return left <=> right;
    a.remove_prefix(1);
    b.remove_prefix(1);
  }
  return a.size() <=> b.size();
}

int familyRank(const SimInfo& info) {
  if (contains(info.deviceType, "iPhone")) return 0;
  if (contains(info.deviceType, "iPad")) return 1;
  if (contains(info.name, "iPhone")) return 0;
  return contains(info.name, "iPad") ? 1 : 2;
}

std::strong_ordering byName(const SimInfo& a, const SimInfo& b) {
  if (const auto order = naturalOrder(a.name, b.name); std::is_neq(order)) return order;
  if (const auto order = naturalOrder(b.osLabel, a.osLabel); std::is_neq(order)) return order;
  return a.udid <=> b.udid;
}

std::strong_ordering bySystem(const SimInfo& a, const SimInfo& b) {
  if (const auto order = naturalOrder(b.osLabel, a.osLabel); std::is_neq(order)) return order;
  return byName(a, b);
}

std::strong_ordering byType(const SimInfo& a, const SimInfo& b) {
  if (const auto order = familyRank(a) <=> familyRank(b); std::is_neq(order)) return order;
  if (const auto order = naturalOrder(a.deviceType, b.deviceType); std::is_neq(order)) return order;
  return byName(a, b);
}

}  // namespace

std::vector<SimInfo> readSimulatorJson(std::string_view output) {
  std::vector<SimInfo> simulators;
  const std::size_t begin = output.find('{');
  if (begin == std::string_view::npos) return simulators;
  output.remove_prefix(begin);
  simdjson::dom::parser parser;
  simdjson::dom::object runtimes;
  if (parser.parse(output.data(), output.size())["devices"].get(runtimes) != simdjson::SUCCESS) return simulators;
  for (const auto [runtime, entry] : runtimes) {
    simdjson::dom::array devices;
    if (entry.get(devices) == simdjson::SUCCESS) appendDevices(simulators, runtime, devices);
  }
  return simulators;
}

std::vector<SimInfo> readSimulatorText(std::string_view output) {
  std::vector<SimInfo> simulators;
  TextSection section;
  for (const std::string_view raw : splitLines(output)) {
    const std::string_view line = trimmed(raw);
    if (auto head = sectionHead(line)) {
      section = std::move(*head);
    } else if (auto simulator = simulatorOfLine(line, section)) {
      simulators.push_back(std::move(*simulator));
    }
  }
  return simulators;
}

std::vector<SimInfo> listSimulators() {
  std::vector<SimInfo> simulators = readSimulatorJson(captureSimulator(SimulatorCommand::listDevicesJson));
  if (simulators.empty()) simulators = readSimulatorText(captureSimulator(SimulatorCommand::listTextQuietly));
  return simulators;
}

void sortSimulators(std::vector<SimInfo>& simulators, std::string_view order) {
  const auto compare = order == "os" ? bySystem : order == "type" ? byType : byName;
  std::ranges::stable_sort(simulators,
                           [compare](const SimInfo& a, const SimInfo& b) { return std::is_lt(compare(a, b)); });
}

}  // namespace halyard

#include "halyard/simulator/simulator_runtimes.hpp"

#include <algorithm>

#include <simdjson.h>

#include "core/text.hpp"
#include "halyard/simulator/simulator_commands.hpp"

namespace halyard {

namespace {

using simdjson::dom::element;

std::string textOf(const element& object, std::string_view key) {
  std::string_view value;
  return object[key].get(value) == simdjson::SUCCESS ? std::string(value) : std::string();
}

bool isAvailable(const element& runtime) {
  bool available = false;
  return runtime["isAvailable"].get(available) == simdjson::SUCCESS && available;
}

std::vector<SimDeviceType> deviceTypesOf(const element& runtime) {
  std::vector<SimDeviceType> types;
  simdjson::dom::array entries;
  if (runtime["supportedDeviceTypes"].get(entries) != simdjson::SUCCESS) return types;
  for (const element& entry : entries) {
    SimDeviceType type{textOf(entry, "name"), textOf(entry, "identifier"), textOf(entry, "productFamily")};
    if (!type.name.empty() && !type.identifier.empty()) types.push_back(std::move(type));
  }
  std::ranges::stable_sort(types, {}, &SimDeviceType::name);
  return types;
}

}  // namespace

std::vector<SimRuntime> readRuntimes(std::string_view output) {
  if (const std::size_t begin = output.find('{'); begin != std::string_view::npos) output.remove_prefix(begin);
  std::vector<SimRuntime> runtimes;
  simdjson::dom::parser parser;
  simdjson::dom::array entries;
  if (parser.parse(output.data(), output.size())["runtimes"].get(entries) != simdjson::SUCCESS) return runtimes;
  for (const element& entry : entries) {
    SimRuntime runtime{textOf(entry, "name"), textOf(entry, "identifier"), textOf(entry, "platform"), {}};
    if (runtime.name.empty() || runtime.identifier.empty() || !isAvailable(entry)) continue;
    runtime.supportedDeviceTypes = deviceTypesOf(entry);
    runtimes.push_back(std::move(runtime));
  }
  std::ranges::stable_sort(runtimes, {}, &SimRuntime::name);
  return runtimes;
}

std::vector<SimRuntime> listRuntimes() { return readRuntimes(captureSimulator(SimulatorCommand::listRuntimes)); }

std::string runtimeLabel(std::string_view identifier) {
  std::string label(identifier);
  replaceAll(label, "com.apple.CoreSimulator.SimRuntime.", "");
  const std::size_t platformEnd = label.find('-');
  if (platformEnd == std::string::npos) return label;
  std::replace(label.begin() + static_cast<std::ptrdiff_t>(platformEnd) + 1, label.end(), '-', '.');
  label[platformEnd] = ' ';
  return label;
}

}  // namespace halyard

// What the catalog costs: loading it, beside plain parses of the same document, and a look-up. The targets: 2 ms and
// 100 ns of processor time.
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <simdjson.h>
#include <sys/utsname.h>

#include "core/base64.hpp"
#include "core/embedded_catalog.hpp"
#include "core/string_catalog.hpp"

namespace {

constexpr int rounds = 51;
constexpr int lookUpRounds = 400;
constexpr double loadTarget = 2e-3;
constexpr double lookUpTarget = 100e-9;

double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// The middle of several rounds; `prepare` isn't counted.
template <typename Prepare, typename Work>
double median(Prepare prepare, Work work) {
  std::vector<double> seconds;
  for (int round = 0; round < rounds; ++round) {
    prepare();
    const double begun = processorSeconds();
    work();
    seconds.push_back(processorSeconds() - begun);
  }
  std::nth_element(seconds.begin(), seconds.begin() + rounds / 2, seconds.end());
  return seconds[rounds / 2];
}

template <typename Work>
double median(Work work) {
  return median([] {}, work);
}

void machine() {
  utsname name{};
  uname(&name);
  std::string model;
  std::ifstream cpus("/proc/cpuinfo");
  for (std::string line; model.empty() && std::getline(cpus, line);) {
    if (line.starts_with("model name")) model = ", " + line.substr(line.find(':') + 2);
  }
  fmt::print("{:%Y-%m-%d %H:%M}  {} {} {}{}\n", fmt::localtime(std::time(nullptr)), name.sysname, name.release,
             name.machine, model);
}

void row(std::string_view what, double value, double unit, std::string_view unitName, double target = 0) {
  fmt::print("{:44} {:9.3f} {}", what, value / unit, unitName);
  if (target > 0) fmt::print("  (target {:g}: {})", target / unit, value <= target ? "met" : "MISSED");
  fmt::print("\n");
}

std::vector<std::string> keysOf(std::string_view document) {
  std::vector<std::string> keys;
  const auto json = nlohmann::json::parse(document);
  for (const auto& [key, entry] : json["strings"].items()) keys.push_back(key);
  return keys;
}

/// Seconds per look-up over all keys.
double lookUp(const std::vector<std::string>& keys) {
  std::size_t characters = 0;
  const double seconds = median([&] {
    for (int round = 0; round < lookUpRounds / rounds + 1; ++round) {
      for (const std::string& key : keys) characters += halyard::localized(key).size();
    }
  });
  if (characters == 0) std::abort();
  return seconds / static_cast<double>(keys.size()) / (lookUpRounds / rounds + 1);
}

}  // namespace

int main() {
  const double begun = processorSeconds();
  halyard::loadStringCatalog("");
  const double firstLoad = processorSeconds() - begun;
  machine();
  const std::string document = halyard::base64Decoded(halyard::embeddedCatalog()).value();
  fmt::print("{} bytes embedded, {} bytes of JSON\n\n", halyard::embeddedCatalog().size(), document.size());

  const double load = median(halyard::unloadStringCatalog, [] { halyard::loadStringCatalog(""); });
  row("loadStringCatalog(), first of the process", firstLoad, 1e-3, "ms", loadTarget);
  row("loadStringCatalog()", load, 1e-3, "ms", loadTarget);
  row("  of it: base64", median([] { static_cast<void>(halyard::base64Decoded(halyard::embeddedCatalog())); }), 1e-3,
      "ms");
  row("simdjson, document only", median([&] {
        simdjson::dom::parser parser;
        if (parser.parse(document).error() != simdjson::SUCCESS) std::abort();
      }),
      1e-3, "ms");
  row("nlohmann::json, document only", median([&] {
        if (nlohmann::json::parse(document).empty()) std::abort();
      }),
      1e-3, "ms");

  std::vector<std::string> keys = keysOf(document);
  fmt::print("\n{} keys\n", keys.size());
  row("localized(key), English", lookUp(keys), 1e-9, "ns", lookUpTarget);
  halyard::setCurrentLanguage("de");
  const double german = lookUp(keys);
  row("localized(key), German", german, 1e-9, "ns", lookUpTarget);
  for (std::string& key : keys) key = "  " + key + " ";
  row("localized(key) with blanks to trim", lookUp(keys), 1e-9, "ns");
  for (std::string& key : keys) key = "no_such" + key.substr(2);
  row("localized(key) without a text", lookUp(keys), 1e-9, "ns");
  return load <= loadTarget && german <= lookUpTarget ? EXIT_SUCCESS : EXIT_FAILURE;
}

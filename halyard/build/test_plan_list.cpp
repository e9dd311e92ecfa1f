#include "halyard/build/test_plan_list.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <stdlib.h>
#include <unistd.h>

#include "core/app_dependencies.hpp"
#include "core/text.hpp"
#include "halyard/build/scheme_list.hpp"
#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace {

constexpr std::string_view planSuffix = ".xctestplan";

constexpr std::string_view parserScript = R"(import sys
import xml.etree.ElementTree as ElementTree

sys.stdout.reconfigure(encoding="utf-8", errors="replace")
try:
    root = ElementTree.parse(sys.argv[1]).getroot()
except (OSError, ElementTree.ParseError):
    sys.exit(1)
seen = set()
for plan in root.findall("./TestAction/TestPlans/TestPlanReference"):
    reference = plan.get("reference", "").replace("\n", " ").replace("\r", " ")
    path = reference.split(":", 1)[-1]
    name = path.rsplit("/", 1)[-1]
    if name.endswith(".xctestplan"):
        name = name[: -len(".xctestplan")]
    if not name or name in seen:
        continue
    seen.add(name)
    print(("DEFAULT:" if plan.get("default") == "YES" else "plan:") + name + "|" + path)
)";

/// The script in a new folder of the temporary directory, gone with this value. A fixed path there could be a link that
/// somebody else has laid.
class ParserScript {
 public:
  ParserScript() {
    std::error_code failed;
    std::string folder = (std::filesystem::temp_directory_path(failed) / "halyard-XXXXXX").string();
    if (failed || mkdtemp(folder.data()) == nullptr) return;
    folder_ = folder;
    std::ofstream(path()) << parserScript;
  }
  ~ParserScript() {
    std::error_code ignored;
    if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
  }
  ParserScript(const ParserScript&) = delete;
  ParserScript& operator=(const ParserScript&) = delete;

  [[nodiscard]] std::string path() const { return folder_ + "/xctestplan_parse.py"; }
  [[nodiscard]] std::vector<TestPlan> plansOf(const std::string& schemeFile) const {
    if (folder_.empty() || schemeFile.empty()) return {};
    return readTestPlanLines(run("python3 " + shellQuote(path()) + " " + shellQuote(schemeFile) + " 2>/dev/null"));
  }

 private:
  std::string folder_;
};

bool hasPlan(const std::vector<TestPlan>& plans, std::string_view name) {
  return std::ranges::find(plans, name, &TestPlan::name) != plans.end();
}

}  // namespace

std::vector<TestPlan> readTestPlanLines(std::string_view output) {
  std::vector<TestPlan> plans;
  for (const std::string_view line : splitLines(output)) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) continue;
    const std::string_view kind = line.substr(0, colon);
    if (kind != "DEFAULT" && kind != "plan") continue;
    const std::string_view rest = line.substr(colon + 1);
    const std::size_t bar = rest.find('|');
    const std::string_view name = trimmed(rest.substr(0, bar));
    if (name.empty() || hasPlan(plans, name)) continue;
    const std::string_view path = bar == std::string_view::npos ? std::string_view() : rest.substr(bar + 1);
    plans.push_back({std::string(name), std::string(path), kind == "DEFAULT"});
  }
  return plans;
}

std::vector<TestPlan> readTestPlanFiles(std::string_view output, const std::vector<TestPlan>& known) {
  std::vector<TestPlan> plans;
  for (const std::string_view raw : splitLines(output)) {
    const std::string_view path = trimmed(raw);
    if (!path.ends_with(planSuffix)) continue;
    std::string_view name = path.substr(path.rfind('/') + 1);
    name.remove_suffix(planSuffix.size());
    if (name.empty() || hasPlan(known, name) || hasPlan(plans, name)) continue;
    plans.push_back({std::string(name), std::string(path)});
  }
  std::ranges::sort(plans, {}, &TestPlan::name);
  return plans;
}

std::vector<TestPlan> testPlansOfSchemeFile(const std::string& schemeFile) {
  return ParserScript().plansOf(schemeFile);
}

std::vector<TestPlan> schemeTestPlans(std::string_view scheme) {
  const std::string file = schemeFilePath(scheme);
  return file.empty() ? std::vector<TestPlan>() : testPlansOfSchemeFile(file);
}

std::vector<TestPlan> fileTestPlans(const std::vector<TestPlan>& known) {
  return readTestPlanFiles(run("find " + shellQuote(projectFolder()) + " -name '*.xctestplan' 2>/dev/null"), known);
}

std::string schemeWithTestPlan(std::string_view plan) {
  const std::string files = run("find " + shellQuote(projectFolder()) + " -path '*/xcschemes/*.xcscheme' 2>/dev/null");
  const ParserScript script;
  for (const std::string_view line : splitLines(files)) {
    const std::filesystem::path file(trimmed(line));
    if (file.extension() == ".xcscheme" && hasPlan(script.plansOf(file.string()), plan)) return file.stem().string();
  }
  return {};
}

}  // namespace halyard

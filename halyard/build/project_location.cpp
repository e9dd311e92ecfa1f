#include "halyard/build/project_location.hpp"

#include <filesystem>
#include <string_view>

#include "core/app_context.hpp"
#include "core/app_dependencies.hpp"
#include "halyard/cache/cache_locations.hpp"

namespace halyard {

namespace {

struct ProjectLocation {
  std::string flag;
  std::string path;
};

ProjectLocation& location() {
  static ProjectLocation current;
  return current;
}

struct ProjectSearch {
  std::string_view flag;
  const char* command;
};

// A project holds a workspace inside itself, and a playground may hold either: neither is the user's.
constexpr ProjectSearch searches[] = {
    {"-workspace",
     "find . -maxdepth 3 -name '*.xcworkspace' ! -path '*/*.xcodeproj/*' ! -path '*/*.playground/*' 2>/dev/null | "
     "head -1"},
    {"-project", "find . -maxdepth 3 -name '*.xcodeproj' ! -path '*/*.playground/*' 2>/dev/null | head -1"},
};

ProjectLocation located() {
  const std::string& chosen = selectedProjectFilePath();
  if (!chosen.empty()) {
    if (AppDependencies::current().fileSystemClient->fileExists(chosen)) {
      return {chosen.ends_with(".xcworkspace") ? "-workspace" : "-project", chosen};
    }
    setSelectedProjectFilePath({});
  }
  for (const ProjectSearch& search : searches) {
    if (std::string found = run(search.command); !found.empty()) return {std::string(search.flag), std::move(found)};
  }
  return {};
}

}  // namespace

void detectProject() { location() = located(); }

const std::string& projectFlag() { return location().flag; }

const std::string& projectPath() { return location().path; }

std::string privateDerivedDataName() {
  const std::string base = std::filesystem::path(projectPath()).stem().string();
  return base.empty() ? "CapstanLightBuild" : "CapstanLightBuild-" + base;
}

std::string privateDerivedDataPath() { return cachePath(CachePlace::derivedData) + "/" + privateDerivedDataName(); }

std::string privateDerivedDataDisplay() { return "DerivedData/" + privateDerivedDataName(); }

}  // namespace halyard

#include "halyard/packages/package_commands.hpp"

#include <filesystem>

#include <gtest/gtest.h>

#include "core/app_dependencies.hpp"
#include "halyard/exec/command_runner.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

TEST(PackageCommand, WordsAreThoseOfTheTools) {
  EXPECT_EQ(PackageCommand::showPackageGraph, "swift package show-dependencies 2>/dev/null");
  EXPECT_EQ(PackageCommand::resolvePackages, "swift package resolve");
  EXPECT_EQ(PackageCommand::updatePackages, "swift package update");
  EXPECT_EQ(PackageCommand::showPodfileLock, "cat 'Podfile.lock'");
  EXPECT_EQ(PackageCommand::installPods, "pod install");
  EXPECT_EQ(PackageCommand::updatePods, "pod update");
  EXPECT_EQ(PackageCommand::cleanPodCache, "pod cache clean --all");
  EXPECT_EQ(PackageCommand::showCartfileResolved, "cat 'Cartfile.resolved'");
  EXPECT_EQ(PackageCommand::bootstrapFrameworks, "carthage bootstrap --use-xcframeworks");
  EXPECT_EQ(PackageCommand::updateFrameworks, "carthage update --use-xcframeworks");
  EXPECT_EQ(PackageCommand::outdatedFrameworks, "carthage outdated");
  EXPECT_EQ(PackageCommand::buildFrameworks, "carthage build --use-xcframeworks");
  EXPECT_EQ(PackageCommand::cleanFrameworkBuilds, "rm -rf Carthage/Build");
  EXPECT_EQ(PackageCommand::showPackageResolved("./A/Package.resolved"),
            "python3 -m json.tool './A/Package.resolved' 2>/dev/null || cat './A/Package.resolved'");
  EXPECT_EQ(PackageCommand::inFolder("/work/My App", "pod install"), "(cd '/work/My App' && pod install)");
}

TEST(PackageCommand, HostileNamesAreOnlyNames) {
  DefaultCommandRunner runner;
  const TemporaryFolder folder;
  const std::string hostile = folder.makeFolder("a'b $(touch x) `touch y`; touch z \n;");
  folder.write("a'b $(touch x) `touch y`; touch z \n;/Package.resolved", "plain text");
  const std::string inside = "cd " + folder.at() + "; ";
  EXPECT_EQ(runner.run(inside + PackageCommand::inFolder(hostile, "ls")), "Package.resolved");
  EXPECT_EQ(runner.run(inside + PackageCommand::showPackageResolved(hostile + "/Package.resolved")), "plain text");
  for (const char* name : {"x", "y", "z"}) EXPECT_FALSE(std::filesystem::exists(folder.at(name))) << name;
}

TEST(PackageTool, IsThereWhenWhichFindsIt) {
  ContextReset context;
  context.runner.expect("which pod 2>/dev/null", "/opt/bin/pod\n").expect("which carthage 2>/dev/null");
  EXPECT_TRUE(packageToolExists("pod"));
  EXPECT_FALSE(packageToolExists("carthage"));
}

}  // namespace
}  // namespace halyard

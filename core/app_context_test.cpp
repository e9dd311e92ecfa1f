#include "core/app_context.hpp"

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "core/app_dependencies.hpp"

namespace halyard {
namespace {

class AppContextTest : public testing::Test {
 protected:
  AppContextTest() { AppContext::shared().reset(); }
  ~AppContextTest() override { AppContext::shared().reset(); }
};

void expectDefaults(const AppContextProviding& context) {
  EXPECT_EQ(context.selectedScheme(), "");
  EXPECT_EQ(context.selectedTestScheme(), "");
  EXPECT_EQ(context.selectedTestPlan(), "");
  EXPECT_FALSE(context.selectedTestPlanIsFromScheme());
  EXPECT_EQ(context.selectedConfig(), "Debug");
  EXPECT_EQ(context.selectedDevice(), std::nullopt);
  EXPECT_EQ(context.selectedPhysicalDevice(), std::nullopt);
  EXPECT_EQ(context.lastSelectedDeviceKind(), "simulator");
  EXPECT_EQ(context.selectedSimSort(), "name");
  EXPECT_EQ(context.selectedBundleID(), "");
  EXPECT_EQ(context.cachedPlatforms(), std::nullopt);
  EXPECT_EQ(context.cachedPlatformsScheme(), "");
  EXPECT_EQ(context.cachedTestPlatforms(), std::nullopt);
  EXPECT_EQ(context.cachedTestPlatformsScheme(), "");
  EXPECT_FALSE(context.parallelTestingEnabled());
  EXPECT_FALSE(context.operationAborted());
  EXPECT_EQ(context.selectedWorkingDirectory(), "");
  EXPECT_EQ(context.selectedFileBrowserPath(), "");
  EXPECT_EQ(context.selectedProjectFilePath(), "");
  EXPECT_EQ(context.selectedProjectJsonPath(), "");
}

void expectAutoBuildDefaults(const AppContextProviding& context) {
  EXPECT_EQ(context.autoBuildIntervalHours(), 1.0);
  EXPECT_FALSE(context.autoBuildActive());
  EXPECT_EQ(context.autoBuildNextFireDate(), std::nullopt);
  EXPECT_EQ(context.autoBuildLastRunDate(), std::nullopt);
  EXPECT_EQ(context.autoBuildLastRunSuccess(), std::nullopt);
  EXPECT_EQ(context.autoBuildLastLogPath(), "");
  EXPECT_TRUE(context.autoBuildExtraDevices().empty());
  EXPECT_TRUE(context.autoBuildExtraConfigs().empty());
  EXPECT_EQ(context.autoBuildCleanLevel(), 0);
  EXPECT_FALSE(context.autoBuildRunXcodebuildClean());
  EXPECT_FALSE(context.autoBuildSyncPackageManagers());
  EXPECT_TRUE(context.autoBuildExtraSchemes().empty());
}

TEST_F(AppContextTest, AFreshContextHoldsTheDefaults) {
  const AppContext context;
  expectDefaults(context);
  expectAutoBuildDefaults(context);
}

TEST_F(AppContextTest, TheAccessorsReachTheSharedInstance) {
  setSelectedScheme("Demo");
  setAutoBuildExtraConfigs({"Debug", "Release"});
  setSelectedDevice(SelectedDevice{"iPhone", "1", "iOS 18"});
  EXPECT_EQ(AppContext::shared().selectedScheme(), "Demo");
  EXPECT_EQ(selectedScheme(), "Demo");
  EXPECT_EQ(autoBuildExtraConfigs(), (std::vector<std::string>{"Debug", "Release"}));
  AppContext::shared().setSelectedDevice(std::nullopt);
  EXPECT_EQ(selectedDevice(), std::nullopt);
}

TEST_F(AppContextTest, EachFieldKeepsWhatIsSetThroughTheInterface) {
  AppContextProviding& context = AppContext::shared();
  const Date now = std::chrono::system_clock::now();
  context.setAutoBuildLastRunDate(now);
  context.setAutoBuildLastRunSuccess(false);
  context.setAutoBuildIntervalHours(0.25);
  context.setParallelTestingEnabled(true);
  context.setAutoBuildExtraDevices({{"iPad", "2", ""}});
  EXPECT_EQ(context.autoBuildLastRunDate(), now);
  EXPECT_EQ(context.autoBuildLastRunSuccess(), false);
  EXPECT_EQ(context.autoBuildIntervalHours(), 0.25);
  EXPECT_TRUE(context.parallelTestingEnabled());
  EXPECT_EQ(context.autoBuildExtraDevices(), (std::vector<SelectedDevice>{{"iPad", "2", ""}}));
}

TEST_F(AppContextTest, BothKindsOfDeviceMayBeSetAtOnce) {
  PhysicalDeviceInfo phone;
  phone.name = "Ada's iPhone";
  phone.udid = "3";
  setSelectedDevice(SelectedDevice{"iPhone", "1", "iOS 18"});
  setSelectedPhysicalDevice(phone);
  EXPECT_EQ(selectedDevice()->udid, "1");
  EXPECT_EQ(selectedPhysicalDevice(), phone);
  EXPECT_EQ(lastSelectedDeviceKind(), "simulator");
}

TEST_F(AppContextTest, AnotherSchemeLeavesTheCachedPlatformsInPlace) {
  setSelectedScheme("Demo");
  setCachedPlatforms(SchemePlatforms{.iOS = true});
  setCachedPlatformsScheme("Demo");
  setSelectedScheme("Other");
  EXPECT_EQ(cachedPlatforms(), SchemePlatforms{.iOS = true});
  EXPECT_EQ(cachedPlatformsScheme(), "Demo");
  EXPECT_NE(cachedPlatformsScheme(), selectedScheme());
}

TEST_F(AppContextTest, ResettingBringsTheDefaultsBack) {
  setSelectedConfig("Release");
  setSelectedSimSort("os");
  setLastSelectedDeviceKind("physical");
  setSelectedDevice(SelectedDevice{"iPhone", "1", ""});
  setAutoBuildIntervalHours(8);
  setAutoBuildExtraSchemes({"A"});
  setOperationAborted(true);
  AppContext::shared().reset();
  expectDefaults(AppContext::shared());
  expectAutoBuildDefaults(AppContext::shared());
}

TEST_F(AppContextTest, AnAbortOfAnotherThreadIsSeen) {
  std::thread other([] { setOperationAborted(true); });
  while (!operationAborted()) std::this_thread::yield();
  other.join();
  setOperationAborted(false);
  EXPECT_FALSE(operationAborted());
}

TEST_F(AppContextTest, SwappedDependenciesComeBackAtTheGuardsEnd) {
  AppContext own;
  AppContextProviding* const before = AppDependencies::current().appContext;
  {
    const DependenciesGuard guard({nullptr, nullptr, &own});
    EXPECT_EQ(AppDependencies::current().appContext, &own);
    AppDependencies::current().appContext->setSelectedScheme("Own");
  }
  EXPECT_EQ(AppDependencies::current().appContext, before);
  EXPECT_EQ(own.selectedScheme(), "Own");
  EXPECT_EQ(selectedScheme(), "");
}

}  // namespace
}  // namespace halyard

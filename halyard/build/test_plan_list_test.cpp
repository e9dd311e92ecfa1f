#include "halyard/build/test_plan_list.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "halyard/build/project_location.hpp"
#include "halyard/exec/command_runner.hpp"
#include "halyard/exec/file_system_client.hpp"
#include "test_places.hpp"
#include "tests/support/context_reset.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

TEST(TestPlanList, LinesTellNamePathAndDefault) {
  const std::vector<TestPlan> expected = {
      {"Unit", "Plans/Unit.xctestplan", false}, {"All", "All.xctestplan", true}, {"Bare", "", false}};
  EXPECT_EQ(readTestPlanLines("plan:Unit|Plans/Unit.xctestplan\nDEFAULT:All|All.xctestplan\nplan:All|again\nplan:|x\n"
                              "noise\nother:Name|path\nplan:Bare\n"),
            expected);
  EXPECT_TRUE(readTestPlanLines("").empty());
}

TEST(TestPlanList, FilesThatTheSchemeHasAreLeftOut) {
  const std::vector<TestPlan> known = {{"Unit", "Unit.xctestplan", true}};
  const std::vector<TestPlan> expected = {{"Smoke", "./b/Smoke.xctestplan"}, {"UI", "./a/UI.xctestplan"}};
  EXPECT_EQ(readTestPlanFiles("./a/UI.xctestplan\n./Unit.xctestplan\n./b/Smoke.xctestplan\n./c/UI.xctestplan\n"
                              "./.xctestplan\n./other.txt\n",
                              known),
            expected);
}

/// A project on disk, searched by the real tools.
class TestPlansOnDisk : public testing::Test {
 protected:
  explicit TestPlansOnDisk(const std::string& name = "It's A")
      : project_(folder.makeFolder(name + " $(touch harm)/A.xcodeproj")),
        real_({&shell, &files, &AppContext::shared()}) {
    setSelectedProjectFilePath(project_);
    detectProject();
  }

  void writeScheme(const std::string& name, const std::string& plans) const {
    std::filesystem::create_directories(project_ + "/xcshareddata/xcschemes");
    std::ofstream(project_ + "/xcshareddata/xcschemes/" + name + ".xcscheme")
        << "<?xml version=\"1.0\"?><Scheme><BuildAction><TestPlanReference reference=\"container:Wrong.xctestplan\"/>"
           "</BuildAction><TestAction><TestPlans>" +
               plans + "</TestPlans></TestAction></Scheme>";
  }

  ContextReset context;
  TemporaryFolder folder;
  std::string project_;
  DefaultCommandRunner shell;
  DefaultFileSystemClient files;
  DependenciesGuard real_;
};

TEST_F(TestPlansOnDisk, TheSchemesOwnPlansAreReadFromItsFileEachNameOnce) {
  writeScheme("My 'S'", R"(<TestPlanReference reference="container:Plans/Ünit.xctestplan"/>
    <TestPlanReference reference="container:All.xctestplan" default="YES"/>
    <TestPlanReference reference="container:Other/All.xctestplan"/><TestPlanReference/>)");
  const std::vector<TestPlan> expected = {{"Ünit", "Plans/Ünit.xctestplan", false}, {"All", "All.xctestplan", true}};
  EXPECT_EQ(schemeTestPlans("My 'S'"), expected);
}

TEST_F(TestPlansOnDisk, ASchemeWithoutAFileOrWithABrokenOneHasNoPlans) {
  EXPECT_TRUE(schemeTestPlans("Missing").empty());
  writeScheme("Broken", "<TestPlanReference");
  EXPECT_TRUE(schemeTestPlans("Broken").empty());
  EXPECT_TRUE(schemeTestPlans("").empty());
}

TEST_F(TestPlansOnDisk, PlansThatOnlyLieInTheFolderAreFoundAndTheSchemeThatListsThem) {
  writeScheme("First", R"(<TestPlanReference reference="container:All.xctestplan" default="YES"/>)");
  writeScheme("Second", R"(<TestPlanReference reference="container:Smoke.xctestplan"/>)");
  const std::string home = std::filesystem::path(project_).parent_path().string();
  std::ofstream(home + "/All.xctestplan") << "{}";
  std::ofstream(home + "/Smoke.xctestplan") << "{}";
  std::ofstream(home + "/Alone.xctestplan") << "{}";
  const auto plans = fileTestPlans(schemeTestPlans("First"));
  ASSERT_EQ(plans.size(), 2u);
  EXPECT_EQ(plans[0].name, "Alone");
  EXPECT_EQ(plans[1].name, "Smoke");
  EXPECT_EQ(schemeWithTestPlan("Smoke"), "Second");
  EXPECT_EQ(schemeWithTestPlan("Alone"), "");
  EXPECT_FALSE(std::filesystem::exists("harm"));
}

TEST_F(TestPlansOnDisk, TheParserLeavesNothingBehind) {
  writeScheme("S", "");
  const TemporaryFolder own;
  setenv("TMPDIR", own.at().c_str(), 1);
  schemeTestPlans("S");
  unsetenv("TMPDIR");
  EXPECT_TRUE(std::filesystem::is_empty(own.path()));
}

TEST(TestPlanList, RecordedSchemesAreRead) {
  ContextReset context;
  DefaultCommandRunner shell;
  const DependenciesGuard real({&shell, &context.files, &AppContext::shared()});
  const std::filesystem::path folder = std::filesystem::path(HALYARD_SOURCE_DIR) / "../shared/recordings/project";
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) {
    if (entry.path().extension() != ".xcscheme") continue;
    std::ifstream file(entry.path());
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const bool hasPlans = text.find("<TestPlanReference") != std::string::npos;
    const auto plans = testPlansOfSchemeFile(entry.path().string());
    EXPECT_EQ(!plans.empty(), hasPlans) << entry.path();
    for (const TestPlan& plan : plans) EXPECT_EQ(plan.name.find(':'), std::string::npos) << plan.name;
  }
  EXPECT_EQ(readTestPlanLines("plan:A|A.xctestplan").size(), 1u);
}

}  // namespace
}  // namespace halyard

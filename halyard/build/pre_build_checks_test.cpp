#include "halyard/build/pre_build_checks.hpp"

#include <filesystem>

#include "halyard/build/build_flow_testing.hpp"
#include "halyard/exec/command_runner.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class PreBuildChecks : public FlowTest {
 protected:
  void answers(const std::string& lint, const std::string& comments, const std::string& unwraps,
               const std::string& conflicts) {
    const auto checks = preBuildChecks();
    runner.expectContaining("which", lint.empty() ? "" : "/opt/swiftlint\n");
    if (!lint.empty()) runner.expect("swiftlint lint --quiet 2>/dev/null | wc -l | tr -d ' '", lint);
    runner.expect(checks[1].command, comments).expect(checks[2].command, unwraps).expect(checks[3].command, conflicts);
  }
};

TEST_F(PreBuildChecks, AllClean) {
  answers("0\n", "0", "0", "0");
  const std::string text = shown(runPreBuildChecks, "x");
  EXPECT_THAT(text, HasSubstr("  ✓ SwiftLint: no errors\n"
                              "  ✓ No TODO/FIXME/HACK comments.\n"
                              "  ✓ No force-unwraps.\n"
                              "  ✓ No conflict markers.\n"
                              "  ✓ All pre-build checks passed.\n"));
  EXPECT_THAT(text, HasSubstr(backPrompt));
}

TEST_F(PreBuildChecks, CommentsAndUnwrapsAreShownAndDontCount) {
  answers("0", "3", "12", "0");
  const std::string text = shown(runPreBuildChecks, "x");
  EXPECT_THAT(text,
              AllOf(HasSubstr("⚠ TODO/FIXME/HACK: 3 open comments"), HasSubstr("⚠ Force-Unwraps: 12 occurrences")));
  EXPECT_THAT(text, HasSubstr("✓ All pre-build checks passed."));
}

TEST_F(PreBuildChecks, LintFindingsCountAndConflictMarkersAddOne) {
  answers("4", "0", "0", "9");
  const std::string text = shown(runPreBuildChecks, "x");
  EXPECT_THAT(text,
              AllOf(HasSubstr("⚠ SwiftLint: 4 findings"), HasSubstr("✗ Conflict markers found! Please resolve.")));
  EXPECT_THAT(text, HasSubstr("⚠ There are 5 issues — please review."));
}

TEST_F(PreBuildChecks, AMissingToolIsNamedAndDoesNotCount) {
  answers("", "0", "0", "0");
  const std::string text = shown(runPreBuildChecks, "x");
  EXPECT_THAT(text, AllOf(HasSubstr("⚠ SwiftLint not installed — skipped."), HasSubstr("checks passed.")));
  EXPECT_THAT(text, Not(HasSubstr("SwiftLint: ")));
}

TEST(FindingsCount, AnythingButANumberIsNone) {
  EXPECT_EQ(findingsCount(" 12 \n"), 12);
  for (const std::string_view text : {"", "x", "1x", "-3", "99999999999999999999", "1 2", "0"}) {
    EXPECT_EQ(findingsCount(text), 0) << text;
  }
}

/// The commands as the shell and its tools understand them.
class PreBuildCheckCommands : public testing::Test {
 protected:
  PreBuildCheckCommands() : before_(std::filesystem::current_path()) { std::filesystem::current_path(folder.at("")); }
  ~PreBuildCheckCommands() override { std::filesystem::current_path(before_); }

  int findings(std::size_t check) { return findingsCount(runner.run(preBuildChecks()[check].command)); }

  TemporaryFolder folder;
  DefaultCommandRunner runner;

 private:
  std::filesystem::path before_;
};

TEST_F(PreBuildCheckCommands, CountLinesOfSwiftFilesOutsideOfBuildFolders) {
  folder.write("A.swift", "// TODO: a\n// FIXME: b\nlet x = y!.z\nif a != b {}\nlet z = w!.v // sure\n");
  folder.write("sub/B.swift", "// HACK\n<<<<<<< HEAD\n=======\n>>>>>>> other\n");
  folder.write(".build/C.swift", "// TODO\nlet x = y!.z\n<<<<<<< HEAD\n");
  folder.write("DerivedData/D.swift", "// TODO\nlet x = y!.z\n");
  folder.write("E.m", "// TODO\n");
  EXPECT_EQ(findings(1), 3);
  EXPECT_EQ(findings(2), 1);
  EXPECT_EQ(findings(3), 2);
}

TEST_F(PreBuildCheckCommands, AnEmptyFolderHasNoFindings) {
  EXPECT_EQ(findings(1), 0);
  EXPECT_EQ(findings(2), 0);
  EXPECT_EQ(findings(3), 0);
}

}  // namespace
}  // namespace halyard

#include "halyard/shell/open_file.hpp"

#include <gmock/gmock.h>

#include "halyard/terminal/output.hpp"
#include "halyard/terminal/screen.hpp"
#include "tests/support/shell_fixture.hpp"
#include "tests/support/typed_input.hpp"

namespace halyard {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class OpenFile : public ShellTest {
 protected:
  OpenFile() {
    files.addFile("/work/it's a report.pdf");
    setSelectedFileBrowserPath("/work");
  }
  static std::string shown(std::string_view keys) {
    const TypedInput typed(keys);
    testing::internal::CaptureStdout();
    openFileWithApp();
    flushOutput();
    return stripAnsi(testing::internal::GetCapturedStdout());
  }
};

TEST_F(OpenFile, TheChosenFileIsOpenedQuoted) {
  const std::string screen = shown("\rx");
  EXPECT_THAT(runner.commands, ElementsAre(R"(open '/work/it'\''s a report.pdf' 2>/dev/null)"));
  EXPECT_THAT(screen, AllOf(HasSubstr("Select file to open"), HasSubstr("› it's a report.pdf"),
                            HasSubstr("Opening file"), HasSubstr("[X]")));
}

TEST_F(OpenFile, CancellingOpensNothing) {
  const std::string screen = shown("xx");
  EXPECT_THAT(runner.commands, IsEmpty());
  EXPECT_THAT(screen, AllOf(Not(HasSubstr("Opening file")), HasSubstr("Cancelled"), HasSubstr("[X]")));
}

}  // namespace
}  // namespace halyard

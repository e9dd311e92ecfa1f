#include "halyard/browser/directory_desktop.hpp"

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>

#include "halyard/browser/browser_testing.hpp"
#include "halyard/exec/command_runner.hpp"

namespace halyard {
namespace {

using testing::HasSubstr;

/// Names that a careless command would obey.
const std::vector<std::string> hostileNames = {"it's",
                                               "$(touch pwned)",
                                               "`touch pwned`",
                                               "a\"b",
                                               "new\nline",
                                               "; touch pwned #",
                                               "-e",
                                               "back\\",
                                               "\\\" & (do shell script \"touch pwned\") & \"",
                                               "\x1b[31m",
                                               "bad\xFF",
                                               "%s%n",
                                               "' -e 'do shell script \"touch pwned\"' -e '",
                                               "!x",
                                               "*",
                                               "  blanks  "};

class DirectoryDesktop : public BrowserTest {
 protected:
  DirectoryDesktop() {
    folder.makeFolder("box");
    folder.write("file.txt", "");
    folder.makeFolder("App.xcodeproj");
  }
};

TEST_F(DirectoryDesktop, AFileIsOpenedWithItsApplication) {
  openAt();
  for (const auto kind : {RawKey::Kind::right, RawKey::Kind::enter}) {
    select("file.txt");
    context.runner.expect("/usr/bin/open '" + folder.at("file.txt") + "'");
    press(kind);
    EXPECT_EQ(lastToast(), "File opened|" + folder.at("file.txt"));
  }
  EXPECT_EQ(list().currentPath, folder.at());
}

TEST_F(DirectoryDesktop, AProjectIsOpenedNotEntered) {
  openAt();
  select("App.xcodeproj");
  context.runner.expect("/usr/bin/open '" + folder.at("App.xcodeproj") + "'");
  press(RawKey::Kind::right);
  EXPECT_EQ(lastToast(), "File opened|" + folder.at("App.xcodeproj"));
  EXPECT_EQ(list().currentPath, folder.at());
}

TEST_F(DirectoryDesktop, TheFinderShowsTheSelectedFolderElseTheCurrentOne) {
  openAt();
  const auto expectTarget = [&](const std::string& name, const std::string& target, const char* key) {
    select(name);
    context.runner.expect("/usr/bin/open '" + target + "'");
    press(key);
    EXPECT_EQ(lastToast(), "Finder opened|" + target);
  };
  expectTarget("box", folder.at("box"), "f");
  expectTarget("..", folder.at(), "F");
  expectTarget("file.txt", folder.at(), "f");
  expectTarget("App.xcodeproj", folder.at(), "F");
  list().entries.clear();
  context.runner.expect("/usr/bin/open '" + folder.at() + "'");
  press("f");
}

TEST_F(DirectoryDesktop, ATerminalOpensThere) {
  openAt();
  select("box");
  context.runner.expect(
      "osascript -e 'tell application \"Terminal\"'           -e 'do script \"cd \" & quoted form of \"" +
      folder.at("box") + "\"'           -e 'activate'           -e 'end tell' >/dev/null 2>&1");
  press("T");
  EXPECT_EQ(lastToast(), "Terminal opened|" + folder.at("box"));
  select("file.txt");
  context.runner.expectContaining("quoted form of \"" + folder.at() + "\"'");
  press("t");
}

TEST_F(DirectoryDesktop, AQuoteInTheScriptIsDoubled) {
  EXPECT_THAT(terminalCommand("/a\"b"), HasSubstr("quoted form of \"/a\"\"b\"'"));
}

TEST_F(DirectoryDesktop, APathThatHoldsKeysIsNotTypedIntoATerminal) {
  for (const char* name : {"\x15touch pwned;#", "\x03touch pwned\n", "\x1b.", "\ttab", "\x7f"}) {
    EXPECT_EQ(terminalCommand("/tmp/" + std::string(name)),
              "/usr/bin/open -a Terminal '/tmp/" + std::string(name) + "'");
  }
  EXPECT_THAT(terminalCommand("/tmp/new\nline ü"), HasSubstr("quoted form of \"/tmp/new\nline ü\"'"));
}

TEST_F(DirectoryDesktop, TheSelectionIsCopied) {
  openAt();
  for (const auto* key : {"z", "Z"}) {
    select("file.txt");
    context.runner.expect("printf '%s' '" + folder.at("file.txt") + "' | pbcopy");
    press(key);
  }
  EXPECT_EQ(view().lastCopiedPath, folder.at("file.txt"));
  EXPECT_EQ(lastToast(), "Copied to clipboard|" + folder.at("file.txt"));
  EXPECT_EQ(toasts.back().clipboard, folder.at("file.txt"));
}

TEST_F(DirectoryDesktop, AHeldSpaceCopiesTheCurrentFolder) {
  openAt();
  select("file.txt");
  context.runner.expect("printf '%s' '" + folder.at() + "' | pbcopy");
  press(" ");
  EXPECT_EQ(view().lastCopiedPath, folder.at());
  EXPECT_EQ(lastToast(), "Copied to clipboard|" + folder.at());
}

TEST_F(DirectoryDesktop, AQuoteIsCopiedAsItIs) { EXPECT_EQ(copyCommand("it's"), R"(printf '%s' 'it'\''s' | pbcopy)"); }

TEST_F(DirectoryDesktop, AToastShowsForEightTenthsOfASecond) {
  showToast("Text", "detail");
  EXPECT_EQ(lastToast(), "Text|detail");
  EXPECT_EQ(paused, std::chrono::milliseconds(800));
}

TEST_F(DirectoryDesktop, AToastStandsOverAFreshFrame) {
  std::vector<std::string> order;
  view().host.drawFrame = [&] { order.emplace_back("frame"); };
  view().host.drawHeader = [&](const DirectoryHeaderContent& content) { order.push_back("header " + content.toast); };
  view().host.pause = [&](std::chrono::milliseconds) { order.emplace_back("pause"); };
  showToast("Text", {});
  EXPECT_THAT(order, testing::ElementsAre("frame", "header Text", "pause"));
}

/// What a real shell makes of the commands: the words that the tools get, one per line, in hexadecimal.
std::string wordsOf(const std::string& command, const std::string& tool) {
  DefaultCommandRunner runner;
  return runner.run(
      "function " + tool +
      " { for word in \"$@\"; do printf '%s' \"$word\" | od -An -v -tx1 | tr -d ' \\n'; echo; done >&3; }; { " +
      command + "; } 3>&1");
}

std::string hexadecimal(std::string_view text) {
  std::string digits;
  for (const char byte : text) digits += fmt::format("{:02x}", static_cast<unsigned char>(byte));
  return digits;
}

TEST_F(DirectoryDesktop, HostileNamesReachTheToolAsOneWord) {
  std::filesystem::current_path(folder.path());
  for (const std::string& name : hostileNames) {
    const std::string path = "/tmp/" + name;
    EXPECT_EQ(wordsOf(openCommand(path), "/usr/bin/open"), hexadecimal(path)) << name;
    DefaultCommandRunner runner;
    EXPECT_EQ(runner.run("function pbcopy { od -An -v -tx1 | tr -d ' \\n'; }; " + copyCommand(path)), hexadecimal(path))
        << name;
  }
  EXPECT_FALSE(std::filesystem::exists("pwned"));
}

/// The words of osascript for a path: -e and four lines, whatever the path holds.
TEST_F(DirectoryDesktop, HostileNamesStayInsideTheScriptsQuotes) {
  std::filesystem::current_path(folder.path());
  for (const std::string& name : hostileNames) {
    if (name.find('\x1b') != std::string::npos) continue;  // not typed into a terminal at all
    const std::string words = wordsOf(terminalCommand("/tmp/" + name), "osascript");
    const std::string before = hexadecimal("do script \"cd \" & quoted form of \"/tmp/");
    EXPECT_THAT(words, HasSubstr(hexadecimal("-e") + "\n" + before)) << name;
    EXPECT_EQ(std::count(words.begin(), words.end(), '\n'), 7) << name << "\n" << words;
    // Inside a string of the script a quote is only ever one of two, a backslash too: none closes it, none escapes.
    const std::size_t at = words.find(before) + before.size();
    const std::string inside = words.substr(at, words.find('\n', at) - at - 2);
    std::string escaped;
    for (const char each : name) escaped += each == '"' ? "\"\"" : each == '\\' ? "\\\\" : std::string(1, each);
    EXPECT_EQ(inside, hexadecimal(escaped)) << name;
  }
  EXPECT_FALSE(std::filesystem::exists("pwned"));
}

}  // namespace
}  // namespace halyard

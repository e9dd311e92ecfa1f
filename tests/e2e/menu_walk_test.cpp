// Every group and row as a user sees it: each language, each kind of target. The pictures are in golden/.
#include <cstdlib>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "test_places.hpp"
#include "tests/support/terminal_session.hpp"

namespace halyard {
namespace {

struct Walk {
  const char* name;
  const char* language;
  std::map<std::string, std::string> target;
  const char* letters;  ///< of the groups, in their order
};

std::ostream& operator<<(std::ostream& stream, const Walk& walk) { return stream << walk.name; }

const std::map<std::string, std::string> simulator = {
    {"simName", "iPhone 16"}, {"simUDID", "UDID-1"}, {"simOSLabel", "iOS 18.2"}};
const std::map<std::string, std::string> mac = {
    {"simName", "My Mac"}, {"simUDID", "local"}, {"simOSLabel", "macOS 15.1"}};
const std::map<std::string, std::string> physical = {{"phyName", "Ada's iPhone"},
                                                     {"phyUDID", "00008110-000A"},
                                                     {"phyOSName", "iOS"},
                                                     {"phyOSVersion", "18.1"},
                                                     {"lastDeviceKind", "physical"}};

/// The panes of the screen, without the header above them.
std::string panes(const TerminalSession& session) {
  std::string text;
  for (int row = 14; row < 33; ++row) text += session.row(row) + "\n";
  return text;
}

/// Compares with golden/<name>.txt; HALYARD_UPDATE_GOLDEN=1 writes it.
void expectGolden(const std::string& name, const std::string& text) {
  const std::string path = std::string(HALYARD_SOURCE_DIR) + "/tests/e2e/golden/" + name + ".txt";
  if (std::getenv("HALYARD_UPDATE_GOLDEN") != nullptr) std::ofstream(path) << text;
  std::ifstream file(path);
  const std::string expected{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(text, expected) << path;
}

class MenuWalk : public testing::TestWithParam<Walk> {};

TEST_P(MenuWalk, ShowsEachGroupWithItsRows) {
  const Walk& walk = GetParam();
  SessionOptions options;
  options.preferences = walk.target;
  options.preferences["language"] = walk.language;
  options.preferences["projectJsonConfig"] = "~/repository-demo.json";
  TerminalSession session(options);
  ASSERT_TRUE(session.waitFor("9:Update") && session.waitUntilIdle());
  std::string seen = session.screenText() + "\n";
  for (const char letter : std::string_view(walk.letters)) {
    session.send(std::string(1, letter));
    ASSERT_TRUE(session.waitUntilIdle());
    seen += panes(session) + "\n";
    // A group that is longer than its pane shows its end when the cursor goes round.
    session.send(Key::up);
    ASSERT_TRUE(session.waitUntilIdle());
    if (session.row(29).find("weitere") == std::string::npos && seen.rfind("weitere") > seen.size() - 1500) {
      seen += panes(session) + "\n";
    }
  }
  if (walk.target.count("simUDID") != 0 && walk.target.at("simUDID") == "local") {
    ASSERT_TRUE(session.sendSlowly({"S", Key::left, Key::down}));
    ASSERT_TRUE(session.waitUntilIdle());
    seen += panes(session);
  }
  expectGolden(std::string("menu_") + walk.name, seen);
  session.send("Q");
  session.expectCleanEnd();
}

INSTANTIATE_TEST_SUITE_P(
    Targets, MenuWalk,
    testing::Values(Walk{"none_en", "en", {}, "DBSXILOMPR"}, Walk{"none_de", "de", {}, "LBSXVKONPR"},
                    Walk{"simulator_en", "en", simulator, "DBSCTXILOMPR"},
                    Walk{"simulator_de", "de", simulator, "LBSETXVKONPR"}, Walk{"mac_en", "en", mac, "DBSTXILOMPR"},
                    Walk{"mac_de", "de", mac, "LBSTXVKONPR"}, Walk{"physical_en", "en", physical, "DBYTXILOMPR"},
                    Walk{"physical_de", "de", physical, "LBYTXVKONPR"}),
    [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace halyard

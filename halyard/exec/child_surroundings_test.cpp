// What a child gets from us, and what happens when none can be started.
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include <fcntl.h>
#include <sys/resource.h>

#include "halyard/exec/run_testing.hpp"

namespace halyard {
namespace {

using testing::HasSubstr;

/// Gives the current directory and HOME back.
struct ChildSurroundings : Runs {
  ~ChildSurroundings() override {
    std::filesystem::current_path(directory);
    setenv("HOME", home.c_str(), 1);
  }
  void standInADeletedFolder() const {
    std::filesystem::current_path(folder.makeFolder("gone"));
    std::filesystem::remove(folder.at("gone"));
  }

  std::filesystem::path directory = std::filesystem::current_path();
  std::string home = std::getenv("HOME");
};

TEST_F(ChildSurroundings, AChildStandsWhereWeStand) {
  std::filesystem::current_path(folder.path());
  EXPECT_EQ(runner.run("pwd -P"), folder.at());
}

TEST_F(ChildSurroundings, InADeletedFolderTheNextCommandRunsAtHome) {
  standInADeletedFolder();
  EXPECT_EQ(runner.run("pwd -P"), std::filesystem::canonical(home).string());
  EXPECT_EQ(runner.runLivePipe("pwd -P", {}, {}).output, std::filesystem::canonical(home).string());
  std::filesystem::current_path(folder.path());
  EXPECT_EQ(runner.run("pwd -P"), folder.at());
}

TEST_F(ChildSurroundings, AChildHasOurEnvironment) {
  setenv("HALYARD_TEST_VALUE", "a b", 1);
  EXPECT_EQ(runner.run("printf %s \"$HALYARD_TEST_VALUE\""), "a b");
  unsetenv("HALYARD_TEST_VALUE");
}

TEST_F(ChildSurroundings, AChildStaysInOurProcessGroup) {
  EXPECT_EQ(runner.run("ps -o pgid= -p $$"), std::to_string(getpgrp()));
}

TEST_F(ChildSurroundings, StandardInputIsOurs) {
  const int saved = dup(STDIN_FILENO);
  const int file = open(folder.write("input", "typed\n").c_str(), O_RDONLY | O_CLOEXEC);
  for (const bool attached : {false, true}) {
    dup2(file, STDIN_FILENO);
    lseek(STDIN_FILENO, 0, SEEK_SET);
    const CapturedOutput output;
    if (attached) {
      runner.runAttached("cat");
      EXPECT_EQ(output.text(), "typed\n");
    } else {
      EXPECT_EQ(runner.runLivePipe("cat", {}, {}).output, "typed");
    }
  }
  dup2(saved, STDIN_FILENO);
  close(saved);
  close(file);
}

#ifdef __linux__
TEST_F(ChildSurroundings, NoDescriptorOfOursReachesAChild) {
  const int careless = open("/dev/null", O_RDONLY);
  const int far = dup2(careless, 200);
  const std::string command = "for i in {3..255}; do [ -e /proc/$$/fd/$i ] && echo $i; done; echo none";
  EXPECT_EQ(runner.run(command), "none");
  EXPECT_EQ(runner.runLivePipe(command, {}, {}).output, "none");
  const CapturedOutput output;
  runner.runAttached(command);
  EXPECT_EQ(output.text(), "none\n");
  close(careless);
  close(far);
}

TEST_F(ChildSurroundings, ARunLeavesNoDescriptorOpen) {
  const auto openOnes = [] {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
    return count;
  };
  const std::size_t before = openOnes();
  {
    const CapturedOutput output;
    runner.run("echo a");
    runner.runLive("echo a");
    runner.runLivePipe("echo a", {}, {}, 5);
    runner.runWithTimeout("true", 5);
    runner.runAttached("true");
    runner.runLivePipe("sleep 5", {}, {}, 0.01);
  }
  EXPECT_EQ(openOnes(), before);
}

TEST_F(ChildSurroundings, SignalsAreUnblockedAndHandledByDefaultInAChild) {
  for (const int number : {SIGPIPE, SIGQUIT, SIGUSR1}) signal(number, SIG_IGN);
  sigset_t some;
  sigset_t before;
  sigemptyset(&some);
  sigaddset(&some, SIGUSR2);
  sigaddset(&some, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &some, &before);
  const std::string command = "grep -E '^Sig(Blk|Ign)' /proc/self/status | tr -d '\\t' | tr '\\n' ' '";
  const std::string expected = "SigBlk:0000000000000000 SigIgn:0000000000000000";
  EXPECT_EQ(runner.run(command), expected);
  EXPECT_EQ(runner.runLivePipe(command, {}, {}).output, expected);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  for (const int number : {SIGPIPE, SIGQUIT, SIGUSR1}) signal(number, SIG_DFL);
}
#endif

std::string startFailure(const std::string& reason) { return "Subprozess konnte nicht gestartet werden: " + reason; }

TEST_F(ChildSurroundings, WithoutAnyFolderToStandInNothingStarts) {
  standInADeletedFolder();
  setenv("HOME", folder.at("nowhere").c_str(), 1);
  struct sigaction before {};
  sigaction(SIGINT, nullptr, &before);
  const std::string failure = startFailure("No such file or directory");
  const auto printedBy = [](const std::function<void()>& run) {
    const CapturedOutput output;
    run();
    return output.text();
  };
  EXPECT_THAT(printedBy([&] { EXPECT_EQ(runner.run("echo a"), ""); }), HasSubstr(failure));
  EXPECT_THAT(printedBy([&] { EXPECT_EQ(runner.runLive("echo a"), -1); }), HasSubstr(failure));
  EXPECT_THAT(printedBy([&] { EXPECT_EQ(runner.runWithTimeout("echo a", 5), -1); }), HasSubstr(failure));
  EXPECT_THAT(printedBy([&] { EXPECT_EQ(runner.runAttached("echo a"), -1); }), HasSubstr(failure));
  EXPECT_THAT(printedBy([&] {
                const PipeRunResult result = runner.runLivePipe("echo a", {}, {}, 5);
                EXPECT_EQ(result.output, "");
                EXPECT_EQ(result.status, -1);
              }),
              HasSubstr(failure));
  EXPECT_THAT(printedBy([&] { runner.waitForSimulatorBoot("x", "Booting"); }), HasSubstr(failure));
  struct sigaction after {};
  sigaction(SIGINT, nullptr, &after);
  EXPECT_EQ(after.sa_handler, before.sa_handler);
}

TEST_F(ChildSurroundings, WithoutAFreeDescriptorNothingStarts) {
  const CapturedOutput output;
  // A local one, used before: a sanitizer that checks objects needs a pipe of its own for the first look at each.
  DefaultCommandRunner local;
  local.runLivePipe("true", {}, {});
  local.run("true");
  local.run(std::string("a\0b", 3));
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  const int firstFree = dup(STDOUT_FILENO);
  close(firstFree);
  // Room for no pipe, then for the run's output but not for its second pipe.
  for (const int room : {0, 1, 2, 3}) {
    rlimit tight = before;
    tight.rlim_cur = static_cast<rlim_t>(firstFree + room);
    setrlimit(RLIMIT_NOFILE, &tight);
    const PipeRunResult result = local.runLivePipe("echo a", {}, {});
    const std::string captured = room < 2 ? local.run("echo a") : "";
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(result.status, -1) << room;
    EXPECT_EQ(captured, "");
  }
  EXPECT_THAT(output.text(), HasSubstr(startFailure("Too many open files")));
  EXPECT_EQ(runner.run("echo a"), "a");
}

TEST_F(ChildSurroundings, ACommandThatIsTooLongForTheSystemIsAStartFailure) {
  const CapturedOutput output;
  EXPECT_EQ(runner.runLive("true " + std::string(8'000'000, 'x')), -1);
  EXPECT_THAT(output.text(), HasSubstr(startFailure("Argument list too long")));
}

TEST_F(ChildSurroundings, HalfOfACommandWithANulByteIsNotRun) {
  const CapturedOutput output;
  EXPECT_EQ(runner.runLive(std::string("touch ") + quoted("made") + std::string("\0; false", 8)), -1);
  EXPECT_FALSE(std::filesystem::exists(folder.at("made")));
}

}  // namespace
}  // namespace halyard

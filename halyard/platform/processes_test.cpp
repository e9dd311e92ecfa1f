#include "halyard/platform/processes.hpp"

#include <chrono>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "halyard/platform/process_table.hpp"
#include "tests/support/temporary_folder.hpp"

namespace halyard {
namespace {

bool eventually(const std::function<bool()>& condition) {
  for (int i = 0; i < 1000; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

/// One that has ended and that nobody has reaped yet is none.
bool isAlive(pid_t process) {
  ProcessRecord record;
  return readProcess(process, record) && !record.ended;
}

pid_t forkShell(const std::string& command) {
  const pid_t child = fork();
  if (child == 0) {
    execl("/bin/bash", "bash", "-c", command.c_str(), nullptr);
    _exit(127);
  }
  return child;
}

int statusOf(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

struct Processes : testing::Test {
  Processes() { setpgid(0, 0); }

  pid_t noted(const std::string& name) const {
    pid_t process = 0;
    EXPECT_TRUE(eventually([&] { return static_cast<bool>(std::ifstream(folder.at(name)) >> process); })) << name;
    return process;
  }
  /// Notes the id of a sleeping process under this name.
  std::string sleeper(const std::string& name) const {
    return "echo $BASHPID > " + folder.at(name + ".new") + "; mv " + folder.at(name + ".new") + " " + folder.at(name) +
           "; exec sleep 30";
  }

  TemporaryFolder folder;
};

TEST_F(Processes, AStartMarkGrowsAndIsZeroForWhatIsGone) {
  const unsigned long long ours = processStartMark(getpid());
  EXPECT_GT(ours, 0U);
  std::this_thread::sleep_for(std::chrono::milliseconds(25));
  const pid_t child = forkShell("exec sleep 30");
  EXPECT_GT(processStartMark(child), ours);
  kill(child, SIGKILL);
  EXPECT_TRUE(eventually([&] {
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT | WNOHANG) == 0 && info.si_pid == child;
  }));
  EXPECT_GT(processStartMark(child), ours) << "it still waits to be reaped";
  statusOf(child);
  EXPECT_EQ(processStartMark(child), 0U);
}

TEST_F(Processes, AllDescendantsGetTheSignalAtOnceAndWeDoNot) {
  const pid_t child =
      forkShell("(" + sleeper("grandchild") + ") & (setsid bash -c '" + sleeper("elsewhere") + "') & wait");
  const pid_t grandchild = noted("grandchild");
  const pid_t elsewhere = noted("elsewhere");
  signalDescendants(SIGKILL);
  EXPECT_TRUE(WIFSIGNALED(statusOf(child)));
  EXPECT_TRUE(eventually([&] { return !isAlive(grandchild) && !isAlive(elsewhere); }));
}

TEST_F(Processes, LeftoversAreDescendantsAndOrphansOfOurGroup) {
  const pid_t child = forkShell("(" + sleeper("orphan") + ") & (" + sleeper("second") + ") & exit 0");
  const unsigned long long start = processStartMark(child);
  const pid_t orphan = noted("orphan");
  noted("second");
  statusOf(child);
  const pid_t living = forkShell("exec sleep 30");
  EXPECT_EQ(signalRunLeftovers(start, 0), 3U);
  EXPECT_EQ(signalRunLeftovers(start, SIGKILL), 3U);
  EXPECT_TRUE(WIFSIGNALED(statusOf(living)));
  EXPECT_TRUE(eventually([&] { return !isAlive(orphan); }));
  EXPECT_EQ(signalRunLeftovers(start, 0), 0U);
}

TEST_F(Processes, WhatIsOlderThanTheRunIsNoLeftover) {
  const pid_t before = forkShell(sleeper("before"));
  noted("before");
  std::this_thread::sleep_for(std::chrono::milliseconds(25));
  const pid_t child = forkShell("exec sleep 30");
  const unsigned long long start = processStartMark(child);
  kill(child, SIGKILL);
  statusOf(child);
  EXPECT_EQ(signalRunLeftovers(start, SIGKILL), 0U);
  EXPECT_TRUE(isAlive(before));
  kill(before, SIGKILL);
  statusOf(before);
}

TEST_F(Processes, WithoutAStartMarkNobodyIsALeftover) {
  const pid_t child = forkShell("exec sleep 30");
  EXPECT_EQ(signalRunLeftovers(0, SIGKILL), 0U);
  kill(child, SIGKILL);
  EXPECT_EQ(WTERMSIG(statusOf(child)), SIGKILL);
}

TEST_F(Processes, AnOrphanOfAnotherGroupIsNoLeftover) {
  const pid_t child = forkShell("(setsid bash -c '" + sleeper("stranger") + "' &) ; exit 0");
  const unsigned long long start = processStartMark(child);
  const pid_t stranger = noted("stranger");
  statusOf(child);
  EXPECT_EQ(signalRunLeftovers(start, SIGKILL), 0U);
  EXPECT_TRUE(isAlive(stranger));
  kill(stranger, SIGKILL);
}

TEST_F(Processes, ASiblingInOurGroupWithALivingParentIsNoLeftover) {
  // A script starts us (the inner process) and, later, somebody else of the same group.
  const pid_t script = fork();
  if (script == 0) {
    const pid_t inner = fork();
    if (inner == 0) {
      const unsigned long long start = processStartMark(getpid());
      const pid_t sibling = noted("sibling");
      const bool spared = signalRunLeftovers(start, SIGKILL) == 0 && isAlive(sibling) && isAlive(getppid());
      _exit(spared ? 7 : 8);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(25));
    const pid_t sibling = forkShell(sleeper("sibling"));
    const int status = statusOf(inner);
    kill(sibling, SIGKILL);
    statusOf(sibling);
    _exit(WIFEXITED(status) ? WEXITSTATUS(status) : 9);
  }
  const int status = statusOf(script);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 7);
}

TEST_F(Processes, ANameWithBlanksAndBracketsIsReadRight) {
  const std::string tool = folder.at("a) S 1 (b");
  ASSERT_EQ(symlink("/bin/sleep", tool.c_str()), 0);
  const pid_t child = fork();
  if (child == 0) {
    execl(tool.c_str(), tool.c_str(), "30", nullptr);
    _exit(127);
  }
  EXPECT_TRUE(eventually([&] {
    std::string name;
    std::getline(std::ifstream("/proc/" + std::to_string(child) + "/comm"), name);
    return name == "a) S 1 (b";
  }));
  EXPECT_EQ(signalRunLeftovers(processStartMark(child), SIGKILL), 1U);
  EXPECT_EQ(WTERMSIG(statusOf(child)), SIGKILL);
}

}  // namespace
}  // namespace halyard

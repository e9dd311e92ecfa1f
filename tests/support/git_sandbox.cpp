#include "tests/support/git_sandbox.hpp"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <system_error>

#include <gtest/gtest.h>

#include "halyard/exec/shell_quote.hpp"

namespace halyard {

namespace {

constexpr std::string_view configuration = R"([user]
	name = Ada Lovelace
	email = ada@example.invalid
[init]
	defaultBranch = main
[protocol "file"]
	allow = always
[pull]
	rebase = false
)";

}  // namespace

GitSandbox::GitSandbox() {
  folder_.write(".gitconfig", configuration);
  folder_.makeFolder("repo");
}

std::map<std::string, std::string> GitSandbox::environment() const {
  return {{"HOME", folder_.at()},
          {"XDG_CONFIG_HOME", folder_.at(".config")},
          {"GIT_CONFIG_NOSYSTEM", "1"},
          {"GIT_CEILING_DIRECTORIES", folder_.at()},
          {"GIT_TERMINAL_PROMPT", "0"},
          {"GIT_AUTHOR_DATE", "2026-01-31T10:00:00Z"},
          {"GIT_COMMITTER_DATE", "2026-01-31T10:00:00Z"}};
}

std::string GitSandbox::sh(const std::string& script, std::string_view folder) const {
  std::string command = "env -i PATH=/usr/local/bin:/usr/bin:/bin";
  for (const auto& [name, value] : environment()) command += " " + name + "=" + shellQuote(value);
  command += " bash -e -c " + shellQuote("cd " + shellQuote(folder_.at(folder)) + "\n" + script) + " 2>&1 </dev/null";
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) throw std::system_error(errno, std::generic_category(), "popen");
  std::string output;
  std::array<char, 4096> chunk;
  for (std::size_t size = 0; (size = fread(chunk.data(), 1, chunk.size(), pipe)) > 0;)
    output.append(chunk.data(), size);
  EXPECT_EQ(pclose(pipe), 0) << script << "\n" << output;
  return output;
}

void GitSandbox::makeRepository(int commits) const {
  sh("git init -q; for n in $(seq 1 " + std::to_string(commits) +
     "); do echo $n >file$n.txt; git add .; git commit -q -m \"Add file $n\"; done");
}

void GitSandbox::addUpstream() const {
  sh("git clone -q --bare . ../up.git; git remote add origin ../up.git; git fetch -q; git branch -q -u origin/main");
}

void GitSandbox::commitUpstream(std::string_view file, std::string_view content) const {
  sh("rm -rf ../other; git clone -q ../up.git ../other; cd ../other; printf %s " + shellQuote(content) + " >" +
     shellQuote(file) + "; git add -A; git commit -q -m 'From upstream'; git push -q");
}

InSandbox::InSandbox(const GitSandbox& sandbox, std::string_view folder)
    : workingDirectory_(std::filesystem::current_path()) {
  for (const auto& [name, value] : sandbox.environment()) set(name, value);
  std::filesystem::current_path(sandbox.at(folder));
}

InSandbox::~InSandbox() {
  std::error_code ignored;
  std::filesystem::current_path(workingDirectory_, ignored);
  for (const auto& [name, value] : saved_) {
    value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
  }
}

void InSandbox::set(const std::string& name, const std::string& value) {
  const char* before = std::getenv(name.c_str());
  saved_.emplace(name, before == nullptr ? std::nullopt : std::optional<std::string>(before));
  setenv(name.c_str(), value.c_str(), 1);
}

}  // namespace halyard

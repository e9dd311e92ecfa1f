// What a session's program finds: its home folder, its environment, the demo's tools.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "test_places.hpp"
#include "tests/support/terminal_session.hpp"

namespace halyard {

std::string builtProgram() { return HALYARD_PROGRAM; }

namespace {

namespace fs = std::filesystem;

constexpr std::string_view demoFolder = HALYARD_SOURCE_DIR "/demo";
constexpr std::string_view systemPath = "/usr/local/bin:/usr/bin:/bin";
constexpr std::string_view preferencesFile = ".capstanlight_prefs.json";
constexpr std::string_view journalFile = ".halyard-demo/journal.jsonl";
constexpr std::string_view settingsFile = ".halyard-demo/settings.json";

// Sanitizers and coverage of the program under test are steered through these.
constexpr auto passedOn = std::to_array<const char*>(
    {"ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS", "LLVM_PROFILE_FILE", "ASAN_SYMBOLIZER_PATH"});

void makeDemoHome(const std::string& home, std::vector<std::string> environment) {
  std::string program = std::string(demoFolder) + "/make_home";
  std::string target = home;
  std::array<char*, 3> words = {program.data(), target.data(), nullptr};
  std::vector<char*> variables;
  for (std::string& variable : environment) variables.push_back(variable.data());
  variables.push_back(nullptr);
  pid_t process = -1;
  const int error = posix_spawn(&process, program.c_str(), nullptr, nullptr, words.data(), variables.data());
  if (error != 0) throw std::system_error(error, std::generic_category(), program);
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) continue;
  if (status != 0) throw std::runtime_error(program + " failed");
}

void linkTools(const std::string& source, const fs::path& target, const std::vector<std::string>& without) {
  std::error_code error;
  for (fs::directory_iterator entry(source, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (std::find(without.begin(), without.end(), name) != without.end()) continue;
    std::error_code alreadyThere;
    fs::create_symlink(entry->path(), target / name, alreadyThere);
  }
}

std::string shellWord(std::string_view text) {
  std::string word = "'";
  for (const char character : text) word += character == '\'' ? std::string("'\\''") : std::string(1, character);
  return word + "'";
}

}  // namespace

std::string JournalEntry::line() const {
  std::string text = tool;
  for (const std::string& argument : arguments) text += ' ' + argument;
  return text;
}

void TerminalSession::prepareHome() {
  folder_.makeFolder("home");
  folder_.makeFolder("tmp");
  if (options_.sampleProject) makeDemoHome(home(), {"PATH=" + std::string(systemPath)});
  if (!options_.preferences.empty()) writeHomeFile(preferencesFile, nlohmann::json(options_.preferences).dump(2));
  if (!options_.demoSettings.empty()) writeHomeFile(settingsFile, options_.demoSettings);
  for (const auto& [path, content] : options_.homeFiles) writeHomeFile(path, content);
  if (options_.missingTools.empty()) return;
  const fs::path tools = folder_.makeFolder("tools");
  std::istringstream folders(std::string(demoFolder) + "/bin:" + std::string(systemPath));
  for (std::string source; std::getline(folders, source, ':');) linkTools(source, tools, options_.missingTools);
}

std::string TerminalSession::searchPath() const {
  if (options_.path) return *options_.path;
  if (!options_.missingTools.empty()) return folder_.at("tools");
  return std::string(demoFolder) + "/bin:" + std::string(systemPath);
}

std::vector<std::string> TerminalSession::environment() const {
  std::map<std::string, std::string> variables = {
      {"PATH", searchPath()},
      {"HOME", home()},
      {"TMPDIR", folder_.at("tmp")},
      {"TERM", "xterm-256color"},
      {"LANG", "C.UTF-8"},
      {"USER", "demo"},
      {"LOGNAME", "demo"},
      {"SHELL", "/bin/bash"},
      {"GIT_CONFIG_NOSYSTEM", "1"},
      {"BASH_ENV", std::string(demoFolder) + "/bash_env.sh"},
      {"HALYARD_DEMO_ROOT", std::string(demoFolder)},
      {"HALYARD_DEMO_HOME", home()},
      {"HALYARD_DEMO_JOURNAL", inHome(journalFile)},
  };
  for (const char* name : passedOn) {
    if (const char* value = std::getenv(name)) variables[name] = value;
  }
  if (options_.throughShell) variables["PS1"] = "shell$ ";
  for (const auto& [name, value] : options_.environment) variables[name] = value;
  std::vector<std::string> entries;
  for (const auto& [name, value] : variables) entries.push_back(name + '=' + value);
  return entries;
}

void TerminalSession::start() {
  ChildProgram child;
  child.path = options_.throughShell ? "/bin/bash" : options_.program;
  child.arguments =
      options_.throughShell ? std::vector<std::string>{"--norc", "--noprofile", "-i"} : options_.arguments;
  child.environment = environment();
  const std::string standard = options_.sampleProject ? inHome("Harbor") : home();
  child.workingDirectory = options_.workingDirectory.empty() ? standard : inHome(options_.workingDirectory);
  if (pipe(wakePipe_) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  for (const int end : wakePipe_) fcntl(end, F_SETFD, FD_CLOEXEC);
  process_ = terminal_.start(child);
  note("started " + child.path);
  outputReader_ = std::thread([this] { readOutput(); });
  watcher_ = std::thread([this] { watchProgram(); });
}

void TerminalSession::typeCommandLine() {
  waitUntilIdle();
  std::string line = shellWord(options_.program);
  for (const std::string& argument : options_.arguments) line += ' ' + shellWord(argument);
  send(line + '\r');
}

std::vector<RunningProcess> TerminalSession::childrenLeft() const {
  std::vector<RunningProcess> processes = processesOf(process_, "HALYARD_DEMO_HOME=" + home());
  std::erase_if(processes, [this](const RunningProcess& process) { return process.id == process_; });
  return processes;
}

std::string TerminalSession::inHome(std::string_view relativePath) const {
  return (fs::path(home()) / relativePath).string();
}

std::string TerminalSession::readHomeFile(std::string_view relativePath) const {
  return folder_.read("home/" + std::string(relativePath));
}

void TerminalSession::writeHomeFile(std::string_view relativePath, std::string_view content) const {
  folder_.write("home/" + std::string(relativePath), content);
}

std::map<std::string, std::string> TerminalSession::preferences() const {
  const auto document = nlohmann::json::parse(readHomeFile(preferencesFile), nullptr, false);
  return document.is_object() ? document.get<std::map<std::string, std::string>>()
                              : std::map<std::string, std::string>();
}

std::vector<JournalEntry> TerminalSession::journal() const {
  std::vector<JournalEntry> entries;
  std::istringstream lines(readHomeFile(journalFile));
  for (std::string line; std::getline(lines, line);) {
    const auto document = nlohmann::json::parse(line, nullptr, false);
    if (!document.is_object()) continue;  // being written at this moment
    entries.push_back({document.at("tool").get<std::string>(), document.at("argv").get<std::vector<std::string>>(),
                       document.at("cwd").get<std::string>(), document.at("time").get<double>()});
  }
  return entries;
}

std::vector<std::string> TerminalSession::callsOf(std::string_view tool) const {
  std::vector<std::string> lines;
  for (const JournalEntry& entry : journal()) {
    if (entry.tool == tool) lines.push_back(entry.line());
  }
  return lines;
}

}  // namespace halyard

// What the program prints, taken from file descriptor 1, and with it what children print that share it.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <system_error>

#include <gtest/gtest.h>
#include <unistd.h>

#include "halyard/terminal/output.hpp"

namespace halyard {

/// Collects standard output until destroyed. A test that fails meanwhile has its messages there too, so all of it is
/// shown then.
class CapturedOutput {
 public:
  CapturedOutput() {
    flushOutput();
    std::string path = "/tmp/halyard-captured-XXXXXX";
    file_ = mkstemp(path.data());
    if (file_ < 0) throw std::system_error(errno, std::generic_category(), path);
    unlink(path.c_str());
    saved_ = dup(STDOUT_FILENO);
    dup2(file_, STDOUT_FILENO);
  }
  ~CapturedOutput() {
    const std::string shown = testing::Test::HasFailure() ? text() : std::string();
    flushOutput();
    dup2(saved_, STDOUT_FILENO);
    close(saved_);
    close(file_);
    std::fwrite(shown.data(), 1, shown.size(), stderr);
  }
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

  /// All that was printed so far.
  [[nodiscard]] std::string text() const {
    flushOutput();
    std::string all;
    char chunk[65536];
    for (off_t at = 0;;) {
      const ssize_t size = pread(file_, chunk, sizeof chunk, at);
      if (size <= 0) return all;
      all.append(chunk, static_cast<std::size_t>(size));
      at += size;
    }
  }

 private:
  int file_ = -1;
  int saved_ = -1;
};

}  // namespace halyard

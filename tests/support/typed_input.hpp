// Standard input as a pipe that holds what somebody typed, and then ends.
#pragma once

#include <array>
#include <string_view>

#include <gtest/gtest.h>
#include <unistd.h>

namespace halyard {

/// For as long as it lives. The text must fit into a pipe.
class TypedInput {
 public:
  explicit TypedInput(std::string_view text) : saved_(dup(STDIN_FILENO)) {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    EXPECT_EQ(write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    close(ends[1]);
    dup2(ends[0], STDIN_FILENO);
    close(ends[0]);
  }
  ~TypedInput() {
    dup2(saved_, STDIN_FILENO);
    close(saved_);
  }
  TypedInput(const TypedInput&) = delete;
  TypedInput& operator=(const TypedInput&) = delete;

 private:
  int saved_;
};

}  // namespace halyard

// Whatever the text, the shell must read its quoted form as that text and nothing else.
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

#include "halyard/exec/shell_child.hpp"
#include "halyard/exec/shell_quote.hpp"
#include "halyard/platform/child_start.hpp"

namespace {

/// Byte for byte, unlike a run's output, which is text.
std::string printedByShell(const std::string& quoted) {
  halyard::PipeEnds pipe;
  pid_t child = -1;
  if (halyard::openPipe(pipe) != 0 || halyard::startShell("printf %s " + quoted, pipe.writeEnd, child) != 0) {
    std::abort();
  }
  close(pipe.writeEnd);
  std::string bytes;
  char chunk[4096];
  for (;;) {
    const ssize_t size = read(pipe.readEnd, chunk, sizeof chunk);
    if (size < 0 && errno == EINTR) continue;  // the fuzzer's own timer
    if (size <= 0) break;
    bytes.append(chunk, static_cast<std::size_t>(size));
  }
  close(pipe.readEnd);
  halyard::reap(child);
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::string expected;
  for (const char character : text) {
    if (character != '\0') expected += character;
  }
  if (printedByShell(halyard::shellQuote(text)) != expected) {
    std::fputs("the shell read something else\n", stderr);
    std::abort();
  }
  return 0;
}

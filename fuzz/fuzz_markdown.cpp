// Any text renders, and what comes out holds no control character but line feeds and the renderer's own colours.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/text.hpp"
#include "halyard/terminal/colors.hpp"
#include "halyard/terminal/markdown.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace halyard;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::string rendered = MarkdownTerminalRenderer::render(text);
  if (!rendered.empty() && rendered.back() != '\n') std::abort();
  for (const std::string_view own :
       {Color::blue, Color::boldBlue, Color::bold, Color::dim, Color::orange, Color::reset, std::string_view("\n")}) {
    replaceAll(rendered, own, {});
  }
  if (displaySafe(rendered) != rendered) std::abort();
  return 0;
}

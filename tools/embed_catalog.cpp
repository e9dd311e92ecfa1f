// Turns a file into a C++ source that holds it as base64 text: embed_catalog INPUT OUTPUT.
// Base64 keeps the literal free of escapes and of anything an editor or compiler would reinterpret.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string base64(const std::string& bytes) {
  std::string text;
  text.reserve(bytes.size() / 3 * 4 + 4);
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    unsigned long group = 0;
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
    for (std::size_t i = 0; i < 3; ++i) {
      group = group << 8 | (i < count ? static_cast<unsigned char>(bytes[at + i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= count ? alphabet[group >> (18 - 6 * i) & 63] : '=';
    }
  }
  return text;
}

/// White space between the values is for people; the program needs none of it.
std::string minified(const std::string& json) {
  std::string result;
  result.reserve(json.size());
  bool inString = false;
  for (std::size_t at = 0; at < json.size(); ++at) {
    const char c = json[at];
    if (inString && c == '\\' && at + 1 < json.size()) {
      result += c;
      result += json[++at];
      continue;
    }
    if (c == '"') inString = !inString;
    if (inString || (c != ' ' && c != '\n' && c != '\r' && c != '\t')) result += c;
  }
  return result;
}

/// What the translators' tools keep beside each text; the program reads none of it. A quote inside a text is escaped,
/// so these words can't be part of one.
void eraseNotes(std::string& json) {
  for (const std::string note : {R"("extractionState":"manual",)", R"("state":"translated",)"}) {
    std::string kept;
    kept.reserve(json.size());
    std::size_t from = 0;
    for (std::size_t at = json.find(note); at != std::string::npos; at = json.find(note, from)) {
      kept.append(json, from, at - from);
      from = at + note.size();
    }
    json = kept.append(json, from);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: embed_catalog INPUT OUTPUT\n";
    return 2;
  }
  std::ifstream input(argv[1], std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(input), {}};
  if (!input || bytes.empty()) {
    std::cerr << "embed_catalog: cannot read " << argv[1] << "\n";
    return 1;
  }
  std::ofstream output(argv[2], std::ios::binary);
  std::string json = minified(bytes);
  eraseNotes(json);
  const std::string text = base64(json);
  output << "// Made by tools/embed_catalog.cpp; do not edit.\n"
            "#include \"core/embedded_catalog.hpp\"\n"
            "#pragma GCC diagnostic ignored \"-Woverlength-strings\"\n"
            "namespace halyard {\n"
            "static constexpr char document[] =\n";
  constexpr std::size_t lineLength = 4096;
  for (std::size_t at = 0; at < text.size(); at += lineLength) {
    output << '"' << text.substr(at, lineLength) << "\"\n";
  }
  output
      << ";\nstd::string_view embeddedCatalog() { return {document, sizeof document - 1}; }\n}  // namespace halyard\n";
  return output.good() ? 0 : 1;
}

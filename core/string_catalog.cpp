#include "core/string_catalog.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include <simdjson.h>

#include "core/app_context.hpp"
#include "core/base64.hpp"
#include "core/embedded_catalog.hpp"
#include "core/text.hpp"
#include "core/text_file.hpp"

namespace halyard {

namespace {

struct Texts {
  std::optional<std::string_view> en;
  std::optional<std::string_view> de;
};

/// The parser owns the characters that keys and texts refer to.
struct Catalog {
  simdjson::dom::parser parser;
  std::unordered_map<std::string_view, Texts> texts;
};

struct LanguageState {
  std::string current = "en";
};

struct LanguageRow {
  std::string_view code;
  std::string_view name;
  std::optional<std::string_view> Texts::*text;
};

constexpr auto supportedLanguages = std::to_array<LanguageRow>({
    {"de", "Deutsch", &Texts::de},
    {"en", "English", &Texts::en},
});

std::unique_ptr<Catalog>& catalog() {
  static std::unique_ptr<Catalog> loaded;
  return loaded;
}

LanguageState& language() {
  static LanguageState state;
  return state;
}

bool isLineEnd(char c) { return c == '\n' || c == '\r'; }

/// Whether the key is already in the form that the catalog holds, which nearly every key in the code is.
bool isNormal(std::string_view key) {
  bool afterBlank = true;
  for (const char c : key) {
    if (c == ' ') {
      if (afterBlank) return false;
      afterBlank = true;
    } else {
      if (c == '\\' || static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) >= 0x7F) return false;
      afterBlank = false;
    }
  }
  return !afterBlank;
}

std::string normalized(std::string_view key) {
  std::string joined;
  joined.reserve(key.size());
  for (std::size_t i = 0; i < key.size(); ++i) {
    if (key[i] == '\\' && i + 1 < key.size() && isLineEnd(key[i + 1])) {
      i += key.substr(i + 1, 2) == "\r\n" ? 2 : 1;
    } else {
      joined += key[i];
    }
  }
  const std::string_view body = trimmed(joined);
  std::string single;
  single.reserve(body.size());
  std::unique_copy(body.begin(), body.end(), std::back_inserter(single),
                   [](char a, char b) { return a == ' ' && b == ' '; });
  return single;
}

std::optional<std::string_view> lookedUp(std::string_view key) {
  if (!catalog()) return std::nullopt;
  const auto found = catalog()->texts.find(key);
  if (found == catalog()->texts.end()) return std::nullopt;
  const Texts& texts = found->second;
  return language().current == "de" && texts.de ? texts.de : texts.en;
}

Texts readTexts(const simdjson::dom::element& entry) {
  Texts texts;
  simdjson::dom::object localizations;
  if (entry["localizations"].get(localizations) != simdjson::SUCCESS) return texts;
  for (const LanguageRow& row : supportedLanguages) {
    std::string_view value;
    if (localizations[row.code]["stringUnit"]["value"].get(value) == simdjson::SUCCESS) texts.*row.text = value;
  }
  return texts;
}

[[noreturn]] void failWithout(const std::vector<std::string>& paths) {
  std::fputs("\n\x1b[1;31m✗ ERROR: Localizable.xcstrings not found.\x1b[0m\n  Searched paths:\n", stdout);
  for (const std::string& path : paths) std::printf("    %s\n", displaySafe(path).c_str());
  std::fputs("  Place Localizable.xcstrings next to the binary or in the working directory.\n\n", stdout);
  std::exit(1);
}

[[noreturn]] void failUnreadable() {
  std::fputs(
      "\n\x1b[1;31m✗ ERROR: Localizable.xcstrings is not valid JSON.\x1b[0m\n"
      "  Tip: Validate JSON with 'plutil -lint Localizable.xcstrings'.\n\n",
      stdout);
  std::exit(1);
}

/// `hasRoomBehind`: the parser may read past the end, and spares a copy of the document.
bool readDocument(std::string_view json, bool hasRoomBehind) {
  auto fresh = std::make_unique<Catalog>();
  simdjson::dom::element document;
  simdjson::dom::object root;
  if (fresh->parser.parse(json.data(), json.size(), !hasRoomBehind).get(document) != simdjson::SUCCESS ||
      document.get(root) != simdjson::SUCCESS) {
    return false;
  }
  simdjson::dom::object strings;
  if (root["strings"].get(strings) == simdjson::SUCCESS) {
    fresh->texts.reserve(strings.size());
    for (const auto field : strings) {
      const Texts texts = readTexts(field.value);
      if (texts.en || texts.de) fresh->texts.insert_or_assign(field.key, texts);
    }
  }
  catalog() = std::move(fresh);
  return true;
}

}  // namespace

std::vector<std::string> catalogSearchPaths(std::string_view executablePath) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path folder = fs::absolute(fs::path(executablePath), error).parent_path();
  const std::string name = "Localizable.xcstrings";
  const fs::path twoUp = folder.parent_path().parent_path();
  return {(folder / name).string(), (twoUp / name).string(), (twoUp.parent_path() / name).string(),
          (fs::current_path(error) / name).string()};
}

void loadStringCatalog(std::string_view executablePath) { loadStringCatalog(embeddedCatalog(), executablePath); }

void loadStringCatalog(std::string_view embedded, std::string_view executablePath) {
  if (catalog()) return;
  std::optional<std::string> json;
  if (!embedded.empty()) json = base64Decoded(embedded);
  if (!json) {
    const std::vector<std::string> paths = catalogSearchPaths(executablePath);
    for (const std::string& path : paths) {
      json = readTextFile(path);
      if (json) break;
    }
    if (!json) failWithout(paths);
  }
  const bool hasRoomBehind = json->capacity() - json->size() >= simdjson::SIMDJSON_PADDING;
  if (!readDocument(*json, hasRoomBehind)) failUnreadable();
}

bool readStringCatalog(std::string_view json) { return readDocument(json, false); }

void unloadStringCatalog() { catalog().reset(); }

std::size_t catalogSize() { return catalog() ? catalog()->texts.size() : 0; }

bool catalogHasKey(std::string_view key) { return catalog() && catalog()->texts.count(key) != 0; }

std::string_view localized(std::string_view key) {
  if (isNormal(key)) return lookedUp(key).value_or(key);
  return lookedUp(normalized(key)).value_or(key);
}

std::string_view currentLanguage() { return language().current; }

void setCurrentLanguage(std::string_view code) { language().current = code; }

void toggleLanguage() {
  language().current = language().current == "en" ? "de" : "en";
  keepPreferences();
}

std::string languageName(std::string_view code) {
  for (const LanguageRow& row : supportedLanguages) {
    if (row.code == code) return std::string(row.name);
  }
  return uppercased(code);
}

}  // namespace halyard

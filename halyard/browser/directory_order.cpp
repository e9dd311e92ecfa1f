#include "halyard/browser/directory_order.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include <unicode/coll.h>
#include <unicode/unistr.h>

#include "core/text.hpp"

namespace halyard {

namespace {

/// The user's, but for the locale of machines, whose order is that of bytes.
icu::Locale localeOfUser() {
  const icu::Locale& locale = icu::Locale::getDefault();
  return std::string_view(locale.getVariant()) == "POSIX" ? icu::Locale::getRoot() : locale;
}

std::unique_ptr<icu::Collator> collator() {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> made(icu::Collator::createInstance(localeOfUser(), status));
  if (U_FAILURE(status) || !made) return nullptr;
  made->setStrength(icu::Collator::SECONDARY);  // accents count, case doesn't
  return made;
}

/// Writes the key by which a name is ordered behind `keys`. Comparing keys byte by byte compares the names.
void appendSortKey(const icu::Collator* order, const std::string& name, std::string& keys) {
  if (order == nullptr) {
    keys += caseFolded(name);
    return;
  }
  const icu::UnicodeString text = icu::UnicodeString::fromUTF8(name);
  std::array<std::uint8_t, 512> buffer{};
  const std::int32_t length = order->getSortKey(text, buffer.data(), static_cast<std::int32_t>(buffer.size()));
  if (length <= static_cast<std::int32_t>(buffer.size())) {
    keys.append(reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(length));
    return;
  }
  std::string longKey(static_cast<std::size_t>(length), '\0');
  order->getSortKey(text, reinterpret_cast<std::uint8_t*>(longKey.data()), length);
  keys += longKey;
}

/// One name's place among all keys; its first bytes beside it settle most comparisons without a look there.
struct KeyedRow {
  std::uint64_t head = 0;
  std::size_t begin = 0;
  std::size_t length = 0;
  std::size_t index = 0;
};

constexpr std::size_t rowsBetweenLooks = 1024;

std::uint64_t headOf(std::string_view key) {
  std::uint64_t head = 0;
  for (std::size_t i = 0; i < sizeof head; ++i) {
    head = head << 8U | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
  }
  return head;
}

}  // namespace

void sortByName(std::vector<DirectoryEntry>& entries, const std::function<bool()>& isCancelled) {
  const std::unique_ptr<icu::Collator> order = collator();
  std::string keys;
  std::vector<KeyedRow> rows;
  rows.reserve(entries.size());
  for (const DirectoryEntry& entry : entries) {
    const std::size_t begin = keys.size();
    appendSortKey(order.get(), entry.name, keys);
    const std::string_view key = std::string_view(keys).substr(begin);
    rows.push_back({headOf(key), begin, key.size(), rows.size()});
    // The keys are most of the work.
    if (rows.size() % rowsBetweenLooks == 0 && isCancelled && isCancelled()) return;
  }
  const std::string_view all = keys;
  std::sort(rows.begin(), rows.end(), [&](const KeyedRow& left, const KeyedRow& right) {
    if (left.head != right.head) return left.head < right.head;
    const int compared = all.substr(left.begin, left.length).compare(all.substr(right.begin, right.length));
    if (compared != 0) return compared < 0;
    return std::tie(entries[left.index].name, entries[left.index].url) <
           std::tie(entries[right.index].name, entries[right.index].url);
  });
  std::vector<DirectoryEntry> sorted;
  sorted.reserve(entries.size());
  for (const KeyedRow& row : rows) sorted.push_back(std::move(entries[row.index]));
  entries = std::move(sorted);
}

}  // namespace halyard

#ifndef DMCOMMON_VALUES_DMENUMDICT_H
#define DMCOMMON_VALUES_DMENUMDICT_H

#include <string_view>

/// One row of an enumeration-to-entity table: an enumeration value and the
/// vocabulary text that stands for it in XML. Tables are constant arrays of
/// rows ended by a row whose `text` is null.
struct DMEnumDictEntry {
  unsigned value;
  const char* text;
};

/// Reading an enumeration-to-entity table in both directions. Texts compare
/// byte by byte, case-sensitive, never by address.
namespace DMEnumDict {

/// The index of the first row whose text equals `text`, or -1 (also for a
/// null `text`).
constexpr int IndexOfText(const DMEnumDictEntry* table, const char* text) {
  if (text == nullptr) return -1;
  const std::string_view wanted(text);
  for (int i = 0; table[i].text != nullptr; ++i) {
    if (wanted == table[i].text) return i;
  }
  return -1;
}

/// The text of the first row holding `value`, or null when no row does.
constexpr const char* TextOfValue(const DMEnumDictEntry* table, unsigned value) {
  for (int i = 0; table[i].text != nullptr; ++i) {
    if (table[i].value == value) return table[i].text;
  }
  return nullptr;
}

/// The number of rows before the terminating one.
constexpr int Size(const DMEnumDictEntry* table) {
  int count = 0;
  while (table[count].text != nullptr) ++count;
  return count;
}

}  // namespace DMEnumDict

#endif  // DMCOMMON_VALUES_DMENUMDICT_H

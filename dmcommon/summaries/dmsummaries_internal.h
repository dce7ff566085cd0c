#ifndef DMCOMMON_SUMMARIES_DMSUMMARIES_INTERNAL_H
#define DMCOMMON_SUMMARIES_DMSUMMARIES_INTERNAL_H

// Reading and writing shared by every summary class. Never installed.
//
// Readers answer true when reading may go on and false on the first defect;
// the summary classes turn that into their parse result. Writers answer true
// when the element is complete so far.

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

namespace dmsummaries_internal {

/// Whether a reader accepts an absent attribute or child.
enum class Presence { Optional, Required };

// ---------------------------------------------------------------------------
// Attributes

/// Reads a real. Present infinite or not-a-number readings are defects like
/// unreadable text, and leave `value` untouched.
[[nodiscard]] inline bool ReadRaw(const DmExtension::DMXMLWrapper& element, const char* name,
                                  double& value, bool& found) {
  double read = 0.0;
  int special = 0;
  if (element.getAttribute(name, read, found, special) != DmExtension::DM_XML_OK) return false;
  if (!found) return true;
  if (special != 0) return false;
  value = read;
  return true;
}

/// Reads a signed 64-bit integer with the handle's lenient "%lld" reading.
[[nodiscard]] inline bool ReadRaw(const DmExtension::DMXMLWrapper& element, const char* name,
                                  long long& value, bool& found) {
  return element.getAttribute(name, value, found) == DmExtension::DM_XML_OK;
}

/// Reads a text; a present empty text is found.
[[nodiscard]] inline bool ReadRaw(const DmExtension::DMXMLWrapper& element, const char* name,
                                  std::string& value, bool& found) {
  return element.getAttribute(name, value, found) == DmExtension::DM_XML_OK;
}

/// Reads attribute `name` into `item`, which gets a value only when the
/// attribute is present and readable. An absent attribute leaves `item` as it
/// was and is a defect only when `presence` is `Required`.
template <typename T>
[[nodiscard]] bool ReadItem(const DmExtension::DMXMLWrapper& element, const char* name,
                            std::optional<T>& item, Presence presence = Presence::Optional) {
  T value{};
  bool found = false;
  if (!ReadRaw(element, name, value, found)) return false;
  if (!found) return presence == Presence::Optional;
  item = std::move(value);
  return true;
}

/// Reads an optional text that has no presence flag of its own: an absent
/// attribute leaves `text` as it was (normally empty). `found` tells whether
/// it was there.
[[nodiscard]] inline bool ReadText(const DmExtension::DMXMLWrapper& element, const char* name,
                                   std::string& text, bool& found) {
  std::optional<std::string> read;
  if (!ReadItem(element, name, read)) return false;
  found = read.has_value();
  if (found) text = std::move(*read);
  return true;
}

/// As above, for callers that do not care whether the text was there.
[[nodiscard]] inline bool ReadText(const DmExtension::DMXMLWrapper& element, const char* name,
                                   std::string& text) {
  bool found = false;
  return ReadText(element, name, text, found);
}

/// Whether `text` is one of the two flag entities, compared exactly.
inline bool IsFlagText(const std::string& text) {
  return text == DmCppHelperV1::XMLEntities::True || text == DmCppHelperV1::XMLEntities::False;
}

/// Reads an optional flag kept as its entity text. A present text other than
/// the two entities is kept as read and is a defect; an absent attribute
/// leaves `text` as it was.
[[nodiscard]] inline bool ReadFlagText(const DmExtension::DMXMLWrapper& element, const char* name,
                                       std::string& text) {
  bool found = false;
  if (!ReadText(element, name, text, found)) return false;
  return !found || IsFlagText(text);
}

/// Writes `item` when it holds a value.
[[nodiscard]] inline bool WriteItem(DmExtension::DMXMLWrapper& element, const char* name,
                                    const std::optional<double>& item) {
  if (!item.has_value()) return true;
  return element.addAttribute(name, *item) == DmExtension::DM_XML_OK;
}

[[nodiscard]] inline bool WriteItem(DmExtension::DMXMLWrapper& element, const char* name,
                                    const std::optional<long long>& item) {
  if (!item.has_value()) return true;
  return element.addAttribute(name, *item) == DmExtension::DM_XML_OK;
}

[[nodiscard]] inline bool WriteItem(DmExtension::DMXMLWrapper& element, const char* name,
                                    const std::optional<std::string>& item) {
  if (!item.has_value()) return true;
  return element.addAttribute(name, item->c_str()) == DmExtension::DM_XML_OK;
}

/// Writes `text` unless it is empty.
[[nodiscard]] inline bool WriteText(DmExtension::DMXMLWrapper& element, const char* name,
                                    const std::string& text) {
  if (text.empty()) return true;
  return element.addAttribute(name, text.c_str()) == DmExtension::DM_XML_OK;
}

// ---------------------------------------------------------------------------
// Children

/// Calls `visit(child)` for each direct child element named `name` in
/// document order while `visit` answers true. False when the children cannot
/// be walked or `visit` refused one.
template <typename Visit>
[[nodiscard]] bool ForEachChild(const DmExtension::DMXMLWrapper& element, const char* name,
                                Visit visit) {
  // The handle's iterators are not const; a second handle over the same
  // element keeps the caller's handle untouched and takes the iterator and
  // its item handles along when it goes.
  DmExtension::DMXMLWrapper view(element.getElement());
  DmExtension::DMXMLIteratorWrapper* iterator = nullptr;
  if (view.getElementDirectIterator(name, &iterator) != DmExtension::DM_XML_OK ||
      iterator == nullptr) {
    return false;
  }
  for (;;) {
    void* item = nullptr;
    const int rc = iterator->nextItem(&item);
    if (rc == DmExtension::DM_XML_NO_MORE_ITEMS) return true;
    if (rc != DmExtension::DM_XML_OK || item == nullptr) return false;
    if (!visit(*static_cast<DmExtension::DMXMLWrapper*>(item))) return false;
  }
}

/// Reads each direct child named `name` into a new `T` appended to `list`.
/// The first child that fails to parse is dropped and stops the reading; the
/// ones before it stay.
template <typename T>
[[nodiscard]] bool ReadChildren(const DmExtension::DMXMLWrapper& element, const char* name,
                                std::vector<std::unique_ptr<T>>& list) {
  return ForEachChild(element, name, [&list](const DmExtension::DMXMLWrapper& child) {
    auto read = std::make_unique<T>(child);
    if (!read->parseSuccess()) return false;
    list.push_back(std::move(read));
    return true;
  });
}

/// Reads the first direct child named `name` into `child`; later ones are
/// ignored. A child that fails to parse is dropped. Without such a child
/// `child` stays null, which is a defect only when `presence` is `Required`.
template <typename T>
[[nodiscard]] bool ReadFirstChild(const DmExtension::DMXMLWrapper& element, const char* name,
                                  std::unique_ptr<T>& child,
                                  Presence presence = Presence::Optional) {
  bool seen = false;
  bool parsed = false;
  const bool walked = ForEachChild(element, name, [&](const DmExtension::DMXMLWrapper& found) {
    seen = true;
    auto read = std::make_unique<T>(found);
    parsed = read->parseSuccess();
    if (parsed) child = std::move(read);
    return false;  // only the first one counts
  });
  if (!seen) return walked && presence == Presence::Optional;
  return parsed;
}

/// Writes `child` under `element`; false when it wrote nothing.
template <typename T>
[[nodiscard]] bool WriteChild(DmExtension::DMXMLWrapper& element, const T& child) {
  DmExtension::DMXMLWrapper* created = nullptr;
  child.AddToTree(element, created);
  return created != nullptr;
}

/// Writes `child` when there is one.
template <typename T>
[[nodiscard]] bool WriteOptionalChild(DmExtension::DMXMLWrapper& element,
                                      const std::unique_ptr<T>& child) {
  return child == nullptr || WriteChild(element, *child);
}

/// Writes every entry of `list` in order; a null entry or one that writes
/// nothing is a failure.
template <typename T>
[[nodiscard]] bool WriteChildren(DmExtension::DMXMLWrapper& element,
                                 const std::vector<std::unique_ptr<T>>& list) {
  for (const auto& entry : list) {
    if (entry == nullptr || !WriteChild(element, *entry)) return false;
  }
  return true;
}

/// The frame of every `AddToTree`: `created` is null first; a free element
/// named `name` is filled by `fill(element)` and appended to `parent` only
/// when `fill` answers true. Otherwise the free element is destroyed with
/// everything added to it, and `parent` is untouched.
template <typename Fill>
void WriteElement(DmExtension::DMXMLWrapper& parent, const char* name,
                  DmExtension::DMXMLWrapper*& created, Fill fill) {
  created = nullptr;
  std::unique_ptr<DmExtension::DMXMLWrapper> element(parent.createFreeElement(name));
  if (element == nullptr) return;
  if (!fill(*element)) return;
  if (parent.addElement(element.get()) != DmExtension::DM_XML_OK) return;
  // The parent owns the element from here on.
  created = element.release();
}

// ---------------------------------------------------------------------------
// Deep copies

/// A new copy of `source`, or null for null.
template <typename T>
std::unique_ptr<T> CopyOf(const std::unique_ptr<T>& source) {
  return source == nullptr ? nullptr : std::make_unique<T>(*source);
}

/// A new copy of every entry of `source`, in order.
template <typename T>
std::vector<std::unique_ptr<T>> CopyOf(const std::vector<std::unique_ptr<T>>& source) {
  std::vector<std::unique_ptr<T>> copy;
  copy.reserve(source.size());
  for (const auto& entry : source) copy.push_back(CopyOf(entry));
  return copy;
}

}  // namespace dmsummaries_internal

#endif  // DMCOMMON_SUMMARIES_DMSUMMARIES_INTERNAL_H

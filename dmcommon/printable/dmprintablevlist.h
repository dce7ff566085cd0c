#ifndef DMCOMMON_PRINTABLE_DMPRINTABLEVLIST_H
#define DMCOMMON_PRINTABLE_DMPRINTABLEVLIST_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <unicode/unistr.h>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/printable/dmprintable.h"

namespace DMPrintableUtil {
class CommonImpl;
}  // namespace DMPrintableUtil

/// A list of any length printed with one pattern of three sub-patterns
/// separated by "/": a head for the first items, a middle repeated for the
/// items between, and a tail for the last items, such as "{0}/, {0}/ and
/// {0}". Shares pattern, key lookup, arguments and XML form with
/// `DMPrintableList`; written in XML as a "PrintableVList" element.
class DMCOMMON_EXPORT DMPrintableVList : public DMPrintable {
 public:
  /// `pattern` as the three sub-patterns, or as a resource key of the map
  /// `mapId` for them when `isKey`; no items.
  DMPrintableVList(const std::string& pattern, bool isKey, int mapId);
  /// Reads a value-list element as `DMPrintableList` reads a list element.
  /// Throws `DMPrintable::FailExcp` when it cannot be read. The element's
  /// name is not checked.
  explicit DMPrintableVList(const DmExtension::DMXMLWrapper& element);
  /// A deep copy: every item is cloned, and the sub-patterns, counts and
  /// message formats, when built, are copied.
  DMPrintableVList(const DMPrintableVList& other);
  /// Makes this list a deep copy of `other`.
  DMPrintableVList& operator=(const DMPrintableVList& other);
  /// Destroys the list and its items.
  ~DMPrintableVList() override;

  /// A new deep copy, owned by the caller.
  DMPrintableVList* Clone() const override;
  /// The items printed through the parts, built on the first call: the head
  /// takes the first items; when enough remain, the tail takes the last ones
  /// and the middle is repeated over the items between, in whole groups only
  /// (items left over are not printed). The empty text when the head cannot
  /// take its items or a sub-pattern is not a valid message pattern.
  std::string Print() const override;
  /// Sets the lookup for this list's own key only; items keep theirs. Parts
  /// already built are kept: the new lookup counts from the next
  /// `SetPattern` on. Not owned.
  void SetResLookUp(DMResLookUp* lookUp) override;
  /// Writes a "PrintableVList" element as `DMPrintableList::AddToTree`
  /// writes a list.
  void AddToTree(DmExtension::DMXMLWrapper& parent,
                 DmExtension::DMXMLWrapper*& created) const override;

  /// Replaces pattern, key flag and map id, forgets the text looked up for
  /// the previous key, and drops the built parts so that the next `Print`
  /// builds them from the new pattern.
  void SetPattern(const std::string& pattern, bool isKey, int mapId);
  /// Appends a clone of `printable`; the caller keeps the original.
  void AppendToList(const DMPrintable& printable);
  /// Replaces the items with clones of `printables` (null entries are
  /// skipped); the caller keeps the originals.
  void SetList(const std::vector<const DMPrintable*>& printables);
  /// The pattern, key, items and lookup, for reading.
  const DMPrintableUtil::CommonImpl& GetCommonImpl() const;

  /// Builds the three parts from the pattern: the text before the first "/"
  /// is the head, the text up to the second "/" the middle, the text up to
  /// the third "/" the tail; anything after a third "/" is ignored, and a
  /// pattern without "/" is all head. Each part's count is its number of
  /// placeholders minus one (0xFFFFFFFF for none). When a sub-pattern is not
  /// a valid message pattern, the parts are left empty.
  void MakeParts() const;
  /// Formats items `start` to `start + count - 1` with sub-pattern `part`
  /// (0 head, 1 middle, 2 tail): the head and the middle put the first of
  /// the items in {0}, the tail puts the last of them in {0} and the first in
  /// the highest placeholder. The empty text when the parts are not built,
  /// `part` is above 2, `count` is 0, the items run past the end of the list,
  /// or ICU cannot format them.
  icu::UnicodeString PrintPart(unsigned part, unsigned start, unsigned count) const;
  /// The three sub-patterns (head, middle, tail) as last built; empty until
  /// the parts are built, and when building them failed.
  const std::vector<icu::UnicodeString>& GetSubPatterns() const;
  /// The placeholder count minus one of each sub-pattern as last built;
  /// empty until the parts are built, and when building them failed.
  const std::vector<std::uint32_t>& GetArgCounts() const;

  /// A new value list read from a "PrintableVList" element, owned by the
  /// caller. Null with `recognised` false for an element of another name;
  /// null with `recognised` true when the element cannot be read.
  static DMPrintableVList* CreateFromElmt(const DmExtension::DMXMLWrapper& element,
                                          bool& recognised);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

#endif  // DMCOMMON_PRINTABLE_DMPRINTABLEVLIST_H

#ifndef DMCOMMON_PRINTABLE_DMPRINTABLELIST_H
#define DMCOMMON_PRINTABLE_DMPRINTABLELIST_H

#include <memory>
#include <string>
#include <vector>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/printable/dmprintable.h"

namespace DMPrintableUtil {
class CommonImpl;
}  // namespace DMPrintableUtil

/// A message pattern in ICU `MessageFormat` syntax, or a resource key for
/// one, with a list of argument printables: argument i fills the placeholder
/// {i}. Written in XML as a "PrintableList" element.
class DMCOMMON_EXPORT DMPrintableList : public DMPrintable {
 public:
  /// `pattern` as a message pattern, or as a resource key of the map `mapId`
  /// when `isKey`; no arguments.
  DMPrintableList(const std::string& pattern, bool isKey, int mapId);
  /// Reads a list element: its pattern, key flag and map id, and every child
  /// element as an argument (see `DMPrintableUtil::CommonImpl`). Throws
  /// `DMPrintable::FailExcp` when it cannot be read. The element's name is
  /// not checked.
  explicit DMPrintableList(const DmExtension::DMXMLWrapper& element);
  /// A deep copy: every argument is cloned.
  DMPrintableList(const DMPrintableList& other);
  /// Makes this list a deep copy of `other`.
  DMPrintableList& operator=(const DMPrintableList& other);
  /// Destroys the list and its arguments.
  ~DMPrintableList() override;

  /// A new deep copy, owned by the caller.
  DMPrintableList* Clone() const override;
  /// Without arguments, the pattern exactly as it stands: no message
  /// formatting at all, so apostrophes and braces stay as written. Otherwise
  /// the pattern formatted by ICU `MessageFormat` for the default locale with
  /// each argument's text as a string argument; the empty text when ICU
  /// cannot build or apply the format. A key prints as the text its lookup
  /// gives (empty while no lookup is set).
  std::string Print() const override;
  /// Sets the lookup for this list's own key only; arguments keep theirs.
  /// Not owned.
  void SetResLookUp(DMResLookUp* lookUp) override;
  /// Writes a "PrintableList" element with the raw pattern (never a
  /// looked-up text), "isKey" and "mapId" when they differ from false and 0,
  /// and the arguments' elements inside, and appends it to `parent`;
  /// `created` receives it, owned by `parent`. When an argument writes
  /// nothing, nothing is added and `created` is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent,
                 DmExtension::DMXMLWrapper*& created) const override;

  /// Replaces pattern, key flag and map id, and forgets the text looked up
  /// for the previous key.
  void SetPattern(const std::string& pattern, bool isKey, int mapId);
  /// Appends a clone of `printable`; the caller keeps the original.
  void AppendToList(const DMPrintable& printable);
  /// Replaces the arguments with clones of `printables` (null entries are
  /// skipped); the caller keeps the originals.
  void SetList(const std::vector<const DMPrintable*>& printables);
  /// The pattern, key, arguments and lookup, for reading.
  const DMPrintableUtil::CommonImpl& GetCommonImpl() const;

  /// A new list read from a "PrintableList" element, owned by the caller.
  /// Null with `recognised` false for an element of another name; null with
  /// `recognised` true when the element cannot be read.
  static DMPrintableList* CreateFromElmt(const DmExtension::DMXMLWrapper& element,
                                         bool& recognised);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

#endif  // DMCOMMON_PRINTABLE_DMPRINTABLELIST_H

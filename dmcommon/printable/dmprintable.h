#ifndef DMCOMMON_PRINTABLE_DMPRINTABLE_H
#define DMCOMMON_PRINTABLE_DMPRINTABLE_H

#include <string>

#include "dmcommon/dmcommon_export.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

/// Turns resource keys into localised texts; supplied by the caller, who
/// keeps ownership. A printable only holds a pointer to it.
class DMCOMMON_EXPORT DMResLookUp {
 public:
  /// Fills `text` with the resource text of `key` in the resource map
  /// `mapId`. Returns false when there is none; printables then treat the
  /// text as empty, whatever was written into it.
  virtual bool LookUp(const std::string& key, std::string& text, int mapId) = 0;
  /// Destroys the lookup. Declared after `LookUp` so that the lookup
  /// operation keeps the first place in the table of virtual operations.
  virtual ~DMResLookUp();

 protected:
  DMResLookUp() = default;
  DMResLookUp(const DMResLookUp&) = default;
  DMResLookUp& operator=(const DMResLookUp&) = default;
};

/// A message described by data and turned into UTF-8 text only when it is
/// printed: a formatted value, or a message pattern whose arguments are
/// printables themselves. The abstract base of `DMPrintableValue`,
/// `DMPrintableList` and `DMPrintableVList`.
class DMCOMMON_EXPORT DMPrintable {
 public:
  /// Thrown when a printable cannot be built: a value whose datum, subtype
  /// and format do not go together, or malformed printable XML. Nothing else
  /// in the printables throws it, and `CreateFromElmt` never lets it out.
  class DMCOMMON_EXPORT FailExcp {};

  /// Destroys the printable and everything it owns.
  virtual ~DMPrintable();
  /// A new deep copy of the same concrete class, owned by the caller.
  virtual DMPrintable* Clone() const = 0;
  /// The message as UTF-8 text. Never throws for content: what cannot be
  /// formatted prints as the empty text.
  virtual std::string Print() const = 0;
  /// Sets the resource lookup used to resolve pattern keys; the caller keeps
  /// ownership and keeps it alive while the printable may print. Null removes
  /// it.
  virtual void SetResLookUp(DMResLookUp* lookUp) = 0;
  /// Writes the printable as a child element of `parent`, with its arguments
  /// and format inside; `created` receives the element, owned by `parent`.
  /// When any part fails nothing is added and `created` is null.
  virtual void AddToTree(DmExtension::DMXMLWrapper& parent,
                         DmExtension::DMXMLWrapper*& created) const = 0;

  /// Reads a printable from a "PrintableList", "PrintableValue" or
  /// "PrintableVList" element, trying the kinds in that order. `recognised`
  /// tells whether the element's name was one of the three. Returns a new
  /// printable owned by the caller, or null for an element of another name
  /// (`recognised` false) or a malformed one (`recognised` true).
  static DMPrintable* CreateFromElmt(const DmExtension::DMXMLWrapper& element, bool& recognised);

 protected:
  DMPrintable() = default;
  // Copying only through the concrete classes, so that no printable is
  // sliced.
  DMPrintable(const DMPrintable&) = default;
  DMPrintable& operator=(const DMPrintable&) = default;
};

#endif  // DMCOMMON_PRINTABLE_DMPRINTABLE_H

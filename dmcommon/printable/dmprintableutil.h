#ifndef DMCOMMON_PRINTABLE_DMPRINTABLEUTIL_H
#define DMCOMMON_PRINTABLE_DMPRINTABLEUTIL_H

#include <memory>
#include <string>
#include <vector>

#include <unicode/unistr.h>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/printable/dmprintable.h"
#include "dmcommon/printable/dmuncconverter.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

namespace DMPrintableUtil {

/// What the printables made of a pattern and a list of argument printables
/// share: the pattern or resource key, the arguments, the resource lookup and
/// the UTF-8 conversion for ICU.
class DMCOMMON_EXPORT CommonImpl {
 public:
  /// `pattern` as a message pattern, or as a resource key of the map `mapId`
  /// when `isKey`; no arguments and no resource lookup.
  CommonImpl(const std::string& pattern, bool isKey, int mapId);
  /// Reads the attributes "pattern", "isKey" and "mapId" of a list element and
  /// its child elements as arguments. Without "pattern", or with an "isKey"
  /// that is neither "true" nor "false", reading stops early and leaves what
  /// was read so far (no error). Throws `DMPrintable::FailExcp` when "mapId"
  /// is not an integer, a child element is no printable, or the children
  /// cannot be walked.
  explicit CommonImpl(const DmExtension::DMXMLWrapper& element);
  /// A deep copy: every argument is cloned. The copy opens its own converter
  /// when it first needs one.
  CommonImpl(const CommonImpl& other);
  /// Makes this a deep copy of `other`, keeping its own converter.
  CommonImpl& operator=(const CommonImpl& other);
  ~CommonImpl();

  /// Replaces pattern, key flag and map id, and forgets the text looked up
  /// for the previous key.
  void SetPattern(const std::string& pattern, bool isKey, int mapId);
  /// Appends a clone of `printable`; the caller keeps the original.
  void AppendToList(const DMPrintable& printable);
  /// Replaces the arguments with clones of `printables`, in order; the caller
  /// keeps the originals. Null entries are skipped.
  void SetList(const std::vector<const DMPrintable*>& printables);
  /// Stores the lookup used by `GetPattern`; not owned. Arguments are not
  /// touched.
  void SetResLookUp(DMResLookUp* lookUp);

  /// The message pattern. For a key, the text the resource lookup gives for
  /// it: looked up on the first call that finds a lookup set and kept until
  /// `SetPattern`; the empty text while no lookup is set.
  std::string GetPattern() const;
  /// The arguments in order, owned by this object and valid until the list
  /// changes.
  std::vector<const DMPrintable*> GetList() const;
  /// The pattern or key as it was given, never looked up.
  const std::string& GetRawPattern() const;
  /// Whether the pattern is a resource key.
  bool GetIsKey() const;
  /// The resource map of the key.
  int GetMapId() const;
  /// The resource lookup, or null; not owned.
  DMResLookUp* GetResLookUp() const;

  /// `bytes` as UTF-16, through this object's converter (opened on first
  /// use).
  icu::UnicodeString ToUTF16(const std::string& bytes) const;
  /// `text` as UTF-8, through this object's converter (opened on first use);
  /// the empty text when ICU reports an error.
  std::string ToUTF8(const icu::UnicodeString& text) const;

  /// Writes an element named `elementName` with the attributes "pattern" (the
  /// raw pattern, never a looked-up text), "isKey" ("true", only for a key)
  /// and "mapId" (only when not 0), then each argument's element in order,
  /// and appends it to `parent`; `created` receives it, owned by `parent`.
  /// When an argument writes nothing, or any other step fails, nothing is
  /// added and `created` is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created,
                 const char* elementName) const;

 private:
  DMUncConverter& Converter() const;

  std::vector<std::unique_ptr<const DMPrintable>> arguments_;
  std::string pattern_;
  bool isKey_;
  int mapId_;
  DMResLookUp* lookUp_;
  // Conversion and lookup state, not part of the printable's value: opened
  // and filled by const operations when first needed.
  mutable std::unique_ptr<DMUncConverter> converter_;
  mutable std::string lookedUpPattern_;
};

}  // namespace DMPrintableUtil

#endif  // DMCOMMON_PRINTABLE_DMPRINTABLEUTIL_H

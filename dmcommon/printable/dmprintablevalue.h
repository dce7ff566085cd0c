#ifndef DMCOMMON_PRINTABLE_DMPRINTABLEVALUE_H
#define DMCOMMON_PRINTABLE_DMPRINTABLEVALUE_H

#include <memory>
#include <string>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/printable/dmprintable.h"

class DMDatum;
class DMFormat;

/// One datum shown through a display format. Written in XML as a
/// "PrintableValue" element.
class DMCOMMON_EXPORT DMPrintableValue : public DMPrintable {
 public:
  /// What a real datum counts, which decides the units it is formatted in.
  /// Integer and text datums are always `Real`.
  enum StorageSubType : unsigned {
    Real = 0,       ///< a plain number, or a text
    Date = 1,       ///< days, formatted with `DMFormat::UnitsDays`
    Time = 2,       ///< seconds, formatted with `DMFormat::UnitsSeconds`
    Timestamp = 3,  ///< seconds, formatted with `DMFormat::UnitsSeconds`
  };

  /// A copy of `datum` shown through a clone of `format`. The combination
  /// must be one of: an integer or real datum, `Real`, a `Number` or
  /// `Decorated` format; a real datum, `Date`, `Time` or `Timestamp`, a
  /// `Date` or `Time` format; a text datum, `Real`, a `String` format. Any
  /// other throws `DMPrintable::FailExcp`. The caller keeps `format`.
  DMPrintableValue(const DMDatum& datum, StorageSubType subType, const DMFormat& format);
  /// Reads a value element: "isNull" ("true" or "false", absent false), the
  /// storage (`XMLAttributes::Storage`, required), the value
  /// (`XMLAttributes::Value`, required unless null) and the format from the
  /// first child element, if there is one. The label is not read, and the
  /// combination of datum and format is not checked. Throws
  /// `DMPrintable::FailExcp` for a bad switch, an unknown or missing storage,
  /// a missing or unreadable value, or a child that is no format. The
  /// element's name is not checked.
  explicit DMPrintableValue(const DmExtension::DMXMLWrapper& element);
  /// A deep copy: the format is cloned.
  DMPrintableValue(const DMPrintableValue& other);
  /// Makes this value a deep copy of `other`.
  DMPrintableValue& operator=(const DMPrintableValue& other);
  /// Destroys the value and its format.
  ~DMPrintableValue() override;

  /// A new deep copy, owned by the caller.
  DMPrintableValue* Clone() const override;
  /// The text the format's `Format` gives for the datum, in the units of the
  /// subtype; the empty text when formatting fails or there is no format (a
  /// value read from an element without a format child).
  std::string Print() const override;
  /// Does nothing: a value has no key to resolve.
  void SetResLookUp(DMResLookUp* lookUp) override;
  /// Writes a "PrintableValue" element with the storage, "isNull" = "true"
  /// and an empty value for a null datum or else the value's text, "label"
  /// when the label is set, and the format's element inside (none when there
  /// is no format), and appends it to `parent`; `created` receives it, owned
  /// by `parent`. When the format writes nothing, nothing is added and
  /// `created` is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent,
                 DmExtension::DMXMLWrapper*& created) const override;

  /// Sets the label. It is written to XML only: it is neither printed nor
  /// read back.
  void SetLabel(const std::string& label);
  /// The datum.
  const DMDatum& GetDatum() const;
  /// The storage subtype.
  StorageSubType GetSubType() const;
  /// The label.
  const std::string& GetLabel() const;
  /// The format, owned by the value; null for a value read from an element
  /// without a format child.
  const DMFormat* GetFormat() const;

  /// A new value read from a "PrintableValue" element, owned by the caller.
  /// Null with `recognised` false for an element of another name; null with
  /// `recognised` true when the element cannot be read.
  static DMPrintableValue* CreateFromElmt(const DmExtension::DMXMLWrapper& element,
                                          bool& recognised);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

#endif  // DMCOMMON_PRINTABLE_DMPRINTABLEVALUE_H

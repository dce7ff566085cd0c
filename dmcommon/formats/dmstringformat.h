#ifndef DMCOMMON_FORMATS_DMSTRINGFORMAT_H
#define DMCOMMON_FORMATS_DMSTRINGFORMAT_H

#include <string>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/formats/dmformat.h"

/// A text format, optionally showing the text's bytes in hexadecimal.
class DMCOMMON_EXPORT DMStringFormat : public DMFormat {
 public:
  /// An invalid format: width 0, not hexadecimal, `Auto`, no name.
  DMStringFormat();
  /// A format of `width`, hexadecimal or not, with `Auto` alignment and no
  /// name. Width 0 gives an invalid format.
  DMStringFormat(int width, bool hexadecimal);
  /// Reads a `StringFormat` element: the name, width and alignment, then the
  /// optional hexadecimal flag (absent gives false). A missing name or width,
  /// a width of 0 or a flag that is neither true nor false give the default,
  /// invalid format.
  explicit DMStringFormat(const DmExtension::DMXMLWrapper& element);
  /// A copy of `other`.
  DMStringFormat(const DMStringFormat& other);
  /// Makes this format a copy of `other`.
  DMStringFormat& operator=(const DMStringFormat& other);
  /// Destroys the format.
  ~DMStringFormat() override;

  /// A new copy, owned by the caller.
  DMStringFormat* Clone() const override;
  /// Sets the name; does nothing while the width is 0.
  void SetName(const std::string& name) override;
  /// The width as stored.
  int GetWidth() const override;
  /// The alignment as stored.
  Alignment GetAlignment() const override;
  /// The name as stored.
  const std::string& GetName() const override;
  /// Renders a datum into `out` (`units` plays no part). Only a variable
  /// (negative) width renders: a text datum as it is, a null datum as the
  /// empty text; any other datum fails. Width 0 succeeds with the empty
  /// text; a fixed width fails with `out` empty. The hexadecimal flag is not
  /// applied here.
  int Format(const DMDatum& datum, ValueUnits units, std::string& out) const override;
  /// Writes a `StringFormat` element with name, width, alignment and the
  /// hexadecimal flag. An invalid format writes nothing; `created` is then
  /// null, as on failure.
  void AddToTree(DmExtension::DMXMLWrapper& parent,
                 DmExtension::DMXMLWrapper*& created) const override;
  /// `String`.
  FormatClass GetFormatClass() const override;

  /// Makes the format what the argument constructor makes; does nothing at
  /// all when `width` is 0.
  void Reset(int width, bool hexadecimal);
  /// Sets the alignment; does nothing while the width is 0.
  void SetAlignment(Alignment alignment);
  /// The hexadecimal flag as stored.
  bool GetHexRep() const;

 private:
  int width_;
  bool hexadecimal_;
  Alignment alignment_;
  std::string name_;
};

#endif  // DMCOMMON_FORMATS_DMSTRINGFORMAT_H

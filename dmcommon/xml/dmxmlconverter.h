#ifndef DMCOMMON_XML_DMXMLCONVERTER_H
#define DMCOMMON_XML_DMXMLCONVERTER_H

#include <memory>
#include <string>

#include <xercesc/util/XercesDefs.hpp>

#include "dmcommon/dmcommon_export.h"

XERCES_CPP_NAMESPACE_BEGIN
class XMLTranscoder;
XERCES_CPP_NAMESPACE_END

namespace DmExtension {

/// Converts one text between the library's UTF-8 and the DOM's UTF-16 with the
/// process-wide transcoder that `DMXMLWrapper::startup` creates.
class DMCOMMON_EXPORT DMXMLConverter {
 public:
  /// Converts UTF-8 to UTF-16. A null pointer converts as the empty text. The
  /// UTF-8 side of the result stays empty. Malformed UTF-8, or a call before
  /// `startup`, gives the empty UTF-16 text and `isValid()` false.
  explicit DMXMLConverter(const char* utf8);
  /// Converts UTF-16 to UTF-8; characters the transcoder cannot represent
  /// become its replacement character. A null pointer gives the empty text.
  explicit DMXMLConverter(const char16_t* utf16);
  ~DMXMLConverter();

  DMXMLConverter(const DMXMLConverter&) = delete;
  DMXMLConverter& operator=(const DMXMLConverter&) = delete;

  /// The UTF-8 text; owned by the converter.
  operator const char*() const;  // NOLINT(google-explicit-constructor)
  /// The zero-terminated UTF-16 text; null when built from UTF-16.
  operator const char16_t*() const;  // NOLINT(google-explicit-constructor)

  /// False when the input could not be converted as a whole.
  bool isValid() const;

  /// Installs the shared transcoder; the converter never releases it.
  static void setTranscoder(XERCES_CPP_NAMESPACE::XMLTranscoder* transcoder);
  /// The shared transcoder, or null before `startup`.
  static XERCES_CPP_NAMESPACE::XMLTranscoder* getTranscoder();

 private:
  std::unique_ptr<char16_t[]> wide;
  std::string narrow;
  bool valid_ = true;
  static XERCES_CPP_NAMESPACE::XMLTranscoder* transcoder_;
};

}  // namespace DmExtension

#endif  // DMCOMMON_XML_DMXMLCONVERTER_H

#ifndef DMCOMMON_PRINTABLE_DMUNCCONVERTER_H
#define DMCOMMON_PRINTABLE_DMUNCCONVERTER_H

#include <string>

#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include "dmcommon/dmcommon_export.h"

namespace DMPrintableUtil {

/// Converts between the library's UTF-8 texts and ICU's UTF-16
/// `UnicodeString`, the working form of all ICU formatting. Not copied: it
/// owns an ICU converter.
class DMCOMMON_EXPORT DMUncConverter {
 public:
  /// Opens a UTF-8 converter. Should ICU fail to open one, the conversions
  /// leave it to ICU to report the failure on use (an empty result).
  DMUncConverter();
  ~DMUncConverter();

  DMUncConverter(const DMUncConverter&) = delete;
  DMUncConverter& operator=(const DMUncConverter&) = delete;

  /// `bytes` as UTF-16. Malformed UTF-8 comes back as ICU left it
  /// (substitution characters), and the converter is reset so that the next
  /// conversion starts clean.
  icu::UnicodeString ToUTF16(const std::string& bytes);
  /// `text` as UTF-8; the empty text when ICU reports an error.
  std::string ToUTF8(const icu::UnicodeString& text);

 private:
  UConverter* converter;
};

}  // namespace DMPrintableUtil

#endif  // DMCOMMON_PRINTABLE_DMUNCCONVERTER_H

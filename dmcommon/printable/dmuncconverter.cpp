#include "dmcommon/printable/dmuncconverter.h"

#include <memory>

namespace DMPrintableUtil {

namespace {

// Texts up to this many UTF-8 bytes convert without an allocation.
constexpr int32_t kLocalBufferSize = 128;

}  // namespace

DMUncConverter::DMUncConverter() {
  UErrorCode status = U_ZERO_ERROR;
  converter = ucnv_open("utf-8", &status);
}

DMUncConverter::~DMUncConverter() { ucnv_close(converter); }

icu::UnicodeString DMUncConverter::ToUTF16(const std::string& bytes) {
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString text(bytes.data(), static_cast<int32_t>(bytes.size()), converter, status);
  // A converter that met malformed input keeps partial state; resetting it
  // keeps that from leaking into the next conversion.
  if (U_FAILURE(status)) ucnv_reset(converter);
  return text;
}

std::string DMUncConverter::ToUTF8(const icu::UnicodeString& text) {
  char local[kLocalBufferSize];
  UErrorCode status = U_ZERO_ERROR;
  const int32_t length = text.extract(local, kLocalBufferSize, converter, status);
  if (U_FAILURE(status) && status != U_BUFFER_OVERFLOW_ERROR) return std::string();
  if (length <= kLocalBufferSize) return std::string(local, static_cast<std::size_t>(length));
  // Longer texts are extracted a second time into a buffer of their size.
  auto buffer = std::make_unique<char[]>(static_cast<std::size_t>(length) + 1);
  status = U_ZERO_ERROR;
  const int32_t written = text.extract(buffer.get(), length + 1, converter, status);
  if (U_FAILURE(status)) return std::string();
  return std::string(buffer.get(), static_cast<std::size_t>(written));
}

}  // namespace DMPrintableUtil

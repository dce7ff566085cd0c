#include "dmcommon/xml/dmxmlconverter.h"

#include <cstdint>
#include <cstring>

#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLException.hpp>

XERCES_CPP_NAMESPACE_USE

namespace DmExtension {

XMLTranscoder* DMXMLConverter::transcoder_ = nullptr;

namespace {

// The transcoder takes its lengths as 32-bit values.
XMLSize_t ClampLength(std::size_t length) { return static_cast<std::uint32_t>(length); }

}  // namespace

DMXMLConverter::DMXMLConverter(const char* utf8) {
  const std::size_t length = utf8 == nullptr ? 0 : std::strlen(utf8);
  wide = std::make_unique<char16_t[]>(length + 1);
  if (length == 0) return;
  if (transcoder_ == nullptr) {
    valid_ = false;
    return;
  }
  auto charSizes = std::make_unique<unsigned char[]>(length + 1);
  XMLSize_t bytesEaten = 0;
  XMLSize_t produced = 0;
  try {
    produced =
        transcoder_->transcodeFrom(reinterpret_cast<const XMLByte*>(utf8), ClampLength(length),
                                   wide.get(), ClampLength(length), bytesEaten, charSizes.get());
  } catch (const XMLException&) {
    // Malformed UTF-8 must not reach a document as a silently shortened text.
    produced = 0;
    valid_ = false;
  }
  // A sequence cut off at the end of the input is left unconsumed.
  if (bytesEaten != length) {
    produced = 0;
    valid_ = false;
  }
  wide[produced] = 0;
}

DMXMLConverter::DMXMLConverter(const char16_t* utf16) {
  if (utf16 == nullptr || transcoder_ == nullptr) return;
  constexpr XMLSize_t kPiece = 256;
  XMLByte buffer[kPiece];
  XMLSize_t remaining = ClampLength(std::char_traits<char16_t>::length(utf16));
  const char16_t* next = utf16;
  while (remaining > 0) {
    XMLSize_t eaten = 0;
    XMLSize_t bytes = 0;
    try {
      bytes = transcoder_->transcodeTo(next, remaining, buffer, kPiece, eaten,
                                       XMLTranscoder::UnRep_RepChar);
    } catch (const XMLException&) {
      valid_ = false;
      return;
    }
    narrow.append(reinterpret_cast<const char*>(buffer), bytes);
    // An unpaired surrogate at the end is never consumed; stop instead of
    // spinning on it.
    if (eaten == 0) {
      valid_ = false;
      return;
    }
    next += eaten;
    remaining -= eaten;
  }
}

DMXMLConverter::~DMXMLConverter() = default;

DMXMLConverter::operator const char*() const { return narrow.c_str(); }

DMXMLConverter::operator const char16_t*() const { return wide.get(); }

bool DMXMLConverter::isValid() const { return valid_; }

void DMXMLConverter::setTranscoder(XMLTranscoder* transcoder) { transcoder_ = transcoder; }

XMLTranscoder* DMXMLConverter::getTranscoder() { return transcoder_; }

}  // namespace DmExtension

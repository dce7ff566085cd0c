#include "dmcommon/xml/dmxmlconverter.h"

#include <array>
#include <cstdint>
#include <cstring>

#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLException.hpp>

#include "dmcommon/xml/dmxmltext_internal.h"

XERCES_CPP_NAMESPACE_USE

namespace DmExtension {

XMLTranscoder* DMXMLConverter::transcoder_ = nullptr;

namespace {

// The transcoder takes its lengths as 32-bit values.
XMLSize_t ClampLength(std::size_t length) { return static_cast<std::uint32_t>(length); }

// One remembered name: the caller's pointer, its text (a pointer alone could
// be a reused buffer holding another name) and the UTF-16 form.
struct NameSlot {
  const char* key = nullptr;
  std::string narrow;
  std::u16string wide;
  bool valid = false;
};

// Direct-mapped by address: vocabulary names are constants with fixed
// addresses, so a handful of slots serve a whole document. The size bounds the
// memory whatever names callers pass.
constexpr std::size_t kNameSlots = 128;

std::size_t SlotOf(const char* name) {
  // Fibonacci hashing spreads neighbouring addresses over the slots.
  const auto address = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(name));
  return static_cast<std::size_t>((address * 0x9E3779B97F4A7C15ULL) >> 57);
}

// The UTF-8 size of `length` units of UTF-16: exact for well-formed text, and
// room for a three-byte replacement character for each unpaired surrogate.
// Sizing the result exactly matters for long texts, which would otherwise
// hold up to three times their size until they are released.
std::size_t Utf8Bound(const char16_t* text, std::size_t length) {
  std::size_t bytes = 0;
  for (std::size_t i = 0; i < length; ++i) {
    const char16_t unit = text[i];
    const bool pair = unit >= 0xD800 && unit < 0xDC00 && i + 1 < length && text[i + 1] >= 0xDC00 &&
                      text[i + 1] < 0xE000;
    if (pair) {
      bytes += 4;
      ++i;
    } else {
      bytes += unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3;
    }
  }
  return bytes;
}

}  // namespace

const char16_t* WideName(const char* utf8) {
  if (utf8 == nullptr) utf8 = "";
  thread_local std::array<NameSlot, kNameSlots> slots;
  NameSlot& slot = slots[SlotOf(utf8)];
  if (slot.key != utf8 || slot.narrow != utf8) {
    const DMXMLConverter converted(utf8);
    // Without a transcoder nothing is remembered: a later startup must not
    // find the names that failed before it.
    if (!converted.isValid() && DMXMLConverter::getTranscoder() == nullptr) return nullptr;
    slot.key = utf8;
    slot.narrow = utf8;
    slot.wide = static_cast<const char16_t*>(converted);
    slot.valid = converted.isValid();
  }
  return slot.valid ? slot.wide.c_str() : nullptr;
}

bool ToUtf8(const char16_t* utf16, std::string& out) {
  out.clear();
  XMLTranscoder* transcoder = DMXMLConverter::getTranscoder();
  if (utf16 == nullptr || transcoder == nullptr) return true;
  // Names, numbers and most labels are plain ASCII, which maps unit for byte;
  // the transcoder takes over from the first other character.
  std::size_t ascii = 0;
  while (utf16[ascii] != 0 && utf16[ascii] < 0x80) ++ascii;
  const char16_t* next = utf16 + ascii;
  XMLSize_t remaining = ClampLength(std::char_traits<char16_t>::length(next));
  out.resize(ascii + Utf8Bound(next, remaining));
  for (std::size_t i = 0; i < ascii; ++i) out[i] = static_cast<char>(utf16[i]);
  std::size_t written = ascii;
  bool whole = true;
  while (remaining > 0) {
    XMLSize_t eaten = 0;
    XMLSize_t bytes = 0;
    try {
      bytes = transcoder->transcodeTo(next, remaining, reinterpret_cast<XMLByte*>(&out[written]),
                                      ClampLength(out.size() - written), eaten,
                                      XMLTranscoder::UnRep_RepChar);
    } catch (const XMLException&) {
      whole = false;
      break;
    }
    written += bytes;
    // An unpaired surrogate at the end is never consumed; stop instead of
    // spinning on it.
    if (eaten == 0) {
      whole = false;
      break;
    }
    next += eaten;
    remaining -= eaten;
  }
  out.resize(written);
  return whole;
}

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

DMXMLConverter::DMXMLConverter(const char16_t* utf16) { valid_ = ToUtf8(utf16, narrow); }

DMXMLConverter::~DMXMLConverter() = default;

DMXMLConverter::operator const char*() const { return narrow.c_str(); }

DMXMLConverter::operator const char16_t*() const { return wide.get(); }

bool DMXMLConverter::isValid() const { return valid_; }

void DMXMLConverter::setTranscoder(XMLTranscoder* transcoder) { transcoder_ = transcoder; }

XMLTranscoder* DMXMLConverter::getTranscoder() { return transcoder_; }

}  // namespace DmExtension

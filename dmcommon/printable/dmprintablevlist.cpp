#include "dmcommon/printable/dmprintablevlist.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <unicode/fieldpos.h>
#include <unicode/fmtable.h>
#include <unicode/locid.h>
#include <unicode/msgfmt.h>
#include <unicode/unistr.h>
#include <unicode/utypes.h>

#include "dmcommon/printable/dmprintable_internal.h"
#include "dmcommon/printable/dmprintableutil.h"

namespace internal = dmprintable_internal;

namespace {

// The parts, in the order of the pattern.
constexpr unsigned kHead = 0;
constexpr unsigned kMiddle = 1;
constexpr unsigned kTail = 2;
constexpr std::size_t kPartCount = 3;

// The count of a sub-pattern without placeholders: it takes no items.
constexpr std::uint32_t kNoArguments = 0xFFFFFFFF;

using FormatList = std::vector<std::unique_ptr<icu::MessageFormat>>;

FormatList CloneAll(const FormatList& formats) {
  FormatList copies;
  copies.reserve(formats.size());
  for (const auto& format : formats) copies.emplace_back(format->clone());
  return copies;
}

// Splits `pattern` at "/" into head, middle and tail. Splitting stops after
// the third piece, so that anything after a third "/" is ignored, and at a
// "/" that ends the pattern; this is intended, and patterns in use rely on
// it.
std::vector<icu::UnicodeString> SplitPattern(const icu::UnicodeString& pattern) {
  std::vector<icu::UnicodeString> parts(kPartCount);
  int32_t begin = 0;
  for (std::size_t part = 0; part < kPartCount; ++part) {
    const int32_t slash = pattern.indexOf(u'/', begin);
    if (slash < 0) {
      parts[part].setTo(pattern, begin);
      break;
    }
    // Copied, never aliased: the parts outlive `pattern`.
    parts[part].setTo(pattern, begin, slash - begin);
    begin = slash + 1;
    if (begin >= pattern.length()) break;
  }
  return parts;
}

}  // namespace

struct DMPrintableVList::Impl {
  Impl(const std::string& pattern, bool isKey, int mapId) : common(pattern, isKey, mapId) {}
  explicit Impl(const DmExtension::DMXMLWrapper& element) : common(element) {}
  Impl(const Impl& other)
      : common(other.common),
        subPatterns(other.subPatterns),
        argCounts(other.argCounts),
        formats(CloneAll(other.formats)) {}
  Impl& operator=(const Impl& other) = delete;

  void ClearParts() {
    subPatterns.clear();
    argCounts.clear();
    formats.clear();
  }

  DMPrintableUtil::CommonImpl common;
  // The parts built by `MakeParts`: all three empty until then, and again
  // after `SetPattern` or a pattern ICU refused.
  std::vector<icu::UnicodeString> subPatterns;
  std::vector<std::uint32_t> argCounts;
  FormatList formats;
};

DMPrintableVList::DMPrintableVList(const std::string& pattern, bool isKey, int mapId)
    : impl_(std::make_unique<Impl>(pattern, isKey, mapId)) {}

DMPrintableVList::DMPrintableVList(const DmExtension::DMXMLWrapper& element)
    : impl_(std::make_unique<Impl>(element)) {}

DMPrintableVList::DMPrintableVList(const DMPrintableVList& other)
    : DMPrintable(other), impl_(std::make_unique<Impl>(*other.impl_)) {}

DMPrintableVList& DMPrintableVList::operator=(const DMPrintableVList& other) {
  if (this != &other) impl_ = std::make_unique<Impl>(*other.impl_);
  return *this;
}

DMPrintableVList::~DMPrintableVList() = default;

DMPrintableVList* DMPrintableVList::Clone() const { return new DMPrintableVList(*this); }

std::string DMPrintableVList::Print() const {
  if (impl_->formats.empty()) MakeParts();
  if (impl_->formats.empty()) return std::string();
  const std::uint64_t n = impl_->common.GetList().size();
  // The number of items each part takes; a part without placeholders wraps
  // to 0 and takes none.
  const std::uint32_t k0 = impl_->argCounts[kHead] + 1;
  const std::uint32_t k1 = impl_->argCounts[kMiddle] + 1;
  const std::uint32_t k2 = impl_->argCounts[kTail] + 1;

  const icu::UnicodeString head = PrintPart(kHead, 0, k0);
  if (k0 >= n || n - k0 < k2) return impl_->common.ToUTF8(head);
  const icu::UnicodeString tail =
      PrintPart(kTail, static_cast<unsigned>(n - k2), static_cast<unsigned>(k2));
  // Intended: the middle is used in whole groups only, so items left over
  // when fewer than a group remain are not printed; a middle that takes no
  // items is never repeated.
  icu::UnicodeString middle;
  if (k1 > 0) {
    std::uint64_t start = k0;
    for (std::uint64_t left = n - k0 - k2; left >= k1; left -= k1, start += k1) {
      middle += PrintPart(kMiddle, static_cast<unsigned>(start), k1);
    }
  }
  icu::UnicodeString text = head;
  text += middle;
  text += tail;
  return impl_->common.ToUTF8(text);
}

void DMPrintableVList::SetResLookUp(DMResLookUp* lookUp) { impl_->common.SetResLookUp(lookUp); }

void DMPrintableVList::AddToTree(DmExtension::DMXMLWrapper& parent,
                                 DmExtension::DMXMLWrapper*& created) const {
  impl_->common.AddToTree(parent, created, internal::kVListElement);
}

void DMPrintableVList::SetPattern(const std::string& pattern, bool isKey, int mapId) {
  impl_->common.SetPattern(pattern, isKey, mapId);
  impl_->ClearParts();
}

void DMPrintableVList::AppendToList(const DMPrintable& printable) {
  impl_->common.AppendToList(printable);
}

void DMPrintableVList::SetList(const std::vector<const DMPrintable*>& printables) {
  impl_->common.SetList(printables);
}

const DMPrintableUtil::CommonImpl& DMPrintableVList::GetCommonImpl() const { return impl_->common; }

void DMPrintableVList::MakeParts() const {
  // The parts are a cache of the pattern, so building them is a const
  // operation; they live behind `impl_`.
  Impl& impl = *impl_;
  impl.ClearParts();
  FormatList formats;
  for (std::size_t part = 0; part < kPartCount; ++part) {
    UErrorCode status = U_ZERO_ERROR;
    auto format = std::make_unique<icu::MessageFormat>(icu::UnicodeString(),
                                                       icu::Locale::getDefault(), status);
    if (U_FAILURE(status)) return;
    formats.push_back(std::move(format));
  }
  std::vector<icu::UnicodeString> subPatterns(kPartCount);
  const icu::UnicodeString pattern = impl.common.ToUTF16(impl.common.GetPattern());
  if (!pattern.isEmpty()) subPatterns = SplitPattern(pattern);
  std::vector<std::uint32_t> argCounts(kPartCount, kNoArguments);
  for (std::size_t part = 0; part < kPartCount; ++part) {
    UErrorCode status = U_ZERO_ERROR;
    formats[part]->applyPattern(subPatterns[part], status);
    if (U_FAILURE(status)) return;
    int32_t count = 0;
    static_cast<void>(formats[part]->getFormats(count));
    argCounts[part] = static_cast<std::uint32_t>(count) - 1;
  }
  impl.subPatterns = std::move(subPatterns);
  impl.argCounts = std::move(argCounts);
  impl.formats = std::move(formats);
}

icu::UnicodeString DMPrintableVList::PrintPart(unsigned part, unsigned start,
                                               unsigned count) const {
  icu::UnicodeString text;
  const std::vector<const DMPrintable*> items = impl_->common.GetList();
  if (impl_->formats.size() != kPartCount || part >= kPartCount || count < 1 ||
      static_cast<std::uint64_t>(start) + count > items.size()) {
    return text;
  }
  std::vector<icu::Formattable> arguments(count);
  for (unsigned i = 0; i < count; ++i) {
    // Intended: the tail fills its placeholders from the end, so that {0} in
    // a tail always stands for the last item of the list.
    const unsigned slot = part == kTail ? count - 1 - i : i;
    arguments[slot].setString(impl_->common.ToUTF16(items[start + i]->Print()));
  }
  UErrorCode status = U_ZERO_ERROR;
  icu::FieldPosition position(0);
  impl_->formats[part]->format(arguments.data(), static_cast<int32_t>(count), text, position,
                               status);
  if (U_FAILURE(status)) return icu::UnicodeString();
  return text;
}

const std::vector<icu::UnicodeString>& DMPrintableVList::GetSubPatterns() const {
  return impl_->subPatterns;
}

const std::vector<std::uint32_t>& DMPrintableVList::GetArgCounts() const {
  return impl_->argCounts;
}

DMPrintableVList* DMPrintableVList::CreateFromElmt(const DmExtension::DMXMLWrapper& element,
                                                   bool& recognised) {
  return internal::CreateKind<DMPrintableVList>(element, internal::kVListElement, recognised);
}

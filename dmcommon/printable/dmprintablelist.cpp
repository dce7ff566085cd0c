#include "dmcommon/printable/dmprintablelist.h"

#include <memory>
#include <string>
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

struct DMPrintableList::Impl {
  Impl(const std::string& pattern, bool isKey, int mapId) : common(pattern, isKey, mapId) {}
  explicit Impl(const DmExtension::DMXMLWrapper& element) : common(element) {}

  DMPrintableUtil::CommonImpl common;
};

DMPrintableList::DMPrintableList(const std::string& pattern, bool isKey, int mapId)
    : impl_(std::make_unique<Impl>(pattern, isKey, mapId)) {}

DMPrintableList::DMPrintableList(const DmExtension::DMXMLWrapper& element)
    : impl_(std::make_unique<Impl>(element)) {}

DMPrintableList::DMPrintableList(const DMPrintableList& other)
    : DMPrintable(other), impl_(std::make_unique<Impl>(*other.impl_)) {}

DMPrintableList& DMPrintableList::operator=(const DMPrintableList& other) {
  if (this != &other) impl_->common = other.impl_->common;
  return *this;
}

DMPrintableList::~DMPrintableList() = default;

DMPrintableList* DMPrintableList::Clone() const { return new DMPrintableList(*this); }

std::string DMPrintableList::Print() const {
  const DMPrintableUtil::CommonImpl& common = impl_->common;
  std::string pattern = common.GetPattern();
  const std::vector<const DMPrintable*> arguments = common.GetList();
  // Intended: a message without arguments is its pattern as written, so a
  // plain text needs no quoting of its apostrophes and braces.
  if (arguments.empty()) return pattern;

  UErrorCode status = U_ZERO_ERROR;
  const icu::MessageFormat format(common.ToUTF16(pattern), icu::Locale::getDefault(), status);
  if (U_FAILURE(status)) return std::string();
  std::vector<icu::Formattable> values;
  values.reserve(arguments.size());
  for (const DMPrintable* argument : arguments) {
    values.emplace_back(common.ToUTF16(argument->Print()));
  }
  icu::UnicodeString text;
  icu::FieldPosition position(0);
  format.format(values.data(), static_cast<int32_t>(values.size()), text, position, status);
  if (U_FAILURE(status)) return std::string();
  return common.ToUTF8(text);
}

void DMPrintableList::SetResLookUp(DMResLookUp* lookUp) { impl_->common.SetResLookUp(lookUp); }

void DMPrintableList::AddToTree(DmExtension::DMXMLWrapper& parent,
                                DmExtension::DMXMLWrapper*& created) const {
  impl_->common.AddToTree(parent, created, internal::kListElement);
}

void DMPrintableList::SetPattern(const std::string& pattern, bool isKey, int mapId) {
  impl_->common.SetPattern(pattern, isKey, mapId);
}

void DMPrintableList::AppendToList(const DMPrintable& printable) {
  impl_->common.AppendToList(printable);
}

void DMPrintableList::SetList(const std::vector<const DMPrintable*>& printables) {
  impl_->common.SetList(printables);
}

const DMPrintableUtil::CommonImpl& DMPrintableList::GetCommonImpl() const { return impl_->common; }

DMPrintableList* DMPrintableList::CreateFromElmt(const DmExtension::DMXMLWrapper& element,
                                                 bool& recognised) {
  return internal::CreateKind<DMPrintableList>(element, internal::kListElement, recognised);
}

#include "dmcommon/printable/dmprintablevalue.h"

#include <memory>
#include <string>
#include <utility>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/printable/dmprintable_internal.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/values/dmvalue_internal.h"
#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DM_XML_NO_MORE_ITEMS;
using DmExtension::DM_XML_OK;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace internal = dmprintable_internal;

namespace {

using SubType = DMPrintableValue::StorageSubType;
using Storage = DMField::StorageType;

bool IsNumberFormat(DMFormat::FormatClass formatClass) {
  return formatClass == DMFormat::Number || formatClass == DMFormat::Decorated;
}

bool IsTemporalFormat(DMFormat::FormatClass formatClass) {
  return formatClass == DMFormat::Date || formatClass == DMFormat::Time;
}

bool IsTemporalSubType(SubType subType) {
  return subType == DMPrintableValue::Date || subType == DMPrintableValue::Time ||
         subType == DMPrintableValue::Timestamp;
}

// The combinations a value can print: numbers through number formats, reals
// counting days or seconds through date and time formats, texts through
// string formats.
bool IsValidCombination(const DMDatum& datum, SubType subType, const DMFormat& format) {
  const DMFormat::FormatClass formatClass = format.GetFormatClass();
  switch (datum.GetType()) {
    case DMDatum::IntegerType:
      return subType == DMPrintableValue::Real && IsNumberFormat(formatClass);
    case DMDatum::RealType:
      if (subType == DMPrintableValue::Real) return IsNumberFormat(formatClass);
      return IsTemporalSubType(subType) && IsTemporalFormat(formatClass);
    case DMDatum::StringType:
      return subType == DMPrintableValue::Real && formatClass == DMFormat::String;
  }
  return false;
}

DMFormat::ValueUnits UnitsOf(SubType subType) {
  switch (subType) {
    case DMPrintableValue::Real:
      return DMFormat::UnitsNone;
    case DMPrintableValue::Date:
      return DMFormat::UnitsDays;
    case DMPrintableValue::Time:
    case DMPrintableValue::Timestamp:
      return DMFormat::UnitsSeconds;
  }
  return DMFormat::UnitsNone;
}

// The storage a value is written with: the datum's type, and for a real the
// subtype, anything but Real, Date and Time counting as Timestamp.
Storage StorageOf(const DMDatum& datum, SubType subType) {
  switch (datum.GetType()) {
    case DMDatum::IntegerType:
      return Storage::Integer;
    case DMDatum::StringType:
      return Storage::String;
    case DMDatum::RealType:
      break;
  }
  switch (subType) {
    case DMPrintableValue::Real:
      return Storage::Real;
    case DMPrintableValue::Date:
      return Storage::Date;
    case DMPrintableValue::Time:
      return Storage::Time;
    case DMPrintableValue::Timestamp:
      return Storage::Timestamp;
  }
  return Storage::Timestamp;
}

// What a storage entity reads as: the datum's type and the subtype.
struct StorageRead {
  DMDatum::DataType type;
  SubType subType;
};

StorageRead ReadStorage(const DMXMLWrapper& element) {
  std::string text;
  bool found = false;
  if (element.getAttribute(XMLAttributes::Storage, text, found) != DM_XML_OK || !found) {
    throw DMPrintable::FailExcp();
  }
  const int row = DMEnumDict::IndexOfText(gStorageDict, text.c_str());
  if (row < 0) throw DMPrintable::FailExcp();
  switch (static_cast<Storage>(gStorageDict[row].value)) {
    case Storage::Integer:
      return {DMDatum::IntegerType, DMPrintableValue::Real};
    case Storage::String:
      return {DMDatum::StringType, DMPrintableValue::Real};
    case Storage::Real:
      return {DMDatum::RealType, DMPrintableValue::Real};
    case Storage::Date:
      return {DMDatum::RealType, DMPrintableValue::Date};
    case Storage::Time:
      return {DMDatum::RealType, DMPrintableValue::Time};
    case Storage::Timestamp:
      return {DMDatum::RealType, DMPrintableValue::Timestamp};
    case Storage::Unknown:
      break;
  }
  throw DMPrintable::FailExcp();
}

DMDatum ReadDatum(const DMXMLWrapper& element, DMDatum::DataType type, bool isNull) {
  DMDatum datum;
  if (isNull) {
    datum.SetNull(type);
    return datum;
  }
  int special = kValueUnreadable;
  if (GetDataValueAttr(element, XMLAttributes::Value, type, datum, special) != DM_XML_OK ||
      special != kValueRead) {
    throw DMPrintable::FailExcp();
  }
  return datum;
}

// The format of the first child element; null when there is no child.
std::unique_ptr<DMFormat> ReadFormat(const DMXMLWrapper& element) {
  // Iterators come from a non-const handle; a local view of the same element
  // owns them and releases them on return.
  DMXMLWrapper view(element.getElement());
  DMXMLIteratorWrapper* children = nullptr;
  if (view.getElementDirectIterator("", &children) != DM_XML_OK || children == nullptr) {
    throw DMPrintable::FailExcp();
  }
  void* item = nullptr;
  const int rc = children->nextItem(&item);
  if (rc == DM_XML_NO_MORE_ITEMS) return nullptr;
  if (rc != DM_XML_OK || item == nullptr) throw DMPrintable::FailExcp();
  std::unique_ptr<DMFormat> format(
      DMField::FormatFromDOMNode(*static_cast<const DMXMLWrapper*>(item)));
  if (format == nullptr) throw DMPrintable::FailExcp();
  return format;
}

[[nodiscard]] bool WriteAttributes(DMXMLWrapper& element, const DMDatum& datum, SubType subType,
                                   const std::string& label) {
  const char* storage =
      DMEnumDict::TextOfValue(gStorageDict, static_cast<unsigned>(StorageOf(datum, subType)));
  if (storage == nullptr || element.addAttribute(XMLAttributes::Storage, storage) != DM_XML_OK) {
    return false;
  }
  if (datum.IsNull()) {
    if (element.addAttribute(internal::kIsNullAttribute, internal::kTrue) != DM_XML_OK) {
      return false;
    }
    if (element.addAttribute(XMLAttributes::Value, "") != DM_XML_OK) return false;
  } else if (std::string text; datum.ToString(text, 0)) {
    // A datum without a text form is written without a value; readers then
    // refuse the element, as intended for a value that cannot be shown.
    if (element.addAttribute(XMLAttributes::Value, text.c_str()) != DM_XML_OK) return false;
  }
  return label.empty() ||
         element.addAttribute(internal::kLabelAttribute, label.c_str()) == DM_XML_OK;
}

}  // namespace

struct DMPrintableValue::Impl {
  Impl(const DMDatum& datum_, StorageSubType subType_, std::unique_ptr<DMFormat> format_)
      : datum(datum_), subType(subType_), format(std::move(format_)) {}
  Impl(const Impl& other)
      : datum(other.datum),
        subType(other.subType),
        label(other.label),
        format(other.format != nullptr ? other.format->Clone() : nullptr) {}
  Impl& operator=(const Impl& other) = delete;

  DMDatum datum;
  StorageSubType subType;
  std::string label;
  std::unique_ptr<DMFormat> format;
};

DMPrintableValue::DMPrintableValue(const DMDatum& datum, StorageSubType subType,
                                   const DMFormat& format) {
  if (!IsValidCombination(datum, subType, format)) throw FailExcp();
  impl_ = std::make_unique<Impl>(datum, subType, std::unique_ptr<DMFormat>(format.Clone()));
}

DMPrintableValue::DMPrintableValue(const DMXMLWrapper& element) {
  bool isNull = false;
  if (!internal::ReadSwitch(element, internal::kIsNullAttribute, isNull)) throw FailExcp();
  const StorageRead storage = ReadStorage(element);
  DMDatum datum = ReadDatum(element, storage.type, isNull);
  impl_ = std::make_unique<Impl>(datum, storage.subType, ReadFormat(element));
}

DMPrintableValue::DMPrintableValue(const DMPrintableValue& other)
    : DMPrintable(other), impl_(std::make_unique<Impl>(*other.impl_)) {}

DMPrintableValue& DMPrintableValue::operator=(const DMPrintableValue& other) {
  if (this != &other) impl_ = std::make_unique<Impl>(*other.impl_);
  return *this;
}

DMPrintableValue::~DMPrintableValue() = default;

DMPrintableValue* DMPrintableValue::Clone() const { return new DMPrintableValue(*this); }

std::string DMPrintableValue::Print() const {
  std::string text;
  if (impl_->format == nullptr) return text;
  // The status is deliberately not examined: a failed format leaves the
  // empty text, which is what the value prints.
  static_cast<void>(impl_->format->Format(impl_->datum, UnitsOf(impl_->subType), text));
  return text;
}

void DMPrintableValue::SetResLookUp(DMResLookUp* /*lookUp*/) {}

void DMPrintableValue::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  created = nullptr;
  std::unique_ptr<DMXMLWrapper> element(parent.createFreeElement(internal::kValueElement));
  if (element == nullptr) return;
  if (!WriteAttributes(*element, impl_->datum, impl_->subType, impl_->label)) return;
  if (impl_->format != nullptr) {
    DMXMLWrapper* format = nullptr;
    impl_->format->AddToTree(*element, format);
    if (format == nullptr) return;
  }
  DMXMLWrapper* handle = element.get();
  if (!internal::AppendTo(parent, element)) return;
  created = handle;
}

void DMPrintableValue::SetLabel(const std::string& label) { impl_->label = label; }

const DMDatum& DMPrintableValue::GetDatum() const { return impl_->datum; }

DMPrintableValue::StorageSubType DMPrintableValue::GetSubType() const { return impl_->subType; }

const std::string& DMPrintableValue::GetLabel() const { return impl_->label; }

const DMFormat* DMPrintableValue::GetFormat() const { return impl_->format.get(); }

DMPrintableValue* DMPrintableValue::CreateFromElmt(const DMXMLWrapper& element, bool& recognised) {
  return internal::CreateKind<DMPrintableValue>(element, internal::kValueElement, recognised);
}

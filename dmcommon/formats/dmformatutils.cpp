#include "dmcommon/formats/dmformatutils.h"

#include <memory>
#include <string>
#include <utility>

#include "dmcommon/formats/dmformat_internal.h"
#include "dmcommon/xml/dmxmlwrapper.h"

using DmExtension::DM_XML_OK;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLEntities = DmCppHelperV1::XMLEntities;

static_assert(dmformat_internal::MapsBothWays(gAlignDict));
static_assert(dmformat_internal::MapsBothWays(gDecSymDict));
static_assert(dmformat_internal::MapsBothWays(gGrpSymDict));
// The local units separator reads as the colon, so its value does not lead
// back to its text; the writer maps it on its own.
static_assert(dmformat_internal::TextsAreUnique(gUniSepDict));

namespace {

// Flags are written as these literals and read by comparison with the
// vocabulary's entities; the texts agree, the two sides are kept apart so that
// either can change without the other.
constexpr char kTrueText[] = "true";
constexpr char kFalseText[] = "false";

int FromXml(int xmlResult) { return xmlResult == DM_XML_OK ? DM_FORMAT_OK : DM_FORMAT_FAILED; }

// Reads an entity-valued attribute through `table`: absent gives `absent` and
// success; present but matching no row (the empty text included) fails.
[[nodiscard]] int ReadEntity(const DMXMLWrapper& element, const char* attribute,
                             const DMEnumDictEntry* table, unsigned absent, unsigned& value,
                             bool& found) {
  value = absent;
  std::string text;
  if (element.getAttribute(attribute, text, found) != DM_XML_OK) return DM_FORMAT_FAILED;
  if (!found) return DM_FORMAT_OK;
  const int index = DMEnumDict::IndexOfText(table, text.c_str());
  if (index < 0) return DM_FORMAT_FAILED;
  value = table[index].value;
  return DM_FORMAT_OK;
}

[[nodiscard]] int ReadWidth(const DMXMLWrapper& element, int& width) {
  bool found = false;
  if (element.getAttribute(XMLAttributes::Width, width, found) != DM_XML_OK) {
    return DM_FORMAT_FAILED;
  }
  if (!found || width == 0) return DM_FORMAT_FAILED;
  if (width < 0) width = -1;
  return DM_FORMAT_OK;
}

// Never fails: an empty or unknown alignment is ignored on purpose, so that
// documents written with alignments this library does not know still load.
void ReadAlignment(const DMXMLWrapper& element, DMFormat::Alignment& alignment) {
  std::string text;
  bool found = false;
  if (element.getAttribute(XMLAttributes::Alignment, text, found) != DM_XML_OK) return;
  if (!found) {
    alignment = DMFormat::Auto;
    return;
  }
  const int index = DMEnumDict::IndexOfText(gAlignDict, text.c_str());
  if (index >= 0) alignment = static_cast<DMFormat::Alignment>(gAlignDict[index].value);
}

[[nodiscard]] int ReadName(const DMXMLWrapper& element, std::string& name) {
  bool found = false;
  if (element.getAttribute(XMLAttributes::Name, name, found) != DM_XML_OK) return DM_FORMAT_FAILED;
  return found ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

[[nodiscard]] int ReadFormatType(const DMXMLWrapper& element, const DMEnumDictEntry* typeDict,
                                 unsigned& type) {
  bool found = false;
  if (int rc = ReadEntity(element, XMLAttributes::FormatType, typeDict, 0, type, found);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  return found ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

[[nodiscard]] int ReadDecimalPlaces(const DMXMLWrapper& element, unsigned& decimals) {
  int value = 0;
  bool found = false;
  if (element.getAttribute(XMLAttributes::DecimalPlaces, value, found) != DM_XML_OK) {
    return DM_FORMAT_FAILED;
  }
  if (!found || value < 0) return DM_FORMAT_FAILED;
  decimals = static_cast<unsigned>(value);
  return DM_FORMAT_OK;
}

[[nodiscard]] int ReadRequiredDecimalSym(const DMXMLWrapper& element,
                                         DMFormat::DecimalSymbol& symbol) {
  bool found = false;
  if (int rc = DMFormatUtils::GetDecimalSymAttr(element, symbol, found); rc != DM_FORMAT_OK) {
    return rc;
  }
  return found ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

[[nodiscard]] int ReadRequiredGroupingSym(const DMXMLWrapper& element,
                                          DMFormat::GroupingSymbol& symbol) {
  bool found = false;
  if (int rc = DMFormatUtils::GetGroupingSymAttr(element, symbol, found); rc != DM_FORMAT_OK) {
    return rc;
  }
  return found ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

[[nodiscard]] int ReadRequiredUnitsSep(const DMXMLWrapper& element,
                                       DMFormat::UnitsSeparator& separator) {
  bool found = false;
  if (int rc = DMFormatUtils::GetUnitsSepAttr(element, separator, found); rc != DM_FORMAT_OK) {
    return rc;
  }
  return found ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

[[nodiscard]] int WriteDecimalPlaces(DMXMLWrapper& element, unsigned decimals) {
  // The long long overload: from unsigned, int and double would be ambiguous.
  return FromXml(
      element.addAttribute(XMLAttributes::DecimalPlaces, static_cast<long long>(decimals)));
}

[[nodiscard]] int WriteFormatType(DMXMLWrapper& element, const char* typeEntity) {
  return FromXml(element.addAttribute(XMLAttributes::FormatType, typeEntity));
}

}  // namespace

// ---------------------------------------------------------------------------
// DMFormatUtils

int DMFormatUtils::SetCommonAttr(DMXMLWrapper& element, const std::string& name, int width,
                                 DMFormat::Alignment alignment) {
  if (element.addAttribute(XMLAttributes::Name, name.c_str()) != DM_XML_OK) {
    return DM_FORMAT_FAILED;
  }
  // Variable width and the invalid width 0 are both written as -1.
  const long long written = width < 1 ? -1 : width;
  if (element.addAttribute(XMLAttributes::Width, written) != DM_XML_OK) return DM_FORMAT_FAILED;
  const char* entity = dmformat_internal::EntityOr(gAlignDict, alignment, XMLEntities::Auto);
  return FromXml(element.addAttribute(XMLAttributes::Alignment, entity));
}

int DMFormatUtils::GetCommonAttr(const DMXMLWrapper& element, std::string& name, int& width,
                                 DMFormat::Alignment& alignment) {
  int readWidth = 0;
  if (int rc = ReadWidth(element, readWidth); rc != DM_FORMAT_OK) return rc;
  DMFormat::Alignment readAlignment = alignment;
  ReadAlignment(element, readAlignment);
  std::string readName;
  if (int rc = ReadName(element, readName); rc != DM_FORMAT_OK) return rc;
  name = std::move(readName);
  width = readWidth;
  alignment = readAlignment;
  return DM_FORMAT_OK;
}

int DMFormatUtils::SetDecimalSymAttr(DMXMLWrapper& element, DMFormat::DecimalSymbol symbol) {
  const char* entity =
      dmformat_internal::EntityOr(gDecSymDict, static_cast<unsigned>(symbol), XMLEntities::Period);
  return FromXml(element.addAttribute(XMLAttributes::DecimalSymbol, entity));
}

int DMFormatUtils::SetGroupingSymAttr(DMXMLWrapper& element, DMFormat::GroupingSymbol symbol) {
  const char* entity =
      dmformat_internal::EntityOr(gGrpSymDict, static_cast<unsigned>(symbol), XMLEntities::None);
  return FromXml(element.addAttribute(XMLAttributes::GroupingSymbol, entity));
}

int DMFormatUtils::SetUnitsSepAttr(DMXMLWrapper& element, DMFormat::UnitsSeparator separator) {
  // Not through gUniSepDict: that table reads `Local` as `Colon`, while
  // `Local` is written as its own entity.
  const char* entity = XMLEntities::None;
  switch (separator) {
    case DMFormat::UnitsSeparator::None:
      entity = XMLEntities::None;
      break;
    case DMFormat::UnitsSeparator::Period:
      entity = XMLEntities::Period;
      break;
    case DMFormat::UnitsSeparator::Comma:
      entity = XMLEntities::Comma;
      break;
    case DMFormat::UnitsSeparator::Space:
      entity = XMLEntities::Space;
      break;
    case DMFormat::UnitsSeparator::Colon:
      entity = XMLEntities::Colon;
      break;
    case DMFormat::UnitsSeparator::Dash:
      entity = XMLEntities::Dash;
      break;
    case DMFormat::UnitsSeparator::Slash:
      entity = XMLEntities::Slash;
      break;
    case DMFormat::UnitsSeparator::Local:
      entity = XMLEntities::Local;
      break;
  }
  return FromXml(element.addAttribute(XMLAttributes::Separator, entity));
}

int DMFormatUtils::GetDecimalSymAttr(const DMXMLWrapper& element, DMFormat::DecimalSymbol& symbol,
                                     bool& found) {
  unsigned value = 0;
  const int rc = ReadEntity(element, XMLAttributes::DecimalSymbol, gDecSymDict,
                            static_cast<unsigned>(DMFormat::DecimalSymbol::Period), value, found);
  symbol = static_cast<DMFormat::DecimalSymbol>(value);
  return rc;
}

int DMFormatUtils::GetGroupingSymAttr(const DMXMLWrapper& element, DMFormat::GroupingSymbol& symbol,
                                      bool& found) {
  unsigned value = 0;
  const int rc = ReadEntity(element, XMLAttributes::GroupingSymbol, gGrpSymDict,
                            static_cast<unsigned>(DMFormat::GroupingSymbol::None), value, found);
  symbol = static_cast<DMFormat::GroupingSymbol>(value);
  return rc;
}

int DMFormatUtils::GetUnitsSepAttr(const DMXMLWrapper& element, DMFormat::UnitsSeparator& separator,
                                   bool& found) {
  unsigned value = 0;
  const int rc = ReadEntity(element, XMLAttributes::Separator, gUniSepDict,
                            static_cast<unsigned>(DMFormat::UnitsSeparator::None), value, found);
  separator = static_cast<DMFormat::UnitsSeparator>(value);
  return rc;
}

int DMFormatUtils::SetBoolAttr(DMXMLWrapper& element, const char* attribute, bool value) {
  return FromXml(element.addAttribute(attribute, value ? kTrueText : kFalseText));
}

int DMFormatUtils::GetBoolAttr(const DMXMLWrapper& element, const char* attribute, bool& value,
                               bool& found) {
  value = false;
  std::string text;
  if (element.getAttribute(attribute, text, found) != DM_XML_OK) return DM_FORMAT_FAILED;
  if (!found) return DM_FORMAT_OK;
  if (text == XMLEntities::True) {
    value = true;
    return DM_FORMAT_OK;
  }
  return text == XMLEntities::False ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

int DMFormatUtils::FindStrInList(const char* text, const DMEnumDictEntry* table) {
  return DMEnumDict::IndexOfText(table, text);
}

std::string DMFormatUtils::MakeSeparatorStr(DMFormat::UnitsSeparator separator) {
  switch (separator) {
    case DMFormat::UnitsSeparator::Period:
      return ".";
    case DMFormat::UnitsSeparator::Comma:
      return ",";
    case DMFormat::UnitsSeparator::Space:
      return " ";
    case DMFormat::UnitsSeparator::Colon:
      return ":";
    case DMFormat::UnitsSeparator::Dash:
      return "-";
    case DMFormat::UnitsSeparator::Slash:
      return "/";
    case DMFormat::UnitsSeparator::None:
    case DMFormat::UnitsSeparator::Local:
      return "";
  }
  return "";
}

// ---------------------------------------------------------------------------
// Shared by the format classes

namespace dmformat_internal {

int ReadNumericAttrs(const DMXMLWrapper& element, const DMEnumDictEntry* typeDict,
                     NumericAttrs& attrs) {
  NumericAttrs read;
  if (int rc = DMFormatUtils::GetCommonAttr(element, read.name, read.width, read.alignment);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = ReadFormatType(element, typeDict, read.type); rc != DM_FORMAT_OK) return rc;
  if (int rc = ReadDecimalPlaces(element, read.decimals); rc != DM_FORMAT_OK) return rc;
  // Both symbols are required here, although each reader alone accepts an
  // absent symbol as its default.
  if (int rc = ReadRequiredDecimalSym(element, read.decimalSymbol); rc != DM_FORMAT_OK) return rc;
  if (int rc = ReadRequiredGroupingSym(element, read.groupingSymbol); rc != DM_FORMAT_OK) {
    return rc;
  }
  attrs = std::move(read);
  return DM_FORMAT_OK;
}

int WriteNumericAttrs(DMXMLWrapper& element, const NumericAttrs& attrs, const char* typeEntity) {
  if (int rc = DMFormatUtils::SetCommonAttr(element, attrs.name, attrs.width, attrs.alignment);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = DMFormatUtils::SetDecimalSymAttr(element, attrs.decimalSymbol); rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = DMFormatUtils::SetGroupingSymAttr(element, attrs.groupingSymbol);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = WriteDecimalPlaces(element, attrs.decimals); rc != DM_FORMAT_OK) return rc;
  return WriteFormatType(element, typeEntity);
}

int ReadTemporalAttrs(const DMXMLWrapper& element, const DMEnumDictEntry* typeDict,
                      TemporalAttrs& attrs) {
  TemporalAttrs read;
  if (int rc = DMFormatUtils::GetCommonAttr(element, read.name, read.width, read.alignment);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = ReadFormatType(element, typeDict, read.type); rc != DM_FORMAT_OK) return rc;
  if (int rc = ReadDecimalPlaces(element, read.decimals); rc != DM_FORMAT_OK) return rc;
  if (int rc = ReadRequiredUnitsSep(element, read.separator); rc != DM_FORMAT_OK) return rc;
  attrs = std::move(read);
  return DM_FORMAT_OK;
}

int WriteTemporalAttrs(DMXMLWrapper& element, const TemporalAttrs& attrs, const char* typeEntity) {
  if (int rc = DMFormatUtils::SetCommonAttr(element, attrs.name, attrs.width, attrs.alignment);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = DMFormatUtils::SetUnitsSepAttr(element, attrs.separator); rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = WriteDecimalPlaces(element, attrs.decimals); rc != DM_FORMAT_OK) return rc;
  return WriteFormatType(element, typeEntity);
}

int ReadRequiredBool(const DMXMLWrapper& element, const char* attribute, bool& value) {
  bool found = false;
  if (int rc = DMFormatUtils::GetBoolAttr(element, attribute, value, found); rc != DM_FORMAT_OK) {
    return rc;
  }
  return found ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

const char* EntityOr(const DMEnumDictEntry* table, unsigned value, const char* fallback) {
  const char* text = DMEnumDict::TextOfValue(table, value);
  return text != nullptr ? text : fallback;
}

std::unique_ptr<DMXMLWrapper> CreateElement(DMXMLWrapper& parent, const char* name) {
  return std::unique_ptr<DMXMLWrapper>(parent.createFreeElement(name));
}

void Publish(DMXMLWrapper& parent, std::unique_ptr<DMXMLWrapper> element, DMXMLWrapper*& created) {
  if (element == nullptr) return;
  if (parent.addElement(element.get()) != DM_XML_OK) return;
  // The parent owns the element from here on.
  created = element.release();
}

}  // namespace dmformat_internal

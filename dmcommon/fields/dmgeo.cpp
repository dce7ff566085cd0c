#include "dmcommon/fields/dmgeo.h"

#include <memory>
#include <string>
#include <utility>

#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DM_XML_NO_MORE_ITEMS;
using DmExtension::DM_XML_OK;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;

namespace {

constexpr int kOrdinaryNumber = 0;

// The literals of the isProjected attribute. They are deliberately not the
// vocabulary's true and false entities: documents from other components spell
// this flag with the plain literals, and only they are accepted.
constexpr char kTrueLiteral[] = "true";
constexpr char kFalseLiteral[] = "false";

// Reads one envelope coordinate; only an ordinary number counts, so that an
// infinity or not-a-number (which the handle reports as 0) never becomes a
// corner at 0.
void ReadCoordinate(const DMXMLWrapper& element, const char* attribute, double& value,
                    bool& isSet) {
  double read = 0.0;
  bool found = false;
  int special = kOrdinaryNumber;
  if (element.getAttribute(attribute, read, found, special) != DM_XML_OK) return;
  if (!found || special != kOrdinaryNumber) return;
  value = read;
  isSet = true;
}

[[nodiscard]] bool WriteCoordinate(DMXMLWrapper& element, const char* attribute, double value,
                                   bool isSet) {
  if (!isSet) return true;
  return element.addAttribute(attribute, value) == DM_XML_OK;
}

[[nodiscard]] bool WriteInteger(DMXMLWrapper& element, const char* attribute, int value,
                                bool isSet) {
  if (!isSet) return true;
  return element.addAttribute(attribute, static_cast<long long>(value)) == DM_XML_OK;
}

// Empty texts are left out even when set: an empty attribute would say
// nothing a reader could use.
[[nodiscard]] bool WriteText(DMXMLWrapper& element, const char* attribute, const std::string& value,
                             bool isSet) {
  if (!isSet || value.empty()) return true;
  return element.addAttribute(attribute, value.c_str()) == DM_XML_OK;
}

}  // namespace

// ---------------------------------------------------------------------------
// DMGeoEnvelope

DMGeoEnvelope::DMGeoEnvelope() = default;

DMGeoEnvelope::DMGeoEnvelope(const DMXMLWrapper& element) {
  ReadCoordinate(element, XMLAttributes::LeftUpperX, leftUpperX_.value, leftUpperX_.isSet);
  ReadCoordinate(element, XMLAttributes::LeftUpperY, leftUpperY_.value, leftUpperY_.isSet);
  ReadCoordinate(element, XMLAttributes::RightLowerX, rightLowerX_.value, rightLowerX_.isSet);
  ReadCoordinate(element, XMLAttributes::RightLowerY, rightLowerY_.value, rightLowerY_.isSet);
}

void DMGeoEnvelope::SetLeftUpperX(double value) { leftUpperX_ = {value, true}; }

void DMGeoEnvelope::SetLeftUpperY(double value) { leftUpperY_ = {value, true}; }

void DMGeoEnvelope::SetRightLowerX(double value) { rightLowerX_ = {value, true}; }

void DMGeoEnvelope::SetRightLowerY(double value) { rightLowerY_ = {value, true}; }

double DMGeoEnvelope::GetLeftUpperX(bool& isSet) const {
  isSet = leftUpperX_.isSet;
  return leftUpperX_.value;
}

double DMGeoEnvelope::GetLeftUpperY(bool& isSet) const {
  isSet = leftUpperY_.isSet;
  return leftUpperY_.value;
}

double DMGeoEnvelope::GetRightLowerX(bool& isSet) const {
  isSet = rightLowerX_.isSet;
  return rightLowerX_.value;
}

double DMGeoEnvelope::GetRightLowerY(bool& isSet) const {
  isSet = rightLowerY_.isSet;
  return rightLowerY_.value;
}

void DMGeoEnvelope::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  created = nullptr;
  std::unique_ptr<DMXMLWrapper> element(parent.createFreeElement(XMLElements::GeoEnvelope));
  if (element == nullptr) return;
  if (!WriteCoordinate(*element, XMLAttributes::LeftUpperX, leftUpperX_.value, leftUpperX_.isSet)) {
    return;
  }
  if (!WriteCoordinate(*element, XMLAttributes::LeftUpperY, leftUpperY_.value, leftUpperY_.isSet)) {
    return;
  }
  if (!WriteCoordinate(*element, XMLAttributes::RightLowerX, rightLowerX_.value,
                       rightLowerX_.isSet)) {
    return;
  }
  if (!WriteCoordinate(*element, XMLAttributes::RightLowerY, rightLowerY_.value,
                       rightLowerY_.isSet)) {
    return;
  }
  if (parent.addElement(element.get()) != DM_XML_OK) return;
  created = element.release();
}

// ---------------------------------------------------------------------------
// DMGeo

namespace {

// Reads the attributes of a geo element into `geo` in document order. The
// first malformed attribute stops the reading and the ones after it stay
// unset, while those before it keep their values. This is intended: a damaged
// attribute costs only what follows it, not the whole geometry description.
class GeoAttributeReader {
 public:
  GeoAttributeReader(const DMXMLWrapper& element, DMGeo& geo) : element_(element), geo_(geo) {}

  void ReadAll() {
    if (!ReadType()) return;
    if (!ReadInteger(XMLAttributes::Coordinates, &DMGeo::SetCoordinates)) return;
    if (!ReadText(XMLAttributes::Csname, &DMGeo::SetCsname)) return;
    if (!ReadIsProjected()) return;
    if (!ReadInteger(XMLAttributes::Wkid, &DMGeo::SetWkid)) return;
    if (!ReadText(XMLAttributes::Wkt, &DMGeo::SetWkt)) return;
  }

 private:
  // Each step answers false only for a malformed attribute; an absent one
  // reads as success and leaves the property unset.
  [[nodiscard]] bool ReadType() {
    std::string text;
    bool found = false;
    if (element_.getAttribute(XMLAttributes::Type, text, found) != DM_XML_OK) return false;
    if (!found) return true;
    const int row = DMEnumDict::IndexOfText(gGeoTypeDict, text.c_str());
    if (row < 0) return false;
    geo_.SetType(static_cast<DMGeo::Type>(gGeoTypeDict[row].value));
    return true;
  }

  [[nodiscard]] bool ReadInteger(const char* attribute, void (DMGeo::*set)(int)) {
    int value = 0;
    bool found = false;
    if (element_.getAttribute(attribute, value, found) != DM_XML_OK) return false;
    if (found) (geo_.*set)(value);
    return true;
  }

  [[nodiscard]] bool ReadText(const char* attribute, void (DMGeo::*set)(const std::string&)) {
    std::string text;
    bool found = false;
    if (element_.getAttribute(attribute, text, found) != DM_XML_OK) return false;
    if (found) (geo_.*set)(text);
    return true;
  }

  [[nodiscard]] bool ReadIsProjected() {
    std::string text;
    bool found = false;
    if (element_.getAttribute(XMLAttributes::IsProjected, text, found) != DM_XML_OK) return false;
    if (!found) return true;
    if (text == kTrueLiteral) {
      geo_.SetIsProjected(true);
      return true;
    }
    if (text == kFalseLiteral) {
      geo_.SetIsProjected(false);
      return true;
    }
    return false;
  }

  const DMXMLWrapper& element_;
  DMGeo& geo_;
};

// Reads the envelope from the direct `GeoEnvelope` children; a later one takes
// the place of an earlier one, and `envelope` stays null without any. False
// when the children cannot be walked or a child's name cannot be read.
[[nodiscard]] bool ReadEnvelope(const DMXMLWrapper& element,
                                std::unique_ptr<DMGeoEnvelope>& envelope) {
  // The handle's iterators are handed out by a non-const handle; a local view
  // of the same element owns them and releases them on return.
  DMXMLWrapper view(element.getElement());
  DMXMLIteratorWrapper* children = nullptr;
  if (view.getElementDirectIterator("", &children) != DM_XML_OK) return false;
  for (;;) {
    void* item = nullptr;
    const int rc = children->nextItem(&item);
    if (rc == DM_XML_NO_MORE_ITEMS) return true;
    if (rc != DM_XML_OK || item == nullptr) return false;
    const DMXMLWrapper& child = *static_cast<DMXMLWrapper*>(item);
    std::string name;
    if (child.getName(name) != DM_XML_OK) return false;
    if (name == XMLElements::GeoEnvelope) envelope = std::make_unique<DMGeoEnvelope>(child);
  }
}

}  // namespace

DMGeo::DMGeo() = default;

DMGeo::DMGeo(const DMGeo& other)
    : type_(other.type_),
      typeSet_(other.typeSet_),
      coordinates_(other.coordinates_),
      coordinatesSet_(other.coordinatesSet_),
      wkid_(other.wkid_),
      wkidSet_(other.wkidSet_),
      csname_(other.csname_),
      csnameSet_(other.csnameSet_),
      isProjected_(other.isProjected_),
      isProjectedSet_(other.isProjectedSet_),
      wkt_(other.wkt_),
      wktSet_(other.wktSet_),
      envelope_(other.envelope_ == nullptr ? nullptr
                                           : std::make_unique<DMGeoEnvelope>(*other.envelope_)) {}

DMGeo& DMGeo::operator=(const DMGeo& other) {
  if (this == &other) return *this;
  DMGeo copy(other);
  type_ = copy.type_;
  typeSet_ = copy.typeSet_;
  coordinates_ = copy.coordinates_;
  coordinatesSet_ = copy.coordinatesSet_;
  wkid_ = copy.wkid_;
  wkidSet_ = copy.wkidSet_;
  csname_ = std::move(copy.csname_);
  csnameSet_ = copy.csnameSet_;
  isProjected_ = copy.isProjected_;
  isProjectedSet_ = copy.isProjectedSet_;
  wkt_ = std::move(copy.wkt_);
  wktSet_ = copy.wktSet_;
  envelope_ = std::move(copy.envelope_);
  return *this;
}

DMGeo::DMGeo(const DMXMLWrapper& element) {
  GeoAttributeReader(element, *this).ReadAll();
  std::unique_ptr<DMGeoEnvelope> envelope;
  if (!ReadEnvelope(element, envelope)) {
    Reset();
    return;
  }
  envelope_ = std::move(envelope);
}

DMGeo::~DMGeo() = default;

DMGeo* DMGeo::Clone() const { return new DMGeo(*this); }

void DMGeo::Reset() {
  type_ = Polygon;
  typeSet_ = false;
  coordinates_ = 0;
  coordinatesSet_ = false;
  wkid_ = 0;
  wkidSet_ = false;
  csname_.clear();
  csnameSet_ = false;
  isProjected_ = false;
  isProjectedSet_ = false;
  wkt_.clear();
  wktSet_ = false;
  envelope_.reset();
}

void DMGeo::SetType(Type type) {
  type_ = type;
  typeSet_ = true;
}

void DMGeo::SetCoordinates(int coordinates) {
  coordinates_ = coordinates;
  coordinatesSet_ = true;
}

void DMGeo::SetCsname(const std::string& csname) {
  csname_ = csname;
  csnameSet_ = true;
}

void DMGeo::SetIsProjected(bool isProjected) {
  isProjected_ = isProjected;
  isProjectedSet_ = true;
}

void DMGeo::SetWkid(int wkid) {
  wkid_ = wkid;
  wkidSet_ = true;
}

void DMGeo::SetWkt(const std::string& wkt) {
  wkt_ = wkt;
  wktSet_ = true;
}

DMGeo::Type DMGeo::GetType(bool& isSet) const {
  isSet = typeSet_;
  return type_;
}

int DMGeo::GetCoordinates(bool& isSet) const {
  isSet = coordinatesSet_;
  return coordinates_;
}

std::string DMGeo::GetCsname(bool& isSet) const {
  isSet = csnameSet_;
  return csname_;
}

bool DMGeo::GetIsProjected(bool& isSet) const {
  isSet = isProjectedSet_;
  return isProjected_;
}

int DMGeo::GetWkid(bool& isSet) const {
  isSet = wkidSet_;
  return wkid_;
}

std::string DMGeo::GetWkt(bool& isSet) const {
  isSet = wktSet_;
  return wkt_;
}

bool DMGeo::SetGeoEnvelope(const DMGeoEnvelope* envelope) {
  envelope_ = envelope == nullptr ? nullptr : std::make_unique<DMGeoEnvelope>(*envelope);
  return true;
}

const DMGeoEnvelope* DMGeo::GetGeoEnvelope() const { return envelope_.get(); }

void DMGeo::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  created = nullptr;
  std::unique_ptr<DMXMLWrapper> element(parent.createFreeElement(XMLElements::Geo));
  if (element == nullptr) return;
  if (typeSet_) {
    const char* entity = DMEnumDict::TextOfValue(gGeoTypeDict, static_cast<unsigned>(type_));
    if (entity == nullptr) return;
    if (element->addAttribute(XMLAttributes::Type, entity) != DM_XML_OK) return;
  }
  if (!WriteInteger(*element, XMLAttributes::Coordinates, coordinates_, coordinatesSet_)) return;
  if (!WriteText(*element, XMLAttributes::Csname, csname_, csnameSet_)) return;
  if (isProjectedSet_) {
    const char* literal = isProjected_ ? kTrueLiteral : kFalseLiteral;
    if (element->addAttribute(XMLAttributes::IsProjected, literal) != DM_XML_OK) return;
  }
  if (!WriteInteger(*element, XMLAttributes::Wkid, wkid_, wkidSet_)) return;
  if (!WriteText(*element, XMLAttributes::Wkt, wkt_, wktSet_)) return;
  if (envelope_ != nullptr) {
    // The free envelope element belongs to the same document, so it can hang
    // below this still unattached element; it goes with it on failure.
    DMXMLWrapper* envelopeElement = nullptr;
    envelope_->AddToTree(*element, envelopeElement);
    if (envelopeElement == nullptr) return;
  }
  if (parent.addElement(element.get()) != DM_XML_OK) return;
  created = element.release();
}

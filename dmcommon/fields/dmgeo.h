#ifndef DMCOMMON_FIELDS_DMGEO_H
#define DMCOMMON_FIELDS_DMGEO_H

#include <memory>
#include <string>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

/// The bounding box of a geospatial field's geometries. Each corner
/// coordinate is optional: it carries a flag telling whether it was set, and
/// only set coordinates are written.
class DMCOMMON_EXPORT DMGeoEnvelope {
 public:
  /// Every coordinate unset, with the value 0.
  DMGeoEnvelope();
  /// Reads a `GeoEnvelope` element. Each coordinate attribute that is present
  /// and an ordinary number is stored and marked set, independently of the
  /// others; an absent or unreadable one (including "INF", "-INF" and "NaN")
  /// leaves that coordinate unset. Never fails as a whole.
  explicit DMGeoEnvelope(const DmExtension::DMXMLWrapper& element);
  DMGeoEnvelope(const DMGeoEnvelope& other) = default;
  DMGeoEnvelope& operator=(const DMGeoEnvelope& other) = default;
  ~DMGeoEnvelope() = default;

  /// Stores the left upper X coordinate and marks it set.
  void SetLeftUpperX(double value);
  /// Stores the left upper Y coordinate and marks it set.
  void SetLeftUpperY(double value);
  /// Stores the right lower X coordinate and marks it set.
  void SetRightLowerX(double value);
  /// Stores the right lower Y coordinate and marks it set.
  void SetRightLowerY(double value);

  /// The left upper X coordinate (0 when never set); `isSet` tells whether it
  /// was set.
  double GetLeftUpperX(bool& isSet) const;
  /// The left upper Y coordinate (0 when never set); `isSet` tells whether it
  /// was set.
  double GetLeftUpperY(bool& isSet) const;
  /// The right lower X coordinate (0 when never set); `isSet` tells whether
  /// it was set.
  double GetRightLowerX(bool& isSet) const;
  /// The right lower Y coordinate (0 when never set); `isSet` tells whether
  /// it was set.
  double GetRightLowerY(bool& isSet) const;

  /// Writes a `GeoEnvelope` element with the set coordinates as "%.15g"
  /// numbers and appends it to `parent`; `created` receives it, owned by
  /// `parent`. When any step fails nothing is appended and `created` is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  // One optional coordinate.
  struct Coordinate {
    double value = 0.0;
    bool isSet = false;
  };

  Coordinate leftUpperX_;
  Coordinate leftUpperY_;
  Coordinate rightLowerX_;
  Coordinate rightLowerY_;
};

/// The geometry held by a geospatial field: its type, the number of
/// coordinates per point, the coordinate system (name, well-known identifier,
/// well-known text, whether it is projected) and an optional bounding box.
/// Every property is optional: it carries a flag telling whether it was set,
/// and only set properties are written. A set property cannot be unset again.
class DMCOMMON_EXPORT DMGeo {
 public:
  /// Geometry types. The underlying type is fixed so that any number stored
  /// through a cast stays representable; numbers outside 0 to 5 are refused
  /// when writing.
  enum Type : int {
    Point = 0,
    MultiPoint = 1,
    LineString = 2,
    MultiLineString = 3,
    Polygon = 4,
    MultiPolygon = 5,
  };

  /// Every property unset: type Polygon, 0 coordinates, wkid 0, empty texts,
  /// not projected, no envelope.
  DMGeo();
  /// A deep copy: the envelope is copied too.
  DMGeo(const DMGeo& other);
  /// Replaces every property with a deep copy of `other`'s, the envelope
  /// included.
  DMGeo& operator=(const DMGeo& other);
  /// Reads a `Geo` element. Its attributes are read in the order type,
  /// coordinates, csname, isProjected, wkid, wkt; each present one is stored
  /// and marked set. The first malformed one (a type that is no geometry
  /// entity, an integer that does not parse or leaves the 32-bit range, an
  /// isProjected other than exactly "true" or "false") ends the attribute
  /// reading: what was read before stays set, the rest stays unset. Each
  /// direct `GeoEnvelope` child then becomes the envelope, the last one
  /// winning. When the children cannot be walked, every property is unset and
  /// there is no envelope. Never fails as a whole.
  explicit DMGeo(const DmExtension::DMXMLWrapper& element);
  /// Deletes the envelope.
  ~DMGeo();

  /// A deep copy of this object; the caller owns it.
  DMGeo* Clone() const;

  /// Stores the geometry type and marks it set. Any number is taken; one
  /// outside 0 to 5 makes `AddToTree` fail.
  void SetType(Type type);
  /// Stores the number of coordinates per point and marks it set.
  void SetCoordinates(int coordinates);
  /// Stores the coordinate system's name and marks it set. A set but empty
  /// name is not written.
  void SetCsname(const std::string& csname);
  /// Stores whether the coordinate system is projected and marks it set.
  void SetIsProjected(bool isProjected);
  /// Stores the coordinate system's well-known identifier and marks it set.
  void SetWkid(int wkid);
  /// Stores the coordinate system as well-known text and marks it set. A set
  /// but empty text is not written.
  void SetWkt(const std::string& wkt);

  /// The geometry type (Polygon when never set); `isSet` tells whether it was
  /// set.
  Type GetType(bool& isSet) const;
  /// The number of coordinates per point (0 when never set); `isSet` tells
  /// whether it was set.
  int GetCoordinates(bool& isSet) const;
  /// A copy of the coordinate system's name (empty when never set); `isSet`
  /// tells whether it was set.
  std::string GetCsname(bool& isSet) const;
  /// Whether the coordinate system is projected (false when never set);
  /// `isSet` tells whether it was set.
  bool GetIsProjected(bool& isSet) const;
  /// The well-known identifier (0 when never set); `isSet` tells whether it
  /// was set.
  int GetWkid(bool& isSet) const;
  /// A copy of the well-known text (empty when never set); `isSet` tells
  /// whether it was set.
  std::string GetWkt(bool& isSet) const;

  /// Replaces the envelope with a copy of `envelope`, or removes it when
  /// `envelope` is null; the caller keeps `envelope`. Always returns true.
  bool SetGeoEnvelope(const DMGeoEnvelope* envelope);
  /// The envelope, or null when there is none. This object keeps ownership;
  /// the pointer is valid until the envelope is replaced or this object dies.
  const DMGeoEnvelope* GetGeoEnvelope() const;

  /// Writes a `Geo` element with the set properties (type as its entity,
  /// isProjected as the literal "true" or "false", texts only when not empty)
  /// and the envelope as its child, and appends it to `parent`; `created`
  /// receives it, owned by `parent`. When any step fails, a type outside 0 to
  /// 5 included, nothing is appended and `created` is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created) const;

 private:
  void Reset();

  Type type_ = Polygon;
  bool typeSet_ = false;
  int coordinates_ = 0;
  bool coordinatesSet_ = false;
  int wkid_ = 0;
  bool wkidSet_ = false;
  std::string csname_;
  bool csnameSet_ = false;
  bool isProjected_ = false;
  bool isProjectedSet_ = false;
  std::string wkt_;
  bool wktSet_ = false;
  std::unique_ptr<DMGeoEnvelope> envelope_;
};

/// Geometry types with their XML entities. Reading takes the first row whose
/// text matches, in this order.
inline constexpr DMEnumDictEntry gGeoTypeDict[] = {
    {DMGeo::Polygon, DmCppHelperV1::XMLEntities::Polygon},
    {DMGeo::MultiPolygon, DmCppHelperV1::XMLEntities::MultiPolygon},
    {DMGeo::Point, DmCppHelperV1::XMLEntities::Point},
    {DMGeo::MultiPoint, DmCppHelperV1::XMLEntities::MultiPoint},
    {DMGeo::LineString, DmCppHelperV1::XMLEntities::LineString},
    {DMGeo::MultiLineString, DmCppHelperV1::XMLEntities::MultiLineString},
    {0, nullptr},
};

#endif  // DMCOMMON_FIELDS_DMGEO_H

#ifndef DMCOMMON_XML_VOCABULARY_XMLELEMENT_H
#define DMCOMMON_XML_VOCABULARY_XMLELEMENT_H

#include <string>

#include "dmcommon/dmcommon_export.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

namespace DmCppHelperV1 {

/// Read-only view of the attributes of one element, for code that is handed
/// an element by the back end's components rather than by the library. It
/// refers to the handle it was built from, which must outlive it; an empty
/// handle reads as an element without attributes.
class DMCOMMON_EXPORT XMLElement {
 public:
  /// A view of `element`; nothing is read until an operation asks.
  explicit XMLElement(const DmExtension::DMXMLWrapper& element);
  /// Refused so that a view never outlives a temporary handle.
  explicit XMLElement(const DmExtension::DMXMLWrapper&& element) = delete;

  /// The attribute's text. Returns the empty text when the attribute is absent
  /// or the handle has no element, so an empty value looks like an absent one;
  /// use `hasAttribute` to tell them apart.
  std::string getAttribute(const std::string& name) const;
  /// Reads the attribute as an XML Schema double: "INF" and "-INF" give the
  /// infinities and "NaN" a quiet NaN. Returns false, leaving `value`
  /// unchanged, when the attribute is absent, is not a double, or the handle
  /// has no element.
  bool getAttribute(const std::string& name, double& value) const;
  /// Reads the attribute as a decimal 64-bit integer with an optional sign;
  /// XML white space around it is allowed. Returns false, leaving `value`
  /// unchanged, when the attribute is absent, holds anything else (including
  /// the empty text, trailing characters or a number out of range), or the
  /// handle has no element.
  bool getAttribute(const std::string& name, long long& value) const;
  /// Whether the element carries the attribute, even with an empty value.
  /// False when the handle has no element.
  bool hasAttribute(const std::string& name) const;

 private:
  const DmExtension::DMXMLWrapper* element_;
};

}  // namespace DmCppHelperV1

#endif  // DMCOMMON_XML_VOCABULARY_XMLELEMENT_H

#include "dmcommon/xml/vocabulary/xmlelement.h"

#include <charconv>
#include <limits>
#include <string_view>
#include <system_error>

#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"

namespace DmCppHelperV1 {

namespace {

// How the handle classifies an XML Schema double it has read.
constexpr int kOrdinaryNumber = 0;
constexpr int kNegativeInfinity = 1;
constexpr int kPositiveInfinity = 2;
constexpr int kNotANumber = 3;

// XML's white space (space, tab, CR, LF) only: the C locale's isspace would
// also accept vertical tab and form feed, which XML does not treat as blanks.
constexpr std::string_view kXmlWhiteSpace = " \t\r\n";

std::string_view TrimXmlWhiteSpace(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kXmlWhiteSpace);
  if (first == std::string_view::npos) return {};
  const std::size_t last = text.find_last_not_of(kXmlWhiteSpace);
  return text.substr(first, last - first + 1);
}

// from_chars accepts neither '+' nor white space, and the handle's own integer
// reader takes "42abc" as 42, so the whole text is checked here.
[[nodiscard]] bool ParseInteger(std::string_view text, long long& value) {
  text = TrimXmlWhiteSpace(text);
  if (!text.empty() && text.front() == '+') {
    text.remove_prefix(1);
    // Without this "+-5" would pass as -5 once the '+' is gone.
    if (!text.empty() && text.front() == '-') return false;
  }
  if (text.empty()) return false;
  long long parsed = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, parsed);
  if (error != std::errc() || stop != end) return false;
  value = parsed;
  return true;
}

}  // namespace

XMLElement::XMLElement(const DmExtension::DMXMLWrapper& element) : element_(&element) {}

std::string XMLElement::getAttribute(const std::string& name) const {
  std::string value;
  bool found = false;
  if (element_->getAttribute(name.c_str(), value, found) != DmExtension::DM_XML_OK || !found) {
    return {};
  }
  return value;
}

bool XMLElement::getAttribute(const std::string& name, double& value) const {
  // The handle resets its outputs before reading, and callers rely on a failed
  // read leaving their variable alone, so it reads into locals.
  double parsed = 0.0;
  bool found = false;
  int special = kOrdinaryNumber;
  if (element_->getAttribute(name.c_str(), parsed, found, special) != DmExtension::DM_XML_OK ||
      !found) {
    return false;
  }
  switch (special) {
    case kOrdinaryNumber:
      value = parsed;
      return true;
    case kNegativeInfinity:
      value = -std::numeric_limits<double>::infinity();
      return true;
    case kPositiveInfinity:
      value = std::numeric_limits<double>::infinity();
      return true;
    case kNotANumber:
      value = std::numeric_limits<double>::quiet_NaN();
      return true;
    default:
      return false;
  }
}

bool XMLElement::getAttribute(const std::string& name, long long& value) const {
  std::string text;
  bool found = false;
  if (element_->getAttribute(name.c_str(), text, found) != DmExtension::DM_XML_OK || !found) {
    return false;
  }
  return ParseInteger(text, value);
}

bool XMLElement::hasAttribute(const std::string& name) const {
  int present = 0;
  if (element_->hasAttribute(name.c_str(), &present) != DmExtension::DM_XML_OK) return false;
  return present != 0;
}

}  // namespace DmCppHelperV1

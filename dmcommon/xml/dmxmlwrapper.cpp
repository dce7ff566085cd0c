#include "dmcommon/xml/dmxmlwrapper.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string_view>

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/NumberFormatException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLBigInteger.hpp>
#include <xercesc/util/XMLDouble.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "dmcommon/xml/dmxmlconverter.h"
#include "dmcommon/xml/dmxmlfactory.h"
#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmltext_internal.h"

XERCES_CPP_NAMESPACE_USE

namespace DmExtension {

namespace {

// Printed when the parser reported errors without throwing. The parser keeps
// what it read before a fatal error, so without this check a document cut off
// half-way would pass for a complete, shorter one.
constexpr char kMalformedDocumentMessage[] = "Document is not well-formed XML and was discarded";

// Upper bound on entity expansions in one document, so that a few hundred
// bytes of nested entities cannot expand into gigabytes.
constexpr XMLSize_t kEntityExpansionLimit = 10000;

// Exposes the literal kind and value that XMLDouble parsed.
class DMXMLDouble : public XMLDouble {
 public:
  explicit DMXMLDouble(const XMLCh* text) : XMLDouble(text) {}
  LiteralType kind() const { return fType; }
  double value() const { return fValue; }
};

void PrintLine(const char* text) {
  std::fputs(text, stdout);
  std::fputc('\n', stdout);
  std::fflush(stdout);
}

void PrintLine(const char* prefix, const XMLCh* message) {
  std::fputs(prefix, stdout);
  PrintLine(DMXMLConverter(message));
}

struct SerializerRelease {
  void operator()(DOMLSSerializer* serializer) const { serializer->release(); }
};
struct OutputRelease {
  void operator()(DOMLSOutput* output) const { output->release(); }
};

// Copies `text` and its terminator into a caller's buffer when it fits.
int CopyToBuffer(const std::string& text, char* buffer, std::size_t size, std::size_t* needed) {
  if (needed == nullptr) return DM_XML_FAILED;
  *needed = text.size() + 1;
  if (*needed > size) return DM_XML_BUFFER_TOO_SMALL;
  if (buffer == nullptr) return DM_XML_FAILED;
  std::memcpy(buffer, text.data(), text.size());
  buffer[text.size()] = '\0';
  return DM_XML_OK;
}

// True when `value` lies outside the range of int. XMLBigInteger::intValue
// wraps such values silently, so they are refused instead.
bool OutsideIntRange(const XMLBigInteger& value) {
  static const XMLCh kIntMax[] = u"2147483647";
  static const XMLCh kIntMin[] = u"-2147483648";
  const XMLBigInteger max(kIntMax);
  const XMLBigInteger min(kIntMin);
  return XMLBigInteger::compareValues(&value, &max) > 0 ||
         XMLBigInteger::compareValues(&value, &min) < 0;
}

// Numbers are read through Xerces' schema types, which accept every lexical
// form of the XML Schema and report the special values. Those types allocate
// and transcode on every call, and documents hold numbers by the hundred
// thousand, so the common plain forms take a shortcut that must give the same
// result: only texts made of digits, one sign, a point and an exponent, and
// only results the schema types would give unchanged.
constexpr std::size_t kPlainNumberChars = 40;

// `text` as ASCII in `buffer` when it is a short run of the characters of a
// plain decimal number; the empty view otherwise.
std::string_view PlainNumber(const XMLCh* text, char (&buffer)[kPlainNumberChars]) {
  std::size_t length = 0;
  for (; text[length] != 0; ++length) {
    const XMLCh c = text[length];
    const bool allowed =
        (c >= u'0' && c <= u'9') || c == u'-' || c == u'.' || c == u'e' || c == u'E' || c == u'+';
    if (!allowed || length == kPlainNumberChars) return {};
    buffer[length] = static_cast<char>(c);
  }
  return {buffer, length};
}

// A plain real number. Negative zero, values beyond the range of double and
// values too small to be normal are left to the schema type, which has rules
// of its own for them.
bool ReadPlainDouble(const XMLCh* text, double& value) {
  char buffer[kPlainNumberChars];
  const std::string_view plain = PlainNumber(text, buffer);
  if (plain.empty()) return false;
  double parsed = 0.0;
  const auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), parsed);
  if (error != std::errc() || end != plain.data() + plain.size()) return false;
  if (parsed == 0.0 ? std::signbit(parsed) : !std::isnormal(parsed)) return false;
  value = parsed;
  return true;
}

// A plain integer of at most nine digits, which always fits an int.
bool ReadPlainInt(const XMLCh* text, int& value) {
  char buffer[kPlainNumberChars];
  const std::string_view plain = PlainNumber(text, buffer);
  const std::size_t digits = plain.size() - (!plain.empty() && plain[0] == '-' ? 1 : 0);
  if (digits == 0 || digits > 9) return false;
  int parsed = 0;
  const auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), parsed);
  if (error != std::errc() || end != plain.data() + plain.size()) return false;
  value = parsed;
  return true;
}

}  // namespace

void DMXMLWrapper::startup(bool alreadyInitialised) {
  if (!alreadyInitialised) {
    XMLPlatformUtils::Initialize(XMLUni::fgXercescDefaultLocale, nullptr, nullptr, nullptr);
  }
  if (DMXMLConverter::getTranscoder() == nullptr) {
    XMLTransService::Codes code = XMLTransService::Ok;
    DMXMLConverter::setTranscoder(XMLPlatformUtils::fgTransService->makeNewTranscoderFor(
        "UTF8", code, 256, XMLPlatformUtils::fgMemoryManager));
  }
}

void DMXMLWrapper::shutdown(bool alreadyInitialised) {
  // The shared transcoder stays installed: converters built after a later
  // startup keep using it.
  if (!alreadyInitialised) XMLPlatformUtils::Terminate();
}

DMXMLWrapper::DMXMLWrapper() : DMXMLWrapper(nullptr) {}

DMXMLWrapper::DMXMLWrapper(DOMElement* element_) : element(element_), document(nullptr) {}

DMXMLWrapper::~DMXMLWrapper() {
  releaseDocument();
  children.clear();
  iterators.clear();
  tables.clear();
}

void DMXMLWrapper::createFromElement(DOMElement* element_) { element = element_; }

void DMXMLWrapper::releaseDocument() {
  // A handle must not keep pointing into a document it has just released.
  if (document != nullptr) element = nullptr;
  if (document != nullptr && parser == nullptr) document->release();
  // The parser owns the document it produced and takes it along.
  parser.reset();
  document = nullptr;
}

void DMXMLWrapper::loadFromContents(const char* text) {
  releaseDocument();
  element = nullptr;
  if (text == nullptr) text = "";
  try {
    MemBufInputSource source(reinterpret_cast<const XMLByte*>(text), std::strlen(text), "id", false,
                             XMLPlatformUtils::fgMemoryManager);
    parser = std::make_unique<XercesDOMParser>(nullptr, XMLPlatformUtils::fgMemoryManager, nullptr);
    parser->setValidationScheme(XercesDOMParser::Val_Never);
    parser->setDoSchema(false);
    parser->setLoadExternalDTD(false);
    // Documents come from other components and from users: never let one
    // reach for files or the network through external entities, nor expand
    // entities without bound.
    parser->setDisableDefaultEntityResolution(true);
    SecurityManager security;
    security.setEntityExpansionLimit(kEntityExpansionLimit);
    parser->setSecurityManager(&security);
    parser->reset();
    parser->parse(source);
    parser->setSecurityManager(nullptr);
    document = parser->getDocument();
    element = document == nullptr ? nullptr : document->getDocumentElement();
    if (parser->getErrorCount() > 0) {
      PrintLine(kMalformedDocumentMessage);
      releaseDocument();
    }
  } catch (const XMLException& e) {
    PrintLine("", e.getMessage());
    releaseDocument();
  } catch (...) {
    PrintLine("Caught unknown exception");
    releaseDocument();
  }
  if (document == nullptr) element = nullptr;
}

void DMXMLWrapper::createNew(const char* rootName) {
  releaseDocument();
  element = nullptr;
  try {
    static const XMLCh kCore[] = u"Core";
    DOMImplementation* implementation = DOMImplementationRegistry::getDOMImplementation(kCore);
    document = implementation->createDocument(nullptr, DMXMLConverter(rootName), nullptr,
                                              XMLPlatformUtils::fgMemoryManager);
    element = document->getDocumentElement();
  } catch (const XMLException& e) {
    PrintLine("", e.getMessage());
    releaseDocument();
  } catch (const DOMException& e) {
    PrintLine("Caught DOM Exception ", e.getMessage());
    releaseDocument();
  } catch (...) {
    PrintLine("Caught unknown exception");
    releaseDocument();
  }
}

DMXMLWrapper* DMXMLWrapper::createFreeElement(const char* name) {
  if (element == nullptr) return nullptr;
  const XMLCh* tag = WideName(name);
  if (tag == nullptr) return nullptr;
  try {
    return new DMXMLWrapper(element->getOwnerDocument()->createElement(tag));
  } catch (const DOMException&) {
    return nullptr;
  }
}

int DMXMLWrapper::dispose() {
  releaseDocument();
  return DM_XML_OK;
}

void DMXMLWrapper::registerHandle(DMXML* table) { tables.emplace_back(table); }

DOMElement* DMXMLWrapper::getElement() const { return element; }

DOMDocument* DMXMLWrapper::getDocument() const { return document; }

// ---------------------------------------------------------------------------
// Reading

int DMXMLWrapper::getName(char* buffer, std::size_t size, std::size_t* needed) const {
  std::string name;
  if (int rc = getName(name); rc != DM_XML_OK) return rc;
  return CopyToBuffer(name, buffer, size, needed);
}

int DMXMLWrapper::getName(std::string& name) const {
  name.clear();
  if (element == nullptr) return DM_XML_FAILED;
  ToUtf8(element->getTagName(), name);
  return DM_XML_OK;
}

int DMXMLWrapper::getAttribute(const char* name, char* buffer, std::size_t size,
                               std::size_t* needed) const {
  std::string value;
  bool found = false;
  if (int rc = getAttribute(name, value, found); rc != DM_XML_OK) return rc;
  return CopyToBuffer(value, buffer, size, needed);
}

int DMXMLWrapper::getAttribute(const char* name, std::string& value, bool& found) const {
  value.clear();
  found = false;
  if (element == nullptr) return DM_XML_FAILED;
  const XMLCh* attribute = WideName(name);
  if (attribute == nullptr) return DM_XML_FAILED;
  const XMLCh* text = element->getAttribute(attribute);
  // The DOM gives the empty text both for an absent attribute and for an
  // empty one; only then is presence worth asking.
  if (text == nullptr || *text == 0) {
    found = element->hasAttribute(attribute);
    return DM_XML_OK;
  }
  found = true;
  ToUtf8(text, value);
  return DM_XML_OK;
}

int DMXMLWrapper::getAttribute(const char* name, int& value, bool& found) const {
  value = 0;
  found = false;
  if (element == nullptr) return DM_XML_FAILED;
  const XMLCh* attribute = WideName(name);
  if (attribute == nullptr) return DM_XML_FAILED;
  const DOMAttr* node = element->getAttributeNode(attribute);
  if (node == nullptr) return DM_XML_OK;
  const XMLCh* text = node->getValue();
  if (ReadPlainInt(text, value)) {
    found = true;
    return DM_XML_OK;
  }
  try {
    const XMLBigInteger number(text);
    if (OutsideIntRange(number)) return DM_XML_FAILED;
    value = number.intValue();
  } catch (const NumberFormatException&) {
    return DM_XML_FAILED;
  }
  found = true;
  return DM_XML_OK;
}

int DMXMLWrapper::getAttribute(const char* name, long long& value, bool& found) const {
  std::string text;
  value = 0;
  if (int rc = getAttribute(name, text, found); rc != DM_XML_OK) return rc;
  if (!found) return DM_XML_OK;
  // sscanf on purpose: documents written by other components may carry
  // leading blanks or a unit after the number, and both are accepted.
  if (std::sscanf(text.c_str(), "%lld", &value) != 1) {
    value = 0;
    found = false;
    return DM_XML_FAILED;
  }
  return DM_XML_OK;
}

int DMXMLWrapper::getAttribute(const char* name, double& value, bool& found, int& special) const {
  value = 0.0;
  found = false;
  if (element == nullptr) return DM_XML_FAILED;
  const XMLCh* attribute = WideName(name);
  if (attribute == nullptr) return DM_XML_FAILED;
  const DOMAttr* node = element->getAttributeNode(attribute);
  if (node == nullptr) return DM_XML_OK;
  special = -1;
  const XMLCh* text = node->getValue();
  if (ReadPlainDouble(text, value)) {
    special = 0;
    found = true;
    return DM_XML_OK;
  }
  try {
    const DMXMLDouble number(text);
    switch (number.kind()) {
      case XMLAbstractDoubleFloat::NegINF:
        special = 1;
        break;
      case XMLAbstractDoubleFloat::PosINF:
        special = 2;
        break;
      case XMLAbstractDoubleFloat::NaN:
        special = 3;
        break;
      case XMLAbstractDoubleFloat::Normal:
        special = 0;
        value = number.value();
        break;
      case XMLAbstractDoubleFloat::SpecialTypeNum:
        return DM_XML_FAILED;
    }
  } catch (const NumberFormatException&) {
    return DM_XML_FAILED;
  }
  found = true;
  return DM_XML_OK;
}

int DMXMLWrapper::hasAttribute(const char* name, int* present) const {
  if (present != nullptr) *present = 0;
  if (element == nullptr || present == nullptr) return DM_XML_FAILED;
  const XMLCh* attribute = WideName(name);
  if (attribute == nullptr) return DM_XML_FAILED;
  *present = element->hasAttribute(attribute) ? 1 : 0;
  return DM_XML_OK;
}

int DMXMLWrapper::addIterator(bool direct, int filter, const char* name,
                              DMXMLIteratorWrapper** out) {
  if (element == nullptr || out == nullptr) return DM_XML_FAILED;
  iterators.push_back(std::make_unique<DMXMLIteratorWrapper>(
      element, direct, static_cast<FilterType>(filter), name));
  *out = iterators.back().get();
  return DM_XML_OK;
}

int DMXMLWrapper::getElementIterator(const char* name, DMXMLIteratorWrapper** out) {
  // Deliberately asymmetric: a name searches every depth, the empty name
  // lists only the direct children.
  const bool direct = name == nullptr || *name == '\0';
  return addIterator(direct, ElementFilter, name, out);
}

int DMXMLWrapper::getElementDirectIterator(const char* name, DMXMLIteratorWrapper** out) {
  return addIterator(true, ElementFilter, name, out);
}

int DMXMLWrapper::getTextIterator(DMXMLIteratorWrapper** out) {
  return addIterator(true, TextFilter, "", out);
}

// ---------------------------------------------------------------------------
// Writing

int DMXMLWrapper::addAttribute(const char* name, const char* value) {
  if (element == nullptr) return DM_XML_FAILED;
  const DMXMLConverter text(value);
  const XMLCh* attribute = WideName(name);
  if (attribute == nullptr || !text.isValid()) return DM_XML_FAILED;
  try {
    element->setAttribute(attribute, text);
  } catch (const DOMException&) {
    return DM_XML_FAILED;
  }
  return DM_XML_OK;
}

int DMXMLWrapper::addAttribute(const char* name, double value) {
  std::string text;
  if (!ToString(value, text)) return DM_XML_FAILED;
  return addAttribute(name, text.c_str());
}

int DMXMLWrapper::addAttribute(const char* name, long long value) {
  std::string text;
  if (!ToString(value, text)) return DM_XML_FAILED;
  return addAttribute(name, text.c_str());
}

bool DMXMLWrapper::ToString(double value, std::string& text) {
  char buffer[64];
  const int written = std::snprintf(buffer, sizeof buffer, "%.15g", value);
  if (written <= 0) {
    text.clear();
    return false;
  }
  text.assign(buffer, static_cast<std::size_t>(written));
  // A decimal comma of the process locale must never reach a document.
  if (const std::size_t comma = text.find(','); comma != std::string::npos) text[comma] = '.';
  return true;
}

bool DMXMLWrapper::ToString(long long value, std::string& text) {
  char buffer[32];
  const int written = std::snprintf(buffer, sizeof buffer, "%lld", value);
  if (written <= 0) {
    text.clear();
    return false;
  }
  text.assign(buffer, static_cast<std::size_t>(written));
  return true;
}

int DMXMLWrapper::removeAttribute(const char* name) {
  if (element == nullptr) return DM_XML_FAILED;
  const XMLCh* attribute = WideName(name);
  if (attribute == nullptr) return DM_XML_FAILED;
  try {
    element->removeAttribute(attribute);
  } catch (const DOMException&) {
    return DM_XML_FAILED;
  }
  return DM_XML_OK;
}

DMXMLWrapper* DMXMLWrapper::adopt(DOMElement* element_) {
  children.push_back(std::make_unique<DMXMLWrapper>(element_));
  return children.back().get();
}

int DMXMLWrapper::addElement(const char* name, DMXMLWrapper** out) {
  return insertNew(name, nullptr, out);
}

int DMXMLWrapper::addElement(DMXMLWrapper* child) {
  if (child == nullptr || element == nullptr || child->element == nullptr) return DM_XML_FAILED;
  try {
    element->appendChild(child->element);
  } catch (const DOMException&) {
    return DM_XML_FAILED;
  }
  children.emplace_back(child);
  return DM_XML_OK;
}

int DMXMLWrapper::insertElementBefore(const char* name, DMXMLWrapper* before, DMXMLWrapper** out) {
  if (before == nullptr || before->element == nullptr) return DM_XML_FAILED;
  return insertNew(name, before->element, out);
}

int DMXMLWrapper::copyElement(DMXMLWrapper* source, DMXMLWrapper** out) {
  return insertCopy(source, nullptr, out);
}

int DMXMLWrapper::copyElementBefore(DMXMLWrapper* source, DMXMLWrapper* before,
                                    DMXMLWrapper** out) {
  if (before == nullptr || before->element == nullptr) return DM_XML_FAILED;
  return insertCopy(source, before->element, out);
}

int DMXMLWrapper::insertNew(const char* name, DOMNode* reference, DMXMLWrapper** out) {
  if (element == nullptr || out == nullptr) return DM_XML_FAILED;
  const XMLCh* tag = WideName(name);
  if (tag == nullptr) return DM_XML_FAILED;
  try {
    DOMElement* created = element->getOwnerDocument()->createElement(tag);
    element->insertBefore(created, reference);
    *out = adopt(created);
  } catch (const DOMException&) {
    return DM_XML_FAILED;
  }
  return DM_XML_OK;
}

int DMXMLWrapper::insertCopy(DMXMLWrapper* source, DOMNode* reference, DMXMLWrapper** out) {
  if (element == nullptr || out == nullptr || source == nullptr || source->element == nullptr) {
    return DM_XML_FAILED;
  }
  try {
    DOMNode* imported = element->getOwnerDocument()->importNode(source->element, true);
    if (imported->getNodeType() != DOMNode::ELEMENT_NODE) return DM_XML_FAILED;
    element->insertBefore(imported, reference);
    *out = adopt(static_cast<DOMElement*>(imported));
  } catch (const DOMException&) {
    return DM_XML_FAILED;
  }
  return DM_XML_OK;
}

int DMXMLWrapper::addText(const char* text) {
  if (element == nullptr) return DM_XML_FAILED;
  const DMXMLConverter content(text);
  if (!content.isValid()) return DM_XML_FAILED;
  element->appendChild(element->getOwnerDocument()->createTextNode(content));
  return DM_XML_OK;
}

// ---------------------------------------------------------------------------
// Text

int DMXMLWrapper::doc2string(std::string& text) const {
  text.clear();
  DOMNode* node = document != nullptr ? static_cast<DOMNode*>(document) : element;
  if (node == nullptr) return DM_XML_OK;
  DOMDocument* owner = document != nullptr ? document : element->getOwnerDocument();
  DOMImplementation* implementation = owner->getImplementation();
  try {
    std::unique_ptr<DOMLSSerializer, SerializerRelease> serializer(
        implementation->createLSSerializer(XMLPlatformUtils::fgMemoryManager));
    std::unique_ptr<DOMLSOutput, OutputRelease> output(
        implementation->createLSOutput(XMLPlatformUtils::fgMemoryManager));
    serializer->getDomConfig()->setParameter(XMLUni::fgDOMWRTFormatPrettyPrint, false);
    MemBufFormatTarget target(1023, XMLPlatformUtils::fgMemoryManager);
    output->setByteStream(&target);
    serializer->write(node, output.get());
    text.assign(reinterpret_cast<const char*>(target.getRawBuffer()), target.getLen());
  } catch (...) {
    // The serializer reports through exceptions only for resources it could
    // not obtain; the caller then sees the empty text.
    text.clear();
  }
  handleTabAndCR(text);
  return DM_XML_OK;
}

int DMXMLWrapper::doc2string(char* buffer, std::size_t size, std::size_t* needed) const {
  if (document == nullptr && element == nullptr) return DM_XML_FAILED;
  std::string text;
  if (int rc = doc2string(text); rc != DM_XML_OK) return rc;
  return CopyToBuffer(text, buffer, size, needed);
}

void DMXMLWrapper::handleTabAndCR(std::string& text) {
  std::size_t count = 0;
  for (const char c : text) {
    if (c == '\t' || c == '\r') ++count;
  }
  if (count == 0) return;
  // The result keeps one zero byte at its end, inside its length: readers of
  // escaped documents have always received it, and the buffer form's needed
  // size counts it.
  std::string escaped;
  escaped.reserve(text.size() + 4 * count + 1);
  for (const char c : text) {
    if (c == '\t') {
      escaped += "&#x9;";
    } else if (c == '\r') {
      escaped += "&#xD;";
    } else {
      escaped += c;
    }
  }
  escaped += '\0';
  text.swap(escaped);
}

std::string DMXMLWrapper::loadStringFromFile(const char* path) {
  std::string text;
  if (path == nullptr) return text;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "rb"), &std::fclose);
  if (file == nullptr) return text;
  // Whatever precedes the first '<' (a byte-order mark, blank lines) is
  // dropped.
  int c = 0;
  while ((c = std::fgetc(file.get())) != EOF && c != '<') {
  }
  if (c == '<') {
    text += '<';
    char chunk[65536];
    std::size_t read = 0;
    while ((read = std::fread(chunk, 1, sizeof chunk, file.get())) > 0) text.append(chunk, read);
  }
  // Callers have always found a NUL character ending the text.
  text += '\0';
  return text;
}

void DMXMLWrapper::saveStringToFile(const char* path, const char* text) {
  if (path == nullptr || text == nullptr) return;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "wb"), &std::fclose);
  if (file == nullptr) return;
  std::fwrite(text, 1, std::strlen(text), file.get());
}

}  // namespace DmExtension

#include "dmcommon/printable/dmprintableutil.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "dmcommon/printable/dmprintable_internal.h"
#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"

using DmExtension::DM_XML_NO_MORE_ITEMS;
using DmExtension::DM_XML_OK;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;
namespace internal = dmprintable_internal;

namespace DMPrintableUtil {

namespace {

using ArgumentList = std::vector<std::unique_ptr<const DMPrintable>>;

ArgumentList CloneAll(const ArgumentList& arguments) {
  ArgumentList copies;
  copies.reserve(arguments.size());
  for (const auto& argument : arguments) copies.emplace_back(argument->Clone());
  return copies;
}

// Arguments nest through recursion, so a document nesting them without end
// would exhaust the stack; no real message comes near this depth.
constexpr int kMaxArgumentNesting = 256;

// Counts the argument lists being read on this thread.
class NestingGuard {
 public:
  NestingGuard() {
    if (++depth_ > kMaxArgumentNesting) {
      --depth_;
      throw DMPrintable::FailExcp();
    }
  }
  ~NestingGuard() { --depth_; }
  NestingGuard(const NestingGuard&) = delete;
  NestingGuard& operator=(const NestingGuard&) = delete;

 private:
  static thread_local int depth_;
};

thread_local int NestingGuard::depth_ = 0;

// Every direct child element of `element` read as a printable, in document
// order. Throws `DMPrintable::FailExcp` for a child that is no printable, a
// walk that fails or arguments nested too deeply; what was read is released
// on the way out.
ArgumentList ReadArguments(const DMXMLWrapper& element) {
  const NestingGuard nesting;
  // Iterators come from a non-const handle; a local view of the same element
  // owns them and releases them on return.
  DMXMLWrapper view(element.getElement());
  DMXMLIteratorWrapper* children = nullptr;
  if (view.getElementDirectIterator("", &children) != DM_XML_OK || children == nullptr) {
    throw DMPrintable::FailExcp();
  }
  ArgumentList arguments;
  for (;;) {
    void* item = nullptr;
    const int rc = children->nextItem(&item);
    if (rc == DM_XML_NO_MORE_ITEMS) return arguments;
    if (rc != DM_XML_OK || item == nullptr) throw DMPrintable::FailExcp();
    bool recognised = false;
    std::unique_ptr<const DMPrintable> argument(
        DMPrintable::CreateFromElmt(*static_cast<const DMXMLWrapper*>(item), recognised));
    if (argument == nullptr) throw DMPrintable::FailExcp();
    arguments.push_back(std::move(argument));
  }
}

}  // namespace

CommonImpl::CommonImpl(const std::string& pattern, bool isKey, int mapId)
    : pattern_(pattern), isKey_(isKey), mapId_(mapId), lookUp_(nullptr) {}

CommonImpl::CommonImpl(const DMXMLWrapper& element) : CommonImpl(std::string(), false, 0) {
  bool found = false;
  if (element.getAttribute(internal::kPatternAttribute, pattern_, found) != DM_XML_OK || !found) {
    // An element without a pattern is an empty message, not an error.
    pattern_.clear();
    return;
  }
  // An unknown key switch ends reading without an error, leaving the map id
  // and the arguments unread: intended, documents written so far rely on it.
  if (!internal::ReadSwitch(element, internal::kIsKeyAttribute, isKey_)) return;
  if (element.getAttribute(internal::kMapIdAttribute, mapId_, found) != DM_XML_OK) {
    throw DMPrintable::FailExcp();
  }
  arguments_ = ReadArguments(element);
}

CommonImpl::CommonImpl(const CommonImpl& other)
    : arguments_(CloneAll(other.arguments_)),
      pattern_(other.pattern_),
      isKey_(other.isKey_),
      mapId_(other.mapId_),
      lookUp_(other.lookUp_),
      lookedUpPattern_(other.lookedUpPattern_) {}

CommonImpl& CommonImpl::operator=(const CommonImpl& other) {
  if (this == &other) return *this;
  // Cloned before anything changes, so that a failed clone leaves this
  // object as it was.
  ArgumentList arguments = CloneAll(other.arguments_);
  arguments_ = std::move(arguments);
  pattern_ = other.pattern_;
  isKey_ = other.isKey_;
  mapId_ = other.mapId_;
  lookUp_ = other.lookUp_;
  lookedUpPattern_ = other.lookedUpPattern_;
  return *this;
}

CommonImpl::~CommonImpl() = default;

void CommonImpl::SetPattern(const std::string& pattern, bool isKey, int mapId) {
  pattern_ = pattern;
  isKey_ = isKey;
  mapId_ = mapId;
  lookedUpPattern_.clear();
}

void CommonImpl::AppendToList(const DMPrintable& printable) {
  arguments_.emplace_back(printable.Clone());
}

void CommonImpl::SetList(const std::vector<const DMPrintable*>& printables) {
  ArgumentList arguments;
  arguments.reserve(printables.size());
  for (const DMPrintable* printable : printables) {
    if (printable != nullptr) arguments.emplace_back(printable->Clone());
  }
  arguments_ = std::move(arguments);
}

void CommonImpl::SetResLookUp(DMResLookUp* lookUp) { lookUp_ = lookUp; }

std::string CommonImpl::GetPattern() const {
  if (!isKey_) return pattern_;
  // An empty text means "not looked up yet": a key whose resource text is
  // empty is looked up again on every call.
  if (lookUp_ != nullptr && lookedUpPattern_.empty()) {
    if (!lookUp_->LookUp(pattern_, lookedUpPattern_, mapId_)) lookedUpPattern_.clear();
  }
  return lookedUpPattern_;
}

std::vector<const DMPrintable*> CommonImpl::GetList() const {
  std::vector<const DMPrintable*> list;
  list.reserve(arguments_.size());
  for (const auto& argument : arguments_) list.push_back(argument.get());
  return list;
}

const std::string& CommonImpl::GetRawPattern() const { return pattern_; }

bool CommonImpl::GetIsKey() const { return isKey_; }

int CommonImpl::GetMapId() const { return mapId_; }

DMResLookUp* CommonImpl::GetResLookUp() const { return lookUp_; }

icu::UnicodeString CommonImpl::ToUTF16(const std::string& bytes) const {
  return Converter().ToUTF16(bytes);
}

std::string CommonImpl::ToUTF8(const icu::UnicodeString& text) const {
  return Converter().ToUTF8(text);
}

void CommonImpl::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created,
                           const char* elementName) const {
  created = nullptr;
  std::unique_ptr<DMXMLWrapper> element(parent.createFreeElement(elementName));
  if (element == nullptr) return;
  if (element->addAttribute(internal::kPatternAttribute, pattern_.c_str()) != DM_XML_OK) return;
  if (isKey_ && element->addAttribute(internal::kIsKeyAttribute, internal::kTrue) != DM_XML_OK) {
    return;
  }
  if (mapId_ != 0 && element->addAttribute(internal::kMapIdAttribute,
                                           static_cast<long long>(mapId_)) != DM_XML_OK) {
    return;
  }
  for (const auto& argument : arguments_) {
    DMXMLWrapper* child = nullptr;
    argument->AddToTree(*element, child);
    if (child == nullptr) return;
  }
  DMXMLWrapper* handle = element.get();
  if (!internal::AppendTo(parent, element)) return;
  created = handle;
}

DMUncConverter& CommonImpl::Converter() const {
  if (converter_ == nullptr) converter_ = std::make_unique<DMUncConverter>();
  return *converter_;
}

}  // namespace DMPrintableUtil

// The bare XML layer: parsing, deep and direct walks, every form of
// attribute reading, names, texts and both forms of serialisation, each
// checked against the others.

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "fuzz/fuzz_support.h"

namespace {

using DmExtension::DM_XML_BUFFER_TOO_SMALL;
using DmExtension::DM_XML_FAILED;
using DmExtension::DM_XML_NO_MORE_ITEMS;
using DmExtension::DM_XML_OK;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;

constexpr char kTarget[] = "xml";

// Enough names to reach the attributes of a small document without making
// every input quadratic.
constexpr std::size_t kMaxNames = 24;
constexpr std::size_t kMaxNameLength = 64;
// The deep walk by name is repeated for this many element names.
constexpr std::size_t kMaxWalkedNames = 8;
// A buffer too small for most texts, to exercise the size negotiation.
constexpr std::size_t kSmallBuffer = 4;

void Require(bool holds, const std::string& what) { dmfuzz::Require(holds, kTarget, what); }

// Attribute names to ask for: runs of name characters in the input (which
// include the names the document uses), and a few fixed ones, among them
// names no element can have.
std::vector<std::string> NamesFrom(const std::string& text) {
  std::set<std::string> names = {"", "name", "value", "width", "a", "xmlns", "1bad", "a b"};
  std::string run;
  const auto isNameChar = [](unsigned char c) {
    return std::isalnum(c) != 0 || c == '_' || c == '-' || c == '.' || c == ':' || c >= 0x80;
  };
  for (std::size_t i = 0; i <= text.size() && names.size() < kMaxNames; ++i) {
    if (i < text.size() && isNameChar(static_cast<unsigned char>(text[i]))) {
      if (run.size() < kMaxNameLength) run += text[i];
      continue;
    }
    if (!run.empty()) names.insert(run);
    run.clear();
  }
  return std::vector<std::string>(names.begin(), names.end());
}

// Every item of `iterator`, checking that `hasMoreItems` announces exactly
// the items `nextItem` hands out.
std::vector<void*> Drain(DMXMLIteratorWrapper& iterator) {
  std::vector<void*> items;
  for (;;) {
    int more = -1;
    Require(iterator.hasMoreItems(&more) == DM_XML_OK && (more == 0 || more == 1),
            "hasMoreItems failed");
    void* item = reinterpret_cast<void*>(1);
    const int rc = iterator.nextItem(&item);
    if (more == 0) {
      Require(rc == DM_XML_NO_MORE_ITEMS && item == nullptr,
              "an exhausted iterator handed out an item");
      return items;
    }
    Require(rc == DM_XML_OK && item != nullptr, "an iterator with more items handed out none");
    items.push_back(item);
  }
}

std::vector<DMXMLWrapper*> Elements(DMXMLWrapper& handle, bool direct, const std::string& name) {
  DMXMLIteratorWrapper* iterator = nullptr;
  const int rc = direct ? handle.getElementDirectIterator(name.c_str(), &iterator)
                        : handle.getElementIterator(name.c_str(), &iterator);
  Require(rc == DM_XML_OK && iterator != nullptr, "no element iterator for an element");
  std::vector<DMXMLWrapper*> elements;
  for (void* item : Drain(*iterator)) elements.push_back(static_cast<DMXMLWrapper*>(item));
  return elements;
}

std::string NameOf(const DMXMLWrapper& handle) {
  std::string name = "stale";
  Require(handle.getName(name) == DM_XML_OK && !name.empty(), "an element has no name");
  char small[kSmallBuffer] = {};
  std::size_t needed = 0;
  const int rc = handle.getName(small, sizeof(small), &needed);
  Require(needed == name.size() + 1, "the buffer form of getName needs another size");
  if (needed > sizeof(small)) {
    Require(rc == DM_XML_BUFFER_TOO_SMALL, "a name too long for the buffer was accepted");
  } else {
    Require(rc == DM_XML_OK && name == small, "the buffer form of getName differs");
  }
  return name;
}

void RequireRefusedEverywhere(const DMXMLWrapper& handle, const char* key) {
  int present = -1;
  Require(handle.hasAttribute(key, &present) == DM_XML_FAILED && present == 0,
          "hasAttribute accepts a name getAttribute refuses");
  char small[kSmallBuffer] = {};
  std::size_t needed = 0;
  Require(handle.getAttribute(key, small, sizeof(small), &needed) == DM_XML_FAILED,
          "the buffer form accepts a name the string form refuses");
  int asInt = -1;
  long long asLong = -1;
  double asDouble = -1;
  bool found = true;
  int special = 42;
  Require(handle.getAttribute(key, asInt, found) == DM_XML_FAILED && asInt == 0 && !found,
          "the int form accepts a name the string form refuses");
  found = true;
  Require(handle.getAttribute(key, asLong, found) == DM_XML_FAILED && asLong == 0 && !found,
          "the long form accepts a name the string form refuses");
  found = true;
  Require(handle.getAttribute(key, asDouble, found, special) == DM_XML_FAILED && asDouble == 0 &&
              !found,
          "the double form accepts a name the string form refuses");
}

void CheckAttribute(const DMXMLWrapper& handle, const std::string& name) {
  const char* key = name.c_str();
  std::string value = "stale";
  bool found = true;
  const int asked = handle.getAttribute(key, value, found);
  if (asked != DM_XML_OK) {
    // A name that cannot be a name in the DOM (not UTF-8) is refused alike
    // by every form.
    Require(asked == DM_XML_FAILED && !found && value.empty(), "getAttribute failed oddly");
    RequireRefusedEverywhere(handle, key);
    return;
  }
  Require(found || value.empty(), "an absent attribute has a value");

  int present = -1;
  Require(handle.hasAttribute(key, &present) == DM_XML_OK && present == (found ? 1 : 0),
          "hasAttribute disagrees with getAttribute for " + name);

  char small[kSmallBuffer] = {};
  std::size_t needed = 0;
  int rc = handle.getAttribute(key, small, sizeof(small), &needed);
  Require(needed == value.size() + 1, "the buffer form of getAttribute needs another size");
  if (needed > sizeof(small)) {
    Require(rc == DM_XML_BUFFER_TOO_SMALL, "an attribute too long for the buffer was accepted");
  } else {
    Require(rc == DM_XML_OK && value == small, "the buffer form of getAttribute differs");
  }
  std::vector<char> fitting(needed);
  rc = handle.getAttribute(key, fitting.data(), fitting.size(), &needed);
  Require(rc == DM_XML_OK && std::memcmp(fitting.data(), value.c_str(), needed) == 0,
          "the buffer form of getAttribute differs in a buffer of the needed size");

  int asInt = -1;
  bool intFound = true;
  rc = handle.getAttribute(key, asInt, intFound);
  if (!found) Require(rc == DM_XML_OK && asInt == 0 && !intFound, "absent int attribute");
  if (rc == DM_XML_OK && found) Require(intFound, "a present int attribute was not found");

  long long asLong = -1;
  bool longFound = true;
  rc = handle.getAttribute(key, asLong, longFound);
  if (!found) Require(rc == DM_XML_OK && asLong == 0 && !longFound, "absent long attribute");
  if (rc == DM_XML_OK && found) Require(longFound, "a present long attribute was not found");

  double asDouble = -1;
  bool doubleFound = true;
  int special = 42;
  rc = handle.getAttribute(key, asDouble, doubleFound, special);
  if (!found) {
    Require(rc == DM_XML_OK && asDouble == 0 && !doubleFound && special == 42,
            "absent double attribute");
  } else if (rc == DM_XML_OK) {
    Require(doubleFound && special >= 0 && special <= 3, "a double attribute's special code");
    Require(special == 0 || asDouble == 0, "a special double carries a value");
  } else {
    Require(rc == DM_XML_FAILED && special == -1, "a double that is no number");
  }
}

// The element's direct child texts; every one is handed out as text.
std::vector<std::string> Texts(DMXMLWrapper& handle) {
  DMXMLIteratorWrapper* iterator = nullptr;
  Require(handle.getTextIterator(&iterator) == DM_XML_OK && iterator != nullptr,
          "no text iterator for an element");
  Require(iterator->getFilter() == DmExtension::TextFilter, "a text iterator walks elements");
  std::vector<std::string> texts;
  for (void* item : Drain(*iterator)) texts.emplace_back(static_cast<const char*>(item));
  return texts;
}

// The names and direct texts of every element in breadth-first order: what
// a serialisation must carry over.
std::string Outline(DMXMLWrapper& document) {
  std::string outline;
  std::vector<DMXMLWrapper*> handles = {&document};
  for (std::size_t next = 0; next < handles.size(); ++next) {
    outline += "<" + NameOf(*handles[next]) + ">";
    for (const std::string& text : Texts(*handles[next])) outline += "[" + text + "]";
    const std::vector<DMXMLWrapper*> children = Elements(*handles[next], true, "");
    handles.insert(handles.end(), children.begin(), children.end());
  }
  return outline;
}

// `text` without the one zero byte that the escaping of TAB and CR leaves
// at its end, so that an escaped serialisation compares with one that had
// nothing left to escape.
std::string WithoutEscapeTerminator(std::string text) {
  if (!text.empty() && text.back() == '\0') text.pop_back();
  return text;
}

std::string Serialisation(const DMXMLWrapper& handle) {
  std::string text = "stale";
  Require(handle.doc2string(text) == DM_XML_OK, "doc2string failed");
  std::size_t needed = 0;
  char small[kSmallBuffer] = {};
  const int rc = handle.doc2string(small, sizeof(small), &needed);
  Require(needed == text.size() + 1, "the buffer form of doc2string needs another size");
  if (needed > sizeof(small)) {
    Require(rc == DM_XML_BUFFER_TOO_SMALL, "a document too long for the buffer was accepted");
  }
  std::vector<char> fitting(needed);
  Require(handle.doc2string(fitting.data(), fitting.size(), &needed) == DM_XML_OK &&
              std::memcmp(fitting.data(), text.c_str(), needed) == 0,
          "the buffer form of doc2string differs");
  return text;
}

void CheckEmptyHandle(const DMXMLWrapper& handle) {
  Require(handle.getDocument() == nullptr, "a failed parse kept a document");
  std::string name;
  Require(handle.getName(name) == DM_XML_FAILED, "a handle without an element has a name");
  std::string text = "stale";
  Require(handle.doc2string(text) == DM_XML_OK && text.empty(),
          "a handle without a document serialises");
  std::size_t needed = 0;
  char buffer[kSmallBuffer] = {};
  Require(handle.doc2string(buffer, sizeof(buffer), &needed) == DM_XML_FAILED,
          "the buffer form serialises a handle without a document");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text = dmfuzz::AsText(data, size);
  DMXMLWrapper document;
  document.loadFromContents(text.c_str());
  if (document.getElement() == nullptr) {
    CheckEmptyHandle(document);
    return 0;
  }

  const std::vector<std::string> names = NamesFrom(text);

  // Every element, found through direct walks only (the deep walk needs a
  // name); depth first with a stack of its own, since documents nest deeply.
  std::vector<DMXMLWrapper*> handles = {&document};
  std::map<std::string, std::size_t> perName;
  for (std::size_t next = 0; next < handles.size(); ++next) {
    DMXMLWrapper& handle = *handles[next];
    const std::string name = NameOf(handle);
    if (next != 0) ++perName[name];
    for (const std::string& attribute : names) CheckAttribute(handle, attribute);
    Texts(handle);
    const std::vector<DMXMLWrapper*> children = Elements(handle, true, "");
    // The deep iterator with the empty name is documented to walk the
    // direct children too.
    const std::vector<DMXMLWrapper*> alsoChildren = Elements(handle, false, "");
    Require(children.size() == alsoChildren.size(),
            "the two walks of the direct children differ in length");
    for (std::size_t i = 0; i < children.size(); ++i) {
      Require(NameOf(*children[i]) == NameOf(*alsoChildren[i]),
              "the two walks of the direct children differ");
    }
    handles.insert(handles.end(), children.begin(), children.end());
  }

  // A deep walk by name meets exactly the descendants of that name.
  std::size_t walked = 0;
  for (const auto& [name, count] : perName) {
    if (++walked > kMaxWalkedNames) break;
    Require(Elements(document, false, name).size() == count,
            "the deep walk by name " + name + " meets another number of elements");
  }
  for (const std::string& name : names) {
    if (!name.empty() && perName.count(name) == 0) {
      Require(Elements(document, false, name).empty(), "a deep walk met an absent name " + name);
    }
  }
  // The direct walks by name share out the walk of every child.
  std::size_t direct = 0;
  for (const auto& [name, count] : perName) direct += Elements(document, true, name).size();
  Require(direct == Elements(document, true, "").size(),
          "the direct walks by name do not add up to the walk of every child");

  // What the layer writes, it reads back with the same elements and texts,
  // and writes again unchanged. TAB and CR are escaped everywhere, also in
  // comments, CDATA sections and processing instructions, where the escape
  // is not read back as the character; but the escaped text stays as it is
  // from then on, so the fixed point holds all the same.
  const std::string first = Serialisation(document);
  DMXMLWrapper reread;
  reread.loadFromContents(first.c_str());
  Require(reread.getElement() != nullptr, "the serialisation does not parse:\n" + first);
  Require(Outline(reread) == Outline(document),
          "the serialisation reads back with other elements or texts:\n" + first);
  const std::string second = Serialisation(reread);
  Require(WithoutEscapeTerminator(second) == WithoutEscapeTerminator(first),
          "serialise, parse, serialise is no fixed point:\n" + first + "\n" + second);
  return 0;
}

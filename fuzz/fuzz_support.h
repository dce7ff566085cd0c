#ifndef DMCOMMON_FUZZ_FUZZ_SUPPORT_H
#define DMCOMMON_FUZZ_FUZZ_SUPPORT_H

// Shared by every fuzz target: the XML layer started once per process, the
// invariant check, and writing an object into a fresh document.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "dmcommon/xml/dmxmlwrapper.h"

namespace dmfuzz {

// libFuzzer calls the target from its own main, and the replay main has no
// set-up either, so the XML layer is started by a static initialiser. It is
// never shut down: the process ends right after the last input, and shutting
// down before every static destructor has run would free memory still in use.
inline const bool kXmlStarted = [] {
  DmExtension::DMXMLWrapper::startup(false);
  return true;
}();

// Stops the process with a message naming the broken invariant; libFuzzer
// and the replay test both report the abort as a failure of the input.
[[noreturn]] inline void Fail(const char* target, const std::string& what) {
  std::fprintf(stderr, "\n%s fuzzer: invariant violated: %s\n", target, what.c_str());
  std::fflush(stderr);
  std::abort();
}

inline void Require(bool holds, const char* target, const std::string& what) {
  if (!holds) Fail(target, what);
}

// The fuzz input as text. Inputs are bytes, not C strings: a zero byte ends
// what the XML layer's text interface sees, which is the layer's contract.
inline std::string AsText(const uint8_t* data, std::size_t size) {
  return std::string(reinterpret_cast<const char*>(data), size);
}

// The serialisation of `handle`, which for an element handle is the element
// alone, without an XML declaration.
inline std::string Serialised(const DmExtension::DMXMLWrapper& handle) {
  std::string text;
  handle.doc2string(text);
  return text;
}

// Writes `object` with its AddToTree(parent, created, extra...) under the
// root of a new document and returns the written element's text; the empty
// text when nothing was written.
template <typename T, typename... Extra>
std::string Written(const T& object, Extra... extra) {
  DmExtension::DMXMLWrapper document;
  document.createNew("Root");
  DmExtension::DMXMLWrapper* created = nullptr;
  object.AddToTree(document, created, extra...);
  if (created == nullptr) return std::string();
  return Serialised(*created);
}

}  // namespace dmfuzz

#endif  // DMCOMMON_FUZZ_FUZZ_SUPPORT_H

#ifndef DMCOMMON_XML_DMXMLTEXT_INTERNAL_H
#define DMCOMMON_XML_DMXMLTEXT_INTERNAL_H

#include <string>

namespace DmExtension {

/// The zero-terminated UTF-16 form of the element or attribute name `utf8`,
/// or null when `utf8` is not valid UTF-8 (or the XML layer is not started).
/// Names are converted once per thread and kept in a small cache, because the
/// readers ask for the same few dozen names for every element of a document.
/// The result stays valid until the calling thread asks for another name.
const char16_t* WideName(const char* utf8);

/// Converts `utf16` to UTF-8 into `out`, reusing its storage. Characters the
/// transcoder cannot represent become its replacement character. Returns false
/// (with what was converted so far in `out`) when the text could not be
/// converted as a whole; a null `utf16` gives the empty text.
bool ToUtf8(const char16_t* utf16, std::string& out);

}  // namespace DmExtension

#endif  // DMCOMMON_XML_DMXMLTEXT_INTERNAL_H

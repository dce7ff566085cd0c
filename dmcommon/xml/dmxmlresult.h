#ifndef DMCOMMON_XML_DMXMLRESULT_H
#define DMCOMMON_XML_DMXMLRESULT_H

namespace DmExtension {

/// Result codes of the XML layer's operations and function tables. Callers
/// compare against the numbers, so the values are part of the interface.
inline constexpr int DM_XML_OK = 0;
/// The handle has no element, an argument handle is empty, a number could not
/// be parsed or written, or a DOM operation refused its arguments.
inline constexpr int DM_XML_FAILED = 5;
/// An iterator has handed out its last item.
inline constexpr int DM_XML_NO_MORE_ITEMS = 9;
/// A caller's buffer cannot hold the text and its terminator; the needed size
/// has been stored.
inline constexpr int DM_XML_BUFFER_TOO_SMALL = 13;

}  // namespace DmExtension

#endif  // DMCOMMON_XML_DMXMLRESULT_H

#ifndef DMCOMMON_TOOLS_RENDER_H
#define DMCOMMON_TOOLS_RENDER_H

// `dmtool render`: one value shown through one format element, for trying
// formats out.

#include <string>

namespace dmtool {

/// The units a value is given in; `kAuto` picks days for date formats,
/// seconds for time formats and none for the others.
enum class RenderUnits { kAuto, kNone, kSeconds, kDays };

/// Reads the format element at the root of the file `formatPath` (a number,
/// decorated, date, time or string format) and prints `value` rendered
/// through it. For date and time formats `value` may be a number in `units`
/// or an ISO date, time or timestamp, converted to `units`. Returns an
/// `ExitCode`: `kExitRejected` when the element is no readable format or the
/// format cannot show the value.
int RenderValue(const std::string& formatPath, const std::string& value, RenderUnits units);

}  // namespace dmtool

#endif  // DMCOMMON_TOOLS_RENDER_H

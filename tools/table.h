#ifndef DMCOMMON_TOOLS_TABLE_H
#define DMCOMMON_TOOLS_TABLE_H

// `dmtool show`: a dataset dictionary as a table a person can read.

#include <ostream>
#include <string>

#include "dmcommon/dmcommon.h"

namespace dmtool {

/// The format that shows `field`'s values: its private format, else the
/// shared format it names, else the container's default for its storage;
/// null when there is none. `source` receives "private", "shared" or
/// "default". Owned by `metadata`.
const DMFormat* EffectiveFormat(const DMMetaData& metadata, const DMField& field,
                                std::string& source);

/// The units in which dmtool keeps values of `storage`: days for dates,
/// seconds for times and timestamps, none for the others.
DMFormat::ValueUnits UnitsOf(DMField::StorageType storage);

/// A short description of `format`: its kind and pattern, such as
/// "number 0.0" or "date yyyy-MM-dd".
std::string DescribeFormat(const DMFormat& format);

/// Prints a line about the dataset and one row per field: name, storage,
/// measurement level, role, label, display format, valid and missing counts,
/// and for continuous fields minimum, maximum, mean and standard deviation
/// rendered through the field's format, for categorical ones the most
/// frequent categories with their counts and value labels.
void PrintDictionary(const DMMetaData& metadata, std::ostream& out);

}  // namespace dmtool

#endif  // DMCOMMON_TOOLS_TABLE_H

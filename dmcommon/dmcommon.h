#ifndef DMCOMMON_DMCOMMON_H
#define DMCOMMON_DMCOMMON_H

// The library's whole public interface in one include. Every subsystem adds
// its public headers here when it lands (never its *_internal.h helpers).

#include "dmcommon/dmcommon_export.h"

// XML layer: document handles, iterators, function tables and transcoding.
#include "dmcommon/xml/dmxmlconverter.h"
#include "dmcommon/xml/dmxmlfactory.h"
#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"

// Names of the XML forms' elements and attributes, and the read-only element
// view.
#include "dmcommon/xml/vocabulary/xmlelement.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

// Values: datums, labelled values, ranges and missing values.
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/values/dmmissingvalues.h"
#include "dmcommon/values/dmrange.h"
#include "dmcommon/values/dmvalue.h"

// Formats: display formats for numbers, currencies and percentages, dates,
// times and strings.
#include "dmcommon/formats/dmdateformat.h"
#include "dmcommon/formats/dmdecoratedformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmformatutils.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/formats/dmstringformat.h"
#include "dmcommon/formats/dmtimeformat.h"

// Fields: the field with its modelling-role and geospatial components.
#include "dmcommon/fields/dmfield.h"
#include "dmcommon/fields/dmgeo.h"
#include "dmcommon/fields/dmmodelfield.h"

// Metadata: the dataset dictionary and its field groups.
#include "dmcommon/metadata/dmfieldgroup.h"
#include "dmcommon/metadata/dmmetadata.h"

// Statistics: categorical frequency tables and continuous summary statistics.
#include "dmcommon/stats/dmcatstatsimp.h"
#include "dmcommon/stats/dmcontstats.h"

// Summaries: the read-only objects of a dataset-summary document.
#include "dmcommon/summaries/dmdatasetsummaries.h"
#include "dmcommon/summaries/dmdistributionsummary.h"
#include "dmcommon/summaries/dmstatisticsext.h"

// Printables: serialisable messages printed through resource lookups and
// display formats, and the UTF-8/UTF-16 converter used by all rendering.
#include "dmcommon/printable/dmprintable.h"
#include "dmcommon/printable/dmprintablelist.h"
#include "dmcommon/printable/dmprintableutil.h"
#include "dmcommon/printable/dmprintablevalue.h"
#include "dmcommon/printable/dmprintablevlist.h"
#include "dmcommon/printable/dmuncconverter.h"

// Cache: records spooled to a temporary file and read back.
#include "dmcommon/cache/dmarchivecacheimpl.h"
#include "dmcommon/cache/dmcacheinterface.h"
#include "dmcommon/cache/dmtempfile.h"

#endif  // DMCOMMON_DMCOMMON_H

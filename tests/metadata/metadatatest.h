#ifndef DMCOMMON_TESTS_METADATA_METADATATEST_H
#define DMCOMMON_TESTS_METADATA_METADATATEST_H

// Builders shared by the container and document tests.

#include <cctype>
#include <memory>
#include <string>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/formats/dmdateformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/formats/dmstringformat.h"
#include "dmcommon/formats/dmtimeformat.h"
#include "dmcommon/metadata/dmmetadata.h"

namespace dmtest {

class UpperCaser : public DMUpperFunc {
 public:
  std::string operator()(const std::string& name) const override {
    std::string folded = name;
    for (char& c : folded) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return folded;
  }
};

inline DMField NominalText(const std::string& name) {
  return DMField(name, DMField::FieldType::Nominal, DMField::StorageType::String,
                 DMField::RoleType::Input);
}

inline DMField ContinuousReal(const std::string& name) {
  return DMField(name, DMField::FieldType::Continuous, DMField::StorageType::Real,
                 DMField::RoleType::Input);
}

inline std::unique_ptr<DMFormat> Named(std::unique_ptr<DMFormat> format, const std::string& name) {
  format->SetName(name);
  return format;
}

inline std::unique_ptr<DMFormat> NumberFormat(const std::string& name) {
  return Named(std::make_unique<DMNumberFormat>(DMNumberFormat::Standard, 8, 2), name);
}

inline std::unique_ptr<DMFormat> StringFormat(const std::string& name) {
  return Named(std::make_unique<DMStringFormat>(20, false), name);
}

inline std::unique_ptr<DMFormat> DateFormat(const std::string& name) {
  return Named(std::make_unique<DMDateFormat>(DMDateFormat::Y_M_D, 10, 0,
                                              DMFormat::UnitsSeparator::Dash, false, false),
               name);
}

inline std::unique_ptr<DMFormat> TimeFormat(const std::string& name) {
  return Named(std::make_unique<DMTimeFormat>(DMTimeFormat::H_M_S, 8, 0,
                                              DMFormat::UnitsSeparator::Colon, true),
               name);
}

inline constexpr char kSummaries[] =
    R"(<DatasetSummaries><OverallSummaries current="false"/></DatasetSummaries>)";

}  // namespace dmtest

#endif  // DMCOMMON_TESTS_METADATA_METADATATEST_H

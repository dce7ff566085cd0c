// The process's C locale and ICU's default locale and time zone belong to the
// caller; what the library writes to XML and reads back from it never
// depends on them.

#include <clocale>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/metadata/dmmetadata.h"
#include "tests/fields/fieldtest.h"
#include "tests/metadata/metadatatest.h"

namespace {

using Storage = DMField::StorageType;
using Measure = DMField::FieldType;

// A dictionary with real numbers, dates and times in values, ranges,
// statistics, formats and counts: everything a decimal comma or another
// calendar could reach.
DMMetaData Dictionary() {
  DMMetaData metadata(nullptr);
  int i = 0;
  for (Storage storage : {Storage::Integer, Storage::Real, Storage::String, Storage::Date,
                          Storage::Time, Storage::Timestamp}) {
    for (Measure measure : {Measure::Continuous, Measure::Nominal}) {
      metadata.AppendField(dmtest::FullField("f" + std::to_string(i++), storage, measure));
    }
  }
  metadata.AddSharedFormat(*dmtest::NumberFormat("num"));
  metadata.AddSharedFormat(*dmtest::DateFormat("date"));
  metadata.AddSharedFormat(*dmtest::TimeFormat("time"));
  metadata.SetDefaultFormat(Storage::Real, "num");
  metadata.SetRecordCounts(1234, 1233.75);
  metadata.SetDroppedDetails(2, 0.125);
  return metadata;
}

std::string Exported(const DMMetaData& metadata) {
  std::string xml;
  EXPECT_TRUE(metadata.ExportXMLDoc(xml));
  return xml;
}

// Switches ICU's default locale and time zone and the C locale for the
// lifetime of the object.
class ForeignSettings {
 public:
  ForeignSettings() : locale_(icu::Locale::getDefault()), zone_(icu::TimeZone::createDefault()) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale("de_DE"), status);
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("Pacific/Kiritimati"));
    const char* current = std::setlocale(LC_ALL, nullptr);
    cLocale_ = current != nullptr ? current : "C";
    // scripts/install-deps.sh generates this locale.
    EXPECT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
  }
  ~ForeignSettings() {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(locale_, status);
    icu::TimeZone::adoptDefault(zone_.release());
    std::setlocale(LC_ALL, cLocale_.c_str());
  }
  ForeignSettings(const ForeignSettings&) = delete;
  ForeignSettings& operator=(const ForeignSettings&) = delete;

 private:
  icu::Locale locale_;
  std::unique_ptr<icu::TimeZone> zone_;
  std::string cLocale_;
};

TEST(LocaleTest, ForeignDefaultsChangeNothingWrittenOrRead) {
  const std::string home = Exported(Dictionary());
  {
    const ForeignSettings foreign;
    EXPECT_EQ(Exported(Dictionary()), home);
    const DMMetaData read(home, nullptr);
    EXPECT_EQ(Exported(read), home);
    const DMMetaData original = Dictionary();
    ASSERT_EQ(read.FieldCount(), original.FieldCount());
    for (unsigned i = 0; i < read.FieldCount(); ++i) {
      dmtest::ExpectSameField(*read.GetField(i), *original.GetField(i));
    }
  }
  EXPECT_EQ(Exported(Dictionary()), home);
}

TEST(LocaleTest, WrittenRealNumbersKeepTheirPoint) {
  const ForeignSettings foreign;
  const std::string text = Exported(Dictionary());
  EXPECT_NE(text.find("weightedCount=\"1233.75\""), std::string::npos);
  EXPECT_NE(text.find("weightedDroppedCount=\"0.125\""), std::string::npos);
}

}  // namespace

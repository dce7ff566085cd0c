// Hostile documents: each gets the defined result for bad input within a
// bound on time and memory, and never overflows the stack.

#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#if __has_include(<valgrind/valgrind.h>)
#include <valgrind/valgrind.h>
#endif

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/metadata/dmmetadata.h"
#include "dmcommon/printable/dmprintable.h"
#include "dmcommon/stats/dmcatstatsimp.h"
#include "dmcommon/summaries/dmdatasetsummaries.h"
#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/robustness/allocationtracker.h"

namespace {

using DmExtension::DM_XML_OK;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;

constexpr std::size_t kMiB = 1024 * 1024;

// Wall time of one call, in seconds.
template <typename Call>
double SecondsOf(Call call) {
  const auto start = std::chrono::steady_clock::now();
  call();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The sanitizers and valgrind slow everything many times over; time bounds
// are for the hostile input's growth, not for the instrumentation.
double Slowdown() {
#if __has_include(<valgrind/valgrind.h>)
  if (RUNNING_ON_VALGRIND) return 50.0;
#endif
#if defined(__SANITIZE_ADDRESS__)
  return 10.0;
#else
  return 1.0;
#endif
}

// Ten levels of ten references each: 10^10 expansions of "lol" when nothing
// stops them.
std::string BillionLaughs(const std::string& root) {
  std::string text = "<?xml version=\"1.0\"?><!DOCTYPE " + root + " [<!ENTITY l0 \"lol\">";
  for (int level = 1; level <= 10; ++level) {
    text += "<!ENTITY l" + std::to_string(level) + " \"";
    for (int i = 0; i < 10; ++i) text += "&l" + std::to_string(level - 1) + ";";
    text += "\">";
  }
  return text + "]>";
}

TEST(HostileDocumentTest, EntityExpansionIsRefusedQuicklyAndSmall) {
  const std::string text =
      BillionLaughs("DataModel") +
      R"(<DataModel><Fields><Field name="a" displayLabel="&l10;"/></Fields></DataModel>)";
  const dmtest::AllocationPeak peak;
  double seconds = SecondsOf([&] {
    DMXMLWrapper document;
    document.loadFromContents(text.c_str());
    EXPECT_EQ(document.getElement(), nullptr);
  });
  seconds += SecondsOf([&] {
    const DMMetaData metadata(text, nullptr);
    EXPECT_EQ(metadata.FieldCount(), 0u);
  });
  EXPECT_LT(seconds, 1.0 * Slowdown());
  EXPECT_LT(peak.Bytes(), 64 * kMiB);
}

// A file the documents below try to reach; it must never be read.
class ExternalEntityTest : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = ::testing::TempDir() + "dmcommon_secret.txt";
    std::ofstream(path_) << "SECRET-7f3a";
  }
  void TearDown() override { std::remove(path_.c_str()); }

  std::string Url() const { return "file://" + path_; }

  std::string path_;
};

// Every document's text as the XML layer serialises it, or "<refused>".
std::string Loaded(const std::string& text) {
  DMXMLWrapper document;
  document.loadFromContents(text.c_str());
  if (document.getElement() == nullptr) return "<refused>";
  std::string serialised;
  document.doc2string(serialised);
  return serialised;
}

TEST_F(ExternalEntityTest, AGeneralEntityNamingALocalFileIsNotRead) {
  const std::string text = "<!DOCTYPE DataModel [<!ENTITY x SYSTEM \"" + Url() +
                           "\">]><DataModel><Fields><Field name=\"a\" displayLabel=\"t\">&x;"
                           "</Field></Fields></DataModel>";
  EXPECT_EQ(Loaded(text).find("SECRET"), std::string::npos);
  const DMMetaData metadata(text, nullptr);
  std::string exported;
  if (metadata.ExportXMLDoc(exported)) {
    EXPECT_EQ(exported.find("SECRET"), std::string::npos);
  }
}

TEST_F(ExternalEntityTest, AParameterEntityNamingALocalFileIsNotRead) {
  const std::string text = "<!DOCTYPE r [<!ENTITY % p SYSTEM \"" + Url() + "\"> %p;]><r>&q;</r>";
  EXPECT_EQ(Loaded(text).find("SECRET"), std::string::npos);
}

TEST_F(ExternalEntityTest, AnExternalSubsetIsNotRead) {
  std::ofstream(path_) << "<!ENTITY q \"SECRET-7f3a\">";
  const std::string text = "<!DOCTYPE r SYSTEM \"" + Url() + "\"><r>&q;</r>";
  EXPECT_EQ(Loaded(text).find("SECRET"), std::string::npos);
}

// `depth` elements named `name`, each inside the one before.
std::string Nested(const std::string& open, const std::string& close, int depth) {
  std::string text;
  text.reserve((open.size() + close.size()) * static_cast<std::size_t>(depth));
  for (int i = 0; i < depth; ++i) text += open;
  for (int i = 0; i < depth; ++i) text += close;
  return text;
}

constexpr int kDeep = 100000;

TEST(HostileDocumentTest, DeeplyNestedElementsLoadWalkAndGoWithoutOverflowingTheStack) {
  const std::string text = Nested("<a>", "</a>", kDeep);
  DMXMLWrapper document;
  document.loadFromContents(text.c_str());
  ASSERT_NE(document.getElement(), nullptr);
  DMXMLIteratorWrapper* all = nullptr;
  ASSERT_EQ(document.getElementIterator("a", &all), DM_XML_OK);
  int count = 0;
  void* item = nullptr;
  while (all->nextItem(&item) == DM_XML_OK) ++count;
  // The deep walk starts below the root.
  EXPECT_EQ(count, kDeep - 1);
}

TEST(HostileDocumentTest, DeeplyNestedDocumentsGetTheirDefinedResults) {
  // Not a dictionary: rejected.
  const DMMetaData metadata(Nested("<DataModel>", "</DataModel>", kDeep), nullptr);
  EXPECT_EQ(metadata.FieldCount(), 0u);
  // Elements a reader does not know are passed over, however deep.
  const DMMetaData fields("<DataModel><Fields>" + Nested("<Field name=\"a\">", "</Field>", kDeep) +
                              "</Fields></DataModel>",
                          nullptr);
  ASSERT_EQ(fields.FieldCount(), 1u);
  EXPECT_EQ(fields.GetField(0u)->GetBaseField(), nullptr);
  const DMDatasetSummaries summaries = DMDatasetSummaries::fromText(
      Nested("<DatasetSummaries>", "</DatasetSummaries>", kDeep).c_str());
  EXPECT_TRUE(summaries.parseSuccess());
  EXPECT_EQ(summaries.getOverallSummaries(), nullptr);
}

TEST(HostileDocumentTest, DeeplyNestedBaseFieldsDoNotOverflowTheStack) {
  const DMMetaData metadata("<DataModel><Fields><Field name=\"a\">" +
                                Nested("<BaseField name=\"b\">", "</BaseField>", kDeep) +
                                "</Field></Fields></DataModel>",
                            nullptr);
  EXPECT_LE(metadata.FieldCount(), 1u);
}

TEST(HostileDocumentTest, DeeplyNestedPrintablesAreRefusedWithoutOverflowingTheStack) {
  const std::string text = Nested("<PrintableList pattern=\"{0}\" isKey=\"false\" mapId=\"0\">",
                                  "</PrintableList>", kDeep);
  DMXMLWrapper document;
  document.loadFromContents(text.c_str());
  ASSERT_NE(document.getElement(), nullptr);
  bool recognised = false;
  std::unique_ptr<DMPrintable> printable(DMPrintable::CreateFromElmt(document, recognised));
  EXPECT_EQ(printable, nullptr);
  EXPECT_TRUE(recognised);
}

// Loading a large input costs at most what the parser's DOM of it costs plus
// what the loaded model keeps, with a tenth to spare: nothing is copied or
// buffered on the way beyond those two, whatever the size.
struct LoadCost {
  std::size_t domPeak = 0;
  std::size_t kept = 0;
  std::size_t peak = 0;
};

template <typename Load>
LoadCost CostOf(const std::string& text, Load load) {
  LoadCost cost;
  {
    const dmtest::AllocationPeak peak;
    {
      DMXMLWrapper document;
      document.loadFromContents(text.c_str());
    }
    cost.domPeak = peak.Bytes();
  }
  const dmtest::AllocationPeak peak;
  load(cost.kept);
  cost.peak = peak.Bytes();
  std::printf("input %zu MiB: DOM peak %zu MiB, model %zu MiB, load peak %zu MiB (%.1f x input)\n",
              text.size() / kMiB, cost.domPeak / kMiB, cost.kept / kMiB, cost.peak / kMiB,
              static_cast<double>(cost.peak) / static_cast<double>(text.size()));
  return cost;
}

void ExpectWithinDomAndModel(const LoadCost& cost) {
  EXPECT_LT(cost.peak, (cost.domPeak + cost.kept) * 11 / 10);
}

TEST(HostileDocumentTest, AHugeAttributeValueLoadsWithinTheDomAndTheModel) {
  constexpr std::size_t kValue = 200 * kMiB;
  std::string text = R"(<DataModel><Fields><Field name="a" displayLabel=")";
  text.append(kValue, 'x');
  text += R"("/></Fields></DataModel>)";
  const LoadCost cost = CostOf(text, [&](std::size_t& kept) {
    const std::size_t before = dmtest::LiveBytes();
    const DMMetaData metadata(text, nullptr);
    kept = dmtest::LiveBytes() - before;
    ASSERT_EQ(metadata.FieldCount(), 1u);
    EXPECT_EQ(metadata.GetField(0u)->GetLabel().size(), kValue);
  });
  ExpectWithinDomAndModel(cost);
  // The label is held once.
  EXPECT_LT(cost.kept, kValue + kMiB);
}

TEST(HostileDocumentTest, AMillionFieldsLoadWithinTheDomAndTheModel) {
  constexpr int kFields = 1000000;
  std::string text = "<DataModel><Fields>";
  for (int i = 0; i < kFields; ++i) text += "<Field name=\"f" + std::to_string(i) + "\"/>";
  text += "</Fields></DataModel>";
  const LoadCost cost = CostOf(text, [&](std::size_t& kept) {
    const std::size_t before = dmtest::LiveBytes();
    const DMMetaData metadata(text, nullptr);
    kept = dmtest::LiveBytes() - before;
    ASSERT_EQ(metadata.FieldCount(), static_cast<unsigned>(kFields));
    EXPECT_EQ(metadata.GetFieldIndex("f999999"), kFields - 1);
  });
  ExpectWithinDomAndModel(cost);
  // A field costs its object, its name and key, and its place in the index.
  EXPECT_LT(cost.kept, kFields * std::size_t{640});
}

TEST(HostileDocumentTest, AMillionCategoriesLoadWithinTheDomAndTheModel) {
  constexpr int kCategories = 1000000;
  std::string text = "<DiscreteStatistics>";
  for (int i = 0; i < kCategories; ++i) {
    text += "<Category category=\"" + std::to_string(i) + "\" sumFreqWts=\"1\"/>";
  }
  text += "</DiscreteStatistics>";
  const LoadCost cost = CostOf(text, [&](std::size_t& kept) {
    const std::size_t before = dmtest::LiveBytes();
    DMXMLWrapper document;
    document.loadFromContents(text.c_str());
    ASSERT_NE(document.getElement(), nullptr);
    const std::size_t dom = dmtest::LiveBytes() - before;
    const DMCatStatsInt stats(document);
    kept = dmtest::LiveBytes() - before - dom;
    EXPECT_EQ(stats.GetNCats(), static_cast<unsigned>(kCategories));
  });
  ExpectWithinDomAndModel(cost);
}

}  // namespace

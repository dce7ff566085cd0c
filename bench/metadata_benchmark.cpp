// Metadata documents of 1,000 to 1,000,000 fields, each path beside its
// anchor in the same run:
//   - Load/N: DMMetaData(text, nullptr) against LoadFloor/N, a bare Xerces DOM
//     parse of the same text (same parser settings) plus a walk over every
//     element transcoding every attribute value to a UTF-8 std::string with
//     one reused transcoder. Rich fields (about 935 bytes each) at 1,000 to
//     100,000 fields; LoadPlain/N and LoadPlainFloor/N the same with plain
//     fields (about 400 bytes each) at 1,000 to 1,000,000, because a
//     million rich fields would need some 15 GB of Xerces DOM;
//   - Export/N: ExportXMLDoc against ExportFloor/N, building the same DOM from
//     UTF-8 strings with bare Xerces calls and serialising it with
//     DOMLSSerializer;
//   - GetAttribute: DMXMLWrapper::getAttribute(name, std::string&, bool&)
//     against DOMElement::getAttribute with a cached UTF-16 name and a reused
//     transcoder;
//   - GetField/1000000: GetField(name) on a 1,000,000-field container against
//     MapFind/1000000, a bare std::unordered_map from the same names;
//   - LoadMemory/N and LoadFloorMemory/N: resident memory around one load.
// Time benchmarks report "ns_per_field" (or items per second); compare ratios,
// not single times. Documents are generated once per size and cached.

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/metadata/dmmetadata.h"
#include "dmcommon/stats/dmcatstatsimp.h"
#include "dmcommon/stats/dmcontstats.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmmissingvalues.h"
#include "dmcommon/values/dmrange.h"
#include "dmcommon/values/dmvalue.h"
#include "dmcommon/xml/dmxmlconverter.h"
#include "dmcommon/xml/dmxmlwrapper.h"

namespace {

namespace xc = XERCES_CPP_NAMESPACE;

using DmExtension::DMXMLConverter;
using DmExtension::DMXMLWrapper;
using Storage = DMField::StorageType;
using Type = DMField::FieldType;
using Role = DMField::RoleType;

constexpr int kSizes[] = {1000, 10000, 100000};
constexpr int kPlainSizes[] = {1000, 10000, 100000, 1000000};
constexpr int kLookupFields = 1000000;
constexpr int kCategories = 5;

enum class Richness { kRich, kPlain };

std::string FieldName(int index) { return "field_" + std::to_string(index); }

// A field as a wide table's columns mostly are: a label, a display format
// and continuous statistics, no value labels or missing values.
DMField MakePlainField(int index) {
  DMField field(FieldName(index), Type::Continuous, Storage::Real, Role::Input);
  field.SetLabel("Label of field " + std::to_string(index));
  const DMNumberFormat format(DMNumberFormat::Standard, 10, 2);
  field.SetPrivateFormat(&format);
  DMContStatsDbl stats;
  for (int k = 0; k < 5; ++k) stats.Update(0.37 * k * k + index % 11);
  field.SetSumStats(&stats);
  return field;
}

// Even fields are nominal integers with five labelled category values and
// categorical statistics; odd fields are continuous reals with a range, five
// value labels and continuous statistics. Every field has a label, missing
// values and a private number format.
DMField MakeField(int index) {
  const bool categorical = index % 2 == 0;
  DMField field(FieldName(index), categorical ? Type::Nominal : Type::Continuous,
                categorical ? Storage::Integer : Storage::Real, Role::Input);
  field.SetLabel("Label of field " + std::to_string(index));
  std::vector<DMValue> values;
  for (int k = 1; k <= kCategories; ++k) {
    const std::string label = "Category " + std::to_string(k) + " of " + std::to_string(index);
    values.emplace_back(
        categorical ? DMDatum(static_cast<long long>(k)) : DMDatum(static_cast<double>(k) + 0.5),
        label);
  }
  if (categorical) {
    field.SetValues(values);
    field.SetMissingValues(DMMissingValues(DMRange(DMDatum(90LL), DMDatum(99LL)),
                                           {DMValue(DMDatum(-1LL))}, false, false));
    const DMNumberFormat format(DMNumberFormat::Standard, 8, 0);
    field.SetPrivateFormat(&format);
    DMCatStatsInt stats;
    for (int k = 1; k <= kCategories; ++k) stats.Update(k, 1.0 + k + index % 7);
    field.SetSumStats(&stats);
  } else {
    field.SetRange(DMRange(DMDatum(0.0), DMDatum(100.0)));
    field.SetValueLabels(values);
    field.SetMissingValues(DMMissingValues(DMRange(DMDatum(-99.0), DMDatum(-90.0)),
                                           {DMValue(DMDatum(-1.0))}, true, false));
    const DMNumberFormat format(DMNumberFormat::Standard, 10, 2);
    field.SetPrivateFormat(&format);
    DMContStatsDbl stats;
    for (int k = 0; k < 20; ++k) stats.Update(0.37 * k * k + index % 11, 1.0 + k % 3, 1.0);
    field.SetSumStats(&stats);
  }
  return field;
}

// The document of `fields` fields, generated once per size and richness.
const std::string& Document(int fields, Richness richness = Richness::kRich) {
  static std::map<std::pair<int, Richness>, std::string> cache;
  auto found = cache.find({fields, richness});
  if (found != cache.end()) return found->second;
  DMMetaData metadata(nullptr);
  for (int i = 0; i < fields; ++i) {
    metadata.AppendField(richness == Richness::kRich ? MakeField(i) : MakePlainField(i));
  }
  std::string text;
  if (!metadata.ExportXMLDoc(text)) text.clear();
  return cache.emplace(std::make_pair(fields, richness), std::move(text)).first->second;
}

// The document's bytes without the terminator some writers leave inside the
// length.
std::size_t TextLength(const std::string& text) {
  std::size_t length = text.size();
  while (length > 0 && text[length - 1] == '\0') --length;
  return length;
}

// ---------------------------------------------------------------------------
// Transcoding with one reused transcoder and reused buffers

class Utf8Writer {
 public:
  // UTF-16 `text` of `length` units into `out` as UTF-8.
  void Convert(const XMLCh* text, XMLSize_t length, std::string& out) {
    out.resize(length * 3 + 4);
    XMLSize_t eaten = 0;
    const XMLSize_t written =
        transcoder_->transcodeTo(text, length, reinterpret_cast<XMLByte*>(&out[0]), out.size(),
                                 eaten, xc::XMLTranscoder::UnRep_RepChar);
    out.resize(written);
  }
  void Convert(const XMLCh* text, std::string& out) {
    Convert(text, xc::XMLString::stringLen(text), out);
  }

 private:
  xc::XMLTranscoder* transcoder_ = DMXMLConverter::getTranscoder();
};

class Utf16Writer {
 public:
  // UTF-8 `text` as zero-terminated UTF-16; valid until the next call.
  const XMLCh* Convert(const std::string& text) {
    if (wide_.size() < text.size() + 1) {
      wide_.resize(text.size() + 1);
      sizes_.resize(text.size() + 1);
    }
    XMLSize_t eaten = 0;
    const XMLSize_t written =
        transcoder_->transcodeFrom(reinterpret_cast<const XMLByte*>(text.data()), text.size(),
                                   wide_.data(), wide_.size() - 1, eaten, sizes_.data());
    wide_[written] = 0;
    return wide_.data();
  }

 private:
  xc::XMLTranscoder* transcoder_ = DMXMLConverter::getTranscoder();
  std::vector<XMLCh> wide_;
  std::vector<unsigned char> sizes_;
};

// ---------------------------------------------------------------------------
// Bare Xerces parsing with the settings of the XML layer

std::unique_ptr<xc::XercesDOMParser> Parse(const std::string& text) {
  xc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), TextLength(text),
                               "bench", false);
  auto parser = std::make_unique<xc::XercesDOMParser>();
  parser->setValidationScheme(xc::XercesDOMParser::Val_Never);
  parser->setDoSchema(false);
  parser->setLoadExternalDTD(false);
  parser->setDisableDefaultEntityResolution(true);
  parser->parse(source);
  return parser;
}

// Reads every attribute of `element` and its descendants into `value`;
// returns the number of elements.
std::size_t Walk(const xc::DOMElement* element, Utf8Writer& writer, std::string& value) {
  std::size_t elements = 1;
  const xc::DOMNamedNodeMap* attributes = element->getAttributes();
  const XMLSize_t count = attributes->getLength();
  for (XMLSize_t i = 0; i < count; ++i) {
    writer.Convert(attributes->item(i)->getNodeValue(), value);
    benchmark::DoNotOptimize(value.data());
  }
  for (const xc::DOMElement* child = element->getFirstElementChild(); child != nullptr;
       child = child->getNextElementSibling()) {
    elements += Walk(child, writer, value);
  }
  return elements;
}

void SetPerField(benchmark::State& state, int fields) {
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * fields);
  state.counters["ns_per_field"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * fields * 1e-9,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// ---------------------------------------------------------------------------
// Load

void BM_Load(benchmark::State& state, int fields, Richness richness) {
  const std::string& text = Document(fields, richness);
  for (auto _ : state) {
    DMMetaData metadata(text, nullptr);
    if (metadata.FieldCount() != static_cast<unsigned>(fields)) {
      state.SkipWithError("the document did not load");
      break;
    }
  }
  SetPerField(state, fields);
  state.counters["doc_bytes"] = static_cast<double>(TextLength(text));
}

void BM_LoadFloor(benchmark::State& state, int fields, Richness richness) {
  const std::string& text = Document(fields, richness);
  Utf8Writer writer;
  std::string value;
  for (auto _ : state) {
    auto parser = Parse(text);
    const xc::DOMDocument* document = parser->getDocument();
    if (parser->getErrorCount() != 0 || document == nullptr) {
      state.SkipWithError("the document did not parse");
      break;
    }
    benchmark::DoNotOptimize(Walk(document->getDocumentElement(), writer, value));
  }
  SetPerField(state, fields);
  state.counters["doc_bytes"] = static_cast<double>(TextLength(text));
}

// ---------------------------------------------------------------------------
// Export

// A document as plain UTF-8 data, the starting point of the bare Xerces
// writer (as the container is of its own).
struct Node {
  std::string name;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<Node> children;
};

Node ToTree(const xc::DOMElement* element, Utf8Writer& writer) {
  Node node;
  writer.Convert(element->getTagName(), node.name);
  const xc::DOMNamedNodeMap* attributes = element->getAttributes();
  for (XMLSize_t i = 0; i < attributes->getLength(); ++i) {
    std::pair<std::string, std::string> attribute;
    writer.Convert(attributes->item(i)->getNodeName(), attribute.first);
    writer.Convert(attributes->item(i)->getNodeValue(), attribute.second);
    node.attributes.push_back(std::move(attribute));
  }
  for (const xc::DOMElement* child = element->getFirstElementChild(); child != nullptr;
       child = child->getNextElementSibling()) {
    node.children.push_back(ToTree(child, writer));
  }
  return node;
}

const Node& Tree(int fields) {
  static std::map<int, Node> cache;
  auto found = cache.find(fields);
  if (found != cache.end()) return found->second;
  auto parser = Parse(Document(fields));
  Utf8Writer writer;
  return cache.emplace(fields, ToTree(parser->getDocument()->getDocumentElement(), writer))
      .first->second;
}

void Build(const Node& node, xc::DOMDocument* document, xc::DOMElement* element, Utf16Writer& names,
           Utf16Writer& values) {
  for (const auto& [name, value] : node.attributes) {
    element->setAttribute(names.Convert(name), values.Convert(value));
  }
  for (const Node& child : node.children) {
    xc::DOMElement* created = document->createElement(names.Convert(child.name));
    element->appendChild(created);
    Build(child, document, created, names, values);
  }
}

const DMMetaData& Loaded(int fields) {
  static std::map<int, std::unique_ptr<DMMetaData>> cache;
  auto found = cache.find(fields);
  if (found != cache.end()) return *found->second;
  return *cache.emplace(fields, std::make_unique<DMMetaData>(Document(fields), nullptr))
              .first->second;
}

void BM_Export(benchmark::State& state, int fields) {
  const DMMetaData& metadata = Loaded(fields);
  std::string text;
  for (auto _ : state) {
    if (!metadata.ExportXMLDoc(text)) {
      state.SkipWithError("nothing was written");
      break;
    }
    benchmark::DoNotOptimize(text.data());
  }
  SetPerField(state, fields);
  state.counters["doc_bytes"] = static_cast<double>(TextLength(text));
}

void BM_ExportFloor(benchmark::State& state, int fields) {
  const Node& tree = Tree(fields);
  Utf16Writer names;
  Utf16Writer values;
  static const XMLCh kCore[] = u"Core";
  xc::DOMImplementation* implementation =
      xc::DOMImplementationRegistry::getDOMImplementation(kCore);
  std::string text;
  for (auto _ : state) {
    xc::DOMDocument* document =
        implementation->createDocument(nullptr, names.Convert(tree.name), nullptr);
    Build(tree, document, document->getDocumentElement(), names, values);
    xc::DOMLSSerializer* serializer = implementation->createLSSerializer();
    xc::DOMLSOutput* output = implementation->createLSOutput();
    serializer->getDomConfig()->setParameter(xc::XMLUni::fgDOMWRTFormatPrettyPrint, false);
    xc::MemBufFormatTarget target(1023);
    output->setByteStream(&target);
    serializer->write(document, output);
    text.assign(reinterpret_cast<const char*>(target.getRawBuffer()), target.getLen());
    output->release();
    serializer->release();
    document->release();
    benchmark::DoNotOptimize(text.data());
  }
  SetPerField(state, fields);
  state.counters["doc_bytes"] = static_cast<double>(text.size());
}

// ---------------------------------------------------------------------------
// One attribute

// The parser holding the 1,000-field document for the attribute benchmarks;
// main releases it before the XML layer shuts down.
std::unique_ptr<xc::XercesDOMParser> attributeParser;

// The Field elements of the 1,000-field document, parsed once.
const std::vector<xc::DOMElement*>& FieldElements() {
  static std::vector<xc::DOMElement*> elements;
  if (attributeParser == nullptr) {
    attributeParser = Parse(Document(1000));
    xc::DOMNodeList* list = attributeParser->getDocument()->getElementsByTagName(u"Field");
    for (XMLSize_t i = 0; i < list->getLength(); ++i) {
      elements.push_back(static_cast<xc::DOMElement*>(list->item(i)));
    }
  }
  return elements;
}

void BM_WrapperGetAttribute(benchmark::State& state) {
  const auto& elements = FieldElements();
  std::vector<std::unique_ptr<DMXMLWrapper>> handles;
  for (xc::DOMElement* element : elements)
    handles.push_back(std::make_unique<DMXMLWrapper>(element));
  std::string value;
  bool found = false;
  std::size_t i = 0;
  for (auto _ : state) {
    handles[i]->getAttribute("displayLabel", value, found);
    benchmark::DoNotOptimize(value.data());
    benchmark::DoNotOptimize(found);
    if (++i == handles.size()) i = 0;
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

void BM_DomGetAttribute(benchmark::State& state) {
  const auto& elements = FieldElements();
  static const XMLCh kName[] = u"displayLabel";
  Utf8Writer writer;
  std::string value;
  std::size_t i = 0;
  for (auto _ : state) {
    writer.Convert(elements[i]->getAttribute(kName), value);
    benchmark::DoNotOptimize(value.data());
    if (++i == elements.size()) i = 0;
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

// ---------------------------------------------------------------------------
// Lookup by name

// The plain container of `fields` fields, built in memory once.
const DMMetaData& Built(int fields) {
  static std::map<int, std::unique_ptr<DMMetaData>> cache;
  auto found = cache.find(fields);
  if (found != cache.end()) return *found->second;
  auto metadata = std::make_unique<DMMetaData>(nullptr);
  for (int i = 0; i < fields; ++i) metadata->AppendField(MakePlainField(i));
  return *cache.emplace(fields, std::move(metadata)).first->second;
}

void BM_GetField(benchmark::State& state, int fields) {
  const DMMetaData& metadata = Built(fields);
  std::vector<std::string> names;
  names.reserve(fields);
  for (int i = 0; i < fields; ++i) names.push_back(FieldName(i));
  std::shuffle(names.begin(), names.end(), std::mt19937(7));
  std::size_t i = 0;
  for (auto _ : state) {
    const DMField* field = metadata.GetField(names[i]);
    benchmark::DoNotOptimize(field);
    if (field == nullptr) {
      state.SkipWithError("a field was not found");
      break;
    }
    if (++i == names.size()) i = 0;
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

// Anchor: a bare std::unordered_map from the same names to indices, built
// fresh (so more compact in memory than the container's index).
void BM_MapFind(benchmark::State& state, int fields) {
  std::unordered_map<std::string, std::size_t> index;
  std::vector<std::string> names;
  names.reserve(fields);
  for (int i = 0; i < fields; ++i) {
    names.push_back(FieldName(i));
    index.emplace(names.back(), static_cast<std::size_t>(i));
  }
  std::shuffle(names.begin(), names.end(), std::mt19937(7));
  std::size_t i = 0;
  for (auto _ : state) {
    auto found = index.find(names[i]);
    benchmark::DoNotOptimize(found);
    if (++i == names.size()) i = 0;
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

// ---------------------------------------------------------------------------
// Memory
//
// Linux only: VmRSS and VmHWM from /proc/self/status, with the peak reset by
// writing 5 to /proc/self/clear_refs. Resident memory counts pages, not
// allocations: memory the allocator keeps after a free is counted until
// malloc_trim returns it (called before each reading of the container),
// pages reused from earlier frees are not counted again, and the generated
// document and other caches are part of the base.

struct Memory {
  double rss = 0;   // bytes resident now
  double peak = 0;  // bytes resident at most since the last reset
};

Memory ReadMemory() {
  Memory memory;
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    long long kb = 0;
    if (std::sscanf(line.c_str(), "VmRSS: %lld kB", &kb) == 1) memory.rss = kb * 1024.0;
    if (std::sscanf(line.c_str(), "VmHWM: %lld kB", &kb) == 1) memory.peak = kb * 1024.0;
  }
  return memory;
}

bool ResetPeak() {
  std::ofstream refs("/proc/self/clear_refs");
  refs << "5";
  refs.flush();
  return static_cast<bool>(refs);
}

void MeasureMemory(benchmark::State& state, int fields, bool floor) {
  const std::string& text = Document(fields);
  double peakDelta = 0;
  double keptDelta = 0;
  bool reset = true;
  for (auto _ : state) {
    malloc_trim(0);
    reset = ResetPeak() && reset;
    const Memory before = ReadMemory();
    Memory after;
    if (floor) {
      auto parser = Parse(text);
      after = ReadMemory();
    } else {
      DMMetaData metadata(text, nullptr);
      // Return what the parse freed, so that the container is what stays.
      malloc_trim(0);
      after = ReadMemory();
      benchmark::DoNotOptimize(metadata.FieldCount());
    }
    peakDelta = std::max(peakDelta, after.peak - before.rss);
    keptDelta = std::max(keptDelta, after.rss - before.rss);
  }
  state.counters["doc_bytes"] = static_cast<double>(TextLength(text));
  state.counters["peak_bytes"] = peakDelta;
  state.counters["kept_bytes"] = keptDelta;
  state.counters["peak_per_doc_byte"] = peakDelta / static_cast<double>(TextLength(text));
  state.counters["kept_per_doc_byte"] = keptDelta / static_cast<double>(TextLength(text));
  if (!reset) state.SetLabel("peak not reset: peak_bytes is the process peak");
}

}  // namespace

int main(int argc, char** argv) {
  DMXMLWrapper::startup(false);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

  for (const int fields : kSizes) {
    const std::string n = "/" + std::to_string(fields);
    const double minTime = fields >= 100000 ? 1.0 : 0.5;
    benchmark::RegisterBenchmark(("Load" + n).c_str(), BM_Load, fields, Richness::kRich)
        ->Unit(benchmark::kMillisecond)
        ->MinTime(minTime);
    benchmark::RegisterBenchmark(("LoadFloor" + n).c_str(), BM_LoadFloor, fields, Richness::kRich)
        ->Unit(benchmark::kMillisecond)
        ->MinTime(minTime);
  }
  for (const int fields : kPlainSizes) {
    const std::string n = "/" + std::to_string(fields);
    // A million fields take seconds per load: one load per repetition.
    const auto configure = [fields](benchmark::internal::Benchmark* b) {
      b->Unit(benchmark::kMillisecond);
      if (fields >= 1000000) {
        b->Iterations(1);
      } else {
        b->MinTime(fields >= 100000 ? 1.0 : 0.5);
      }
    };
    configure(
        benchmark::RegisterBenchmark(("LoadPlain" + n).c_str(), BM_Load, fields, Richness::kPlain));
    configure(benchmark::RegisterBenchmark(("LoadPlainFloor" + n).c_str(), BM_LoadFloor, fields,
                                           Richness::kPlain));
  }
  for (const int fields : kSizes) {
    const std::string n = "/" + std::to_string(fields);
    const double minTime = fields >= 100000 ? 1.0 : 0.5;
    benchmark::RegisterBenchmark(("Export" + n).c_str(), BM_Export, fields)
        ->Unit(benchmark::kMillisecond)
        ->MinTime(minTime);
    benchmark::RegisterBenchmark(("ExportFloor" + n).c_str(), BM_ExportFloor, fields)
        ->Unit(benchmark::kMillisecond)
        ->MinTime(minTime);
  }
  benchmark::RegisterBenchmark("GetAttribute/Wrapper", BM_WrapperGetAttribute);
  benchmark::RegisterBenchmark("GetAttribute/Dom", BM_DomGetAttribute);
  benchmark::RegisterBenchmark("GetField/1000000", BM_GetField, kLookupFields);
  benchmark::RegisterBenchmark("MapFind/1000000", BM_MapFind, kLookupFields);
  for (const int fields : {1000, 100000}) {
    const std::string n = "/" + std::to_string(fields);
    benchmark::RegisterBenchmark(("LoadMemory" + n).c_str(), MeasureMemory, fields, false)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
    benchmark::RegisterBenchmark(("LoadFloorMemory" + n).c_str(), MeasureMemory, fields, true)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
  }

  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  attributeParser.reset();
  DMXMLWrapper::shutdown(false);
  return 0;
}

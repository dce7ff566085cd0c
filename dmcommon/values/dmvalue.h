#ifndef DMCOMMON_VALUES_DMVALUE_H
#define DMCOMMON_VALUES_DMVALUE_H

#include <string>
#include <vector>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

/// Data partitions a value can stand for, with their XML entities.
inline constexpr DMEnumDictEntry gPartitionDict[] = {
    {1, DmCppHelperV1::XMLEntities::Training},
    {2, DmCppHelperV1::XMLEntities::Testing},
    {3, DmCppHelperV1::XMLEntities::Validation},
    {0, nullptr},
};

/// One value of a field as the dataset dictionary describes it: the datum,
/// its display label, whether a flag field takes it as true or false, and the
/// data partition it stands for. Value labels, category values and missing
/// values are vectors of it.
class DMCOMMON_EXPORT DMValue {
 public:
  /// A null integer datum, no label, no flag, no partition.
  DMValue();
  /// `flag`: 0 none, 1 the flag field's true value, 2 its false value.
  /// `partition`: 0 none, 1 training, 2 testing, 3 validation.
  DMValue(const DMDatum& datum, const std::string& label = "", unsigned flag = 0,
          unsigned partition = 0);
  /// Reads a value element: its value attribute as a datum of `type`, then the
  /// flag, partition and display label. An element that cannot be read, or
  /// whose value is an infinity or not-a-number, gives a null integer datum
  /// with empty texts; flag and partition keep what was read before the
  /// failure.
  DMValue(const DmExtension::DMXMLWrapper& element, DMDatum::DataType type);
  DMValue(const DMValue& other);
  DMValue& operator=(const DMValue& other);
  ~DMValue();

  const DMDatum& GetDatum() const;
  const std::string& GetLabel() const;
  unsigned GetFlag() const;
  unsigned GetPartition() const;
  /// For a real value read from XML, the attribute text exactly as read, so
  /// that writing gives it back unchanged; empty otherwise.
  const std::string& GetValueText() const;

  void SetLabel(const std::string& label);
  void SetFlag(unsigned flag);
  void SetPartition(unsigned partition);

  /// The index of the first element of `list` whose datum equals `datum`
  /// exactly; -1 when there is none; -2 when the search cannot be made (a null
  /// `datum`, or an element that is null or of another type is met first).
  static int GetIndex(const DMDatum& datum, const std::vector<DMValue>& list);
  /// The same for a text: -2 for a null `text` or a list of non-texts.
  static int GetIndex(const char* text, const std::vector<DMValue>& list);
  /// 1 when `GetIndex` finds the datum, 0 when it does not, 2 when the search
  /// cannot be made.
  static int SearchList(const DMDatum& datum, const std::vector<DMValue>& list);
  /// The same for a text.
  static int SearchList(const char* text, const std::vector<DMValue>& list);

 private:
  void MakeEmpty();

  DMDatum datum;
  std::string label;
  unsigned flag;
  unsigned partition;
  std::string valueText;
};

#endif  // DMCOMMON_VALUES_DMVALUE_H

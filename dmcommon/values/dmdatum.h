#ifndef DMCOMMON_VALUES_DMDATUM_H
#define DMCOMMON_VALUES_DMDATUM_H

#include <memory>
#include <string>

#include "dmcommon/dmcommon_export.h"

/// The one scalar the library passes around: nothing (null), a signed 64-bit
/// integer, a double, or an owned UTF-8 text.
class DMCOMMON_EXPORT DMDatum {
 public:
  /// Which member of the value is valid.
  enum DataType : int {
    IntegerType = 0,
    RealType = 1,
    StringType = 2,
  };

  /// A null datum of `IntegerType` with value 0.
  DMDatum();
  explicit DMDatum(long long value);
  explicit DMDatum(double value);
  /// An owned copy of `text`; a null pointer gives a null `StringType` datum.
  explicit DMDatum(const char* text);
  explicit DMDatum(const std::string& text);
  DMDatum(const DMDatum& other);
  DMDatum& operator=(const DMDatum& other);
  virtual ~DMDatum();

  bool IsNull() const;
  DataType GetType() const;
  /// The integer; 0 unless the datum holds an integer.
  long long GetInteger() const;
  /// The real number; 0 unless the datum holds a real number.
  double GetReal() const;
  /// The owned text, valid while the datum is unchanged; null unless the
  /// datum holds a text.
  const char* GetString() const;
  /// For a text, its length in bytes including the terminator; 0 otherwise.
  unsigned long long GetSize() const;

  /// Makes the datum null, keeping its type.
  void SetNull();
  /// Makes the datum a null of `type`.
  void SetNull(DataType type);
  void SetInteger(long long value);
  void SetReal(double value);
  /// Stores an owned copy of `text`; a null pointer makes a null `StringType`.
  void SetString(const char* text);

  /// 2 when either datum is null or the types differ. Integers and reals: -1,
  /// 0 or 1 (a real not-a-number compares as 1). Two texts: the difference of
  /// the first differing bytes taken as unsigned char, not reduced to -1 or 1,
  /// so a difference of exactly 2 reads as "not comparable" to callers.
  int Compare(const DMDatum& other) const;
  /// Writes the datum as attribute text: integers with "%lld", reals with
  /// "%.15g" (never with a decimal comma), texts as they are. A null datum
  /// writes "-INF" for a negative `infinitySign`, "INF" for a positive one,
  /// and returns false with `text` empty for 0.
  bool ToString(std::string& text, int infinitySign) const;

 private:
  void Clear();

  bool isNull;
  DataType type;
  unsigned long long size;
  union {
    long long integer;
    double real;
  } value;
  // The text of a `StringType` datum: `size` bytes including the terminator.
  std::unique_ptr<char[]> text_;
};

#endif  // DMCOMMON_VALUES_DMDATUM_H

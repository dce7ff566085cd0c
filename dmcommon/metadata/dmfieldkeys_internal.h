#ifndef DMCOMMON_METADATA_DMFIELDKEYS_INTERNAL_H
#define DMCOMMON_METADATA_DMFIELDKEYS_INTERNAL_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dmmetadata_internal {

/// The lookup keys of a container's fields, in field order, with a hash index
/// beside them. Keys are unique, so the index's one entry per key is the first
/// match a walk over the keys would find; the index only makes finding it
/// constant time on average, for dictionaries of a million fields.
///
/// The index is open addressing with linear probing over a flat array of
/// 8-byte slots (32 bits of the key's hash and the key's position), kept at
/// most half full. A lookup touches one slot and, when the hash bits agree,
/// the key itself; node-based maps scatter their nodes over the heap and pay
/// a cache miss more per lookup.
class FieldKeys {
 public:
  static constexpr long kAbsent = -1;

  std::size_t Size() const { return keys_.size(); }
  const std::string& At(std::size_t index) const { return keys_[index]; }

  /// The position of `key`, or `kAbsent`.
  long Find(std::string_view key) const {
    if (slots_.empty()) return kAbsent;
    const std::uint32_t hash = Hash(key);
    for (std::size_t slot = hash & Mask();; slot = (slot + 1) & Mask()) {
      const Slot& entry = slots_[slot];
      if (entry.position == 0) return kAbsent;
      if (entry.hash == hash && keys_[entry.position - 1] == key) {
        return static_cast<long>(entry.position - 1);
      }
    }
  }

  /// Adds `key`, which must be absent, after the last one.
  void Append(std::string key) {
    keys_.push_back(std::move(key));
    Reserve(keys_.size());
    Place(Hash(keys_.back()), static_cast<std::uint32_t>(keys_.size()));
  }

  /// Gives the key at `index` the text `key`, which must be absent or be the
  /// key's own.
  void Replace(std::size_t index, std::string key) {
    if (keys_[index] == key) return;
    Unplace(index);
    keys_[index] = std::move(key);
    Place(Hash(keys_[index]), static_cast<std::uint32_t>(index + 1));
  }

  /// Removes the key at `index`; the keys after it move up by one.
  void Remove(std::size_t index) {
    keys_.erase(keys_.begin() + static_cast<std::ptrdiff_t>(index));
    // Every later position changes, which costs as much as building anew.
    Rebuild();
  }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    // One more than the key's index; 0 marks an empty slot.
    std::uint32_t position = 0;
  };

  static std::uint32_t Hash(std::string_view key) {
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(key));
  }

  std::size_t Mask() const { return slots_.size() - 1; }

  // Grows the table, a power of two, so that `count` keys fill at most half.
  void Reserve(std::size_t count) {
    std::size_t size = slots_.empty() ? 16 : slots_.size();
    while (size < 2 * count) size *= 2;
    if (size == slots_.size()) return;
    std::vector<Slot> old(size);
    old.swap(slots_);
    for (const Slot& entry : old) {
      if (entry.position != 0) Place(entry.hash, entry.position);
    }
  }

  void Place(std::uint32_t hash, std::uint32_t position) {
    std::size_t slot = hash & Mask();
    while (slots_[slot].position != 0) slot = (slot + 1) & Mask();
    slots_[slot] = Slot{hash, position};
  }

  // Takes the key at `index` out of the table. The entries after it in its
  // probe run shift back into the gap, so that no lookup stops early at it.
  void Unplace(std::size_t index) {
    const auto position = static_cast<std::uint32_t>(index + 1);
    std::size_t gap = Hash(keys_[index]) & Mask();
    while (slots_[gap].position != position) gap = (gap + 1) & Mask();
    for (std::size_t next = (gap + 1) & Mask(); slots_[next].position != 0;
         next = (next + 1) & Mask()) {
      const std::size_t home = slots_[next].hash & Mask();
      // The entry may move back to the gap only when its home slot does not
      // lie after the gap in the circular run (gap, next].
      const bool homeInRun =
          gap <= next ? (home > gap && home <= next) : (home > gap || home <= next);
      if (homeInRun) continue;
      slots_[gap] = slots_[next];
      gap = next;
    }
    slots_[gap] = Slot{};
  }

  void Rebuild() {
    slots_.assign(slots_.size(), Slot{});
    for (std::size_t i = 0; i < keys_.size(); ++i) {
      Place(Hash(keys_[i]), static_cast<std::uint32_t>(i + 1));
    }
  }

  std::vector<std::string> keys_;
  std::vector<Slot> slots_;
};

}  // namespace dmmetadata_internal

#endif  // DMCOMMON_METADATA_DMFIELDKEYS_INTERNAL_H

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/metadata/dmfieldkeys_internal.h"

namespace {

using dmmetadata_internal::FieldKeys;

// The first match of a walk over `keys`, which the index must reproduce.
long Walk(const std::vector<std::string>& keys, const std::string& key) {
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (keys[i] == key) return static_cast<long>(i);
  }
  return FieldKeys::kAbsent;
}

void ExpectSameAsWalk(const FieldKeys& index, const std::vector<std::string>& keys, int keySpace) {
  ASSERT_EQ(index.Size(), keys.size());
  for (std::size_t i = 0; i < keys.size(); ++i) ASSERT_EQ(index.At(i), keys[i]);
  for (int k = 0; k < keySpace; ++k) {
    const std::string key = "k" + std::to_string(k);
    ASSERT_EQ(index.Find(key), Walk(keys, key)) << key;
  }
}

TEST(FieldKeysTest, AnEmptyIndexFindsNothing) {
  const FieldKeys index;
  EXPECT_EQ(index.Size(), 0u);
  EXPECT_EQ(index.Find(""), FieldKeys::kAbsent);
  EXPECT_EQ(index.Find("a"), FieldKeys::kAbsent);
}

TEST(FieldKeysTest, KeysAreFoundAtTheirPositions) {
  FieldKeys index;
  index.Append("a");
  index.Append("b");
  index.Append("c");
  EXPECT_EQ(index.Find("a"), 0);
  EXPECT_EQ(index.Find("b"), 1);
  EXPECT_EQ(index.Find("c"), 2);
  EXPECT_EQ(index.Find("A"), FieldKeys::kAbsent);
  EXPECT_EQ(index.Find("ab"), FieldKeys::kAbsent);
}

TEST(FieldKeysTest, ReplacingAKeyByItselfChangesNothing) {
  FieldKeys index;
  index.Append("a");
  index.Append("b");
  index.Replace(1, "b");
  EXPECT_EQ(index.Find("b"), 1);
  index.Replace(1, "z");
  EXPECT_EQ(index.Find("b"), FieldKeys::kAbsent);
  EXPECT_EQ(index.Find("z"), 1);
  EXPECT_EQ(index.At(1), "z");
}

TEST(FieldKeysTest, RemovingMovesLaterKeysUp) {
  FieldKeys index;
  for (const char* key : {"a", "b", "c", "d"}) index.Append(key);
  index.Remove(0);
  EXPECT_EQ(index.Find("a"), FieldKeys::kAbsent);
  EXPECT_EQ(index.Find("b"), 0);
  EXPECT_EQ(index.Find("d"), 2);
  index.Remove(2);
  EXPECT_EQ(index.Find("d"), FieldKeys::kAbsent);
  EXPECT_EQ(index.Find("c"), 1);
  index.Remove(0);
  index.Remove(0);
  EXPECT_EQ(index.Size(), 0u);
  EXPECT_EQ(index.Find("c"), FieldKeys::kAbsent);
  index.Append("c");
  EXPECT_EQ(index.Find("c"), 0);
}

// Random appends, renames and removals over a small key space: the tables
// stay small, so probe runs collide, wrap around the end of the table and
// are shifted back by renames, all of which a walk over the keys checks.
TEST(FieldKeysTest, MatchesAWalkOverTheKeysThroughRandomEdits) {
  constexpr int kKeySpace = 300;
  std::mt19937 random(12345);
  std::uniform_int_distribution<int> pick(0, kKeySpace - 1);
  FieldKeys index;
  std::vector<std::string> keys;
  for (int step = 0; step < 4000; ++step) {
    const std::string key = "k" + std::to_string(pick(random));
    const int operation = static_cast<int>(random() % 10);
    if (operation < 5) {
      if (Walk(keys, key) == FieldKeys::kAbsent) {
        index.Append(key);
        keys.push_back(key);
      }
    } else if (operation < 9) {
      if (keys.empty()) continue;
      const std::size_t at = random() % keys.size();
      const long holder = Walk(keys, key);
      if (holder != FieldKeys::kAbsent && static_cast<std::size_t>(holder) != at) continue;
      index.Replace(at, key);
      keys[at] = key;
    } else {
      if (keys.empty()) continue;
      const std::size_t at = random() % keys.size();
      index.Remove(at);
      keys.erase(keys.begin() + static_cast<std::ptrdiff_t>(at));
    }
    if (step % 50 == 0) ExpectSameAsWalk(index, keys, kKeySpace);
  }
  ExpectSameAsWalk(index, keys, kKeySpace);
}

TEST(FieldKeysTest, CopiesAreIndependent) {
  FieldKeys index;
  index.Append("a");
  FieldKeys copy = index;
  copy.Replace(0, "b");
  EXPECT_EQ(index.Find("a"), 0);
  EXPECT_EQ(index.Find("b"), FieldKeys::kAbsent);
  EXPECT_EQ(copy.Find("b"), 0);
  EXPECT_EQ(copy.Find("a"), FieldKeys::kAbsent);
}

}  // namespace

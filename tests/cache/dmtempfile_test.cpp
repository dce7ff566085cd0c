#include "dmcommon/cache/dmtempfile.h"

#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace {

using DMTempFiles::LocalTempFile;

constexpr size_t kBuffer = LocalTempFile::kBufferSize;

bool Exists(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0;
}

// The bytes of the file as the file system has them.
std::string OnDisk(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Bytes that differ from their neighbours and repeat rarely, so that a byte
// in the wrong place shows.
std::string Pattern(size_t size, unsigned seed = 1) {
  std::string bytes(size, '\0');
  unsigned state = seed;
  for (char& byte : bytes) {
    state = state * 1103515245u + 12345u;
    byte = static_cast<char>(state >> 24);
  }
  return bytes;
}

std::string ReadAll(LocalTempFile& file, size_t count) {
  std::string bytes(count, '\0');
  bytes.resize(file.read(bytes.data(), count));
  return bytes;
}

// A directory of its own for each test, removed with what is left in it.
class LocalTempFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = ::testing::TempDir() + "dmtempfile-test-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    directory_ = pattern;
  }
  void TearDown() override { EXPECT_EQ(rmdir(directory_.c_str()), 0) << "a file was left"; }

  std::string directory_;
};

TEST_F(LocalTempFileTest, CreatesAnEmptyFileInTheGivenDirectory) {
  LocalTempFile file(directory_);
  ASSERT_EQ(file.isValid(), 1);
  const std::string name = file.getName();
  EXPECT_EQ(name.rfind(directory_ + "/", 0), 0u) << name;
  EXPECT_TRUE(Exists(name));
  EXPECT_EQ(OnDisk(name), "");
  char byte = 0;
  EXPECT_EQ(file.read(&byte, 1), 0u);
}

TEST_F(LocalTempFileTest, RemovesItsFileOnDestruction) {
  std::string name;
  {
    LocalTempFile file(directory_);
    name = file.getName();
    ASSERT_EQ(file.write("abc", 3), 3u);
    ASSERT_TRUE(Exists(name));
  }
  EXPECT_FALSE(Exists(name));
}

TEST_F(LocalTempFileTest, GivesEveryFileItsOwnName) {
  LocalTempFile first(directory_);
  LocalTempFile second(directory_);
  ASSERT_EQ(first.isValid(), 1);
  ASSERT_EQ(second.isValid(), 1);
  EXPECT_NE(std::string(first.getName()), std::string(second.getName()));
}

TEST_F(LocalTempFileTest, AcceptsADirectoryNameEndingInASlash) {
  LocalTempFile file(directory_ + "/");
  ASSERT_EQ(file.isValid(), 1);
  EXPECT_EQ(std::string(file.getName()).rfind(directory_ + "/dmcache-", 0), 0u);
}

TEST_F(LocalTempFileTest, ReportsAnUnusableDirectoryThroughIsValid) {
  const std::string notADirectory = directory_ + "/plain";
  { std::ofstream(notADirectory) << "x"; }
  for (const std::string& directory : {directory_ + "/missing", notADirectory}) {
    LocalTempFile file(directory);
    EXPECT_EQ(file.isValid(), 0) << directory;
    EXPECT_STREQ(file.getName(), "");
    char bytes[4] = {};
    EXPECT_EQ(file.write("abcd", 4), 0u);
    EXPECT_EQ(file.read(bytes, 4), 0u);
    EXPECT_EQ(file.seek(0, 0), -1);
  }
  EXPECT_EQ(std::remove(notADirectory.c_str()), 0);
}

TEST_F(LocalTempFileTest, DefaultDirectoryIsTmpdirOrElseTmp) {
  const char* saved = getenv("TMPDIR");
  const std::string savedValue = saved == nullptr ? "" : saved;
  ASSERT_EQ(setenv("TMPDIR", directory_.c_str(), 1), 0);
  {
    LocalTempFile file;
    ASSERT_EQ(file.isValid(), 1);
    EXPECT_EQ(std::string(file.getName()).rfind(directory_ + "/dmcache-", 0), 0u);
  }
  for (bool empty : {true, false}) {
    if (empty) {
      ASSERT_EQ(setenv("TMPDIR", "", 1), 0);
    } else {
      ASSERT_EQ(unsetenv("TMPDIR"), 0);
    }
    LocalTempFile file;
    ASSERT_EQ(file.isValid(), 1);
    EXPECT_EQ(std::string(file.getName()).rfind("/tmp/dmcache-", 0), 0u) << file.getName();
  }
  {
    LocalTempFile file(std::string{});
    EXPECT_EQ(std::string(file.getName()).rfind("/tmp/dmcache-", 0), 0u) << file.getName();
  }
  if (saved != nullptr) setenv("TMPDIR", savedValue.c_str(), 1);
}

TEST_F(LocalTempFileTest, RefusesNullBuffers) {
  LocalTempFile file(directory_);
  EXPECT_EQ(file.write(nullptr, 3), 0u);
  EXPECT_EQ(file.read(nullptr, 3), 0u);
}

TEST_F(LocalTempFileTest, ReadsBackSingleBytesWrittenAcrossBufferBoundaries) {
  LocalTempFile file(directory_);
  const std::string bytes = Pattern(3 * kBuffer + 17);
  for (char byte : bytes) ASSERT_EQ(file.write(&byte, 1), 1u);
  ASSERT_EQ(file.seek(0, 0), 0);
  std::string back;
  char byte = 0;
  while (file.read(&byte, 1) == 1) back += byte;
  EXPECT_EQ(back, bytes);
  EXPECT_EQ(OnDisk(file.getName()), bytes);
}

TEST_F(LocalTempFileTest, LargeWritesAndReadsBypassTheBuffer) {
  LocalTempFile file(directory_);
  const std::string head = Pattern(100, 2);
  const std::string large = Pattern(2 * kBuffer + 5, 3);
  ASSERT_EQ(file.write(head.data(), head.size()), head.size());
  ASSERT_EQ(file.write(large.data(), large.size()), large.size());
  ASSERT_EQ(file.write("tail", 4), 4u);
  ASSERT_EQ(file.seek(0, 0), 0);
  EXPECT_EQ(ReadAll(file, 10), head.substr(0, 10));
  const std::string expected = (head + large + "tail").substr(10);
  EXPECT_EQ(ReadAll(file, expected.size() + 50), expected);
}

TEST_F(LocalTempFileTest, ReadsInPiecesThatStraddleTheReadAhead) {
  LocalTempFile file(directory_);
  const std::string bytes = Pattern(5 * kBuffer / 2, 4);
  ASSERT_EQ(file.write(bytes.data(), bytes.size()), bytes.size());
  ASSERT_EQ(file.seek(0, 0), 0);
  std::string back;
  for (size_t piece = 1; back.size() < bytes.size(); piece = piece * 3 % 9973 + 1) {
    const std::string got = ReadAll(file, piece);
    if (got.empty()) break;
    back += got;
  }
  EXPECT_EQ(back, bytes);
}

TEST_F(LocalTempFileTest, ShortReadAtTheEnd) {
  LocalTempFile file(directory_);
  ASSERT_EQ(file.write("abcdef", 6), 6u);
  ASSERT_EQ(file.seek(2, 0), 0);
  EXPECT_EQ(ReadAll(file, 10), "cdef");
  EXPECT_EQ(ReadAll(file, 10), "");
}

TEST_F(LocalTempFileTest, SeekFromTheEndCountsBytesNotYetStored) {
  LocalTempFile file(directory_);
  ASSERT_EQ(file.write("abcdef", 6), 6u);
  ASSERT_EQ(file.seek(-2, 2), 0);
  EXPECT_EQ(ReadAll(file, 10), "ef");
  ASSERT_EQ(file.seek(0, 2), 0);
  ASSERT_EQ(file.write("gh", 2), 2u);
  ASSERT_EQ(file.seek(0, 0), 0);
  EXPECT_EQ(ReadAll(file, 10), "abcdefgh");
}

TEST_F(LocalTempFileTest, SeekFromThePositionInEveryState) {
  LocalTempFile file(directory_);
  ASSERT_EQ(file.write("abcdefgh", 8), 8u);
  ASSERT_EQ(file.seek(-3, 1), 0);
  EXPECT_EQ(ReadAll(file, 1), "f");
  ASSERT_EQ(file.seek(-4, 1), 0);
  EXPECT_EQ(ReadAll(file, 2), "cd");
  ASSERT_EQ(file.seek(1, 0), 0);
  ASSERT_EQ(file.seek(2, 1), 0);
  EXPECT_EQ(ReadAll(file, 1), "d");
}

TEST_F(LocalTempFileTest, RefusesBadSeeksAndKeepsThePosition) {
  LocalTempFile file(directory_);
  ASSERT_EQ(file.write("abcdef", 6), 6u);
  ASSERT_EQ(file.seek(1, 0), 0);
  EXPECT_EQ(file.seek(0, 3), -1);
  EXPECT_EQ(file.seek(-1, 0), -1);
  EXPECT_EQ(file.seek(-7, 2), -1);
  EXPECT_EQ(file.seek(std::numeric_limits<long long>::max(), 2), -1);
  EXPECT_EQ(ReadAll(file, 2), "bc");
}

TEST_F(LocalTempFileTest, WritingBeyondTheEndFillsTheGapWithZeros) {
  LocalTempFile file(directory_);
  ASSERT_EQ(file.write("ab", 2), 2u);
  ASSERT_EQ(file.seek(5, 0), 0);
  ASSERT_EQ(file.write("cd", 2), 2u);
  ASSERT_EQ(file.seek(0, 0), 0);
  EXPECT_EQ(ReadAll(file, 10), std::string("ab\0\0\0cd", 7));
}

TEST_F(LocalTempFileTest, OverwritesInsideTheFile) {
  LocalTempFile file(directory_);
  ASSERT_EQ(file.write("abcdefgh", 8), 8u);
  ASSERT_EQ(file.seek(3, 0), 0);
  ASSERT_EQ(file.write("XY", 2), 2u);
  ASSERT_EQ(file.seek(0, 0), 0);
  EXPECT_EQ(ReadAll(file, 10), "abcXYfgh");
}

TEST_F(LocalTempFileTest, WriteInsideTheReadAheadIsSeenByLaterReads) {
  LocalTempFile file(directory_);
  ASSERT_EQ(file.write("abcdefgh", 8), 8u);
  ASSERT_EQ(file.seek(0, 0), 0);
  EXPECT_EQ(ReadAll(file, 2), "ab");
  ASSERT_EQ(file.write("XY", 2), 2u);
  EXPECT_EQ(ReadAll(file, 2), "ef");
  ASSERT_EQ(file.seek(0, 0), 0);
  EXPECT_EQ(ReadAll(file, 10), "abXYefgh");
}

TEST_F(LocalTempFileTest, InterleavesAppendsAtTheEndWithReadsBehindThem) {
  // The record cache's pattern: append at the end, then read on from where
  // the last read stopped.
  LocalTempFile file(directory_);
  std::string all;
  long long readTo = 0;
  for (unsigned round = 0; round < 40; ++round) {
    const std::string appended = Pattern(round * 3001 % 70000 + 1, round + 10);
    ASSERT_EQ(file.seek(0, 2), 0);
    ASSERT_EQ(file.write(appended.data(), appended.size()), appended.size());
    all += appended;
    ASSERT_EQ(file.seek(readTo, 0), 0);
    const size_t wanted = (all.size() - static_cast<size_t>(readTo)) / 2 + 1;
    ASSERT_EQ(ReadAll(file, wanted), all.substr(static_cast<size_t>(readTo), wanted));
    readTo += static_cast<long long>(wanted);
  }
}

TEST_F(LocalTempFileTest, StoresBufferedBytesWhenThePositionMovesAway) {
  LocalTempFile file(directory_);
  ASSERT_EQ(file.write("abc", 3), 3u);
  EXPECT_EQ(OnDisk(file.getName()), "");
  ASSERT_EQ(file.seek(0, 2), 0);
  EXPECT_EQ(OnDisk(file.getName()), "");
  ASSERT_EQ(file.seek(0, 0), 0);
  EXPECT_EQ(OnDisk(file.getName()), "abc");
  ASSERT_EQ(file.write("d", 1), 1u);
  EXPECT_EQ(ReadAll(file, 5), "bc");
  EXPECT_EQ(OnDisk(file.getName()), "dbc");
}

}  // namespace

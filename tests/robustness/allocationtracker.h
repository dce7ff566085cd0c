#ifndef DMCOMMON_TESTS_ROBUSTNESS_ALLOCATIONTRACKER_H
#define DMCOMMON_TESTS_ROBUSTNESS_ALLOCATIONTRACKER_H

// Counts the bytes allocated through operator new, which the XML parser's
// memory manager, the library and the standard containers all use, so that a
// test can bound the memory a hostile input costs. The suite that links
// allocationtracker.cpp replaces the global operator new and delete.

#include <cstddef>

namespace dmtest {

// The peak of live bytes since construction, measured above what was live
// then.
class AllocationPeak {
 public:
  AllocationPeak();
  std::size_t Bytes() const;

 private:
  std::size_t base_;
};

// The bytes live now.
std::size_t LiveBytes();

// The largest single allocation requested since construction.
class LargestAllocation {
 public:
  LargestAllocation();
  std::size_t Bytes() const;
};

}  // namespace dmtest

#endif  // DMCOMMON_TESTS_ROBUSTNESS_ALLOCATIONTRACKER_H

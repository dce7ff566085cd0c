#include "tests/robustness/allocationtracker.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

// Each block carries its size in a header of the largest fundamental
// alignment, so that delete can count it off.
constexpr std::size_t kHeader = alignof(std::max_align_t);

std::atomic<std::size_t> live{0};
std::atomic<std::size_t> peak{0};
std::atomic<std::size_t> largest{0};

void RaiseTo(std::atomic<std::size_t>& mark, std::size_t value) {
  std::size_t seen = mark.load(std::memory_order_relaxed);
  while (value > seen && !mark.compare_exchange_weak(seen, value, std::memory_order_relaxed)) {
  }
}

void* Allocate(std::size_t size) noexcept {
  if (size > static_cast<std::size_t>(-1) - kHeader) return nullptr;
  void* block = std::malloc(size + kHeader);
  if (block == nullptr) return nullptr;
  *static_cast<std::size_t*>(block) = size;
  RaiseTo(peak, live.fetch_add(size, std::memory_order_relaxed) + size);
  RaiseTo(largest, size);
  return static_cast<char*>(block) + kHeader;
}

void Release(void* pointer) noexcept {
  if (pointer == nullptr) return;
  void* block = static_cast<char*>(pointer) - kHeader;
  live.fetch_sub(*static_cast<std::size_t*>(block), std::memory_order_relaxed);
  std::free(block);
}

void* AllocateOrThrow(std::size_t size) {
  void* pointer = Allocate(size);
  if (pointer == nullptr) throw std::bad_alloc();
  return pointer;
}

}  // namespace

void* operator new(std::size_t size) { return AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* pointer) noexcept { Release(pointer); }
void operator delete[](void* pointer) noexcept { Release(pointer); }
void operator delete(void* pointer, std::size_t) noexcept { Release(pointer); }
void operator delete[](void* pointer, std::size_t) noexcept { Release(pointer); }
void operator delete(void* pointer, const std::nothrow_t&) noexcept { Release(pointer); }
void operator delete[](void* pointer, const std::nothrow_t&) noexcept { Release(pointer); }

namespace dmtest {

AllocationPeak::AllocationPeak() : base_(live.load()) { peak.store(base_); }

std::size_t AllocationPeak::Bytes() const {
  const std::size_t top = peak.load();
  return top > base_ ? top - base_ : 0;
}

std::size_t LiveBytes() { return live.load(); }

LargestAllocation::LargestAllocation() { largest.store(0); }

std::size_t LargestAllocation::Bytes() const { return largest.load(); }

}  // namespace dmtest

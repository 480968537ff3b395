#include "Freed.h"

#include <malloc.h>

#include <cstdint>
#include <cstdlib>
#include <map>

#include "Scheduler.h"

namespace schedule {

namespace {

bool gIsAdding = false;  // the map gives back nothing, but asks for memory

std::map<uintptr_t, uintptr_t>& ranges() {
  static auto* const lpRanges = new std::map<uintptr_t, uintptr_t>;  // from, to
  return *lpRanges;
}

}  // namespace

void Freed::add(void* npMemory) {
  if (npMemory == nullptr) return;
  if (Scheduler::active() == nullptr || gIsAdding) return std::free(npMemory);
  gIsAdding = true;
  const auto lFrom = reinterpret_cast<uintptr_t>(npMemory);
  ranges()[lFrom] = lFrom + malloc_usable_size(npMemory);
  gIsAdding = false;
}

bool Freed::holds(const volatile void* npAddress) {
  const auto lAddress = reinterpret_cast<uintptr_t>(npAddress);
  auto lNext = ranges().upper_bound(lAddress);
  return lNext != ranges().begin() && lAddress < (--lNext)->second;
}

}  // namespace schedule

// The address sanitizer has its own, which see more.
#if !defined(__has_feature) || !__has_feature(address_sanitizer)
void operator delete(void* npMemory) noexcept { schedule::Freed::add(npMemory); }
void operator delete(void* npMemory, std::size_t) noexcept { schedule::Freed::add(npMemory); }
void operator delete[](void* npMemory) noexcept { schedule::Freed::add(npMemory); }
void operator delete[](void* npMemory, std::size_t) noexcept { schedule::Freed::add(npMemory); }
#endif

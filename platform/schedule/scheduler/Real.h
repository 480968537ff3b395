// The C library's own functions, behind those that this folder puts in their place.
#pragma once

#include <dlfcn.h>
#include <sys/syscall.h>
#include <unistd.h>

/// REAL(write)(...) calls the one of the C library. Found at the first call, which no other thread makes at the same
/// time: before a run there is one thread, and in a run one has the turn.
#define REAL(name)                                                                           \
  ([] {                                                                                      \
    static const auto lpReal = reinterpret_cast<decltype(&::name)>(dlsym(RTLD_NEXT, #name)); \
    return lpReal;                                                                           \
  }())

namespace schedule::real {

template <class... Arguments>
long systemCall(long nNumber, Arguments... nArguments) {
  return REAL(syscall)(nNumber, nArguments...);
}

}  // namespace schedule::real

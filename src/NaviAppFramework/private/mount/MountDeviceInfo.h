// How the SDK's record of a device becomes the framework's.
#pragma once

#include <cstddef>
#include <cstring>

namespace nfw {

/// The SDK's type of a medium with a database, its event "mounted", and its result for a device that is not there.
const int SDK_TYPE_EXTERNAL_DATABASE = 14;
const int SDK_EVENT_MOUNTED = 3;
const int SDK_NOT_CONNECTED = 1;

/// Copies a text that may lack its terminator; what does not fit is cut.
template <size_t N, size_t M>
void copyCut(char (&npTarget)[N], const char (&npSource)[M]) {
  const size_t lLength = strnlen(npSource, M < N ? M : N - 1);
  memcpy(npTarget, npSource, lLength);
  memset(npTarget + lLength, 0, N - lLength);
}

}  // namespace nfw

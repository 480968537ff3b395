#include "NfwVersion.h"

namespace nfw {

const char* version() { return NFW_VERSION_STRING; }

int versionNumber() { return NFW_VERSION; }

}  // namespace nfw

// An application of another project: it uses the framework and, through it, the platform.
#include <NaviAppFramework.h>
#include <ZTSync.h>

#include <cstring>

int main() {
  ZTSync lSync("consumer");
  const bool lIsRegistered = nfw::registerLogType(100, "<NAVI>CONSUMER", nfw::LOG_LEVEL_DETAIL);
  const bool lIsLocked = lSync.lock();
  APPLOG(100, nfw::LOG_LEVEL_INFO, "The package was found and works");
  lSync.unlock();
  const bool lIsThisVersion =
      nfw::versionNumber() == NFW_VERSION && std::strcmp(nfw::version(), NFW_VERSION_STRING) == 0;
  return lIsThisVersion && lIsRegistered && lIsLocked && nfw::getFilterLevel(100) == nfw::LOG_LEVEL_DETAIL ? 0 : 1;
}

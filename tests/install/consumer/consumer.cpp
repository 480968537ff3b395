// An application of another project: it uses the framework and, through it, the platform.
#include <NfwAppLog.h>
#include <ZTSync.h>

int main() {
  ZTSync lSync("consumer");
  const bool lIsRegistered = nfw::registerLogType(100, "<NAVI>CONSUMER", nfw::LOG_LEVEL_DETAIL);
  const bool lIsLocked = lSync.lock();
  APPLOG(100, nfw::LOG_LEVEL_INFO, "The package was found and works");
  lSync.unlock();
  return lIsRegistered && lIsLocked && nfw::getFilterLevel(100) == nfw::LOG_LEVEL_DETAIL ? 0 : 1;
}

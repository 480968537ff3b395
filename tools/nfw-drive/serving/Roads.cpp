#include "Roads.h"

#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>

#include "DriveLog.h"
#include "PtyRoad.h"
#include "StartThread.h"
#include "TcpRoad.h"
#include "UdpRoad.h"

namespace drive {

namespace {

std::unique_ptr<Road> createRoad(const ServeAddress& nAddress, const SentenceRing& nRing, const RoadLimits& nLimits) {
  if (nAddress.mKind == ServeAddress::UDP) return std::make_unique<UdpRoad>(nAddress, nRing, nLimits);
  if (nAddress.mKind == ServeAddress::PTY) return std::make_unique<PtyRoad>(nAddress, nRing, nLimits);
  return std::make_unique<TcpRoad>(nAddress, nRing, nLimits);
}

}  // namespace

Roads::Roads(const std::vector<ServeAddress>& nAddresses, const RoadLimits& nLimits)
    : mRing(nLimits.mRoom), mWakeFd(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  for (const ServeAddress& lAddress : nAddresses) mRoads.push_back(createRoad(lAddress, mRing, nLimits));
}

Roads::~Roads() {
  finish(std::chrono::milliseconds(0));
  ::close(mWakeFd);
}

bool Roads::open(std::string* npReason) {
  for (const auto& lpRoad : mRoads) {
    const std::string lName = lpRoad->getName();
    if (lpRoad->open(npReason)) continue;
    *npReason = lName + ": " + *npReason;
    return false;
  }
  return true;
}

bool Roads::start() {
  if (isEmpty()) return true;
  for (const auto& lpRoad : mRoads) {
    APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "serving %s", lpRoad->getName().c_str());
  }
  return mRing.begin() && tool::startThread(&mThread, [this] { run(); });
}

void Roads::send(std::string_view nSentence) {
  if (isEmpty() || nSentence.empty()) return;
  mRing.write(nSentence);
  mSentences.fetch_add(1, std::memory_order_relaxed);
  ::eventfd_write(mWakeFd, 1);
}

void Roads::finish(std::chrono::milliseconds nPatience) {
  if (!mThread.joinable()) return;
  mPatience = nPatience;
  mIsEnding = true;
  ::eventfd_write(mWakeFd, 1);
  mThread.join();
  for (const auto& lpRoad : mRoads) lpRoad->close();
}

void Roads::run() {
  ::pthread_setname_np(::pthread_self(), "drive_Serve");
  while (!mIsEnding) serveOnce();
  const Clock::time_point lEnd = Clock::now() + mPatience;
  do serveOnce();
  while (!isDone() && Clock::now() < lEnd);
}

void Roads::serveOnce() {
  mFds.clear();
  mFds.push_back({mWakeFd, POLLIN, 0});
  for (const auto& lpRoad : mRoads) lpRoad->collect(&mFds);
  ::poll(mFds.data(), mFds.size(), TICK_MS);
  eventfd_t lCount = 0;
  ::eventfd_read(mWakeFd, &lCount);
  const pollfd* lpFds = mFds.data() + 1;
  for (const auto& lpRoad : mRoads) lpFds = lpRoad->serve(lpFds);
}

bool Roads::isDone() const {
  return std::all_of(mRoads.begin(), mRoads.end(), [](const auto& nRoad) { return nRoad->isDone(); });
}

}  // namespace drive

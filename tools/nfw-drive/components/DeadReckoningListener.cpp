#include "DeadReckoningListener.h"

#include "NfwDeadReckoning.h"

namespace drive {

bool DeadReckoningListener::attach() { return nfw::DeadReckoning::get()->attachDeadReckoningNmeaDataListener(this); }

void DeadReckoningListener::detach() { nfw::DeadReckoning::get()->detachDeadReckoningNmeaDataListener(this); }

// Slots of a report come in the order of its record; "$PUBX" is the last and is always there.
void DeadReckoningListener::onNotifyDeadReckoningNmeaData(const unsigned char* npData, unsigned int nSize) {
  const std::string_view lSentence(reinterpret_cast<const char*>(npData), nSize);
  if (lSentence.empty() || !mProgress.takesReckoned(lSentence)) return;
  mView.use([&](View& nView) { nView.showDeadReckoning(lSentence); });
  mProgress.mDeliveredDeadReckoning.add(lSentence);
  // Who sees the count may read what was added.
  mProgress.mReckonedSentences.fetch_add(1, std::memory_order_release);
  if (lSentence.substr(0, 5) != "$PUBX") return;
  mProgress.mDeliveredReports.fetch_add(1, std::memory_order_relaxed);
  if (mpWindow != nullptr) mpWindow->release();
}

}  // namespace drive

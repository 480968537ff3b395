#include "GnssListener.h"

#include "NfwGnss.h"

namespace drive {

bool GnssListener::attach() {
  nfw::Gnss* const lpGnss = nfw::Gnss::get();
  return lpGnss->attachNmeaDataListener(this) && lpGnss->attachParsedNmeaDataListener(this) &&
         lpGnss->attachParsedGgaDataListener(this) && lpGnss->attachParsedGllDataListener(this) &&
         lpGnss->attachParsedGsaDataListener(this) && lpGnss->attachParsedGsvDataListener(this) &&
         lpGnss->attachParsedRmcDataListener(this) && lpGnss->attachParsedVtgDataListener(this) &&
         lpGnss->attachParsedZdaDataListener(this) && lpGnss->attachParsedPubxDataListener(this);
}

void GnssListener::detach() {
  nfw::Gnss* const lpGnss = nfw::Gnss::get();
  lpGnss->detachNmeaDataListener(this);
  lpGnss->detachParsedNmeaDataListener(this);
  lpGnss->detachParsedGgaDataListener(this);
  lpGnss->detachParsedGllDataListener(this);
  lpGnss->detachParsedGsaDataListener(this);
  lpGnss->detachParsedGsvDataListener(this);
  lpGnss->detachParsedRmcDataListener(this);
  lpGnss->detachParsedVtgDataListener(this);
  lpGnss->detachParsedZdaDataListener(this);
  lpGnss->detachParsedPubxDataListener(this);
}

void GnssListener::onNotifyNmeaData(unsigned char const* npData, unsigned int nSize) {
  const std::string_view lSentence(reinterpret_cast<const char*>(npData), nSize);
  if (!mProgress.takesSentence(lSentence)) return;
  mLateness.note();
  const size_t lSource = mpWindows != nullptr ? mpWindows->mOrigins.take() : 0;
  mView.use([&](View& nView) {
    nView.from(lSource);
    nView.showRaw(lSentence);
  });
  mProgress.mDeliveredSentences.add(lSentence);
  // Who sees the count may read what was added.
  mProgress.mSentences.fetch_add(1, std::memory_order_release);
  if (mpWindows != nullptr) mpWindows->mSentences.release();
}

}  // namespace drive

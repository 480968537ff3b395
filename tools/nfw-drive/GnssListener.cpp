#include "GnssListener.h"

namespace drive {

bool GnssListener::attach() {
  nfw::GnssDataDispatcher& lDispatcher = mRoad.getDispatcher();
  return lDispatcher.attachNmeaDataListener(this) && lDispatcher.attachParsedNmeaDataListener(this) &&
         lDispatcher.attachParsedGgaDataListener(this) && lDispatcher.attachParsedGllDataListener(this) &&
         lDispatcher.attachParsedGsaDataListener(this) && lDispatcher.attachParsedGsvDataListener(this) &&
         lDispatcher.attachParsedRmcDataListener(this) && lDispatcher.attachParsedVtgDataListener(this) &&
         lDispatcher.attachParsedZdaDataListener(this) && lDispatcher.attachParsedPubxDataListener(this);
}

void GnssListener::detach() {
  nfw::GnssDataDispatcher& lDispatcher = mRoad.getDispatcher();
  lDispatcher.detachNmeaDataListener(this);
  lDispatcher.detachParsedNmeaSentenceListener(this);
  lDispatcher.detachParsedGgaDataListener(this);
  lDispatcher.detachParsedGllDataListener(this);
  lDispatcher.detachParsedGsaDataListener(this);
  lDispatcher.detachParsedGsvDataListener(this);
  lDispatcher.detachParsedRmcDataListener(this);
  lDispatcher.detachParsedVtgDataListener(this);
  lDispatcher.detachParsedZdaDataListener(this);
  lDispatcher.detachParsedPubxDataListener(this);
}

void GnssListener::delivered(int nKind) {
  mProgress.mDelivered.add(nKind);
  mRoad.getWindow().release();
}

void GnssListener::onNotifyNmeaData(unsigned char const* npData, unsigned int nSize) {
  mView.showRaw({reinterpret_cast<const char*>(npData), nSize});
  delivered(nfw::NMEA_UNKNOWN);
}

void GnssListener::onNotifyParsedNmeaData(const nfw::NmeaSentence& nRecord) {
  mView.showEpoch(nRecord);
  mProgress.mDeliveredEpochs.fetch_add(1, std::memory_order_relaxed);
  mRoad.getWindow().release();
}

void GnssListener::onNotifyParsedGgaData(const nfw::GgaSentence& nRecord) {
  mView.showGga(nRecord);
  delivered(nfw::NMEA_GGA);
}

void GnssListener::onNotifyParsedGllData(const nfw::GllSentence& nRecord) {
  mView.showGll(nRecord);
  delivered(nfw::NMEA_GLL);
}

void GnssListener::onNotifyParsedGsaData(const nfw::GsaSentence& nRecord) {
  mView.showGsa(nRecord);
  delivered(nfw::NMEA_GSA);
}

void GnssListener::onNotifyParsedGsvData(const nfw::GsvSentence& nRecord) {
  mView.showGsv(nRecord);
  delivered(nfw::NMEA_GSV);
}

void GnssListener::onNotifyParsedRmcData(const nfw::RmcSentence& nRecord) {
  mView.showRmc(nRecord);
  delivered(nfw::NMEA_RMC);
}

void GnssListener::onNotifyParsedVtgData(const nfw::VtgSentence& nRecord) {
  mView.showVtg(nRecord);
  delivered(nfw::NMEA_VTG);
}

void GnssListener::onNotifyParsedZdaData(const nfw::ZdaSentence& nRecord) {
  mView.showZda(nRecord);
  delivered(nfw::NMEA_ZDA);
}

void GnssListener::onNotifyParsedPubxData(const nfw::PubxSentence& nRecord) {
  mView.showPubx(nRecord);
  delivered(nfw::NMEA_PUBX);
}

}  // namespace drive

#include "NfwGnssDataDispatcher.h"

#include "NfwNmeaDataDispatcher.h"
#include "NfwParsedGgaDataDispatcher.h"
#include "NfwParsedGllDataDispatcher.h"
#include "NfwParsedGsaDataDispatcher.h"
#include "NfwParsedGsvDataDispatcher.h"
#include "NfwParsedNmeaDataDispatcher.h"
#include "NfwParsedPubxDataDispatcher.h"
#include "NfwParsedRmcDataDispatcher.h"
#include "NfwParsedVtgDataDispatcher.h"
#include "NfwParsedZdaDataDispatcher.h"
#include "NfwThreadMsgProfilerManager.h"

namespace nfw {

GnssDataDispatcher::GnssDataDispatcher(utl::MsgDrivenSharedThread* npThread, unsigned int nGgaCapacity,
                                       unsigned int nGllCapacity, unsigned int nGsaCapacity, unsigned int nGsvCapacity,
                                       unsigned int nVtgCapacity, unsigned int nZdaCapacity, unsigned int nRmcCapacity,
                                       unsigned int nPubxCapacity, unsigned int nParsedNmeaCapacity,
                                       unsigned int nNmeaCapacity)
    : mpParsedPubx(new ParsedPubxDataDispatcher(nPubxCapacity, npThread)),
      mpParsedNmea(new ParsedNmeaDataDispatcher(nParsedNmeaCapacity, npThread)),
      mpNmea(new NmeaDataDispatcher(nNmeaCapacity, npThread)),
      mpParsedGga(new ParsedGgaDataDispatcher(nGgaCapacity, npThread)),
      mpParsedGll(new ParsedGllDataDispatcher(nGllCapacity, npThread)),
      mpParsedGsa(new ParsedGsaDataDispatcher(nGsaCapacity, npThread)),
      mpParsedGsv(new ParsedGsvDataDispatcher(nGsvCapacity, npThread)),
      mpParsedVtg(new ParsedVtgDataDispatcher(nVtgCapacity, npThread)),
      mpParsedZda(new ParsedZdaDataDispatcher(nZdaCapacity, npThread)),
      mpParsedRmc(new ParsedRmcDataDispatcher(nRmcCapacity, npThread)) {}

GnssDataDispatcher::~GnssDataDispatcher() = default;

unsigned int GnssDataDispatcher::getMaxMsgDataSize() { return ThreadMsgProfilerManager::profiledSize(THREAD_MSG_GNSS); }

bool GnssDataDispatcher::attachParsedGgaDataListener(ParsedGgaDataListener* npListener) {
  return mpParsedGga->attachListener(npListener);
}

bool GnssDataDispatcher::detachParsedGgaDataListener(ParsedGgaDataListener* npListener) {
  return mpParsedGga->detachListener(npListener);
}

bool GnssDataDispatcher::attachParsedGllDataListener(ParsedGllDataListener* npListener) {
  return mpParsedGll->attachListener(npListener);
}

bool GnssDataDispatcher::detachParsedGllDataListener(ParsedGllDataListener* npListener) {
  return mpParsedGll->detachListener(npListener);
}

bool GnssDataDispatcher::attachParsedGsaDataListener(ParsedGsaDataListener* npListener) {
  return mpParsedGsa->attachListener(npListener);
}

bool GnssDataDispatcher::detachParsedGsaDataListener(ParsedGsaDataListener* npListener) {
  return mpParsedGsa->detachListener(npListener);
}

bool GnssDataDispatcher::attachParsedGsvDataListener(ParsedGsvDataListener* npListener) {
  return mpParsedGsv->attachListener(npListener);
}

bool GnssDataDispatcher::detachParsedGsvDataListener(ParsedGsvDataListener* npListener) {
  return mpParsedGsv->detachListener(npListener);
}

bool GnssDataDispatcher::attachParsedVtgDataListener(ParsedVtgDataListener* npListener) {
  return mpParsedVtg->attachListener(npListener);
}

bool GnssDataDispatcher::detachParsedVtgDataListener(ParsedVtgDataListener* npListener) {
  return mpParsedVtg->detachListener(npListener);
}

bool GnssDataDispatcher::attachParsedZdaDataListener(ParsedZdaDataListener* npListener) {
  return mpParsedZda->attachListener(npListener);
}

bool GnssDataDispatcher::detachParsedZdaDataListener(ParsedZdaDataListener* npListener) {
  return mpParsedZda->detachListener(npListener);
}

bool GnssDataDispatcher::attachParsedRmcDataListener(ParsedRmcDataListener* npListener) {
  return mpParsedRmc->attachListener(npListener);
}

bool GnssDataDispatcher::detachParsedRmcDataListener(ParsedRmcDataListener* npListener) {
  return mpParsedRmc->detachListener(npListener);
}

bool GnssDataDispatcher::attachParsedPubxDataListener(ParsedPubxDataListener* npListener) {
  return mpParsedPubx->attachListener(npListener);
}

bool GnssDataDispatcher::detachParsedPubxDataListener(ParsedPubxDataListener* npListener) {
  return mpParsedPubx->detachListener(npListener);
}

bool GnssDataDispatcher::attachParsedNmeaDataListener(ParsedNmeaDataListener* npListener) {
  return mpParsedNmea->attachListener(npListener);
}

bool GnssDataDispatcher::detachParsedNmeaSentenceListener(ParsedNmeaDataListener* npListener) {
  return mpParsedNmea->detachListener(npListener);
}

bool GnssDataDispatcher::attachNmeaDataListener(NmeaDataListener* npListener) {
  return mpNmea->attachListener(npListener);
}

bool GnssDataDispatcher::detachNmeaDataListener(NmeaDataListener* npListener) {
  return mpNmea->detachListener(npListener);
}

void GnssDataDispatcher::mute() {
  DispatcherCore* const DISPATCHERS[] = {mpParsedPubx.get(), mpParsedNmea.get(), mpNmea.get(),      mpParsedGga.get(),
                                         mpParsedGll.get(),  mpParsedGsa.get(),  mpParsedGsv.get(), mpParsedVtg.get(),
                                         mpParsedZda.get(),  mpParsedRmc.get()};
  for (DispatcherCore* const lpDispatcher : DISPATCHERS) lpDispatcher->mute();
}

void GnssDataDispatcher::dispatch(GgaSentence nRecord) { mpParsedGga->dispatch(nRecord); }
void GnssDataDispatcher::dispatch(GllSentence nRecord) { mpParsedGll->dispatch(nRecord); }
void GnssDataDispatcher::dispatch(GsaSentence nRecord) { mpParsedGsa->dispatch(nRecord); }
void GnssDataDispatcher::dispatch(GsvSentence nRecord) { mpParsedGsv->dispatch(nRecord); }
void GnssDataDispatcher::dispatch(VtgSentence nRecord) { mpParsedVtg->dispatch(nRecord); }
void GnssDataDispatcher::dispatch(ZdaSentence nRecord) { mpParsedZda->dispatch(nRecord); }
void GnssDataDispatcher::dispatch(RmcSentence nRecord) { mpParsedRmc->dispatch(nRecord); }
void GnssDataDispatcher::dispatch(PubxSentence nRecord) { mpParsedPubx->dispatch(nRecord); }
void GnssDataDispatcher::dispatch(NmeaSentence nRecord) { mpParsedNmea->dispatch(nRecord); }

void GnssDataDispatcher::dispatch(unsigned char const* npData, unsigned int nSize) { mpNmea->dispatch(npData, nSize); }

}  // namespace nfw

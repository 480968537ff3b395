#include "NfwGnss.h"

#include "NfwGnssDataDispatcher.h"
#include "NfwGnssLoggerPlayer.h"
#include "NfwGnssSensorSysLoggerPlayer.h"
#include "NfwGpsSdkPlayer.h"
#include "NfwLogger.h"
#include "OneInstance.h"
#include "SourceSwitch.h"
#include "utl/MsgDrivenSharedThread.h"

namespace nfw {
namespace {

const unsigned int QUEUE_LENGTH = 256;

}  // namespace

unsigned int Gnss::mMaxParsedGgaDataListenerNum = 0;
unsigned int Gnss::mMaxParsedGllDataListenerNum = 0;
unsigned int Gnss::mMaxParsedGsaDataListenerNum = 0;
unsigned int Gnss::mMaxParsedGsvDataListenerNum = 0;
unsigned int Gnss::mMaxParsedVtgDataListenerNum = 0;
unsigned int Gnss::mMaxParsedZdaDataListenerNum = 0;
unsigned int Gnss::mMaxParsedRmcDataListenerNum = 0;
unsigned int Gnss::mMaxParsedPubxDataListenerNum = 0;
unsigned int Gnss::mMaxParsedNmeaDataListenerNum = 0;
unsigned int Gnss::mMaxNmeaDataListenerNum = 0;
int Gnss::mInitializeLoggerId = NO_LOGGER_ID;
int Gnss::mInitializeGpsSdkGeodeticSystemType = 0;

void Gnss::initializeMaxParsedGgaDataListenerNum(unsigned int nValue) { mMaxParsedGgaDataListenerNum = nValue; }
void Gnss::initializeMaxParsedGllDataListenerNum(unsigned int nValue) { mMaxParsedGllDataListenerNum = nValue; }
void Gnss::initializeMaxParsedGsaDataListenerNum(unsigned int nValue) { mMaxParsedGsaDataListenerNum = nValue; }
void Gnss::initializeMaxParsedGsvDataListenerNum(unsigned int nValue) { mMaxParsedGsvDataListenerNum = nValue; }
void Gnss::initializeMaxParsedVtgDataListenerNum(unsigned int nValue) { mMaxParsedVtgDataListenerNum = nValue; }
void Gnss::initializeMaxParsedZdaDataListenerNum(unsigned int nValue) { mMaxParsedZdaDataListenerNum = nValue; }
void Gnss::initializeMaxParsedRmcDataListenerNum(unsigned int nValue) { mMaxParsedRmcDataListenerNum = nValue; }
void Gnss::initializeMaxParsedPubxDataListenerNum(unsigned int nValue) { mMaxParsedPubxDataListenerNum = nValue; }
void Gnss::initializeMaxParsedNmeaDataListenerNum(unsigned int nValue) { mMaxParsedNmeaDataListenerNum = nValue; }
void Gnss::initializeMaxNmeaDataListenerNum(unsigned int nValue) { mMaxNmeaDataListenerNum = nValue; }
void Gnss::initializeLoggerId(int nValue) { mInitializeLoggerId = nValue; }
void Gnss::initializeGpsSdkGeodeticSystemType(int nValue) { mInitializeGpsSdkGeodeticSystemType = nValue; }

OneInstance<Gnss>& Gnss::instance() {
  static OneInstance<Gnss>* const lpInstance = new OneInstance<Gnss>("nfw::Gnss_Instantiation");
  return *lpInstance;
}

Gnss* Gnss::get() {
  return instance().get([] { return new Gnss; });
}

void Gnss::destroy() { instance().destroy(); }

Gnss::Gnss()
    : mpThread(new utl::MsgDrivenSharedThread(GnssDataDispatcher::getMaxMsgDataSize(), QUEUE_LENGTH, 0,
                                              "nfw::Gnss_SharedThread", 0)),
      mpDispatcher(new GnssDataDispatcher(mpThread.get(), mMaxParsedGgaDataListenerNum, mMaxParsedGllDataListenerNum,
                                          mMaxParsedGsaDataListenerNum, mMaxParsedGsvDataListenerNum,
                                          mMaxParsedVtgDataListenerNum, mMaxParsedZdaDataListenerNum,
                                          mMaxParsedRmcDataListenerNum, mMaxParsedPubxDataListenerNum,
                                          mMaxParsedNmeaDataListenerNum, mMaxNmeaDataListenerNum)),
      mpSysLogPlayer(new GnssSensorSysLoggerPlayer(mpDispatcher.get(), mpThread.get())),
      mpLogPlayer(new GnssLoggerPlayer(mpDispatcher.get(), mpThread.get(), mInitializeLoggerId)),
      mpSdkPlayer(new GpsSdkPlayer(mpDispatcher.get(), mpThread.get(), mInitializeLoggerId,
                                   mInitializeGpsSdkGeodeticSystemType)),
      mpSources(new SourceSwitch("Gnss", "nfw::Gnss_SyncObject", *mpThread, {*mpSdkPlayer, "GpsSdkPlayer"},
                                 {*mpSysLogPlayer, "GnssSysLogPlayer"}, {*mpLogPlayer, "GnssLogPlayer"})) {}

Gnss::~Gnss() = default;

bool Gnss::end() {
  if (mpSources->end(this, this)) return true;
  mpDispatcher->mute();
  return false;
}

bool Gnss::initialize() { return mpSources->initialize(this, this); }
void Gnss::shutdown() { mpSources->shutdown(this, this); }

void Gnss::startSysLogPlay() { mpSources->startSysLogPlay(); }
void Gnss::stopSysLogPlay() { mpSources->stopSysLogPlay(); }
void Gnss::receiveSysLogPlayEnd() {}
void Gnss::seekSysLogPlay() { mpSources->seekSysLogPlay(); }
void Gnss::startLogPlay() { mpSources->startLogPlay(); }
void Gnss::stopLogPlay() { mpSources->stopLogPlay(); }
void Gnss::receiveLogPlayEnd(int /*nReason*/) {}
void Gnss::seekLogPlay() { mpSources->seekLogPlay(); }

bool Gnss::attachParsedGgaDataListener(ParsedGgaDataListener* npListener) {
  return mpDispatcher->attachParsedGgaDataListener(npListener);
}

void Gnss::detachParsedGgaDataListener(ParsedGgaDataListener* npListener) {
  mpDispatcher->detachParsedGgaDataListener(npListener);
}

bool Gnss::attachParsedGllDataListener(ParsedGllDataListener* npListener) {
  return mpDispatcher->attachParsedGllDataListener(npListener);
}

void Gnss::detachParsedGllDataListener(ParsedGllDataListener* npListener) {
  mpDispatcher->detachParsedGllDataListener(npListener);
}

bool Gnss::attachParsedGsaDataListener(ParsedGsaDataListener* npListener) {
  return mpDispatcher->attachParsedGsaDataListener(npListener);
}

void Gnss::detachParsedGsaDataListener(ParsedGsaDataListener* npListener) {
  mpDispatcher->detachParsedGsaDataListener(npListener);
}

bool Gnss::attachParsedGsvDataListener(ParsedGsvDataListener* npListener) {
  return mpDispatcher->attachParsedGsvDataListener(npListener);
}

void Gnss::detachParsedGsvDataListener(ParsedGsvDataListener* npListener) {
  mpDispatcher->detachParsedGsvDataListener(npListener);
}

bool Gnss::attachParsedVtgDataListener(ParsedVtgDataListener* npListener) {
  return mpDispatcher->attachParsedVtgDataListener(npListener);
}

void Gnss::detachParsedVtgDataListener(ParsedVtgDataListener* npListener) {
  mpDispatcher->detachParsedVtgDataListener(npListener);
}

bool Gnss::attachParsedZdaDataListener(ParsedZdaDataListener* npListener) {
  return mpDispatcher->attachParsedZdaDataListener(npListener);
}

void Gnss::detachParsedZdaDataListener(ParsedZdaDataListener* npListener) {
  mpDispatcher->detachParsedZdaDataListener(npListener);
}

bool Gnss::attachParsedRmcDataListener(ParsedRmcDataListener* npListener) {
  return mpDispatcher->attachParsedRmcDataListener(npListener);
}

void Gnss::detachParsedRmcDataListener(ParsedRmcDataListener* npListener) {
  mpDispatcher->detachParsedRmcDataListener(npListener);
}

bool Gnss::attachParsedPubxDataListener(ParsedPubxDataListener* npListener) {
  return mpDispatcher->attachParsedPubxDataListener(npListener);
}

void Gnss::detachParsedPubxDataListener(ParsedPubxDataListener* npListener) {
  mpDispatcher->detachParsedPubxDataListener(npListener);
}

bool Gnss::attachParsedNmeaDataListener(ParsedNmeaDataListener* npListener) {
  return mpDispatcher->attachParsedNmeaDataListener(npListener);
}

void Gnss::detachParsedNmeaDataListener(ParsedNmeaDataListener* npListener) {
  mpDispatcher->detachParsedNmeaSentenceListener(npListener);
}

bool Gnss::attachNmeaDataListener(NmeaDataListener* npListener) {
  return mpDispatcher->attachNmeaDataListener(npListener);
}

void Gnss::detachNmeaDataListener(NmeaDataListener* npListener) { mpDispatcher->detachNmeaDataListener(npListener); }

}  // namespace nfw

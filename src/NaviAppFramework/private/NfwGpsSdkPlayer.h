// The live source of the GNSS service.
#pragma once

#include "Gps.h"
#include "NfwGnssDataDispatcher.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "PlaySource.h"
#include "utl/MsgDrivenSharedThread.h"

namespace nfw {

/// Listens to the GPS SDK. While on, raw sentences and the SDK's own records go to the dispatcher, on the SDK's thread,
/// which only queues them. On or off, each sentence is recorded in both logs, on the shared thread. Dispatcher and
/// thread are not owned.
class GpsSdkPlayer : public utl::ThreadMsgListener,
                     public GpsNmeaListener,
                     public GpsParseNmeaListener,
                     public PlaySource {
 public:
  GpsSdkPlayer(GnssDataDispatcher* npDispatcher, utl::MsgDrivenSharedThread* npThread, int nLoggerId,
               int nGeodeticSystemType);

  bool initialize() override;
  void finalize() override;

  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

  void notifyReceiveNmeaSentence(char const* npSentence, unsigned int nSize) override;
  void notifyParseNmeaSentence(PARSE_NMEA const* npRecord) override;
  void notifyParseGgaSentence(GPGGA const* npRecord) override;
  void notifyParseGllSentence(GPGLL const* npRecord) override;
  void notifyParseGsaSentence(GPGSA const* npRecord) override;
  void notifyParseGsvSentence(GPGSV const* npRecord) override;
  void notifyParseRmcSentence(GPRMC const* npRecord) override;
  void notifyParseVtgSentence(GPVTG const* npRecord) override;
  void notifyParseZdaSentence(GPZDA const* npRecord) override;
  void notifyParsePubxSentence(PUBX const* npRecord) override;

 private:
  template <class SdkRecord>
  void dispatch(const SdkRecord* npRecord);
  void onReceiveNmeaData(utl::ThreadRawMsg& nMsg);
  void writeSensorLog(const unsigned char* npSentence, unsigned int nSize);

  utl::MsgDrivenSharedThread* const mpThread;
  GnssDataDispatcher* const mpDispatcher;
  NmeaBinaryLogDataVersion1 mConverter;  // live data is always recorded in this version
  const int mLoggerId;
  const int mGeodeticSystemType;
};

}  // namespace nfw

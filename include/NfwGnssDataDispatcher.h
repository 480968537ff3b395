/// @file
/// The one entry through which every source of satellite-positioning data delivers.
#pragma once

#include <memory>

#include "NfwExport.h"
#include "NfwNmeaSentence.h"
#include "utl/MsgDrivenSharedThread.h"

namespace nfw {

class ParsedPubxDataDispatcher;
class ParsedNmeaDataDispatcher;
class NmeaDataDispatcher;
class ParsedGgaDataDispatcher;
class ParsedGllDataDispatcher;
class ParsedGsaDataDispatcher;
class ParsedGsvDataDispatcher;
class ParsedVtgDataDispatcher;
class ParsedZdaDataDispatcher;
class ParsedRmcDataDispatcher;
class ParsedGgaDataListener;
class ParsedGllDataListener;
class ParsedGsaDataListener;
class ParsedGsvDataListener;
class ParsedVtgDataListener;
class ParsedZdaDataListener;
class ParsedRmcDataListener;
class ParsedPubxDataListener;
class ParsedNmeaDataListener;
class NmeaDataListener;

/// Owns one dispatcher a kind of data and routes each record by its type.
///
/// Sources call dispatch() from their own threads and do not wait: a record is copied into the shared thread's queue, a
/// full queue drops it with a log line. Listeners are called on the shared thread, last attached first. attach and
/// detach may be called from any thread, also from inside a listener; they return when they are done, and fail while
/// the thread does not run. A capacity is room reserved, not a limit. A combined record reaches only the listeners of
/// combined records. The thread is not owned; it is to hold messages of getMaxMsgDataSize() and is stopped before the
/// dispatcher is deleted.
class NFW_API GnssDataDispatcher {
 public:
  GnssDataDispatcher(utl::MsgDrivenSharedThread* npThread, unsigned int nGgaCapacity, unsigned int nGllCapacity,
                     unsigned int nGsaCapacity, unsigned int nGsvCapacity, unsigned int nVtgCapacity,
                     unsigned int nZdaCapacity, unsigned int nRmcCapacity, unsigned int nPubxCapacity,
                     unsigned int nParsedNmeaCapacity, unsigned int nNmeaCapacity);
  ~GnssDataDispatcher();
  GnssDataDispatcher(const GnssDataDispatcher&) = delete;
  GnssDataDispatcher& operator=(const GnssDataDispatcher&) = delete;

  /// What the shared thread must at least hold, in bytes of message data.
  static unsigned int getMaxMsgDataSize();

  bool attachParsedGgaDataListener(ParsedGgaDataListener* npListener);
  bool detachParsedGgaDataListener(ParsedGgaDataListener* npListener);
  bool attachParsedGllDataListener(ParsedGllDataListener* npListener);
  bool detachParsedGllDataListener(ParsedGllDataListener* npListener);
  bool attachParsedGsaDataListener(ParsedGsaDataListener* npListener);
  bool detachParsedGsaDataListener(ParsedGsaDataListener* npListener);
  bool attachParsedGsvDataListener(ParsedGsvDataListener* npListener);
  bool detachParsedGsvDataListener(ParsedGsvDataListener* npListener);
  bool attachParsedVtgDataListener(ParsedVtgDataListener* npListener);
  bool detachParsedVtgDataListener(ParsedVtgDataListener* npListener);
  bool attachParsedZdaDataListener(ParsedZdaDataListener* npListener);
  bool detachParsedZdaDataListener(ParsedZdaDataListener* npListener);
  bool attachParsedRmcDataListener(ParsedRmcDataListener* npListener);
  bool detachParsedRmcDataListener(ParsedRmcDataListener* npListener);
  bool attachParsedPubxDataListener(ParsedPubxDataListener* npListener);
  bool detachParsedPubxDataListener(ParsedPubxDataListener* npListener);
  bool attachParsedNmeaDataListener(ParsedNmeaDataListener* npListener);
  bool detachParsedNmeaSentenceListener(ParsedNmeaDataListener* npListener);  // the name is kept for compatibility
  bool attachNmeaDataListener(NmeaDataListener* npListener);
  bool detachNmeaDataListener(NmeaDataListener* npListener);

  void dispatch(GgaSentence nRecord);
  void dispatch(GllSentence nRecord);
  void dispatch(GsaSentence nRecord);
  void dispatch(GsvSentence nRecord);
  void dispatch(VtgSentence nRecord);
  void dispatch(ZdaSentence nRecord);
  void dispatch(RmcSentence nRecord);
  void dispatch(PubxSentence nRecord);
  void dispatch(NmeaSentence nRecord);
  /// A sentence as it came; more than 256 bytes are dropped.
  void dispatch(unsigned char const* npData, unsigned int nSize);

  /// No listener is called any more: for a shared thread that does not end in time and outlasts its owner. Any thread.
  void mute();

 private:
  const std::unique_ptr<ParsedPubxDataDispatcher> mpParsedPubx;
  const std::unique_ptr<ParsedNmeaDataDispatcher> mpParsedNmea;
  const std::unique_ptr<NmeaDataDispatcher> mpNmea;
  const std::unique_ptr<ParsedGgaDataDispatcher> mpParsedGga;
  const std::unique_ptr<ParsedGllDataDispatcher> mpParsedGll;
  const std::unique_ptr<ParsedGsaDataDispatcher> mpParsedGsa;
  const std::unique_ptr<ParsedGsvDataDispatcher> mpParsedGsv;
  const std::unique_ptr<ParsedVtgDataDispatcher> mpParsedVtg;
  const std::unique_ptr<ParsedZdaDataDispatcher> mpParsedZda;
  const std::unique_ptr<ParsedRmcDataDispatcher> mpParsedRmc;
};

}  // namespace nfw

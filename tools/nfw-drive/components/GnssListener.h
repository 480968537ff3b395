#pragma once

#include "Intake.h"
#include "Lateness.h"
#include "NfwNmeaDataListener.h"
#include "NfwParsedGgaDataListener.h"
#include "NfwParsedGllDataListener.h"
#include "NfwParsedGsaDataListener.h"
#include "NfwParsedGsvDataListener.h"
#include "NfwParsedNmeaDataListener.h"
#include "NfwParsedPubxDataListener.h"
#include "NfwParsedRmcDataListener.h"
#include "NfwParsedVtgDataListener.h"
#include "NfwParsedZdaDataListener.h"
#include "SharedView.h"

namespace drive {

/// Listens to everything that the positioning service has: shows it, each sentence as of its source, counts it, and
/// gives each sentence's place in the window back. On the service's thread.
class GnssListener : public nfw::NmeaDataListener,
                     public nfw::ParsedNmeaDataListener,
                     public nfw::ParsedGgaDataListener,
                     public nfw::ParsedGllDataListener,
                     public nfw::ParsedGsaDataListener,
                     public nfw::ParsedGsvDataListener,
                     public nfw::ParsedRmcDataListener,
                     public nfw::ParsedVtgDataListener,
                     public nfw::ParsedZdaDataListener,
                     public nfw::ParsedPubxDataListener {
 public:
  /// @param npWindows null when nobody waits for places
  GnssListener(SharedView& nView, Windows* npWindows, Progress& nProgress, Lateness& nLateness)
      : mView(nView), mpWindows(npWindows), mProgress(nProgress), mLateness(nLateness) {}

  bool attach();
  void detach();

  void onNotifyNmeaData(unsigned char const* npData, unsigned int nSize) override;
  void onNotifyParsedNmeaData(const nfw::NmeaSentence&) override {
    if (mProgress.takesCombined()) mProgress.mDelivered.add(nfw::NMEA_UNKNOWN);
  }
  void onNotifyParsedGgaData(const nfw::GgaSentence& nRecord) override { take(nfw::NMEA_GGA, &View::showGga, nRecord); }
  void onNotifyParsedGllData(const nfw::GllSentence& nRecord) override { take(nfw::NMEA_GLL, &View::showGll, nRecord); }
  void onNotifyParsedGsaData(const nfw::GsaSentence& nRecord) override { take(nfw::NMEA_GSA, &View::showGsa, nRecord); }
  void onNotifyParsedGsvData(const nfw::GsvSentence& nRecord) override { take(nfw::NMEA_GSV, &View::showGsv, nRecord); }
  void onNotifyParsedRmcData(const nfw::RmcSentence& nRecord) override { take(nfw::NMEA_RMC, &View::showRmc, nRecord); }
  void onNotifyParsedVtgData(const nfw::VtgSentence& nRecord) override { take(nfw::NMEA_VTG, &View::showVtg, nRecord); }
  void onNotifyParsedZdaData(const nfw::ZdaSentence& nRecord) override { take(nfw::NMEA_ZDA, &View::showZda, nRecord); }
  void onNotifyParsedPubxData(const nfw::PubxSentence& nRecord) override {
    take(nfw::NMEA_PUBX, &View::showPubx, nRecord);
  }

 private:
  template <class Record>
  void take(int nKind, void (View::*npShow)(const Record&), const Record& nRecord) {
    if (!mProgress.takesRecord(nKind)) return;
    mView.use([&](View& nView) { (nView.*npShow)(nRecord); });
    mProgress.mDelivered.add(nKind);
  }

  SharedView& mView;
  Windows* const mpWindows;
  Progress& mProgress;
  Lateness& mLateness;
};

}  // namespace drive

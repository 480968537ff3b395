#pragma once

#include "GnssRoad.h"
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
#include "View.h"

namespace drive {

/// Listens to everything: shows it, counts it, and gives its place in the window back.
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
  GnssListener(GnssRoad& nRoad, View& nView, Progress& nProgress) : mRoad(nRoad), mView(nView), mProgress(nProgress) {}

  bool attach();
  void detach();

  void onNotifyNmeaData(unsigned char const* npData, unsigned int nSize) override;
  void onNotifyParsedNmeaData(const nfw::NmeaSentence& nRecord) override;
  void onNotifyParsedGgaData(const nfw::GgaSentence& nRecord) override;
  void onNotifyParsedGllData(const nfw::GllSentence& nRecord) override;
  void onNotifyParsedGsaData(const nfw::GsaSentence& nRecord) override;
  void onNotifyParsedGsvData(const nfw::GsvSentence& nRecord) override;
  void onNotifyParsedRmcData(const nfw::RmcSentence& nRecord) override;
  void onNotifyParsedVtgData(const nfw::VtgSentence& nRecord) override;
  void onNotifyParsedZdaData(const nfw::ZdaSentence& nRecord) override;
  void onNotifyParsedPubxData(const nfw::PubxSentence& nRecord) override;

 private:
  void delivered(int nKind);

  GnssRoad& mRoad;
  View& mView;
  Progress& mProgress;
};

}  // namespace drive

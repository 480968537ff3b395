// What tests of the positioning services share: the two log services, listeners that note what they receive, and one
// epoch of a drive as sentences, as the SDK's records and as a report.
#pragma once

#include <cstring>
#include <sstream>

#include "../../src/NaviAppFramework/private/sentences/RecordFields.h"
#include "BinaryLog.h"
#include "GpsHost.h"
#include "NaviAppFramework.h"
#include "NfwDeadReckoningNmeaDataListener.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "NfwSensorSysLoggerManager.h"
#include "Replays.h"
#include "SharedThread.h"
#include "SysLogServiceHost.h"
#include "TempDir.h"
#include "ZTSDeadReckoningHost.h"

namespace nfwtest {

using Strings = std::vector<std::string>;

const int GNSS_LOGGER_ID = 20;
const int DEAD_RECKONING_LOGGER_ID = 21;

/// Both log services, running, with files of their own. Destroys the facades with them.
class LogServices {
 public:
  LogServices() {
    using nfw::Gnss;
    using nfw::Logger;
    Logger::initializeMaxPlayerNum(2);
    Logger::initializeMaxLogTypeNum(2);
    Logger::initializeMaxLogFieldSize(300);
    Logger::initializeLogBufferSize(200000);
    Logger::initializeMaxLogFileSize(10000000);
    for (auto lpSet : {Gnss::initializeMaxParsedGgaDataListenerNum, Gnss::initializeMaxParsedGllDataListenerNum,
                       Gnss::initializeMaxParsedGsaDataListenerNum, Gnss::initializeMaxParsedGsvDataListenerNum,
                       Gnss::initializeMaxParsedVtgDataListenerNum, Gnss::initializeMaxParsedZdaDataListenerNum,
                       Gnss::initializeMaxParsedRmcDataListenerNum, Gnss::initializeMaxParsedPubxDataListenerNum,
                       Gnss::initializeMaxParsedNmeaDataListenerNum, Gnss::initializeMaxNmeaDataListenerNum,
                       nfw::DeadReckoning::initializeMaxDeadReckoningNmeaDataListenerNum}) {
      lpSet(2);
    }
    Gnss::initializeLoggerId(GNSS_LOGGER_ID);
    Gnss::initializeGpsSdkGeodeticSystemType(0);
    nfw::DeadReckoning::initializeLoggerId(DEAD_RECKONING_LOGGER_ID);
    EXPECT_TRUE(syslogservice::setBinaryLogFile(sensorFile().c_str()));
    EXPECT_TRUE(nfw::Logger::get()->initialize());
    EXPECT_TRUE(nfw::SensorSysLoggerManager::get()->initialize());
  }
  ~LogServices() {
    nfw::Gnss::destroy();
    nfw::DeadReckoning::destroy();
    nfw::SensorSysLoggerManager::destroy();
    nfw::Logger::destroy();
    syslogservice::setBinaryLogFile(nullptr);
  }

  void startRecord() {
    EXPECT_TRUE(nfw::Logger::get()->startRecord(mDir.path().c_str(), "drive", nullptr));
    EXPECT_TRUE(nfw::SensorSysLoggerManager::get()->startRecord());
  }
  void stopRecord() {
    EXPECT_TRUE(nfw::Logger::get()->stopRecord());
    EXPECT_TRUE(nfw::SensorSysLoggerManager::get()->stopRecord());
    EXPECT_TRUE(syslogservice::flushBinaryLog(20000));
  }
  std::string textFile() const { return mDir.files().at(0); }
  std::string sensorFile() const { return mSensorDir / "sensor"; }

 private:
  TempDir mDir, mSensorDir;
};

inline Strings errors(const seams::CapturedLog& nLog) {
  Strings lErrors;
  for (const auto& lLine : nLog.lines()) {
    if (lLine.mLevel == nfw::LOG_LEVEL_ERROR) lErrors.push_back(lLine.mText);
  }
  return lErrors;
}

template <class... Values>
std::string joined(const char* npKind, const Values&... nValues) {
  std::ostringstream lText;
  lText.precision(12);
  lText << npKind;
  ((lText << ' ' << nValues), ...);
  return lText.str();
}

inline const char* kindOf(const nfw::GgaSentence&) { return "GGA"; }
inline const char* kindOf(const nfw::GllSentence&) { return "GLL"; }
inline const char* kindOf(const nfw::GsaSentence&) { return "GSA"; }
inline const char* kindOf(const nfw::GsvSentence&) { return "GSV"; }
inline const char* kindOf(const nfw::RmcSentence&) { return "RMC"; }
inline const char* kindOf(const nfw::VtgSentence&) { return "VTG"; }
inline const char* kindOf(const nfw::ZdaSentence&) { return "ZDA"; }
inline const char* kindOf(const nfw::PubxSentence&) { return "PUBX"; }
inline const char* kindOf(const nfw::NmeaSentence&) { return "NMEA"; }

/// The kind of a record and its fields up to the last one that is not zero; ".." for more than 16 zeros in a row.
template <class Record>
std::string text(const Record& nRecord) {
  std::string lText = kindOf(nRecord), lZeros;
  nfw::eachField(nRecord, [&](const auto& nField) {
    using Number = std::remove_all_extents_t<std::remove_reference_t<decltype(nField)>>;
    for (auto lp = reinterpret_cast<Number*>(&nField); lp < reinterpret_cast<Number*>(&nField + 1); ++lp) {
      if (*lp == Number{}) {
        lZeros += " 0";
        continue;
      }
      lText += (lZeros.size() > 32 ? " .." : lZeros) + joined("", +*lp);
      lZeros.clear();
    }
    return true;
  });
  return lText;
}

/// The notes of a listener of every kind, each by its kind alone: "$GGA $".
inline std::string kindsOf(const Notes& nNotes) {
  std::string lKinds;
  for (const std::string& lNote : nNotes.all())
    lKinds += lNote[0] == '$' ? "$" : lNote.substr(0, lNote.find(' ')) + " ";
  return lKinds;
}

/// What the log service says of messages that a source cannot handle.
template <class Source>
void expectRefusals(seams::CapturedLog& nLog, Source& nSource, const std::string& nClass) {
  nLog.clear();
  RawMsg lNone, lUnknown(1);
  nSource.receiveMsg(0, lNone);
  nSource.receiveMsg(0, lUnknown);
  EXPECT_EQ((Strings{nClass + "::receiveMsg(): Can't get MsgId", nClass + "::receiveMsg(): UnknownMsg: MsgId=1"}),
            errors(nLog));
  nLog.clear();
}

/// One of every kind. Notes sentences as they are, records by their text(), all behind its name.
class AnyListener : public nfw::NmeaDataListener,
                    public nfw::ParsedGgaDataListener,
                    public nfw::ParsedGllDataListener,
                    public nfw::ParsedGsaDataListener,
                    public nfw::ParsedGsvDataListener,
                    public nfw::ParsedVtgDataListener,
                    public nfw::ParsedZdaDataListener,
                    public nfw::ParsedRmcDataListener,
                    public nfw::ParsedPubxDataListener,
                    public nfw::ParsedNmeaDataListener,
                    public nfw::DeadReckoningNmeaDataListener {
 public:
  explicit AnyListener(Notes& nNotes, std::string nName = "") : mNotes(nNotes), mName(std::move(nName)) {}

  /// To the service, or to its dispatcher.
  template <class Service>
  bool attachTo(Service& nService) {
    return nService.attachNmeaDataListener(this) && nService.attachParsedGgaDataListener(this) &&
           nService.attachParsedGllDataListener(this) && nService.attachParsedGsaDataListener(this) &&
           nService.attachParsedGsvDataListener(this) && nService.attachParsedVtgDataListener(this) &&
           nService.attachParsedZdaDataListener(this) && nService.attachParsedRmcDataListener(this) &&
           nService.attachParsedPubxDataListener(this) && nService.attachParsedNmeaDataListener(this);
  }

  void onNotifyNmeaData(unsigned char const* npData, unsigned int nSize) override {
    note(std::string(reinterpret_cast<const char*>(npData), nSize));
  }
  void onNotifyDeadReckoningNmeaData(unsigned char const* npData, unsigned int nSize) override {
    onNotifyNmeaData(npData, nSize);
  }
  void onNotifyParsedGgaData(const nfw::GgaSentence& nRecord) override { note(text(nRecord)); }
  void onNotifyParsedGllData(const nfw::GllSentence& nRecord) override { note(text(nRecord)); }
  void onNotifyParsedGsaData(const nfw::GsaSentence& nRecord) override { note(text(nRecord)); }
  void onNotifyParsedGsvData(const nfw::GsvSentence& nRecord) override { note(text(nRecord)); }
  void onNotifyParsedVtgData(const nfw::VtgSentence& nRecord) override { note(text(nRecord)); }
  void onNotifyParsedZdaData(const nfw::ZdaSentence& nRecord) override { note(text(nRecord)); }
  void onNotifyParsedRmcData(const nfw::RmcSentence& nRecord) override { note(text(nRecord)); }
  void onNotifyParsedPubxData(const nfw::PubxSentence& nRecord) override { note(text(nRecord)); }
  void onNotifyParsedNmeaData(const nfw::NmeaSentence& nRecord) override { note(text(nRecord)); }

  std::function<void()> mOnCall = [] {};

 private:
  void note(const std::string& nText) { mNotes.add(mName + nText), mOnCall(); }
  Notes& mNotes;
  const std::string mName;
};

using GnssListener = AnyListener;
using DeadReckoningListener = AnyListener;

/// An epoch; but for ZDA, which is not stored, the binary log gives every sentence back as it is.
const char RMC_TEXT[] = "$GPRMC,083559.000,A,4717.11437,N,00833.91522,E,0.004,77.52,091202,3.1,W,A*1c\r\n";
const char VTG_TEXT[] = "$GPVTG,77.52,T,76.50,M,0.004,N,0.008,K,A*2c\r\n";
const char GGA_TEXT[] = "$GPGGA,092725.000,4717.11399,N,00833.91590,E,1,08,1.01,499.6,M,48.0,M,,*6b\r\n";
const char GSA_TEXT[] = "$GPGSA,A,3,23,29,07,08,09,18,26,28,,,,,1.94,1.18,1.54*0d\r\n";
const char GSV_TEXT_1[] = "$GPGSV,3,1,10,23,38,230,44,29,71,156,47,07,29,116,41,08,09,081,36*7f\r\n";
const char GSV_TEXT_2[] = "$GPGSV,3,2,10,10,07,189,,05,05,220,,09,34,274,42,18,25,309,44*72\r\n";
const char GSV_TEXT_3[] = "$GPGSV,3,3,10,26,82,187,47,28,43,056,46*77\r\n";
const char GLL_TEXT[] = "$GPGLL,4717.11364,N,00833.91565,E,092321.000,A,A*50\r\n";
const char ZDA_TEXT[] = "$GPZDA,082710.00,16,09,2002,00,00*64\r\n";
const char PUBX_TEXT[] =
    "$PUBX,00,081350.000,4717.11321,N,00833.91519,E,546.589,G3,2.1,2.0,0.007,77.52,0.007,0,0.92,1.19,0.77,9,0*45\r\n";

inline void feedText(const std::string& nText, GeodeticSystem nSystem = WGS_84_GPS) {
  gpshost::feedSentence(nText.data(), static_cast<unsigned int>(nText.size()), nSystem);
}

/// Feeds the epoch by way of a receiver: each sentence, its record, and the combined record when its kinds are there.
inline void feedEpoch() {
  gpshost::Receiver lReceiver;
  EXPECT_TRUE(lReceiver.start());
  for (const char* const lpText :
       {RMC_TEXT, VTG_TEXT, GGA_TEXT, GSA_TEXT, GSV_TEXT_1, GSV_TEXT_2, GSV_TEXT_3, GLL_TEXT, ZDA_TEXT, PUBX_TEXT}) {
    EXPECT_TRUE(lReceiver.receive(lpText, static_cast<unsigned int>(strlen(lpText))));
  }
  lReceiver.drain();
}
const size_t EPOCH_NOTE_NUM = 19;  // of a listener of every kind

inline ZTSDeadReckoningDef::DRG_LOCATION_INFO makeReport(unsigned int nGsaNum, unsigned int nGsvNum) {
  ZTSDeadReckoningDef::DRG_LOCATION_INFO lInfo = {};
  lInfo.rmc = {{'G', 'P'}, 'A', 'E', 123519.25, -4807.038, 1131.0, 22.4, 84.4, 23, 3, 94, -3.1};
  lInfo.vtg = {{'G', 'P'}, 'D', 54.7, 34.4, 5.5, 10.2};
  lInfo.gga = {{'G', 'N'}, 6, 8, 123519.25, 4807.038, -1131.0, 0.9, 545.45, -46.9, 3, 120};
  lInfo.gsaCount = nGsaNum;
  for (auto& lGsa : lInfo.gsa) lGsa = {{'G', 'L'}, 'M', 2, {70, 0, 300, 4, 5, 6, 7, 8, 9, 10, 11, 12}, 2.5, 1.3, 2.1};
  lInfo.gsvCount = nGsvNum;
  for (auto& lGsv : lInfo.gsv) {
    lGsv = {{'G', 'A'}, 2, 1, 8, {{1, 1, 40, 46, 83}, {300, 1, 0, 0, 0}, {0, 0, 7, 0, 344}, {14, 1, 22, 45, 228}}};
  }
  lInfo.pubx = {6, 0, 123519.25, 4807.038, -1131.0, 545.4, 2.1, 2.0, 0.007, 77.52, -0.007, 4, 0.92, 1.19, 0.77, 9, 1};
  return lInfo;
}

/// What the sensor log holds of a sentence, or of a report.
template <class Source>
std::string sensorData(const Source& nSource) {
  nfw::NmeaBinaryLogDataVersion1 lVersion;
  return binarylog::textOf(binarylog::encode(lVersion, nSource));
}

}  // namespace nfwtest

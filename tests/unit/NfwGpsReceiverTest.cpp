// The stand-in's receiver reads sentences by itself; the framework, replaying what it recorded of them, parses again.
// Both have to mean the same.
#include <gtest/gtest.h>

#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "Gps.h"
#include "GpsHost.h"
#include "NfwGpsSdkRecords.h"
#include "NfwNmeaDataParser.h"
#include "PlatformSeams.h"
#include "RecordBytes.h"
#include "Recordings.h"

using namespace nfw;
using Strings = std::vector<std::string>;

namespace {

const size_t LAST_MESSAGE = 4;  // satellites that only the receiver reads

// What the framework's record of the SDK cannot say: other talkers than the four are unknown ones.
template <class Record>
std::string note(Record nRecord) {
  if constexpr (!std::is_same_v<Record, PubxSentence>) {
    if (nRecord.satelliteType == SATELLITE_OTHER) nRecord.satelliteType = SATELLITE_UNKNOWN;
  }
  return recordBytes(nRecord);
}

std::string note(const NmeaSentence& nRecord) {
  return note(nRecord.gga) + note(nRecord.gll) + note(nRecord.gsa) + note(nRecord.gsv) + note(nRecord.rmc) +
         note(nRecord.vtg);
}

/// What follows from sentences, by the framework's parser. Of a group's last message it reads no satellites.
class Model {
 public:
  void take(const std::string& nText) {
    mNotes.push_back(nText);
    const char* const lpText = nText.c_str();
    switch (NmeaDataParser::analyzeNmeaSentenceType(lpText, static_cast<unsigned int>(nText.size()))) {
      case NMEA_GGA:
        return combine(&NmeaDataParser::parseGgaSentence, lpText, &NmeaSentence::gga, 1);
      case NMEA_GLL:
        return combine(&NmeaDataParser::parseGllSentence, lpText, &NmeaSentence::gll, 2);
      case NMEA_GSA:
        return combine(&NmeaDataParser::parseGsaSentence, lpText, &NmeaSentence::gsa, 4);
      case NMEA_GSV:
        return takeGsv(lpText);
      case NMEA_RMC:
        return combine(&NmeaDataParser::parseRmcSentence, lpText, &NmeaSentence::rmc, 16);
      case NMEA_VTG:
        return combine(&NmeaDataParser::parseVtgSentence, lpText, &NmeaSentence::vtg, 32);
      case NMEA_ZDA:
        return alone(&NmeaDataParser::parseZdaSentence, lpText);
      case NMEA_PUBX:
        return alone(&NmeaDataParser::parsePubxSentence, lpText);
      default:
        return;
    }
  }

  Strings mNotes;
  std::vector<unsigned int> mGroups;  // satellites in each, of all messages but the last

 private:
  template <class Record>
  using Parse = bool (*)(char const*, unsigned int, Record*);

  template <class Record>
  void alone(Parse<Record> npParse, const char* npText) {
    Record lRecord;
    if (npParse(npText, 1, &lRecord)) mNotes.push_back(note(lRecord));
  }
  template <class Record>
  void combine(Parse<Record> npParse, const char* npText, Record NmeaSentence::*npMember, int nFlag) {
    Record lRecord;
    if (npParse(npText, 1, &lRecord)) complete(lRecord, npMember, nFlag);
  }
  template <class Record>
  void complete(const Record& nRecord, Record NmeaSentence::*npMember, int nFlag) {
    mNotes.push_back(note(nRecord));
    mEpoch.*npMember = nRecord;
    mFlags |= nFlag;
    if (mFlags != 63) return;
    mNotes.push_back(note(mEpoch));
    mFlags = 0;
    mGroup.clear();
  }
  void takeGsv(const char* npText) {
    GsvSentence lMessage;
    if (!NmeaDataParser::parseGsvSentence(npText, 1, &lMessage)) return;
    if (lMessage.messageNumber <= 1) mGroup.clear();
    const bool lIsLast = lMessage.messageNumber >= lMessage.messageCount;
    const unsigned int lNum = !lIsLast                      ? 4
                              : lMessage.messageNumber == 0 ? 0
                                                            : lMessage.messageCount * 4 % lMessage.messageNumber;
    mGroup.insert(mGroup.end(), lMessage.satellite, lMessage.satellite + lNum);
    if (!lIsLast) return;
    std::copy(mGroup.begin(), mGroup.end(), lMessage.satellite);
    mGroups.push_back(static_cast<unsigned int>(mGroup.size()));
    mGroup.clear();
    complete(lMessage, &NmeaSentence::gsv, 8);
  }

  NmeaSentence mEpoch;
  int mFlags = 0;
  std::vector<GsvSatelliteInfo> mGroup;
};

/// What the receiver makes of them, after the framework's own conversion.
class Listener : public GpsNmeaListener, public GpsParseNmeaListener {
 public:
  /// @param nGroups how many satellites each group has in the model: the others are looked at and left out
  explicit Listener(const std::vector<unsigned int>& nGroups) : mGroups(nGroups) {
    Gps::GetInstance()->registerGpsNmeaListener(this, WGS_84_GPS);
    Gps::GetInstance()->registerGpsParseNmeaListener(this, WGS_84_GPS);
  }
  ~Listener() override {
    Gps::GetInstance()->unRegisterGpsNmeaListener(this);
    Gps::GetInstance()->unRegisterGpsParseNmeaListener(this);
  }
  void notifyReceiveNmeaSentence(char const* npText, unsigned int nSize) override {
    mNotes.emplace_back(npText, nSize);
  }
  void notifyParseNmeaSentence(PARSE_NMEA const* npRecord) override {
    NmeaSentence lRecord = convertRecord(*npRecord);
    lRecord.gsv = mGsv;
    mNotes.push_back(note(lRecord));
  }
  void notifyParseGgaSentence(GPGGA const* npRecord) override { add(*npRecord); }
  void notifyParseGllSentence(GPGLL const* npRecord) override { add(*npRecord); }
  void notifyParseGsaSentence(GPGSA const* npRecord) override { add(*npRecord); }
  void notifyParseGsvSentence(GPGSV const* npRecord) override {
    mGsv = convertRecord(*npRecord);
    const unsigned int lNum = mGroup < mGroups.size() ? mGroups[mGroup++] : 0;
    EXPECT_GE(npRecord->satelliteCount, lNum);
    EXPECT_LE(npRecord->satelliteCount, lNum + LAST_MESSAGE);
    for (unsigned int i = lNum; i < GsvSentence::SATELLITE_NUM; ++i) mGsv.satellite[i] = GsvSatelliteInfo();
    mNotes.push_back(note(mGsv));
  }
  void notifyParseRmcSentence(GPRMC const* npRecord) override { add(*npRecord); }
  void notifyParseVtgSentence(GPVTG const* npRecord) override { add(*npRecord); }
  void notifyParseZdaSentence(GPZDA const* npRecord) override { add(*npRecord); }
  void notifyParsePubxSentence(PUBX const* npRecord) override { add(*npRecord); }

  Strings mNotes;

 private:
  template <class Record>
  void add(const Record& nRecord) {
    mNotes.push_back(note(convertRecord(nRecord)));
  }
  const std::vector<unsigned int>& mGroups;
  size_t mGroup = 0;
  GsvSentence mGsv;
};

void expectSameMeaning(const Strings& nSentences) {
  const seams::CapturedLog lLog;
  Model lModel;
  for (const std::string& lText : nSentences) lModel.take(lText);
  Listener lListener(lModel.mGroups);
  gpshost::Receiver lReceiver;
  ASSERT_TRUE(lReceiver.start());
  for (const std::string& lText : nSentences) {
    ASSERT_TRUE(lReceiver.receive(lText.data(), static_cast<unsigned int>(lText.size()))) << lText;
  }
  lReceiver.stop();
  std::string lLast;
  for (size_t i = 0; i < lModel.mNotes.size() && i < lListener.mNotes.size(); ++i) {
    ASSERT_TRUE(lModel.mNotes[i] == lListener.mNotes[i]) << i << " after [" << lLast << "]";
    if (lModel.mNotes[i][0] == '$') lLast = lModel.mNotes[i];
  }
  EXPECT_EQ(lModel.mNotes.size(), lListener.mNotes.size());
}

const char* const SENTENCES[] = {
    "$GPGGA,092725.00,4717.11399,N,00833.91590,E,1,08,1.01,499.6,M,48.0,M,,*5B",
    "$GPGLL,4717.11364,N,00833.91565,E,092321.00,A,A*60",
    "$GPGSA,A,3,23,29,07,08,09,18,26,28,,,,,1.94,1.18,1.54*0D",
    "$GPGSV,3,1,10,23,38,230,44,29,71,156,47,07,29,116,41,08,09,081,36*7F",
    "$GPGSV,3,2,10,10,07,189,,05,05,220,,09,34,274,42,18,25,309,44*72",
    "$GPGSV,3,3,10,26,82,187,47,28,43,056,46*77",
    "$GPRMC,083559.00,A,4717.11437,N,00833.91522,E,0.004,77.52,091202,3.1,W,A*57",
    "$GPVTG,77.52,T,,M,0.004,N,0.008,K,A*06",
    "$GPZDA,082710.00,16,09,2002,00,00*64",
    "$PUBX,00,081350.00,4717.113210,N,00833.915187,E,546.589,G3,2.1,2.0,0.007,77.52,0.007,,0.92,1.19,0.77,9,0,0*5F",
};

const Strings HARD_CASES = {
    "",
    "$",
    "$GPGG",
    "$GPGGA",
    "$GPGGAX,1",
    "xxxGGA,092725.00,,,,,,,,,,,,,",
    "$BDGGA,092725.5,,,,,,,,,,,,,",
    "$GBGGA,092725.50,4717,S,00833,W,6,+1,,,,,,,",
    "$GNGGA,0927251234567,-4717.1,N ,+08.3,EE,06,4294967295,1e1,0x1p3,M,-inf,M,4294967295,0*00",
    "$GNGGA,092725,4717.1,N,833.1,E,3,4,,,,,,,",
    "$GNGGA,092725,4717.1,N,833.1,E,1,4294967296,,,,,,,",
    "$GNGGA,092725,4717.1x,N,833.1,E,1,4,,,,,,,",
    "$GNGGA, 092725 ,4717.1234567890,N,17959.99999999999,E,1,4,nan,,,,,,",
    "$GNGGA,092725,12345678901234567890,N,,,1,,,,,,,,",
    "$GNGGA,092725,1234567890123456789,N,,,1,,,,,,,,",
    "$GNGGA,9,4717.1,N,833.1,E,1,4,,,,,,,",
    "$GPRMC,083559.00,A,4717.1,N,00833.9,E,0.0,7.5,0912,3.1,W,A*57",
    "$GPRMC,083559.00,,,,,,,,091202,,W,N",
    "$GPRMC,083559.00,AB,4717.1,N,00833.9,E,0.0,7.5,09120233,3.1,w,Autonomous\r\n",
    "$GPRMC,083559.00,A,4717.1,N,00833.9,E,0.0,7.5,091202,3.1,W*57",
    "$GPRMC,083559.00,A,4717.1,N,00833.9,E,0.0,7.5,091202,3.1,W,R*57",
    "$GPGSA,A,3,256,4294967295,07,,,,,,,,,,1.94,1.18,*0D",
    "$GPGSA,M,1,,,,,,,,,,,,,,,*0D",
    "$GPGSA,X,1,,,,,,,,,,,,,,,*0D",
    "$GPGSA,A,0,,,,,,,,,,,,,,,*0D",
    "$GPGSV,2,3,10,23,38,230,44,29,71,156,47*7F",
    "$GPGSV,2,3,10,23,38,230,44,29,71,156*7F",
    "$GPGSV,1,1,129*7F",
    "$GPGSV,1,1,00*79",
    "$GPGSV,,,*79",
    "$GPGSV,2,1,04,300,38,230,44,29,256,156,47,,,,,,,,*7F",
    "$GPGSV,2,1,04,300,38,70000,44,29,255,156,255,,,,,,,,*7F",
    "$GPGSV,300,1000,04,1,2,3,4*7F",
    "$GPGSV,2000000000,2000000001,04,1,2,3,4*7F",
    "$GPGLL,4717.1,N,00833.9,E,092321.00,V,N*60",
    "$GPGLL,4717.1,N,00833.9,E,092321.00,A*60",
    "$GPVTG,,,,,,,,,N*2E",
    "$GPVTG,77.52 5,T,,M,0.004,N,0.008,K,A*06",
    "$GPZDA,082710.00,16,09,2002,,*64",
    "$GPZDA,082710.00,65536,09,2002,00,00*64",
    "$GPZDA,082710.00,16,09,2002,-9,00*64",
    "$PUBX,04,073731.00,091202,113851.00,1196,15D,1930035,-2660.664,43,*3C",
    "$PUBX,00,081350.00,,,,,0,XX,0,0,0,0,0,,0,0,0,0,0,0*5F",
    "$PUBX,,081350.00,,,,,0,TTx,0,0,0,0,0,,0,0,0,0,11,0*5F",
    "$PUBXGGA,081350.00,,,,,0,TT,0,0,0,0,0,,0,0,0,0,1,0*5F",
    "$GPTXT,01,01,02,text*1E",
    std::string("$GPZDA,0827\0"
                "10.00,16,09,2002,00,00*64",
                37),
    "$GPVTG,77.52,T,,M,0.004,N,0.008,K,A" + std::string(92, ' '),  // 127 characters
    "$GPVTG,77.52,T,,M,0.004,N,0.008,K,A" + std::string(93, ' '),
};

TEST(GpsReceiverTest, ReadsHardCasesAsTheFrameworkDoes) {
  Strings lSentences(std::begin(SENTENCES), std::end(SENTENCES));
  lSentences.insert(lSentences.end(), HARD_CASES.begin(), HARD_CASES.end());
  expectSameMeaning(lSentences);
}

TEST(GpsReceiverTest, ReadsSpoiltSentencesAsTheFrameworkDoes) {
  static const char BYTES[] = ",,,**$GPNSEWAVD0123456789.-+ ex\t\r";
  std::mt19937 lRandom(5);
  Strings lSentences;
  for (size_t i = 0; i < 20000; ++i) {
    std::string lText = SENTENCES[i % std::size(SENTENCES)];
    for (size_t lCount = 1 + lRandom() % 3; lCount > 0; --lCount) {
      lText.replace(lRandom() % lText.size(), lRandom() % 3, lRandom() % 3, BYTES[lRandom() % (sizeof(BYTES) - 1)]);
    }
    lSentences.push_back(lText);
  }
  expectSameMeaning(lSentences);
}

TEST(GpsReceiverTest, ReadsRecordedSentencesAsTheFrameworkDoes) {
  const auto lRecordings = nfwtest::recordings();
  if (lRecordings.empty()) GTEST_SKIP() << nfwtest::NO_RECORDINGS;
  size_t lCount = 0;
  for (Strings lSentences : lRecordings) {
    for (std::string& lText : lSentences) lText = lText.substr(0, gpshost::Receiver::MAX_SENTENCE);
    expectSameMeaning(lSentences);
    lCount += lSentences.size();
  }
  std::cout << lCount << " lines read alike\n";
}

}  // namespace

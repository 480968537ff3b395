// The stand-in's receiver: what it hands on, in which order, when it waits, and the two geodetic systems.
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include "Gps.h"
#include "GpsHost.h"
#include "ParseNotes.h"
#include "PlatformSeams.h"
#include "ThreadSupport.h"
#include "utl/Event.h"

namespace {

using gpshost::Receiver;

const std::string GGA = "$GPGGA,092725.00,4717.11399,N,00833.91590,E,1,08,1.01,499.6,M,48.0,M,,*5B";
const std::string GLL = "$GPGLL,4717.11364,N,00833.91565,E,092321.00,A,A*60";
const std::string GSA = "$GPGSA,A,3,23,29,07,08,09,18,26,28,,,,,1.94,1.18,1.54*0D";
const std::string GSV_1 = "$GPGSV,3,1,10,23,38,230,44,29,71,156,47,07,29,116,41,08,09,081,36*7F";
const std::string GSV_2 = "$GPGSV,3,2,10,10,07,189,,05,05,220,,09,34,274,42,18,25,309,44*72";
const std::string GSV_3 = "$GPGSV,3,3,10,26,82,187,47,28,43,056,46*77";
const std::string RMC = "$GPRMC,083559.00,A,4717.11437,N,00833.91522,E,0.004,77.52,091202,3.1,W,A*57";
const std::string VTG = "$GPVTG,77.52,T,,M,0.004,N,0.008,K,A*06";
const std::string ZDA = "$GPZDA,082710.00,16,09,2002,00,00*64";
const std::string PUBX_00 =
    "$PUBX,00,081350.00,4717.113210,N,00833.915187,E,546.589,G3,2.1,2.0,0.007,77.52,0.007,,0.92,1.19,0.77,9,0,0*5F";

/// Notes texts as they are and records by their kind. Registered while it lives.
class Listener : public GpsNmeaListener, public nfwtest::ParseNotes {
 public:
  explicit Listener(GeodeticSystem nSystem = WGS_84_GPS) {
    Gps::GetInstance()->registerGpsNmeaListener(this, nSystem);
    Gps::GetInstance()->registerGpsParseNmeaListener(this, nSystem);
  }
  ~Listener() override {
    Gps::GetInstance()->unRegisterGpsNmeaListener(this);
    Gps::GetInstance()->unRegisterGpsParseNmeaListener(this);
  }
  void notifyReceiveNmeaSentence(char const* npText, unsigned int nSize) override {
    note(std::string(npText, nSize));
    if (mOnText) mOnText();
  }
  void note(const char* npKind, const void*) override { note(std::string(npKind)); }
  void notifyParseNmeaSentence(PARSE_NMEA const* npRecord) override { note(std::string("six")), mGga = npRecord->gga; }
  void notifyParseGgaSentence(GPGGA const* npRecord) override { note(std::string("gga")), mGga = *npRecord; }
  void notifyParseGsvSentence(GPGSV const* npRecord) override {
    std::string lNote = "gsv";
    for (unsigned int i = 0; i < npRecord->satelliteCount; ++i) {
      lNote += " " + std::to_string(npRecord->satellite[i].number) + (npRecord->satellite[i].valid != 0 ? "" : "-");
    }
    note(lNote);
  }

  std::vector<std::string> mNotes;  // of the receiver's thread until it is drained
  std::function<void()> mOnText;
  GPGGA mGga{};

 private:
  void note(const std::string& nNote) { mNotes.push_back(nNote); }
};

using Notes = std::vector<std::string>;

bool take(Receiver& nReceiver, const std::string& nText) {
  return nReceiver.receive(nText.data(), static_cast<unsigned int>(nText.size()));
}

Notes notesOf(const Notes& nSentences) {
  Listener lListener;
  Receiver lReceiver;
  EXPECT_TRUE(lReceiver.start());
  for (const std::string& lText : nSentences) EXPECT_TRUE(take(lReceiver, lText));
  lReceiver.drain();
  return lListener.mNotes;
}

std::string join(const Notes& nNotes) {
  std::string lAll;
  for (const std::string& lNote : nNotes) lAll += lNote + "|";
  return lAll;
}

TEST(ReceiverStandIn, HandsOnTheTextThenWhatFollowsFromIt) {
  const std::string lGroup = "gsv 23 29 7 8 10- 5- 9 18 26 28", lGsv = GSV_1 + "|" + GSV_2 + "|" + GSV_3 + "|" + lGroup;
  const std::string lOther = "$GPTXT,01,01,02,u*00", lSpoilt = "$GPGGA,spoilt";
  EXPECT_EQ(RMC + "|rmc|" + VTG + "|vtg|" + GGA + "|gga|" + GSA + "|gsa|" + lGsv + "|" + ZDA + "|zda|" + GLL +
                "|gll|six|" + PUBX_00 + "|pubx|" + GLL + "|gll|" + lOther + "|" + lSpoilt + "|",
            join(notesOf({RMC, VTG, GGA, GSA, GSV_1, GSV_2, GSV_3, ZDA, GLL, PUBX_00, GLL, lOther, lSpoilt})));
  EXPECT_EQ(VTG + "|vtg|" + RMC + "|rmc|" + GGA + "|gga|" + GSA + "|gsa|" + GSV_1 + "|" + GLL + "|gll|" + GSV_2 + "|" +
                GSV_3 + "|" + lGroup + "|six|" + GSV_2 + "|" + GSV_3 + "|gsv 10- 5- 9 18 26 28|" + GSV_1 + "|" + GSV_1 +
                "|" + GSV_3 + "|gsv 23 29 7 8 26 28|",
            join(notesOf({VTG, RMC, GGA, GSA, GSV_1, GLL, GSV_2, GSV_3, GSV_2, GSV_3, GSV_1, GSV_1, GSV_3})));
}

TEST(ReceiverStandIn, ALastMessageHasTheSatellitesThatStandInIt) {
  const struct {
    const char *mpText, *mpNote;
  } CASES[] = {
      {"$GPGSV,1,1,00*79", "gsv"},
      {"$GPGSV,1,1,03,03,03,111,00,04,15,270,,06,01,010,12*74", "gsv 3 4- 6"},
      {"$GPGSV,1,1,03,03,03,111,00,,,,,,,,*74", "gsv 3"},  // filled up
      {"$GPGSV,1,1,01,21,00,000,,6*4F", "gsv 21-"},        // with a signal
      {"$GPGSV,1,1,05,1,1,1,1,2,2,2,2,3,3,3,3,4,4,4,4,5,5,5,5*00", "gsv 1 2 3 4"},
      {"$GPGSV,1,1,02,1,1,1,1,2,2,x,2*00", "gsv 1"},
  };
  for (const auto& lCase : CASES) EXPECT_EQ((Notes{lCase.mpText, lCase.mpNote}), notesOf({lCase.mpText}));
}

TEST(ReceiverStandIn, RunsFromStartToStop) {
  Listener lListener;
  Receiver lReceiver;
  EXPECT_FALSE(take(lReceiver, GGA));
  lReceiver.drain();
  lReceiver.stop();
  {
    const seams::Failing lFailing(seams::THREAD_START);
    EXPECT_FALSE(lReceiver.start());
    EXPECT_FALSE(take(lReceiver, GGA));
  }
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(lReceiver.start());
    EXPECT_FALSE(lReceiver.start());
    EXPECT_FALSE(lReceiver.receive(nullptr, 1));
    EXPECT_TRUE(take(lReceiver, std::string(Receiver::MAX_SENTENCE, 'x')));
    EXPECT_FALSE(take(lReceiver, std::string(Receiver::MAX_SENTENCE + 1, 'x')));
    EXPECT_TRUE(take(lReceiver, VTG));
    lReceiver.stop();
    EXPECT_FALSE(take(lReceiver, GGA));
    EXPECT_EQ((Notes{std::string(Receiver::MAX_SENTENCE, 'x'), VTG, "vtg"}), lListener.mNotes);
    lListener.mNotes.clear();
  }
}

TEST(ReceiverStandIn, HoldsItsCallersBackAndLosesNothing) {
  const unsigned int PRODUCERS = 3, SENTENCES = 1000;
  Listener lListener;
  utl::Event lGo(false);
  lListener.mOnText = [&lGo] { lGo.waitToOn(0); };
  Receiver lReceiver;
  lReceiver.start();
  std::atomic<unsigned int> lTaken{0};
  std::vector<std::thread> lProducers;
  for (unsigned int i = 0; i < PRODUCERS; ++i) {
    lProducers.emplace_back([&, i] {
      for (unsigned int j = 0; j < SENTENCES; ++j, ++lTaken) {
        EXPECT_TRUE(take(lReceiver, std::to_string(i) + " " + std::to_string(j)));
      }
    });
  }
  EXPECT_TRUE(contract::eventually([&] { return lTaken >= Receiver::QUEUE_SIZE; }));
  EXPECT_EQ(Receiver::QUEUE_SIZE, lTaken);  // the one that is being handed on is one of them
  lGo.on();
  for (std::thread& lProducer : lProducers) lProducer.join();
  lReceiver.drain();
  unsigned int lNext[PRODUCERS] = {};
  for (const std::string& lNote : lListener.mNotes) {
    const size_t i = static_cast<size_t>(lNote[0] - '0');
    EXPECT_EQ(std::to_string(i) + " " + std::to_string(lNext[i]++), lNote);
  }
  EXPECT_EQ(PRODUCERS * SENTENCES, lListener.mNotes.size());
}

TEST(ReceiverStandIn, AStopLetsWaitingCallersGo) {
  Listener lListener;
  utl::Event lGo(false);
  lListener.mOnText = [&lGo] { lGo.waitToOn(0); };
  Receiver lReceiver;
  lReceiver.start();
  for (unsigned int i = 0; i < Receiver::QUEUE_SIZE; ++i) take(lReceiver, "x");
  std::thread lProducer([&] { EXPECT_FALSE(take(lReceiver, "late")); });
  std::thread lStopper([&] { lReceiver.stop(); });
  lProducer.join();  // whether the stop came before its wait or after it
  lGo.on();
  lStopper.join();
  EXPECT_EQ(Receiver::QUEUE_SIZE, lListener.mNotes.size());
}

std::string withCheckSum(const std::string& nBody) {
  unsigned int lSum = 0;
  for (const char lByte : nBody) lSum ^= static_cast<unsigned char>(lByte);
  char lText[8];
  snprintf(lText, sizeof(lText), "*%02X", lSum);
  return "$" + nBody + lText;
}

// What is moved, as the origin of the survey of Japan is, and how it is written: as wide as it was, carried from
// minutes to degrees, over the zero meridian.
TEST(ReceiverStandIn, TheOtherSystemHasItsTextsAndRecordsMoved) {
  const struct {
    const char *mpWgs84, *mpTokyo;
  } CASES[] = {
      {"GPRMC,083559.00,A,3539.48595,N,13944.48126,E,0.0,77.5,091202,3.1,W,A",
       "GPRMC,083559.00,A,3539.29222,N,13944.67364,E,0.0,77.5,091202,3.1,W,A"},
      {"GPGLL,3539,N,13944.,E,092321.00,A,A", "GPGLL,3539,N,13944.,E,092321.00,A,A"},
      {"GPGLL,3600.0961,N,13959.8961,E,092321.00,A,A", "GPGLL,3559.9043,N,14000.0907,E,092321.00,A,A"},
      {"GPGLL,0000.1000,N,00000.5000,E,092321.00,A,A", "GPGLL,0000.1761,S,00000.1024,W,092321.00,A,A"},
      {"PUBX,00,081350.00,3539.4859500,N,13944.4812600,E,546.589,G3,2.1,2.0,0.0,77.5,0.0,,0.9,1.1,0.7,9,0,0",
       "PUBX,00,081350.00,3539.2922188,N,13944.6736369,E,546.589,G3,2.1,2.0,0.0,77.5,0.0,,0.9,1.1,0.7,9,0,0"},
      {"PUBX,03,01,3539.4859500,N,13944.4812600,E", nullptr},
      {"GPGGA,083559.00,,,,,0,00,99.99,,,,,,", nullptr},
      {"GPGGA,083559.00,3539.48x,N,13944.48,E,0,00,99.99,,,,,,", nullptr},
      {"GPGGA,083559.00,3539.48,X,13944.48,E,0,00,99.99,,,,,,", nullptr},
      {"GPVTG,77.52,T,,M,0.004,N,0.008,K,A", nullptr},
      {"GPGLL,3539.48", nullptr},
      {"GPGGA,000001,3539.48595,N,13944.48126,E,1,08,1.01,25.0,M,37.0,M,,",
       "GPGGA,000001,3539.29222,N,13944.67364,E,1,08,1.01,25.0,M,37.0,M,,"},
  };
  Listener lWgs84, lTokyo(TOKYO_GPS);
  Receiver lReceiver;
  lReceiver.start();
  for (const auto& lCase : CASES) {
    take(lReceiver, withCheckSum(lCase.mpWgs84) + "\r\n");
    lReceiver.drain();
    EXPECT_EQ(withCheckSum(lCase.mpWgs84) + "\r\n", lWgs84.mNotes[0]);
    EXPECT_EQ(withCheckSum(lCase.mpTokyo != nullptr ? lCase.mpTokyo : lCase.mpWgs84) + "\r\n", lTokyo.mNotes[0]);
    EXPECT_EQ(lWgs84.mNotes.size(), lTokyo.mNotes.size()) << "records as well";
    lWgs84.mNotes.clear(), lTokyo.mNotes.clear();
  }
  EXPECT_NEAR(39.4859, lWgs84.mGga.latitude.minute, 1e-9);
  EXPECT_NEAR(39.2922, lTokyo.mGga.latitude.minute, 1e-9);
  take(lReceiver, "$GPGLL,3600.0961,N,13959.8961,E");
  lReceiver.drain();
  EXPECT_EQ("$GPGLL,3559.9043,N,14000.0907,E", lTokyo.mNotes[0]) << "no checksum where there was none";
}

}  // namespace

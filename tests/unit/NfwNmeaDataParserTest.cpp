#include <gtest/gtest.h>

#include <clocale>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "NfwNmeaCheckSumCalclator.h"
#include "NfwNmeaDataParser.h"
#include "NmeaConversion.h"
#include "NmeaItem.h"
#include "NmeaParserCheck.h"
#include "PlatformSeams.h"

using namespace nfw;
using Lines = std::vector<std::string>;

namespace {

template <class Record>
using Parse = bool (*)(char const*, unsigned int, Record*);

class NmeaDataParserTest : public testing::Test {
 protected:
  template <class Record>
  Record parsed(Parse<Record> npParse, const std::string& nText) {
    Record lRecord;
    EXPECT_TRUE(npParse(nText.c_str(), 1, &lRecord)) << nText;
    EXPECT_EQ(Lines(), mLog.texts()) << nText;
    return lRecord;
  }

  template <class Record>
  void expectFailure(Parse<Record> npParse, const std::string& nText, const Lines& nLines) {
    mLog.clear();
    Record lRecord;
    EXPECT_FALSE(npParse(nText.c_str(), 1, &lRecord)) << nText;
    EXPECT_EQ(nLines, mLog.texts()) << nText;
    mLog.clear();
  }

  GgaSentence gga(const std::string& nText) { return parsed(&NmeaDataParser::parseGgaSentence, nText); }
  RmcSentence rmc(const std::string& nText) { return parsed(&NmeaDataParser::parseRmcSentence, nText); }
  GsaSentence gsa(const std::string& nText) { return parsed(&NmeaDataParser::parseGsaSentence, nText); }
  GsvSentence gsv(const std::string& nText) { return parsed(&NmeaDataParser::parseGsvSentence, nText); }

  void expectGgaFailure(const std::string& nText, const Lines& nLines) {
    expectFailure(&NmeaDataParser::parseGgaSentence, nText, nLines);
  }
  void expectRmcFailure(const std::string& nText, const Lines& nLines) {
    expectFailure(&NmeaDataParser::parseRmcSentence, nText, nLines);
  }

  seams::CapturedLog mLog;
};

enum GgaField { TIME = 1, LATITUDE, NORTH_SOUTH, LONGITUDE, EAST_WEST, QUALITY, COUNT, HDOP, ALTITUDE, STATION = 14 };

/// A GGA sentence of empty fields but for its time and one more.
std::string ggaWith(GgaField nField, const std::string& nText) {
  std::string lSentence = "$GPGGA";
  for (int i = TIME; i <= STATION; ++i) lSentence += "," + (i == nField ? nText : i == TIME ? "123456" : "");
  return lSentence + "*00";
}

void expectTime(const GnssSentenceTime& nTime, int nHour, int nMinute, int nSecond, int nMillisecond) {
  EXPECT_EQ(nHour, nTime.hour);
  EXPECT_EQ(nMinute, nTime.minute);
  EXPECT_EQ(nSecond, nTime.second);
  EXPECT_EQ(nMillisecond, nTime.millisecond);
}

void expectCoordinate(const GnssSentenceCoordinate& nCoordinate, double nValue, int nDegree, double nMinute,
                      CoordinateDirection nDirection) {
  EXPECT_EQ(nValue, nCoordinate.value);
  EXPECT_EQ(nDegree, nCoordinate.degree);
  EXPECT_EQ(nMinute, nCoordinate.minute);
  EXPECT_EQ(nDirection, nCoordinate.direction);
}

TEST_F(NmeaDataParserTest, AnalyzeLooksAtThreeCharactersFromTheFourth) {
  const struct {
    const char* mpText;
    int mType;
  } CASES[] = {{"$GPGGA,", 1}, {"$GPGLL", 2},   {"$GNGSA,A", 3}, {"$BDGSV", 4}, {"$GPRMC", 5},  {"$GPVTG", 6},
               {"$GPZDA", 7},  {"$PUBX,00", 8}, {"$PUBX", 8},    {"xxxGGA", 1}, {"$GPTXT,", 0}, {"$GPGG", 0},
               {"$PUB", 0},    {"$PUGGA", 1},   {"GGA", 0},      {"", 0}};
  for (const auto& lCase : CASES) {
    const auto lLength = static_cast<unsigned int>(std::strlen(lCase.mpText));
    EXPECT_EQ(lCase.mType, NmeaDataParser::analyzeNmeaSentenceType(lCase.mpText, lLength)) << lCase.mpText;
  }
  EXPECT_EQ(0, NmeaDataParser::analyzeNmeaSentenceType(nullptr, 6));
  EXPECT_EQ(0, NmeaDataParser::analyzeNmeaSentenceType("$GPGGA", 0));
}

TEST_F(NmeaDataParserTest, AnalyzeReadsNeitherBehindTheLengthNorBehindTheTerminator) {
  const char* const TEXT = "$GPGGA,";
  for (unsigned int lLength = 1; lLength <= 6; ++lLength) {
    const std::vector<char> lExact(TEXT, TEXT + lLength);
    EXPECT_EQ(lLength == 6 ? 1 : 0, NmeaDataParser::analyzeNmeaSentenceType(lExact.data(), lLength));
  }
  const std::vector<char> lTerminated = {'$', 'G', 'P', 'G', '\0'};
  EXPECT_EQ(0, NmeaDataParser::analyzeNmeaSentenceType(lTerminated.data(), 100));
  EXPECT_EQ(0, NmeaDataParser::analyzeNmeaSentenceType("$G\0GGA", 6));
}

TEST_F(NmeaDataParserTest, GgaIsReadWhole) {
  const GgaSentence lGga = gga("$GPGGA,092725.015,4717.11399,S,00833.91590,W,2,08,1.01,-499.6,M,48.0,M,5,0102*5B\r\n");
  EXPECT_EQ(SATELLITE_GPS, lGga.satelliteType);
  expectTime(lGga.utcTime, 9, 27, 25, 15);
  expectCoordinate(lGga.latitude, 4717.11399, 47, 17.1139, DIRECTION_SOUTH);
  expectCoordinate(lGga.longitude, 833.9159, 8, 33.9159, DIRECTION_WEST);
  EXPECT_EQ(QUALITY_DIFFERENTIAL, lGga.quality);
  EXPECT_EQ(8u, lGga.satelliteCount);
  EXPECT_EQ(1.01, lGga.hdop);
  EXPECT_EQ(-499.6, lGga.altitude);
  EXPECT_EQ(48.0, lGga.geoidSeparation);
  EXPECT_EQ(5u, lGga.dgpsDataAge);
  EXPECT_EQ(102u, lGga.dgpsStationId);
}

TEST_F(NmeaDataParserTest, EmptyFieldsOfAGgaAreZero) {
  const GgaSentence lGga = gga("$GLGGA,092725,,,  ,,,,,,,,,,*5B");
  EXPECT_EQ(SATELLITE_GLONASS, lGga.satelliteType);
  expectTime(lGga.utcTime, 9, 27, 25, 0);
  expectCoordinate(lGga.latitude, 0.0, 0, 0.0, DIRECTION_NONE);
  expectCoordinate(lGga.longitude, 0.0, 0, 0.0, DIRECTION_NONE);
  EXPECT_EQ(QUALITY_INVALID, lGga.quality);
  EXPECT_EQ(0.0, lGga.hdop + lGga.altitude + lGga.geoidSeparation);
  EXPECT_EQ(0u, lGga.satelliteCount + lGga.dgpsDataAge + lGga.dgpsStationId);
}

TEST_F(NmeaDataParserTest, GgaQualityKnowsFourNumbers) {
  const struct {
    const char* mpField;
    SatelliteQuality mQuality;
  } CASES[] = {{"0", QUALITY_INVALID},   {"", QUALITY_INVALID},     {"1", QUALITY_GPS},   {"2", QUALITY_DIFFERENTIAL},
               {"6", QUALITY_ESTIMATED}, {"06", QUALITY_ESTIMATED}, {" +1 ", QUALITY_GPS}};
  for (const auto& lCase : CASES) {
    EXPECT_EQ(lCase.mQuality, gga(ggaWith(QUALITY, lCase.mpField)).quality) << lCase.mpField;
  }
  for (const char* lpField : {"3", "4", "5", "7", "-1", "A", "1.0", "99999999999"}) {
    expectGgaFailure(ggaWith(QUALITY, lpField),
                     {"NmeaDataParser::convertSatelliteQuality(): Unknown SatelliteQuality Type",
                      "NmeaDataParser::parseGgaSentence(): convertSatelliteQuality() Error"});
  }
  GgaSentence lGga;
  EXPECT_FALSE(NmeaDataParser::parseGgaSentence(ggaWith(QUALITY, "3").c_str(), 1, &lGga));
  EXPECT_EQ(QUALITY_UNKNOWN, lGga.quality);
}

TEST_F(NmeaDataParserTest, FractionOfASecondIsTakenAsItStands) {
  for (const auto& [lText, lMillisecond] : std::vector<std::pair<const char*, int>>{{"123456", 0},
                                                                                    {"123456.", 0},
                                                                                    {"123456.5", 5},
                                                                                    {"123456.50", 50},
                                                                                    {"123456.007", 7},
                                                                                    {"123456.9999", 999},
                                                                                    {"123456x250", 250},
                                                                                    {"1234567", 0},
                                                                                    {"12345678", 8},
                                                                                    {" 123456.5 ", 5}}) {
    expectTime(gga(ggaWith(TIME, lText)).utcTime, 12, 34, 56, lMillisecond);
  }
  expectTime(gga(ggaWith(TIME, "12345")).utcTime, 12, 34, 5, 0);
  for (const char* lpText : {"", "1", "12", "1234", "1234 6", "-23456", "x23456", "123456.x", "123456. 5"}) {
    expectGgaFailure(ggaWith(TIME, lpText), {"NmeaDataParser::divideTime(): utl::toUint16() Error",
                                             "NmeaDataParser::parseGgaSentence(): divideTime() Error"});
  }
}

TEST_F(NmeaDataParserTest, CoordinateIsKeptAsWrittenAndDivided) {
  const struct {
    const char* mpField;
    double mValue;
    int mDegree;
    double mMinute;
  } CASES[] = {{"3539.1234", 3539.1234, 35, 39.1234},
               {"3539.12349876", 3539.12349876, 35, 39.1234},
               {"3539.", 3539.0, 35, 39.0},
               {"3539", 3539.0, 35, 39.0},
               {"35", 35.0, 35, 0.0},
               {"5", 5.0, 5, 0.0},
               {"-5.25", -5.25, -5, 0.25},
               {"12e2", 1200.0, 12, 0.0},
               {"353.91234567", 353.91234567, 35, 3.91234},
               {"12345678.5", 12345678.5, 12, 345678.0},
               {" 3539.5 ", 3539.5, 35, 39.5}};
  for (const auto& lCase : CASES) {
    const GgaSentence lGga = gga(ggaWith(LATITUDE, lCase.mpField));
    expectCoordinate(lGga.latitude, lCase.mValue, lCase.mDegree, lCase.mMinute, DIRECTION_NONE);
  }
  expectGgaFailure(ggaWith(LATITUDE, "3539.1x"), {"NmeaDataParser::parseCoordinate(): lpUnkownStr is [x]",
                                                  "NmeaDataParser::parseGgaSentence(): parseCoordinate() Lat Error"});
  expectGgaFailure(ggaWith(LONGITUDE, "3.5"), {"NmeaDataParser::parseCoordinate(): utl::toSint32() Error",
                                               "NmeaDataParser::parseGgaSentence(): parseCoordinate() Lon Error"});
}

TEST_F(NmeaDataParserTest, DirectionIsTheWholeField) {
  EXPECT_EQ(DIRECTION_NORTH, gga(ggaWith(NORTH_SOUTH, " N ")).latitude.direction);
  EXPECT_EQ(DIRECTION_NONE, gga(ggaWith(NORTH_SOUTH, "NX")).latitude.direction);
  EXPECT_EQ(DIRECTION_WEST, gga(ggaWith(EAST_WEST, "W")).longitude.direction);
  EXPECT_EQ(DIRECTION_NONE, gga(ggaWith(EAST_WEST, "w")).longitude.direction);
}

TEST_F(NmeaDataParserTest, FieldHoldsNineteenCharactersBlanksIncluded) {
  EXPECT_EQ(8u, gga(ggaWith(COUNT, "0000000000000000008")).satelliteCount);
  EXPECT_EQ(8u, gga(ggaWith(COUNT, "         8         ")).satelliteCount);
  EXPECT_EQ(7u, gga("$GPGGA,123456,,,,,,,,,,,,,0000000000000000007").dgpsStationId);
  const Lines LINES = {"NmeaDataParser::extractHeadData(): Invalid Sentense",
                       "NmeaDataParser::parseGgaSentence(): Extract SatelliteView Error"};
  expectGgaFailure(ggaWith(COUNT, "00000000000000000008"), LINES);
  expectGgaFailure(ggaWith(COUNT, "          8         "), LINES);
  expectGgaFailure("$GPGGA,123456,,,,,,00000000000000000008", LINES);
  expectGgaFailure(ggaWith(HDOP, "1.0000000000000000000"), {"NmeaDataParser::extractHeadData(): Invalid Sentense",
                                                            "NmeaDataParser::parseGgaSentence(): Extract HDOP Error"});
}

TEST_F(NmeaDataParserTest, SentenceHolds127Characters) {
  const std::string lText = ggaWith(TIME, "123456");
  gga(lText + std::string(127 - lText.size(), ' '));
  expectGgaFailure(lText + std::string(128 - lText.size(), ' '),
                   {"NmeaDataParser::parseGgaSentence(): utl::copyStr() GgaSentence Error"});
  expectFailure(&NmeaDataParser::parsePubxSentence, std::string(128, '$'),
                {"NmeaDataParser::parsePubxSentence(): utl::copyStr() PubxSentence Error"});
}

TEST_F(NmeaDataParserTest, NothingIsLeftBehindTheStar) {
  expectRmcFailure(
      "$GPRMC,083559.00,A,4717.11437,N,00833.91522,E,0.004,77.52,091202,,W*6A",
      {"NmeaDataParser::extractHeadData(): Sentense None", "NmeaDataParser::parseRmcSentence(): Extract Mode Error"});
  expectRmcFailure("$GPRMC*", {"NmeaDataParser::extractHeadData(): Sentense None",
                               "NmeaDataParser::parseRmcSentence(): Extract UTC Error"});
  expectRmcFailure("$GPRMC,", {"NmeaDataParser::extractHeadData(): Sentense None",
                               "NmeaDataParser::parseRmcSentence(): Extract UTC Error"});
  expectRmcFailure("", {"NmeaDataParser::extractHeadData(): Sentense None",
                        "NmeaDataParser::parseRmcSentence(): Extract RMC Error"});
}

TEST_F(NmeaDataParserTest, WithoutAStarTheLastFieldTakesTheLineEndIn) {
  expectGgaFailure("$GPGGA,123456,,,,,,,,,,,,,1\r\n",
                   {"NmeaDataParser::parseGgaSentence(): utl::toUint32() DgpsId Error"});
  EXPECT_EQ(1u, gga("$GPGGA,123456,,,,,,,,,,,,,1").dgpsStationId);
}

TEST_F(NmeaDataParserTest, AddressIsTheTypeBehindThreeCharacters) {
  for (const char* lpAddress : {"$GPGLL", "$GPGGAX", "GGA", "", "  ", "$,GGA"}) {
    expectGgaFailure(std::string(lpAddress) + ",123456,,,,,,,,,,,,,*00",
                     {"NmeaDataParser::parseGgaSentence(): Not GGA Sentense"});
  }
  expectFailure(&NmeaDataParser::parsePubxSentence, "$PUBXX,00",
                {"NmeaDataParser::parsePubxSentence(): Not PUBX Sentense"});
  for (const auto& [lAddress, lType] :
       std::vector<std::pair<std::string, SatelliteType>>{{"$GPGSV", SATELLITE_GPS},
                                                          {"$GLGSV", SATELLITE_GLONASS},
                                                          {"$GAGSV", SATELLITE_GALILEO},
                                                          {"$GNGSV", SATELLITE_COMBINED},
                                                          {"$GBGSV", SATELLITE_OTHER},
                                                          {"$G GSV", SATELLITE_OTHER}}) {
    EXPECT_EQ(lType, gsv(lAddress + ",1,1,03*00").satelliteType) << lAddress;
  }
}

TEST_F(NmeaDataParserTest, OtherTalkersAreReportedAndParsed) {
  GsvSentence lGsv;
  EXPECT_TRUE(NmeaDataParser::parseGsvSentence("$BDGSV,1,1,03*00", 1, &lGsv));
  EXPECT_EQ(SATELLITE_UNKNOWN, lGsv.satelliteType);
  EXPECT_TRUE(mLog.has("NmeaDataParser::getSatelliteType(): nData[1] is not 'G'"));
  EXPECT_TRUE(NmeaDataParser::parseGsvSentence("xxxGSV,1,1,03*00", 1, &lGsv));
  EXPECT_TRUE(mLog.has("NmeaDataParser::getSatelliteType(): nData[0] is not '$'"));
}

TEST_F(NmeaDataParserTest, GllNeedsItsMode) {
  const GllSentence lGll =
      parsed(&NmeaDataParser::parseGllSentence, "$GNGLL,4717.11364,N,00833.91565,E,092321.00,A,Dx*60");
  EXPECT_EQ(SATELLITE_COMBINED, lGll.satelliteType);
  expectCoordinate(lGll.latitude, 4717.11364, 47, 17.1136, DIRECTION_NORTH);
  expectCoordinate(lGll.longitude, 833.91565, 8, 33.9156, DIRECTION_EAST);
  expectTime(lGll.utcTime, 9, 23, 21, 0);
  EXPECT_TRUE(lGll.status);
  EXPECT_EQ(MODE_DIFFERENTIAL, lGll.mode);
  expectFailure(&NmeaDataParser::parseGllSentence, "$GPGLL,3854.5087,N,07726.4523,W,125106,V,S*55",
                {"NmeaDataParser::convertAutonomousMethodType(): Unknown Type nData[S]",
                 "NmeaDataParser::parseGllSentence(): Convert Mode Error"});
  expectFailure(&NmeaDataParser::parseGllSentence, "$GPGLL,3854.5087,N,07726.4523",
                {"NmeaDataParser::extractHeadData(): Sentense None",
                 "NmeaDataParser::parseGllSentence(): Extract E・W Info Error"});
}

TEST_F(NmeaDataParserTest, GsaKeepsTwelveNumbersInBothWidths) {
  GsaSentence lGsa;
  lGsa.satelliteId[20] = 5;
  lGsa.vdop = 9;
  EXPECT_TRUE(NmeaDataParser::parseGsaSentence("$GPGSA,M,3,23,255,256,4294967295,,,,,,,,7,1.94,,1.54,1*0D", 1, &lGsa));
  EXPECT_EQ(POSITIONING_MANUAL, lGsa.positioningType);
  EXPECT_EQ(GSA_3D, lGsa.mode);
  const uint32_t IDS[] = {23, 255, 256, 4294967295u, 0, 0, 0, 0, 0, 0, 0, 7};
  for (int i = 0; i < 36; ++i) {
    EXPECT_EQ(i < 12 ? IDS[i] : 0, lGsa.satelliteId[i]) << i;
    EXPECT_EQ(i < 12 && IDS[i] < 256 ? IDS[i] : 0, lGsa.satelliteNumber[i]) << i;
  }
  EXPECT_EQ(1.94, lGsa.pdop);
  EXPECT_EQ(0.0, lGsa.hdop);
  EXPECT_EQ(1.54, lGsa.vdop);
}

TEST_F(NmeaDataParserTest, GsaFailures) {
  const struct {
    const char* mpFields;
    Lines mLines;
  } CASES[] = {
      {"X,3",
       {"NmeaDataParser::convertPositioningType(): Unknown Type",
        "NmeaDataParser::parseGsaSentence(): Convert PositioningType Error"}},
      {"A,",
       {"NmeaDataParser::extractHeadData(): Sentense None", "NmeaDataParser::parseGsaSentence(): Extract Mode Error"}},
      {"A,4",
       {"NmeaDataParser::convertGsaMode(): Unknown Mode", "NmeaDataParser::parseGsaSentence(): Convert Mode Error"}},
      {"A,3,4294967296", {"NmeaDataParser::parseGsaSentence(): utl::toUint32() SatelliteNumber Error"}},
      {"A,1,,,,,,,,,,,,",
       {"NmeaDataParser::extractHeadData(): Sentense None",
        "NmeaDataParser::parseGsaSentence(): Extract UsedSatellite Error"}},
      {"A,1,,,,,,,,,,,,,1.2.3", {"NmeaDataParser::parseGsaSentence(): Pdop strtod() lpUnkownStr is [.3]"}}};
  for (const auto& lCase : CASES) {
    expectFailure(&NmeaDataParser::parseGsaSentence, "$GPGSA," + std::string(lCase.mpFields), lCase.mLines);
  }
}

TEST_F(NmeaDataParserTest, GsvReadsFourSatellitesOfAllButTheLastMessage) {
  const std::string lBlocks = ",12,23,38,230,44,,71,156,,307,00,000,41,08,09,359,36*7F";
  const GsvSentence lGsv = gsv("$GPGSV,3,1" + lBlocks);
  EXPECT_EQ(3u, lGsv.messageCount);
  EXPECT_EQ(1u, lGsv.messageNumber);
  EXPECT_EQ(12u, lGsv.satelliteView);
  const struct {
    uint8_t mNumber;
    uint32_t mId;
    bool mIsValid;
    uint8_t mElevation;
    uint32_t mAzimuth;
    uint8_t mSnr;
  } SATELLITES[] = {{23, 23, true, 38, 230, 44},
                    {0, 0, false, 71, 156, 0},
                    {0, 307, true, 0, 0, 41},
                    {8, 8, true, 9, 359, 36},
                    {0, 0, false, 0, 0, 0}};
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(SATELLITES[i].mNumber, lGsv.satellite[i].satelliteNumber) << i;
    EXPECT_EQ(SATELLITES[i].mId, lGsv.satellite[i].satelliteId) << i;
    EXPECT_EQ(SATELLITES[i].mIsValid, lGsv.satellite[i].valid) << i;
    EXPECT_EQ(SATELLITES[i].mElevation, lGsv.satellite[i].elevation) << i;
    EXPECT_EQ(SATELLITES[i].mAzimuth, lGsv.satellite[i].azimuth) << i;
    EXPECT_EQ(SATELLITES[i].mSnr, lGsv.satellite[i].snr) << i;
  }
  for (const char* lpGroup : {"$GPGSV,3,3", "$GPGSV,1,1", "$GPGSV,,", "$GPGSV,0,0", "$GPGSV,2,4"}) {
    EXPECT_EQ(0u, gsv(lpGroup + lBlocks).satellite[0].satelliteId) << lpGroup;
  }
  EXPECT_EQ(0u, gsv("$GPGSV,2,5" + lBlocks).satellite[3].satelliteId);  // 8 modulo 5: three
  EXPECT_EQ(307u, gsv("$GPGSV,2,5" + lBlocks).satellite[2].satelliteId);
  EXPECT_EQ(307u, gsv("$GPGSV,3," + lBlocks).satellite[2].satelliteId);
}

TEST_F(NmeaDataParserTest, GsvFailures) {
  const struct {
    const char* mpFields;
    Lines mLines;
  } CASES[] = {
      {"x,1,3", {"NmeaDataParser::parseGsvSentence(): utl::toUint32() MessageCount Error"}},
      {"1,1,129", {"NmeaDataParser::parseGsvSentence(): SatelliteView is Over"}},
      {"2,1,8,1,-5", {"NmeaDataParser::parseGsvSentence(): utl::toUint8() Elevation Error lDataItem[-5]"}},
      {"2,1,8,1,5,-1", {"NmeaDataParser::parseGsvSentence(): utl::toUint32() Azimuth Error"}},
      {"2,1,8,1,5,1,256*", {"NmeaDataParser::parseGsvSentence(): utl::toUint8() Snr Error DataItem[256]"}},
      {"2,1,8,1,5,1,6*",
       {"NmeaDataParser::extractHeadData(): Sentense None",
        "NmeaDataParser::parseGsvSentence(): Extract SatelliteId Error"}},
      {"32,129,8,1,5,1",
       {"NmeaDataParser::extractHeadData(): Sentense None", "NmeaDataParser::parseGsvSentence(): Extract Snr Error"}},
      {"200,500,8,1",
       {"NmeaDataParser::parseGsvSentence(): BufferSize not enough", "NmeaDataParser::extractHeadData(): Sentense None",
        "NmeaDataParser::parseGsvSentence(): Extract Elevation Error"}}};
  for (const auto& lCase : CASES) {
    expectFailure(&NmeaDataParser::parseGsvSentence, "$GPGSV," + std::string(lCase.mpFields), lCase.mLines);
  }
}

TEST_F(NmeaDataParserTest, RmcIsReadWhole) {
  const RmcSentence lRmc = rmc("$GPRMC,083559.123,A,4717.11437,N,00833.91522,E,0.004,77.52,160126,3.1,W,A*57");
  expectTime(lRmc.utcTime, 8, 35, 59, 123);
  EXPECT_TRUE(lRmc.status);
  expectCoordinate(lRmc.latitude, 4717.11437, 47, 17.1143, DIRECTION_NORTH);
  expectCoordinate(lRmc.longitude, 833.91522, 8, 33.9152, DIRECTION_EAST);
  EXPECT_EQ(0.004, lRmc.speed);
  EXPECT_EQ(77.52, lRmc.direction);
  EXPECT_EQ(16, lRmc.date.day);
  EXPECT_EQ(1, lRmc.date.month);
  EXPECT_EQ(2026u, lRmc.date.year);
  EXPECT_EQ(-3.1, lRmc.magneticDeclination);
  EXPECT_EQ(MODE_AUTONOMOUS, lRmc.mode);
  EXPECT_EQ(3.1, rmc("$GPRMC,083559,V,,,,,,,160126,3.1,E,N*57").magneticDeclination);
}

TEST_F(NmeaDataParserTest, RmcFailures) {
  expectRmcFailure("$GPRMC,083559,V,,,,,,,,,,N*57",
                   {"NmeaDataParser::divideUtcDate(): utl::toUint16() Error",
                    "NmeaDataParser::parseRmcSentence(): Extract divideUtcDate Error"});
  expectRmcFailure("$GPRMC,083559,V,,,,,,,1601x6,,,N*57",
                   {"NmeaDataParser::divideUtcDate(): utl::toUint16() Error",
                    "NmeaDataParser::parseRmcSentence(): Extract divideUtcDate Error"});
  expectRmcFailure("$GPRMC,083559,A,,,,,,,160126,,,X*57",
                   {"NmeaDataParser::convertAutonomousMethodType(): Unknown Type nData[X]",
                    "NmeaDataParser::parseRmcSentence(): Convert Mode Error"});
  expectRmcFailure("$GPRMC,083559,A,,,,,1,2kn,160126,,,A*57",
                   {"NmeaDataParser::parseRmcSentence(): Direction strtod() lpUnkownStr is [kn]"});
}

TEST_F(NmeaDataParserTest, VtgZdaAndPubxAreReadWhole) {
  const VtgSentence lVtg = parsed(&NmeaDataParser::parseVtgSentence, "$GAVTG,77.52,T,80.1,M,0.004,N,0.008,K,E*06");
  EXPECT_EQ(SATELLITE_GALILEO, lVtg.satelliteType);
  EXPECT_EQ(77.52, lVtg.directionForTrueNorth);
  EXPECT_EQ(80.1, lVtg.directionForMagneticNorth);
  EXPECT_EQ(0.004, lVtg.speedKnot);
  EXPECT_EQ(0.008, lVtg.speedKmh);
  EXPECT_EQ(MODE_ESTIMATED, lVtg.mode);

  const ZdaSentence lZda = parsed(&NmeaDataParser::parseZdaSentence, "$GPZDA,082710.00,16,09,2026,13,45*64");
  expectTime(lZda.utcTime, 8, 27, 10, 0);
  EXPECT_EQ(16, lZda.date.day);
  EXPECT_EQ(9, lZda.date.month);
  EXPECT_EQ(2026u, lZda.date.year);
  EXPECT_EQ(13, lZda.localZoneHour);
  EXPECT_EQ(45, lZda.localZoneMinute);

  const PubxSentence lPubx = parsed(&NmeaDataParser::parsePubxSentence,
                                    "$PUBX,00,081350.00,4717.113210,N,00833.915187,W,546.589,RKx,2.1,2.0,0.007,77.52,"
                                    "-0.5,3,0.92,1.19,0.77,9,1,0*5F");
  EXPECT_EQ(0u, lPubx.messageId);
  expectTime(lPubx.utcTime, 8, 13, 50, 0);
  expectCoordinate(lPubx.latitude, 4717.11321, 47, 17.1132, DIRECTION_NORTH);
  expectCoordinate(lPubx.longitude, 833.915187, 8, 33.9151, DIRECTION_WEST);
  EXPECT_EQ(546.589, lPubx.altitudeRef);
  EXPECT_EQ(PUBX_COMBINED, lPubx.status);
  EXPECT_EQ(2.1, lPubx.hacc);
  EXPECT_EQ(2.0, lPubx.vacc);
  EXPECT_EQ(0.007, lPubx.speed);
  EXPECT_EQ(77.52, lPubx.direction);
  EXPECT_EQ(-0.5, lPubx.vvel);
  EXPECT_EQ(3u, lPubx.dgpsDataAge);
  EXPECT_EQ(0.92, lPubx.hdop);
  EXPECT_EQ(1.19, lPubx.vdop);
  EXPECT_EQ(0.77, lPubx.tdop);
  EXPECT_EQ(9u, lPubx.satelliteCount);
  EXPECT_TRUE(lPubx.drMode);
}

TEST_F(NmeaDataParserTest, VtgZdaAndPubxFailures) {
  expectFailure(
      &NmeaDataParser::parseVtgSentence, "$GPVTG,0.0,T,10.5,M,0.0,N,0.0,K*7A",
      {"NmeaDataParser::extractHeadData(): Sentense None", "NmeaDataParser::parseVtgSentence(): Extract Mode Error"});
  expectFailure(
      &NmeaDataParser::parseVtgSentence, "$GPVTG,0.0",
      {"NmeaDataParser::extractHeadData(): Sentense None", "NmeaDataParser::parseVtgSentence(): Extract 'T' Error"});
  expectFailure(&NmeaDataParser::parseZdaSentence, "$GPZDA,,16,09,2026,00,00*64",
                {"NmeaDataParser::divideTime(): utl::toUint16() Error",
                 "NmeaDataParser::parseZdaSentence(): divideTime() UTC Error"});
  for (const char* lpRest : {",09,2026,00,00", "16,,2026,00,00", "16,09,,00,00", "16,09,2026,,", "16,09,2026,-5,00"}) {
    expectFailure(&NmeaDataParser::parseZdaSentence, "$GPZDA,082710.00," + std::string(lpRest) + "*64",
                  {"NmeaDataParser::parseZdaSentence(): utl::toUint16() Error"});
  }
  expectFailure(&NmeaDataParser::parseZdaSentence, "$GPZDA,082710.00,16,09,2026*64",
                {"NmeaDataParser::extractHeadData(): Sentense None",
                 "NmeaDataParser::parseZdaSentence(): Extract Local Time Error"});
  expectFailure(&NmeaDataParser::parsePubxSentence, "$PUBX,00,081350.00,,,,,,G4",
                {"NmeaDataParser::convertPubxStatus(): Unknown Status",
                 "NmeaDataParser::parsePubxSentence(): Convert Status Error lDataItem[G4]"});
  expectFailure(&NmeaDataParser::parsePubxSentence, "$PUBX,A",
                {"NmeaDataParser::parsePubxSentence(): utl::toUint32() MessageId Error"});
}

TEST_F(NmeaDataParserTest, NothingToParseIsNoFailureWorthALine) {
  GgaSentence lGga;
  EXPECT_FALSE(NmeaDataParser::parseGgaSentence(nullptr, 1, &lGga));
  EXPECT_FALSE(NmeaDataParser::parseGgaSentence("$GPGGA", 0, &lGga));
  EXPECT_FALSE(NmeaDataParser::parseGgaSentence("$GPGGA", 1, nullptr));
  EXPECT_EQ(Lines(), mLog.texts());
}

TEST_F(NmeaDataParserTest, StepsTellAMissingArgument) {
  GnssSentenceCoordinate lCoordinate;
  EXPECT_EQ(nullptr, NmeaItem().extractHeadData(nullptr));
  EXPECT_FALSE(NmeaConversion::divideTime("123456", nullptr));
  EXPECT_FALSE(NmeaConversion::divideUtcDate(nullptr, nullptr));
  EXPECT_FALSE(NmeaConversion::parseCoordinate(nullptr, NmeaConversion::LATITUDE, &lCoordinate));
  EXPECT_FALSE(NmeaConversion::parseCoordinate("3539.5", 2, &lCoordinate));
  EXPECT_EQ(
      (Lines{"NmeaDataParser::extractHeadData(): Argument Error", "NmeaDataParser::divideTime(): Argument Error",
             "NmeaDataParser::divideUtcDate(): Argument Error", "NmeaDataParser::parseCoordinate(): Argument Error",
             "NmeaDataParser::parseCoordinate(): CoordinateType Error"}),
      mLog.texts());
}

TEST_F(NmeaDataParserTest, ReadsPointsUnderACommaLocale) {
  const std::string lBefore = std::setlocale(LC_NUMERIC, nullptr);
  if (std::setlocale(LC_NUMERIC, "fr_FR.UTF-8") == nullptr) GTEST_SKIP() << "no comma locale: see LOCPATH";
  EXPECT_EQ(47.5, gga(ggaWith(ALTITUDE, "47.5")).altitude);
  EXPECT_EQ(47.5, gga(ggaWith(ALTITUDE, "475e-1")).altitude);
  EXPECT_EQ(17.1139, gga(ggaWith(LATITUDE, "4717.1139987654321")).latitude.minute);
  std::setlocale(LC_NUMERIC, lBefore.c_str());
}

// Whole sentences, and what noise makes of them.
const char* const SENTENCES[] = {
    "$GPGGA,092725.00,4717.11399,N,00833.91590,E,1,08,1.01,499.6,M,48.0,M,,*5B\r\n",
    "$GNGLL,4717.11364,S,00833.91565,W,092321.5,A,A*60\r\n",
    "$GPGSA,A,3,23,29,07,08,09,18,26,28,,,,300,1.94,1.18,1.54*0D\r\n",
    "$GLGSV,3,1,10,23,38,230,44,29,71,156,,07,29,116,41,308,09,081,36*7F\r\n",
    "$GPRMC,083559.00,A,4717.11437,N,00833.91522,E,0.004,77.52,091202,3.1,W,A*57\r\n",
    "$GPVTG,77.52,T,,M,0.004,N,0.008,K,A*06\r\n",
    "$GPZDA,082710.00,16,09,2002,00,00*64\r\n",
    "$PUBX,00,081350.00,4717.11321,N,00833.915187,E,546.589,G3,2.1,2.0,0.007,77.52,0.007,,0.9,1.1,0.7,9,0,0*5F\r\n"};

TEST(NmeaDataParser, AgreesWithItsReferenceOnSentencesCutAnywhere) {
  for (const std::string lSentence : SENTENCES) {
    for (size_t i = 0; i <= lSentence.size(); ++i) ASSERT_EQ("", differenceFromReference(lSentence.substr(0, i)));
  }
}

TEST(NmeaDataParser, AgreesWithItsReferenceOnDamagedSentences) {
  const std::string lNoise = ",,,**  0123456789.-+eExX$GNPAWSMKT\r\t\x80\xFF";
  std::mt19937 lRandom(5);
  const auto pick = [&lRandom](size_t nCount) { return static_cast<size_t>(lRandom()) % nCount; };
  for (int i = 0; i < 4000; ++i) {
    std::string lText = SENTENCES[pick(8)];
    for (size_t lHits = 1 + pick(3); lHits > 0; --lHits) {
      const std::string lPiece(pick(2) == 0 ? 1 : pick(22), lNoise[pick(lNoise.size())]);
      lText.replace(pick(lText.size() + 1), pick(4), lPiece);
    }
    ASSERT_EQ("", differenceFromReference(lText));
  }
}

TEST(NmeaCheckSumCalclator, ExclusiveOrBetweenTheFirstByteAndTheStar) {
  const auto sum = [](const std::string& nText) {
    return NmeaCheckSumCalclator::calculateNmeaSentenceCheckSum(reinterpret_cast<const unsigned char*>(nText.data()),
                                                                static_cast<unsigned int>(nText.size()));
  };
  EXPECT_EQ(0x5Bu, sum("$GPGGA,092725.00,4717.11399,N,00833.91590,E,1,8,1.01,499.6,M,48.0,M,,0*5B\r\n"));
  EXPECT_EQ(unsigned{'A' ^ 'B'}, sum("$AB"));
  EXPECT_EQ(unsigned{'A'}, sum("*A*B"));
  EXPECT_EQ(0xFFu, sum("$\xFF"));
  EXPECT_EQ(0u, sum("$"));
  EXPECT_EQ(0u, sum("$*AB"));
  EXPECT_EQ(0xFFFFFFFFu, sum(""));
  EXPECT_EQ(0xFFFFFFFFu, NmeaCheckSumCalclator::calculateNmeaSentenceCheckSum(nullptr, 5));
}

}  // namespace

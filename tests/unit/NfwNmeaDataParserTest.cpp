// Sentences are read by the parser and by the receiver that feeds the SDK: both have to agree.
#include <tuple>

#include "NfwNmeaCheckSumCalclator.h"
#include "NmeaConversion.h"
#include "NmeaItem.h"
#include "NmeaParserCheck.h"
#include "Positioning.h"
#include "Split.h"

using namespace nfw;
using nfwtest::split;
using nfwtest::Strings;

namespace {

const char* const SENTENCES[] = {
    "$GPGGA,092725.07,4717.11399,N,00833.91590,E,1,08,1.01,499.6,M,48.0,M,,*5B\r\n",
    "$GNGLL,4717.11364,S,00833.91565,W,092321.5,A,A*60\r\n",
    "$GPGSA,A,3,23,29,07,08,09,18,26,28,,,,300,1.94,1.18,1.54*0D\r\n",
    "$GLGSV,3,1,10,23,38,230,44,29,71,156,,07,29,116,41,308,09,081,36*7F\r\n",
    "$GPRMC,083559.00,A,4717.11437,N,00833.91522,E,0.004,77.52,091202,3.1,W,A*57\r\n",
    "$GPVTG,77.52,T,,M,0.004,N,0.008,K,A*06\r\n",
    "$GPZDA,082710.00,16,09,2002,00,00*64\r\n",
    "$PUBX,00,081350.00,4717.11321,N,00833.915187,E,546.589,G3,2.1,2.0,0.007,77.52,0.007,,0.9,1.1,0.7,9,0,0*5F\r\n"};

const char* const KINDS[] = {"Gga", "Gll", "Gsa", "Gsv", "Rmc", "Vtg", "Zda", "Pubx"};

/// What is said of a text by the parser of this one of SENTENCES.
Strings linesOf(size_t nKind, const std::string& nText) {
  const seams::CapturedLog lLog;
  eachParse(SENTENCES[nKind], [&](auto npParse, auto nRecord, auto) { npParse(nText.c_str(), 1, &nRecord); });
  for (const auto& lLine : lLog.lines()) EXPECT_EQ(1, lLine.mLevel) << lLine.mText;
  return lLog.texts();
}

TEST(NmeaDataParserTest, WholeSentencesBecomeRecords) {
  const char* const CASES[][2] = {
      {"$GPGGA,092725.015,4717.11399,S,00833.91590,W,2,08,1.01,-499.6,M,48.0,M,5,0102*5B\r\n",
       "GGA 1 9 27 25 15 4717.11399 47 17.1139 2 833.9159 8 33.9159 4 2 8 1.01 -499.6 48 5 102"},
      {"$GLGGA, 092725 ,,,  ,,,,,,,,,,*5B", "GGA 2 9 27 25"},
      {"$GPGGA,092725.5,,,,,6,,,,,,,,*", "GGA 1 9 27 25 5 0 0 0 0 0 0 0 0 3"},
      {"$GNGLL,4717.11364,N,00833.91565,E,092321.00,A,Dx*60",
       "GLL 4 9 23 21 0 4717.11364 47 17.1136 1 833.91565 8 33.9156 3 1 2"},
      {"$GPGSA,M,3,23,255,256,4294967295,,,,,,,,7,1.94,,1.54,1*0D",
       "GSA 1 0 2 2 23 255 0 0 0 0 0 0 0 0 0 7 .. 23 255 256 4294967295 0 0 0 0 0 0 0 7 .. 1.94 0 1.54"},
      {"$GAGSV,3,1,12,23,38,230,44,,71,156,,307,00,000,41,08,09,359,36*7F",
       "GSV 3 3 1 12 23 23 1 38 44 230 0 0 0 71 0 156 0 307 1 0 41 0 8 8 1 9 36 359"},
      {"$GBGSV,2,5,12,1,1,1,1,2,2,2,2,3,3,3,3,4,4,4,4*7F", "GSV 5 2 5 12 1 1 1 1 1 1 2 2 1 2 2 2 3 3 1 3 3 3"},
      {"$BDGSV,3,3,12,23,38,230,44*7F", "GSV 0 3 3 12"},
      {"$GPRMC,083559.123,A,4717.11437,N,00833.91522,E,0.004,77.52,160126,3.1,W,A*57",
       "RMC 1 8 35 59 123 1 4717.11437 47 17.1143 1 833.91522 8 33.9152 3 0.004 77.52 2026 1 16 -3.1 1"},
      {"$GPRMC,083559,V,,,,,,,160126,3.1,E,N*57", "RMC 1 8 35 59 0 0 0 0 0 0 0 0 0 0 0 0 2026 1 16 3.1"},
      {"$GAVTG,77.52,T,80.1,M,0.004,N,0.008,K,E*06", "VTG 3 77.52 80.1 0.004 0.008 3"},
      {"$GPZDA,082710.00,16,09,2026,13,45*64", "ZDA 1 8 27 10 0 2026 9 16 13 45"},
      {"$PUBX,00,081350.00,4717.113210,N,00833.915187,W,546.589,RKx,2.1,2.0,0.007,77.52,-0.5,3,0.92,1.19,0.77,9,1,0*5F",
       "PUBX 0 8 13 50 0 4717.11321 47 17.1132 1 833.915187 8 33.9151 4 546.589 6 2.1 2 0.007 77.52 -0.5 3 0.92 1.19 "
       "0.77 9 1"}};
  for (const auto& lCase : CASES) {
    const seams::CapturedLog lLog;
    eachParse(lCase[0], [&](auto npParse, auto nRecord, auto) {
      for (const size_t i : {0U, 1U, 4U, 7U}) npParse(SENTENCES[i], 1, &nRecord);  // which leaves nothing
      EXPECT_TRUE(npParse(lCase[0], 1, &nRecord)) << lCase[0];
      EXPECT_EQ(lCase[1], nfwtest::text(nRecord));
    });
  }
}

// Each field left out with what follows it, and each one wrong.
TEST(NmeaDataParserTest, NamesTheFieldThatIsMissingOrWrong) {
  const std::string EMPTY = "NmeaDataParser::extractHeadData(): Sentense None";
  const std::string GSV_BLOCK = "|SatelliteId|Elevation|Azimuth|Snr",
                    IDS = "|UsedSatellite|UsedSatellite|UsedSatellite";
  const std::string POSITION = "parseCoordinate() Lat Error||parseCoordinate() Lon Error|";
  const std::string ID = "|utl::toUint32() SatelliteNumber Error";
  const std::string BLOCK =
      "|utl::toUint32() SatelliteId Error|utl::toUint8() Elevation Error lDataItem[3x]"
      "|utl::toUint32() Azimuth Error|utl::toUint8() Snr Error DataItem[3x]";
  const auto lReal = [](const std::string& nName) { return "|" + nName + " strtod() lpUnkownStr is [x]"; };
  const std::pair<std::string, std::string> CASES[] = {
      // of SENTENCES, in their order
      {"GGA|UTC|Lat|N・S Info|Lon|E・W Info|Quality|SatelliteView|HDOP|Altitude|Altitude Unit|Geoid|Geoid Unit"
       "|DgpsDataAge|DgpsId",
       "Not GGA Sentense|divideTime() Error|" + POSITION +
           "|convertSatelliteQuality() Error"
           "|utl::toUint32() SatelliteView Error" +
           lReal("Hdop") + lReal("Altitude") + "|" + lReal("Geoid") +
           "||utl::toUint32() DgpsDataAge Error|utl::toUint32() DgpsId Error"},
      {"GLL|Lat|N・S Info|Lon|E・W Info|UTC|Status|Mode",
       "Not GLL Sentense|" + POSITION + "|divideTime() Error||Convert Mode Error"},
      {"GSA|PositioningType|Mode" + IDS + IDS + IDS + IDS + "|PDOP|HDOP|VDOP",
       "Not GSA Sentense|Convert PositioningType Error|" + ID + ID + ID + ID + ID + ID + ID + ID + ID + ID + ID + ID +
           lReal("Pdop") + lReal("Hdop") + lReal("Vdop")},
      {"GSV|MessageCount|MessageNum|SatelliteView" + GSV_BLOCK + GSV_BLOCK + GSV_BLOCK + GSV_BLOCK,
       "Not GSV Sentense|utl::toUint32() MessageCount Error|utl::toUint32() MessageNum Error"
       "|utl::toUint32() SatelliteView Error" +
           BLOCK + BLOCK + BLOCK + BLOCK},
      {"RMC|UTC|Status|Lat|N・S Info|Lon|E・W Info|Speed|Direction|Date|MagneticDeclination"
       "|MagneticDeclination Direction|Mode",
       "Not RMC Sentense|divideTime() Error||" + POSITION + lReal("Speed") + lReal("Direction") +
           "|Extract divideUtcDate Error" + lReal("MagneticDeclination") + "||Convert Mode Error"},
      {"VTG|DirectionForTrueNorth|'T'|DirectionForMagneticNorth|'M'|SpeedKnot|'N'|SpeedKmh|'K'|Mode",
       "Not VTG Sentense" + lReal("DirectionForTrueNorth") + "|" + lReal("DirectionForMagneticNorth") + "|" +
           lReal("SpeedKnot") + "|" + lReal("SpeedKmh") + "||Convert Mode Error"},
      {"ZDA|UTC|Date|Date|Date|Local Time|Local Time",
       "Not ZDA Sentense|divideTime() UTC Error|utl::toUint16() Error|utl::toUint16() Error|utl::toUint16() Error"
       "|utl::toUint16() Error|utl::toUint16() Error"},
      {"PUBX|MessageId|UTC|Lat|N・S Info|Lon|E・W Info|AltitudeRef|Status|Hacc|Vacc|Speed|Direction|Vvel|DgpsDataAge"
       "|HDOP|VDOP|TDOP|SatelliteView|DrMode",
       "Not PUBX Sentense|utl::toUint32() MessageId Error|divideTime() Error|" + POSITION + lReal("AltitudeRef") +
           "|Convert Status Error lDataItem[3x]" + lReal("Hacc") + lReal("Vacc") + lReal("Speed") + lReal("Direction") +
           lReal("Vvel") + "|utl::toUint32() DgpsDataAge Error" + lReal("Hdop") + lReal("Vdop") + lReal("Tdop") +
           "|utl::toUint32() SatelliteView Error|"},
  };
  for (size_t k = 0; k < std::size(CASES); ++k) {
    const Strings lFields = split(SENTENCES[k], ','), lNames = split(CASES[k].first, '|');
    const Strings lWrong = split(CASES[k].second, '|');
    ASSERT_EQ(lNames.size(), lWrong.size());
    for (size_t i = 0; i < lNames.size(); ++i) {
      std::string lCut, lBad;
      for (size_t j = 0; j < lFields.size(); ++j) {
        if (j < i) lCut += lFields[j] + ",";
        lBad += (j == 0 ? "" : ",") + (j == i ? "3x" : lFields[j]);
      }
      const std::string lPrefix = "NmeaDataParser::parse" + std::string(KINDS[k]) + "Sentence(): ";
      const Strings lLines = linesOf(k, lBad);
      EXPECT_EQ((Strings{EMPTY, lPrefix + "Extract " + lNames[i] + " Error"}), linesOf(k, lCut)) << k << " " << i;
      EXPECT_EQ(lWrong[i].empty() ? "" : lPrefix + lWrong[i], lLines.empty() ? "" : lLines.back()) << k << " " << i;
    }
  }
}

TEST(NmeaDataParserTest, SaysWhatIsWrongWithAField) {
  // Of SENTENCES which, a text in its place, and what is said by the step and by the parser.
  const std::tuple<size_t, std::string, std::string, std::string> CASES[] = {
      {0, "$GPGGA,3x", "divideTime(): utl::toUint16() Error", "divideTime() Error"},
      {0, "$GPGGA,123456,1.5x,", "parseCoordinate(): lpUnkownStr is [x]", "parseCoordinate() Lat Error"},
      {0, "$GPGGA,123456,.5,", "parseCoordinate(): utl::toSint32() Error", "parseCoordinate() Lat Error"},
      {0, "$GPGGA,123456,,,,,3,", "convertSatelliteQuality(): Unknown SatelliteQuality Type",
       "convertSatelliteQuality() Error"},
      {0, "$GPGGA,01234567890123456789,", "extractHeadData(): Invalid Sentense", "Extract UTC Error"},
      {0, std::string(128, '$'), "", "utl::copyStr() GgaSentence Error"},
      {1, "XXXGLL", "getSatelliteType(): nData[0] is not '$'|extractHeadData(): Sentense None", "Extract Lat Error"},
      {1, "$XXGLL", "getSatelliteType(): nData[1] is not 'G'|extractHeadData(): Sentense None", "Extract Lat Error"},
      {2, "$GPGSA,X", "convertPositioningType(): Unknown Type", "Convert PositioningType Error"},
      {2, "$GPGSA,A,4", "convertGsaMode(): Unknown Mode", "Convert Mode Error"},
      {3, "$GPGSV,1,1,129", "", "SatelliteView is Over"},
      {3, "$GPGSV,200,500,8,x", "parseGsvSentence(): BufferSize not enough", "utl::toUint32() SatelliteId Error"},
      {4, "$GPRMC,123456,A,,,,,,,16x126", "divideUtcDate(): utl::toUint16() Error", "Extract divideUtcDate Error"},
      {5, "$GPVTG,,T,,M,,N,,K,Rx", "convertAutonomousMethodType(): Unknown Type nData[Rx]", "Convert Mode Error"},
      {7, "$PUBX,00,123456,,,,,,ZZ", "convertPubxStatus(): Unknown Status", "Convert Status Error lDataItem[ZZ]"},
  };
  for (const auto& [lKind, lText, lStep, lWords] : CASES) {
    Strings lLines = lStep.empty() ? Strings() : split(lStep, '|');
    lLines.push_back("parse" + std::string(KINDS[lKind]) + "Sentence(): " + lWords);
    for (std::string& lLine : lLines) lLine.insert(0, "NmeaDataParser::");
    EXPECT_EQ(lLines, linesOf(lKind, lText)) << lText;
  }
}

// Each text in the place of each field of each sentence.
TEST(NmeaDataParserTest, AgreesOnOddFields) {
  const char* const ODD =
      "|0|1|2|3|5|6|7|06|12| +1 |-1|255|256|65535|65536|999999999|1234567890|4294967295|4294967296|1.0|.5|-.|1.2.3|1e1|"
      "0x1p3|nan|-inf|3539.1234|3539.12349876|3539.1234987654|3539.12349876543|3539.40681241586834|13944.1234|3539.|"
      "3539.1x|3.5|12e2|-5.25|"
      "353.91234567|12345678.5| 3539.5 |17959.99999999999|123456|123456.|123456.5|123456.007|123456.9999|123456x250|"
      "1234567|12345678| 123456.5 |12345|1234 6|-23456|x1x2x3|123456.x|1601x6|0000000000000000008|00000000000000000008|"
      "         8         |          8         |N|S|E|W|w|A|M|D|V|X| N |NX|Autonomous|\x80| "
      "|\t|NF|DR|G2|G3|D2|D3|RK|TT|ZZ|RKx|G|$GPGGA|$GLGSV|$GAGSA|$GNRMC|$GBVTG|$BDZDA|xxxGLL|$G "
      "GGA|$GPGGAX|$PUBXX|$|\r\n|*";
  for (const char* lpSentence : SENTENCES) {
    const Strings lFields = split(lpSentence, ',');
    for (size_t i = 0; i < lFields.size(); ++i) {
      for (const std::string& lOdd : split(ODD, '|')) {
        std::string lText;
        for (size_t j = 0; j < lFields.size(); ++j) lText += (j == 0 ? "" : ",") + (j == i ? lOdd : lFields[j]);
        EXPECT_EQ("", differenceFromReference(lText));
        if (HasFailure()) return;
      }
    }
  }
}

TEST(NmeaDataParserTest, AgreesOnOddSentences) {
  const std::string VTG = "$GPVTG,77.52,T,,M,0.004,N,0.008,K,A";
  for (const std::string& lText :
       Strings{"", "$GPRMC*", "$GPRMC,", "$GPZDA,,16,09,2026,00,00*64", "$GPTXT,01",
               "$GPGSV,2,3,10,23,38,230,44,29,71,156,47*7F", "$GPGSV,1,1,128*7F", "$GPGSV,1,1,129*7F",
               "$GPGSV,2,5,4,1,,,,2,,,,3,,,*7", "$GPGSV,32,129,8,1,5,1", "$GPGSV,200,500,8,1", "$GPGSV,,,*79",
               "$GPGSV,33,131,9,1,,,*", "$GPGSV,2000000000,2000000001,04,1,2,3,4*7F",
               std::string("$GPZDA,0827\0", 12) + "10.00,16,09,2002,00,00*64", VTG + std::string(127 - VTG.size(), ' '),
               VTG + std::string(128 - VTG.size(), ' '), std::string(128, '$')}) {
    EXPECT_EQ("", differenceFromReference(lText));
  }
  for (const std::string lSentence : SENTENCES) {
    for (size_t i = 0; i <= lSentence.size(); ++i) EXPECT_EQ("", differenceFromReference(lSentence.substr(0, i)));
  }
}

TEST(NmeaDataParserTest, AnalyzeLooksAtThreeCharactersFromTheFourth) {
  const std::pair<const char*, int> CASES[] = {{"$GPGGA,", 1}, {"$GPGLL", 2}, {"$GNGSA,A", 3}, {"$BDGSV", 4},
                                               {"$GPRMC", 5},  {"$GPVTG", 6}, {"$GPZDA", 7},   {"$PUBX,00", 8},
                                               {"$PUBX", 8},   {"xxxGGA", 1}, {"$GPTXT,", 0},  {"$GPGG", 0},
                                               {"$PUB", 0},    {"$PUGGA", 1}, {"GGA", 0},      {"", 0}};
  for (const auto& [lpText, lType] : CASES) {
    const std::vector<char> lExact(lpText, lpText + strlen(lpText));  // the sanitizer sees a byte too far
    const auto lLength = static_cast<unsigned int>(lExact.size());
    EXPECT_EQ(lType, NmeaDataParser::analyzeNmeaSentenceType(lExact.data(), lLength)) << lpText;
    EXPECT_EQ(lType, NmeaDataParser::analyzeNmeaSentenceType(lpText, 100)) << "ended by its terminator";
  }
  EXPECT_EQ(0, NmeaDataParser::analyzeNmeaSentenceType("$GPGGA", 5));
  EXPECT_EQ(0, NmeaDataParser::analyzeNmeaSentenceType("$G\0GGA", 6));
  EXPECT_EQ(0, NmeaDataParser::analyzeNmeaSentenceType(nullptr, 6));
  EXPECT_EQ(0, NmeaDataParser::analyzeNmeaSentenceType("$GPGGA", 0));
}

TEST(NmeaDataParserTest, WhatIsNotKnownIsSetToItsFallback) {
  const seams::CapturedLog lLog;
  GgaSentence lGga;
  EXPECT_FALSE(NmeaDataParser::parseGgaSentence("$GPGGA,1,,,,,3*", 1, &lGga));
  lGga.quality = QUALITY_GPS;
  EXPECT_FALSE(NmeaDataParser::parseGgaSentence("$GPGGA,123456,,,,,3*", 1, &lGga));
  EXPECT_EQ(QUALITY_UNKNOWN, lGga.quality);
  AutonomousMethodType lMode = MODE_ESTIMATED;
  PositioningType lType = POSITIONING_MANUAL;
  GsaMode lGsaMode = GSA_3D;
  PubxStatus lStatus = PUBX_TIME_ONLY;
  EXPECT_FALSE(NmeaConversion::convertAutonomousMethodType("", &lMode) ||
               NmeaConversion::convertPositioningType("", &lType) || NmeaConversion::convertGsaMode("4", &lGsaMode) ||
               NmeaConversion::convertPubxStatus("G", &lStatus));
  EXPECT_EQ("fallback 0 0 0 0", nfwtest::joined("fallback", lMode, lType, lGsaMode, lStatus));
}

TEST(NmeaDataParserTest, StepsTellAMissingArgument) {
  const seams::CapturedLog lLog;
  eachParse("", [](auto npParse, auto nRecord, auto) {
    EXPECT_FALSE(npParse(nullptr, 1, &nRecord) || npParse("$GPGGA", 0, &nRecord) || npParse("$GPGGA", 1, nullptr));
  });
  EXPECT_EQ(Strings(), lLog.texts());
  GnssSentenceCoordinate lCoordinate;
  GnssSentenceTime lTime;
  GnssSentenceDate lDate;
  EXPECT_EQ(nullptr, NmeaItem().extractHeadData(nullptr));
  EXPECT_FALSE(NmeaConversion::divideTime("123456", nullptr) || NmeaConversion::divideTime(nullptr, &lTime));
  EXPECT_FALSE(NmeaConversion::divideUtcDate("123456", nullptr) || NmeaConversion::divideUtcDate(nullptr, &lDate));
  EXPECT_FALSE(NmeaConversion::parseCoordinate(nullptr, NmeaConversion::LATITUDE, &lCoordinate) ||
               NmeaConversion::parseCoordinate("3539.5", NmeaConversion::LATITUDE, nullptr) ||
               NmeaConversion::parseCoordinate("3539.5", 2, &lCoordinate));
  Strings lLines;
  for (const std::string& lText : split(
           "extractHeadData|divideTime|divideTime|divideUtcDate|divideUtcDate|parseCoordinate|parseCoordinate", '|')) {
    lLines.push_back("NmeaDataParser::" + lText + "(): Argument Error");
  }
  lLines.push_back("NmeaDataParser::parseCoordinate(): CoordinateType Error");
  EXPECT_EQ(lLines, lLog.texts());
}

TEST(NmeaCheckSumCalclator, ExclusiveOrBetweenTheFirstByteAndTheStar) {
  const std::pair<const char*, unsigned int> CASES[] = {{"$AB", 'A' ^ 'B'}, {"*A*B", 'A'}, {"$\xFF", 0xFF},
                                                        {"$", 0},           {"$*AB", 0},   {"", 0xFFFFFFFF}};
  for (const auto& [lpText, lSum] : CASES) {
    const auto* const lpData = reinterpret_cast<const unsigned char*>(lpText);
    EXPECT_EQ(lSum,
              NmeaCheckSumCalclator::calculateNmeaSentenceCheckSum(lpData, static_cast<unsigned int>(strlen(lpText))));
  }
  EXPECT_EQ(0xFFFFFFFFu, NmeaCheckSumCalclator::calculateNmeaSentenceCheckSum(nullptr, 5));
}

}  // namespace

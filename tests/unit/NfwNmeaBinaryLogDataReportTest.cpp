#include <limits>

#include "Positioning.h"

namespace {

using binarylog::Bytes;
using binarylog::encode;
using nfw::DeadReckoningNmeaSentence;
using nfwtest::makeReport;
using ZTSDeadReckoningDef::DRG_LOCATION_INFO;

const unsigned int MAX_SIZE = 1356;

std::string in(const char* npOperation, const char* npWords) {
  return std::string("nfw::NmeaBinaryLogDataVersion0::") + npOperation + "(): " + npWords;
}

std::string read(const char* npWords) { return in("convertToDeadReckoningNmeaSentence", npWords); }

std::string text(const nfw::NmeaSentenceData& nSlot) {
  return {reinterpret_cast<const char*>(nSlot.mText), nSlot.mLength};
}

class NmeaBinaryLogReport : public testing::Test {
 protected:
  bool readBack(const Bytes& nRecord) {
    return mVersion1.convertToDeadReckoningNmeaSentence(nRecord.data(), static_cast<unsigned int>(nRecord.size()),
                                                        &mSet);
  }

  seams::CapturedLog mLog;
  nfw::NmeaBinaryLogDataVersion0 mVersion0;
  nfw::NmeaBinaryLogDataVersion1 mVersion1;
  DeadReckoningNmeaSentence mSet;
};

TEST_F(NmeaBinaryLogReport, BecomesOneRecordAndTheSentencesInIt) {
  const Bytes lRecord = encode(mVersion1, makeReport(1, 2));
  ASSERT_EQ(30u + 19 + 31 + 1 + 40 + 1 + 2 * 33 + 58, lRecord.size());
  ASSERT_TRUE(readBack(lRecord));
  EXPECT_EQ("$GPRMC,123519.250,A,4807.03800,S,01131.00000,E,22.400,84.40,230394,3.1,W,E*",
            text(mSet.mRmc).substr(0, 75));
  EXPECT_EQ("$GPVTG,54.70,T,34.40,M,5.500,N,10.200,K,D*", text(mSet.mVtg).substr(0, 42));
  EXPECT_EQ("$GNGGA,123519.250,4807.03800,N,01131.00000,W,6,08,0.90,545.5,M,-46.9,M,3,120*",
            text(mSet.mGga).substr(0, 77));
  ASSERT_EQ(1u, mSet.mGsaCount);
  EXPECT_EQ("$GLGSA,M,2,70,,300,04,05,06,07,08,09,10,11,12,2.50,1.30,2.10*", text(mSet.mGsa[0]).substr(0, 61));
  EXPECT_EQ(0u, mSet.mGsa[1].mLength);
  ASSERT_EQ(2u, mSet.mGsvCount);
  EXPECT_EQ("$GAGSV,2,1,08,01,40,083,46,300,00,000,00,,07,344,,14,22,228,45*", text(mSet.mGsv[1]).substr(0, 63));
  EXPECT_EQ(
      "$PUBX,00,123519.250,4807.03800,N,01131.00000,W,545.400,RK,2.1,2.0,0.007,77.52,-0.007,4,0.92,1.19,0.77,9,1*",
      text(mSet.mPubx).substr(0, 106));
  EXPECT_EQ(std::vector<std::string>{}, mLog.texts());
  EXPECT_EQ(30u + 19 + 31 + 1 + 28 + 1 + 2 * 29 + 58, encode(mVersion0, makeReport(1, 2)).size());
}

TEST_F(NmeaBinaryLogReport, TakesInNoMoreThanThereIsRoomForInASet) {
  EXPECT_EQ(MAX_SIZE, encode(mVersion1, makeReport(4, 32)).size());
  EXPECT_EQ(encode(mVersion1, makeReport(4, 32)), encode(mVersion1, makeReport(5, 0xFFFFFFFF)));
  unsigned char lGsa[40] = {};
  EXPECT_EQ(40, mVersion1.convertFromDeadReckoningGsaData(makeReport(1, 0).gsa[0], 3, lGsa, 40));
  EXPECT_EQ((Bytes{70, 0, 0, 0, 44, 1, 0, 0}), Bytes(lGsa + 4, lGsa + 12));

  // A record that claims more is read past to what follows.
  Bytes lRecord = encode(mVersion1, makeReport(4, 32));
  const Bytes lGsv(lRecord.begin() + 242, lRecord.begin() + 242 + 33);
  lRecord[241] = 34;
  lRecord.insert(lRecord.begin() + 242, lGsv.begin(), lGsv.end());
  lRecord.insert(lRecord.begin() + 242, lGsv.begin(), lGsv.end());
  lRecord[80] = 5;
  const Bytes lMore(lRecord.begin() + 81, lRecord.begin() + 81 + 40);
  lRecord.insert(lRecord.begin() + 81, lMore.begin(), lMore.end());
  EXPECT_TRUE(readBack(lRecord));
  EXPECT_EQ(4u, mSet.mGsaCount);
  EXPECT_EQ(32u, mSet.mGsvCount);
  EXPECT_EQ(2u, mLog.count(read("BufferSize not enough")));
  EXPECT_NE(0u, mSet.mPubx.mLength);
}

TEST_F(NmeaBinaryLogReport, StoresWhatDoesNotFitAsZero) {
  DRG_LOCATION_INFO lInfo = {};
  lInfo.gga.latitude = std::numeric_limits<double>::quiet_NaN();
  lInfo.vtg.courseTrue = 21474836.475;
  lInfo.vtg.courseMagnetic = -21474836.484;
  const Bytes lRecord = encode(mVersion1, lInfo);
  ASSERT_EQ(30u + 19 + 31 + 1 + 1 + 58, lRecord.size());  // letters that are absent are no fault
  EXPECT_EQ((Bytes{0, 0, 0, 0, 0, 0, 0, 0x80}), Bytes(lRecord.begin() + 33, lRecord.begin() + 41));
  EXPECT_EQ((std::vector<std::string>{
                in("convertFloatToSint32", "Overflow lData: 2147483648.000000"),
                in("parseFloat64FieldToSint32",
                   "convertFloatToSint32() lField Error: Vtg_DirectionForTrueNorth nField=21474836.475000"),
                in("convertFloatToSint32", "Overflow lData: nan"),
                in("parseFloat64FieldToSint32", "convertFloatToSint32() lField Error: Gga_Latitude nField=nan")}),
            mLog.texts());
  lInfo.vtg.mode = 'X';
  mLog.clear();
  EXPECT_TRUE(encode(mVersion1, lInfo).empty());
  EXPECT_EQ(in("convertFromDeadReckoningData", "convertFromDeadReckoningVtgData Error"), mLog.texts().back());
}

TEST_F(NmeaBinaryLogReport, StaysInsideEveryBufferAndEveryCutRecord) {
  const DRG_LOCATION_INFO lInfo = makeReport(2, 2);
  const Bytes lRecord = encode(mVersion1, lInfo);
  mLog.clear();
  for (unsigned int i = 0; i < lRecord.size(); ++i) EXPECT_TRUE(encode(mVersion1, lInfo, i).empty()) << i;
  EXPECT_EQ(lRecord, encode(mVersion1, lInfo, static_cast<unsigned int>(lRecord.size())));
  EXPECT_EQ(-1, mVersion1.convertFromDeadReckoningData(lInfo, nullptr, MAX_SIZE));
  EXPECT_EQ(in("convertFromDeadReckoningData", "Argument Error"), mLog.texts().back());

  // From these lengths on.
  const std::pair<size_t, const char*> LINES[] = {
      {0, "Argument Error"},          {1, "convertToRmcSentence Error"}, {30, "Vtg DataSize Error"},
      {49, "Gga DataSize Error"},     {80, "GsaNum DataSize Error"},     {81, "Gsa DataSize Error"},
      {161, "GsvNum DataSize Error"}, {162, "Gsv DataSize Error"},       {228, "Pubx DataSize Error"}};
  size_t lLine = 0;
  for (size_t i = 0; i < lRecord.size(); ++i) {
    if (lLine + 1 < std::size(LINES) && i == LINES[lLine + 1].first) ++lLine;
    EXPECT_FALSE(readBack(Bytes(lRecord.begin(), lRecord.begin() + static_cast<long>(i))));
    EXPECT_EQ(read(LINES[lLine].second), mLog.texts().back()) << i;
  }
  Bytes lLonger = lRecord;
  lLonger.push_back(0);
  EXPECT_FALSE(readBack(lLonger));
  EXPECT_EQ(read("Data Offset is not the end of data"), mLog.texts().back());
  EXPECT_TRUE(readBack(lRecord));
}

}  // namespace

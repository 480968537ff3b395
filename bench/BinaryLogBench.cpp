// What a sentence costs on its way into the binary log and back, beside what an application does with it anyway: to
// encode takes the same walk over the text as to parse it; to decode, the plain way is one snprintf.
//   bench_binarylog [FOLDER]      a folder of files of sentences; default NFW_BENCH_CORPUS, then ../shared/nmea

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "BenchSupport.h"
#include "NfwAppLog.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "ParseAny.h"

namespace {

const double ENCODE_AIM = 1.5;
const double DECODE_AIM = 0.25;
const int PASSES = 20000;  // over one sentence, a round
const unsigned int TEXT_SIZE = 256;

nfw::NmeaBinaryLogDataVersion1 gConverter;
volatile unsigned int gSink;

struct Sample {
  std::string mText;
  std::vector<unsigned char> mRecord;
};

bool makeSample(const std::string& nText, Sample* npSample) {
  unsigned char lRecord[nfw::NmeaBinaryLogData::MIN_RECORD_BUFFER] = {};
  const int lSize =
      gConverter.convertFromNmeaSentence(reinterpret_cast<const unsigned char*>(nText.data()),
                                         static_cast<unsigned int>(nText.size()), lRecord, sizeof(lRecord));
  if (lSize <= 0) return false;
  *npSample = {nText, {lRecord, lRecord + lSize}};
  return true;
}

unsigned int encode(const Sample& nSample) {
  unsigned char lRecord[nfw::NmeaBinaryLogData::MIN_RECORD_BUFFER];
  return static_cast<unsigned int>(
      gConverter.convertFromNmeaSentence(reinterpret_cast<const unsigned char*>(nSample.mText.data()),
                                         static_cast<unsigned int>(nSample.mText.size()), lRecord, sizeof(lRecord)));
}

unsigned int decode(const Sample& nSample) {
  unsigned char lText[TEXT_SIZE];
  return static_cast<unsigned int>(gConverter.convertToNmeaSentence(
      nSample.mRecord.data(), static_cast<unsigned int>(nSample.mRecord.size()), lText, sizeof(lText)));
}

// The floor of encoding.
unsigned int parse(const Sample& nSample) {
  static bench::ParsedRecords gRecords;
  return bench::parseAny(nSample.mRecord[0], nSample.mText, gRecords) ? 1 : 0;
}

// The floor of decoding: the text from values at hand, in one call. Wholes and decimals are printed apart, because
// printing reals costs several times as much.
class Printer {
 public:
  explicit Printer(const Sample& nSample) : mpRecord(nSample.mRecord.data() + 1) {}

  int print(int nType) {
    switch (nType) {
      case 1:
        return snprintf(
            mText, sizeof(mText),
            "$%c%cGGA,%06d.%03d,%04d.%05d,%c,%05d.%05d,%c,%d,%02d,%d.%02d,%d.%d,M,%d.%d,M,%.0d,%.0d*%02x\r\n", at(0),
            at(1), whole(3, 1000), rest(3, 1000), whole(7, 100000), rest(7, 100000), sign(7, 'N', 'S'),
            whole(11, 100000), rest(11, 100000), sign(11, 'E', 'W'), at(2) >> 4, at(2) & 15, whole(15, 100),
            rest(15, 100), whole(19, 10), rest(19, 10), whole(23, 10), rest(23, 10), word(27), word(29), 79);
      case 2:
        return snprintf(mText, sizeof(mText), "$%c%cGLL,%04d.%05d,%c,%05d.%05d,%c,%06d.%03d,%c,%c*%02x\r\n", at(0),
                        at(1), whole(7, 100000), rest(7, 100000), sign(7, 'N', 'S'), whole(11, 100000),
                        rest(11, 100000), sign(11, 'E', 'W'), whole(3, 1000), rest(3, 1000), "VA"[at(2) >> 4 & 1],
                        "NADE"[at(2) & 3], 79);
      case 3:
        return printGsa();
      case 4:
        return printGsv();
      case 5:
        return snprintf(
            mText, sizeof(mText),
            "$%c%cRMC,%06d.%03d,%c,%04d.%05d,%c,%05d.%05d,%c,%d.%03d,%d.%02d,%02d%02d%02d,%d.%d,%c,%c*%02x\r\n", at(0),
            at(1), whole(3, 1000), rest(3, 1000), "VADU"[at(2) >> 4 & 3], whole(7, 100000), rest(7, 100000),
            sign(7, 'N', 'S'), whole(11, 100000), rest(11, 100000), sign(11, 'E', 'W'), whole(15, 1000), rest(15, 1000),
            whole(19, 100), rest(19, 100), at(23), at(24), at(25), whole(26, 10), rest(26, 10), sign(26, 'E', 'W'),
            "NADE"[at(2) & 3], 79);
      case 6:
        return snprintf(mText, sizeof(mText), "$%c%cVTG,%d.%02d,T,%d.%02d,M,%d.%03d,N,%d.%03d,K,%c*%02x\r\n", at(0),
                        at(1), whole(3, 100), rest(3, 100), whole(7, 100), rest(7, 100), whole(11, 1000),
                        rest(11, 1000), whole(15, 1000), rest(15, 1000), "NADE"[at(2) & 3], 79);
      default:
        return snprintf(
            mText, sizeof(mText),
            "$PUBX,%02d,%06d.%03d,%04d.%05d,%c,%05d.%05d,%c,%d.%03d,%.2s,%d.%d,%d.%d,%d.%03d,%d.%02d,%d.%03d,%d,%d.%"
            "02d,%d.%02d,%d.%02d,%d,%d*%02x\r\n",
            word(3), whole(7, 1000), rest(7, 1000), whole(11, 100000), rest(11, 100000), sign(11, 'N', 'S'),
            whole(15, 100000), rest(15, 100000), sign(15, 'E', 'W'), whole(19, 1000), rest(19, 1000),
            "NFDRG2G3D2D3RKTT" + (at(2) & 7) * 2, whole(23, 10), rest(23, 10), whole(27, 10), rest(27, 10),
            whole(31, 1000), rest(31, 1000), whole(35, 100), rest(35, 100), whole(39, 1000), rest(39, 1000), word(43),
            whole(45, 100), rest(45, 100), whole(49, 100), rest(49, 100), whole(53, 100), rest(53, 100), at(57),
            at(2) >> 4, 79);
    }
  }

 private:
  int at(unsigned int nOffset) const { return mpRecord[nOffset]; }
  int word(unsigned int nOffset) const { return at(nOffset) | at(nOffset + 1) << 8; }
  int value(unsigned int nOffset) const {
    return word(nOffset) | static_cast<signed char>(at(nOffset + 3)) * (1 << 24) | at(nOffset + 2) << 16;
  }
  int whole(unsigned int nOffset, int nUnit) const { return value(nOffset) / nUnit; }
  int rest(unsigned int nOffset, int nUnit) const { return std::abs(value(nOffset) % nUnit); }
  char sign(unsigned int nOffset, char nPositive, char nNegative) const {
    return value(nOffset) < 0 ? nNegative : nPositive;
  }
  int digits(unsigned int nOffset) const { return word(nOffset) != 0 ? 2 : 0; }

  int printGsa() {
    return snprintf(
        mText, sizeof(mText),
        "$%c%cGSA,%c,%d,%.*d,%.*d,%.*d,%.*d,%.*d,%.*d,%.*d,%.*d,%.*d,%.*d,%.*d,%.*d,%d.%02d,%d.%02d,%d.%02d*%02x\r\n",
        at(0), at(1), " AM"[at(2) >> 4 & 1], at(2) & 15, digits(4), word(4), digits(6), word(6), digits(8), word(8),
        digits(10), word(10), digits(12), word(12), digits(14), word(14), digits(16), word(16), digits(18), word(18),
        digits(20), word(20), digits(22), word(22), digits(24), word(24), digits(26), word(26), whole(28, 100),
        rest(28, 100), whole(32, 100), rest(32, 100), whole(36, 100), rest(36, 100), 79);
  }

  int printGsv() {
    const auto number = [this](int nBlock) { return word(5 + 7 * static_cast<unsigned int>(nBlock)); };
    const auto elevation = [this](int nBlock) { return at(8 + 7 * static_cast<unsigned int>(nBlock)); };
    const auto azimuth = [this](int nBlock) { return word(10 + 7 * static_cast<unsigned int>(nBlock)); };
    const auto snr = [this](int nBlock) { return at(9 + 7 * static_cast<unsigned int>(nBlock)); };
    const int lView = at(4);
    const int lBlocks = lView == 0 || at(3) > at(2) ? 0 : at(3) < at(2) || lView % 4 == 0 ? 4 : lView % 4;
    switch (lBlocks) {
      case 0:
        return snprintf(mText, sizeof(mText), "$%c%cGSV,%d,%d,%02d*%02x\r\n", at(0), at(1), at(2), at(3), lView, 79);
      case 1:
        return snprintf(mText, sizeof(mText), "$%c%cGSV,%d,%d,%02d,%02d,%02d,%03d,%02d*%02x\r\n", at(0), at(1), at(2),
                        at(3), lView, number(0), elevation(0), azimuth(0), snr(0), 79);
      case 2:
        return snprintf(mText, sizeof(mText), "$%c%cGSV,%d,%d,%02d,%02d,%02d,%03d,%02d,%02d,%02d,%03d,%02d*%02x\r\n",
                        at(0), at(1), at(2), at(3), lView, number(0), elevation(0), azimuth(0), snr(0), number(1),
                        elevation(1), azimuth(1), snr(1), 79);
      case 3:
        return snprintf(mText, sizeof(mText),
                        "$%c%cGSV,%d,%d,%02d,%02d,%02d,%03d,%02d,%02d,%02d,%03d,%02d,%02d,%02d,%03d,%02d*%02x\r\n",
                        at(0), at(1), at(2), at(3), lView, number(0), elevation(0), azimuth(0), snr(0), number(1),
                        elevation(1), azimuth(1), snr(1), number(2), elevation(2), azimuth(2), snr(2), 79);
      default:
        return snprintf(mText, sizeof(mText),
                        "$%c%cGSV,%d,%d,%02d,%02d,%02d,%03d,%02d,%02d,%02d,%03d,%02d,%02d,%02d,%03d,%02d,%02d,%02d,%"
                        "03d,%02d*%02x\r\n",
                        at(0), at(1), at(2), at(3), lView, number(0), elevation(0), azimuth(0), snr(0), number(1),
                        elevation(1), azimuth(1), snr(1), number(2), elevation(2), azimuth(2), snr(2), number(3),
                        elevation(3), azimuth(3), snr(3), 79);
    }
  }

  const unsigned char* mpRecord;
  char mText[TEXT_SIZE];
};

unsigned int print(const Sample& nSample) {
  return static_cast<unsigned int>(Printer(nSample).print(nSample.mRecord[0]));
}

using Work = unsigned int (*)(const Sample&);

bench::Table::Measure overAll(const std::vector<Sample>& nSamples, Work nWork) {
  return [&nSamples, nWork] {
    const int lPasses = std::max(1, PASSES / static_cast<int>(nSamples.size()));
    unsigned int lSum = 0;
    const int64_t lStart = bench::threadCpuNs();
    for (int i = 0; i < lPasses; ++i) {
      for (const Sample& lSample : nSamples) lSum += nWork(lSample);
    }
    const int64_t lTime = bench::threadCpuNs() - lStart;
    gSink = lSum;
    return static_cast<double>(lTime) / (static_cast<double>(lPasses) * static_cast<double>(nSamples.size()));
  };
}

const char* const SENTENCES[] = {
    "$GPGGA,123519.00,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n",
    "$GPGLL,4916.45123,N,12311.12345,W,225444.00,A,A*7D\r\n",
    "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.50,1.30,2.10*39\r\n",
    "$GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75\r\n",
    "$GPRMC,123519.00,A,4807.03812,N,01131.00045,E,022.4,084.4,230394,003.1,W,A*6A\r\n",
    "$GPVTG,054.7,T,034.4,M,005.5,N,010.2,K,A*25\r\n",
    "$PUBX,00,081350.00,4717.11321,N,00833.91518,E,546.589,G3,2.1,2.0,0.007,77.52,0.007,,0.92,1.19,0.77,9,0,0*5F\r\n",
};

std::vector<Sample> readCorpus(const std::filesystem::path& nFolder) {
  std::vector<Sample> lSamples;
  std::vector<std::filesystem::path> lFiles;
  std::error_code lError;
  for (const auto& lEntry : std::filesystem::directory_iterator(nFolder, lError)) lFiles.push_back(lEntry.path());
  std::sort(lFiles.begin(), lFiles.end());
  for (const auto& lFile : lFiles) {
    std::ifstream lStream(lFile, std::ios::binary);
    Sample lSample;
    for (std::string lLine; std::getline(lStream, lLine);) {
      if (makeSample(lLine, &lSample)) lSamples.push_back(lSample);
    }
  }
  return lSamples;
}

void measure(bench::Table& nTable, const std::string& nName, const std::vector<Sample>& nSamples, bool nIsEncoding) {
  if (nIsEncoding) {
    nTable.ratio(nName, overAll(nSamples, encode), overAll(nSamples, parse), ENCODE_AIM);
  } else {
    nTable.ratio(nName, overAll(nSamples, decode), overAll(nSamples, print), DECODE_AIM);
  }
}

}  // namespace

int main(int nArgCount, char** nppArgs) {
  nfw::registerLogType(nfw::LOG_TYPE_NFW, "bench", nfw::LOG_LEVEL_NONE);  // what is turned down is not a result here
  const char* const lpSetting = std::getenv("NFW_BENCH_CORPUS");
  const std::vector<Sample> lCorpus = readCorpus(nArgCount > 1          ? nppArgs[1]
                                                 : lpSetting != nullptr ? lpSetting
                                                                        : "../shared/nmea");
  unsigned int lSum = 0;
  Sample lSample;
  std::vector<std::vector<Sample>> lKinds;
  for (const char* lpText : SENTENCES) {
    if (makeSample(lpText, &lSample)) lKinds.push_back({lSample});
  }
  for (const bool lIsEncoding : {true, false}) {
    bench::Table lTable(lIsEncoding ? "Encoding, beside a parse of the same sentence"
                                    : "Decoding, beside one snprintf");
    for (const auto& lKind : lKinds) measure(lTable, lKind[0].mText.substr(1, 5), lKind, lIsEncoding);
    if (!lCorpus.empty()) {
      measure(lTable, "corpus of " + std::to_string(lCorpus.size()) + " sentences", lCorpus, lIsEncoding);
    }
  }
  if (lCorpus.empty()) std::printf("\nNo corpus of real sentences.\n");

  bench::Table lTable("Memory");
  const unsigned long lStart = bench::allocations();
  for (const auto& lKind : lKinds) lSum += encode(lKind[0]) + decode(lKind[0]);
  for (const Sample& lEach : lCorpus) lSum += encode(lEach) + decode(lEach);
  lTable.value("allocations", static_cast<double>(bench::allocations() - lStart), 0, "calls of new");
  gSink = lSum;
  return 0;
}

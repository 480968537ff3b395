// What it costs to parse a sentence, beside a bare look for its commas and beside a one-pass parse that does no more
// than it must. Processor time of the thread; failing sentences count too, with their log lines filtered out.
//   bench_parser [DIRECTORY]      its *.log files, a line a sentence; default: a few sentences of its own
#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>

#include "BenchSupport.h"
#include "NfwAppLog.h"
#include "ParseAny.h"
#include "StraightNmeaParse.h"

using nfw::NmeaDataParser;

namespace {

const char* const KINDS[] = {"GGA", "GLL", "GSA", "GSV", "RMC", "VTG", "ZDA", "PUBX"};
const char* const OWN_SENTENCES[] = {
    "$GPGGA,092725.00,4717.11399,N,00833.91590,E,1,08,1.01,499.6,M,48.0,M,,*5B",
    "$GNGLL,4717.11364,N,00833.91565,E,092321.00,A,A*60",
    "$GPGSA,A,3,23,29,07,08,09,18,26,28,,,,,1.94,1.18,1.54*0D",
    "$GLGSV,3,1,10,23,38,230,44,29,71,156,47,07,29,116,41,08,09,081,36*7F",
    "$GPGSV,3,3,10,24,06,166,35,28,09,271,36*7D",
    "$GPRMC,083559.00,A,4717.11437,N,00833.91522,E,0.004,77.52,091202,3.1,W,A*57",
    "$GPRMC,125106,V,3854.5087,N,07726.4523,W,0.0,0.0,241011,10.5,W*28",
    "$GPVTG,77.52,T,,M,0.004,N,0.008,K,A*06",
    "$GPZDA,082710.00,16,09,2002,00,00*64",
    "$PUBX,00,081350.00,4717.113210,N,00833.915187,E,546.589,G3,2.1,2.0,0.007,77.52,0.007,,0.92,1.19,0.77,9,0,0*5F"};

const size_t PADDING = 16;

struct Sentence {
  int mType;
  std::string mText;
  std::string mPadded = mText + std::string(PADDING, '\0');
};
using Sentences = std::vector<Sentence>;

int typeOf(const std::string& nText) {
  return NmeaDataParser::analyzeNmeaSentenceType(nText.c_str(), static_cast<unsigned int>(nText.size()));
}

void take(const std::string& nText, Sentences* npSentences) {
  if (typeOf(nText) != nfw::NMEA_UNKNOWN) npSentences->push_back({typeOf(nText), nText});
}

Sentences load(const char* npDirectory) {
  Sentences lSentences;
  for (const auto& lEntry : std::filesystem::directory_iterator(npDirectory)) {
    if (lEntry.path().extension() != ".log") continue;
    std::ifstream lFile(lEntry.path(), std::ios::binary);
    for (std::string lLine; std::getline(lFile, lLine);) {
      if (!lLine.empty() && lLine.back() == '\r') lLine.pop_back();
      take(lLine.c_str(), &lSentences);
    }
  }
  return lSentences;
}

bench::ParsedRecords gRecords;

bool parse(const Sentence& nSentence) { return bench::parseAny(nSentence.mType, nSentence.mText, gRecords); }

bool parseStraight(const Sentence& nSentence) {
  const char* const lpText = nSentence.mText.c_str();
  switch (nSentence.mType) {
    case nfw::NMEA_GGA:
      return straight::parse(lpText, gRecords.mGga);
    case nfw::NMEA_GLL:
      return straight::parse(lpText, gRecords.mGll);
    case nfw::NMEA_GSA:
      return straight::parse(lpText, gRecords.mGsa);
    case nfw::NMEA_GSV:
      return straight::parse(lpText, gRecords.mGsv);
    case nfw::NMEA_RMC:
      return straight::parse(lpText, gRecords.mRmc);
    case nfw::NMEA_VTG:
      return straight::parse(lpText, gRecords.mVtg);
    case nfw::NMEA_ZDA:
      return straight::parse(lpText, gRecords.mZda);
    default:
      return straight::parse(lpText, gRecords.mPubx);
  }
}

bool split(const Sentence& nSentence) {
  const char* lpNext = nSentence.mText.data();
  const char* const lpEnd = lpNext + nSentence.mText.size();
  while (const void* const lpComma = memchr(lpNext, ',', static_cast<size_t>(lpEnd - lpNext))) {
    lpNext = static_cast<const char*>(lpComma) + 1;
    asm volatile("" : : "r"(lpNext));  // each field's start is wanted
  }
  return true;
}

// The least that anybody can do who looks at every byte: no field is read.
bool scan(const Sentence& nSentence) {
  const char* const lpText = nSentence.mPadded.data();
  for (size_t i = 0; i < nSentence.mText.size(); i += PADDING) {
#ifdef __SSE2__
    __m128i lBytes;
    std::memcpy(&lBytes, lpText + i, PADDING);
    auto lCommas = static_cast<unsigned int>(_mm_movemask_epi8(_mm_cmpeq_epi8(lBytes, _mm_set1_epi8(','))));
#else
    unsigned int lCommas = 0;
    for (size_t j = 0; j < PADDING; ++j) lCommas |= (lpText[i + j] == ',' ? 1U : 0U) << j;
#endif
    for (; lCommas != 0; lCommas &= lCommas - 1) {
      asm volatile("" : : "r"(lpText + i + __builtin_ctz(lCommas)));  // each field's start is wanted
    }
  }
  return true;
}

/// One round: nanoseconds a sentence.
template <class Step>
bench::Table::Measure over(const Sentences& nSentences, Step nStep) {
  return [&nSentences, nStep] {
    const size_t lPasses = 1 + 20000 / nSentences.size();
    unsigned int lGood = 0;
    const int64_t lStart = bench::threadCpuNs();
    for (size_t i = 0; i < lPasses; ++i) {
      for (const Sentence& lSentence : nSentences) lGood += nStep(lSentence) ? 1U : 0U;
    }
    asm volatile("" : : "r"(lGood));
    return static_cast<double>(bench::threadCpuNs() - lStart) / static_cast<double>(lPasses * nSentences.size());
  };
}

// As a sentence is met that comes each 50 ms: what others did meanwhile has taken the caches. A walk through memory
// does so here, the time of one parse is taken, and the median of many told.
template <class Step>
bench::Table::Measure cold(const Sentences& nSentences, Step nStep) {
  static std::vector<unsigned char> gElse(32 << 20);
  return [&nSentences, nStep] {
    std::vector<double> lTimes;
    for (size_t i = 0; i < 60; ++i) {
      for (size_t j = 0; j < gElse.size(); j += 64) ++gElse[j];
      const Sentence& lSentence = nSentences[i * 7 % nSentences.size()];
      const int64_t lStart = bench::nowNs();
      const bool lIsGood = nStep(lSentence);
      asm volatile("" : : "r"(lIsGood));
      lTimes.push_back(static_cast<double>(bench::nowNs() - lStart));
    }
    return bench::median(lTimes);
  };
}

Sentences ofKind(const Sentences& nSentences, int nType) {
  Sentences lSentences;
  for (const Sentence& lSentence : nSentences) {
    if (lSentence.mType == nType) lSentences.push_back(lSentence);
  }
  return lSentences;
}

size_t countOf(const Sentences& nSentences, bool (*npStep)(const Sentence&)) {
  size_t lCount = 0;
  for (const Sentence& lSentence : nSentences) lCount += npStep(lSentence) ? 1U : 0U;
  return lCount;
}

void benchWhole(const Sentences& nSentences) {
  bench::Table lTable("Parse, all sentences");
  lTable.ratio("parse / a memchr for each field", over(nSentences, parse), over(nSentences, split), 2.0);
  lTable.ratio("parse / the commas, 16 bytes at a time", over(nSentences, parse), over(nSentences, scan), INFINITY);
  lTable.ratio("parse / one pass", over(nSentences, parse), over(nSentences, parseStraight), 1.2);
  lTable.ratio("parse / one pass, cold caches", cold(nSentences, parse), cold(nSentences, parseStraight), 1.0);
  const double lAnalyze = over(nSentences, [](const Sentence& nSentence) { return typeOf(nSentence.mText) != 0; })();
  lTable.value("analyzeNmeaSentenceType", lAnalyze, 10, "ns");
  const unsigned long lBefore = bench::allocations();
  over(nSentences, parse)();
  lTable.value("allocations", static_cast<double>(bench::allocations() - lBefore), 0, "");
}

void benchKinds(const Sentences& nSentences) {
  const double NO_AIM = std::numeric_limits<double>::infinity();
  bench::Table lTable("Parse, by kind: sentences (accepted)");
  for (int i = nfw::NMEA_GGA; i <= nfw::NMEA_PUBX; ++i) {
    const Sentences lSentences = ofKind(nSentences, i);
    if (lSentences.empty()) continue;
    const std::string lName = std::string(KINDS[i - 1]) + ": " + std::to_string(lSentences.size()) + " (" +
                              std::to_string(countOf(lSentences, parse)) + ")";
    lTable.ratio(lName + " / commas", over(lSentences, parse), over(lSentences, scan), NO_AIM, 7);
    lTable.ratio(lName + " / one pass", over(lSentences, parse), over(lSentences, parseStraight), NO_AIM, 7);
  }
}

}  // namespace

int main(int nArgumentNum, char** nppArguments) {
  nfw::registerLogType(nfw::LOG_TYPE_NFW, "<NAVI>NFW    ", nfw::LOG_LEVEL_NONE);
  Sentences lSentences;
  if (nArgumentNum > 1) lSentences = load(nppArguments[1]);
  if (lSentences.empty()) {
    for (const char* lpText : OWN_SENTENCES) take(lpText, &lSentences);
  }
  std::printf("%zu sentences, %zu accepted, by the one-pass parse %zu\n", lSentences.size(), countOf(lSentences, parse),
              countOf(lSentences, parseStraight));
  benchWhole(lSentences);
  benchKinds(lSentences);
  return 0;
}

// Arbitrary bytes as a sentence: nothing is read behind them, and the parser says what another one says.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "NfwNmeaDataParser.h"
#include "NmeaParserCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* npData, size_t nSize) {
  const std::unique_ptr<char[]> lpExact(new char[nSize]);  // no terminator: only the length ends it
  if (nSize > 0) std::memcpy(lpExact.get(), npData, nSize);
  nfw::NmeaDataParser::analyzeNmeaSentenceType(lpExact.get(), static_cast<unsigned int>(nSize));

  const std::string lText(lpExact.get(), strnlen(lpExact.get(), nSize));
  const std::string lDifference = differenceFromReference(lText);
  if (lDifference.empty()) return 0;
  std::fprintf(stderr, "%s\n", lDifference.c_str());
  std::abort();
}

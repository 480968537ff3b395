// Encodes a file of sentences as the binary log stores them, decodes it again, and shows what that saves.
//   example_encode-sentences FILE [-v]      -v: each sentence as it came back
#include <NaviAppFramework.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

namespace {

const unsigned int TEXT_SIZE = 256;
const char* const KINDS[] = {"", "GGA", "GLL", "GSA", "GSV", "RMC", "VTG", "ZDA", "PUBX"};

struct Total {
  unsigned long mSentences = 0, mTextBytes = 0, mRecordBytes = 0;

  void add(size_t nText, int nRecord) {
    ++mSentences;
    mTextBytes += nText;
    mRecordBytes += static_cast<unsigned long>(nRecord);
  }
  void print(const char* npName) const {
    if (mSentences == 0) return;
    const double lSaved = 100.0 - 100.0 * static_cast<double>(mRecordBytes) / static_cast<double>(mTextBytes);
    std::printf("%-6s %9lu %12lu %12lu %8.1f %%\n", npName, mSentences, mTextBytes, mRecordBytes, lSaved);
  }
};

int cannotRead(const char* npFile) {
  std::fprintf(stderr, "%s: %s\n", npFile, std::strerror(errno));
  return 2;
}

}  // namespace

int main(int nArgNum, char** nppArgs) {
  const bool lIsVerbose = nArgNum == 3 && std::strcmp(nppArgs[2], "-v") == 0;
  if (nArgNum != 2 && !lIsVerbose) {
    std::fprintf(stderr, "usage: %s FILE [-v]\n", nppArgs[0]);
    return 2;
  }
  std::ifstream lFile(nppArgs[1], std::ios::binary);
  if (!lFile) return cannotRead(nppArgs[1]);
  // What a sentence lacks would be told on standard error; here the count is enough.
  nfw::registerLogType(nfw::LOG_TYPE_NFW, "", nfw::LOG_LEVEL_NONE);

  nfw::NmeaBinaryLogDataVersion1 lConverter;  // holds no state: one serves all threads
  Total lTotal, lByKind[std::size(KINDS)];
  unsigned long lOthers = 0;
  for (std::string lLine; std::getline(lFile, lLine);) {
    // Clear the buffer: reserved bytes of a record are not written.
    unsigned char lRecord[nfw::NmeaBinaryLogData::MIN_RECORD_BUFFER] = {};
    const int lSize =
        lConverter.convertFromNmeaSentence(reinterpret_cast<const unsigned char*>(lLine.data()),
                                           static_cast<unsigned int>(lLine.size()), lRecord, sizeof(lRecord));
    if (lSize <= 0) {  // -1: no sentence that can be stored; 0: one that is not stored (ZDA)
      ++lOthers;
      continue;
    }
    lTotal.add(lLine.size() + 1, lSize);
    lByKind[lRecord[0]].add(lLine.size() + 1, lSize);

    unsigned char lText[TEXT_SIZE];
    const int lLength =
        lConverter.convertToNmeaSentence(lRecord, static_cast<unsigned int>(lSize), lText, sizeof(lText));
    if (lLength < 0) return 1;
    if (lIsVerbose) std::printf("%.*s", lLength, reinterpret_cast<const char*>(lText));
  }
  if (lFile.bad()) return cannotRead(nppArgs[1]);
  std::printf("%-6s %9s %12s %12s %10s\n", "kind", "sentences", "text bytes", "record bytes", "saved");
  for (size_t i = 0; i < std::size(KINDS); ++i) lByKind[i].print(KINDS[i]);
  lTotal.print("all");
  std::printf("%lu lines are not stored\n", lOthers);
  return 0;
}

#pragma once

#include "StreamTally.h"

namespace drive {

/// What listeners are to receive of a stream of sentences: each as it came, its record, the satellites of a GSV group
/// as one record behind its last message, and once GGA, GLL, GSA, GSV, RMC and VTG have all come, one record of them
/// together. One thread at a time.
class ExpectedStream {
 public:
  /// What a sentence is: of a kind that is parsed, and whether it can be.
  struct Fate {
    int mKind;
    bool mIsParsed;
  };

  Fate onSentence(std::string_view nSentence);
  void onDeadReckoning(std::string_view nSentence);

  const StreamTally& get() const { return mTally; }

 private:
  template <class Record>
  using Parse = bool (*)(char const*, unsigned int, Record*);

  bool judge(int nKind, const char* npText, unsigned int nSize);
  template <class Record>
  bool parsed(int nKind, Parse<Record> npParse, const char* npText, unsigned int nSize);
  bool parsedGsv(const char* npText, unsigned int nSize);
  void note(int nKind);

  StreamTally mTally;
  unsigned int mSeen = 0;  // a bit for each kind since the last combined record
};

}  // namespace drive

#pragma once

#include <cstddef>
#include <string_view>

#include "LineCounts.h"
#include "SentenceSink.h"

namespace tool {

/// Cuts a stream of bytes into sentences and judges their checksums. Whatever the bytes are, it counts and goes on.
///
/// - A sentence runs from "$" or "!" and a capital to CR, LF or the next "$" or "!". Blanks before its start or at its
/// end are dropped.
/// - What has a right checksum is accepted, however it ended.
/// - Old receivers send no checksums: a whole line without "*" is accepted until the first right checksum was seen.
///   From then on it is a line that lost its tail, and is rejected.
/// - Without judging, every whole line that is printable is accepted; cut, binary and over-long ones never are.
///
/// One thread at a time. Nothing is allocated.
class LineReader {
 public:
  static constexpr size_t MAX_SENTENCE = 130;  ///< what the positioning service takes
  static constexpr size_t MIN_SENTENCE = 6;    ///< "$GPGGA"

  /// @param nCounts not owned, outlives the reader
  /// @param nJudged false accepts sentences whatever their checksum says
  explicit LineReader(LineCounts& nCounts, bool nJudged = true) : mCounts(nCounts), mJudged(nJudged) {}

  /// Takes the next bytes. False when the sink wants no more: the rest is left out, and no count tells of it.
  bool feed(const char* npData, size_t nSize, SentenceSink& nSink);

  /// Says that the input ended, or will go on elsewhere after a break.
  bool finish(SentenceSink& nSink);

 private:
  enum State { BETWEEN, SENTENCE, NOISE, SPOILT };

  bool take(char nByte, SentenceSink& nSink);
  void takeInside(char nByte);
  void spoil(LineVerdict nVerdict);
  bool endPiece(bool nWhole, SentenceSink& nSink);
  LineVerdict judge(std::string_view nSentence, bool nWhole) const;
  bool deliver(std::string_view nSentence, LineVerdict nVerdict, SentenceSink& nSink);

  LineCounts& mCounts;
  const bool mJudged;
  bool mSeenChecksum = false;
  State mState = BETWEEN;
  size_t mSize = 0;
  char mBuffer[MAX_SENTENCE];
};

}  // namespace tool

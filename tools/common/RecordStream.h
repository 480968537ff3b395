#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "Record.h"
#include "RecordFormat.h"

namespace tool {

/// Reads a recording of either kind record by record, forward and in one pass, from anything that can be read. Which
/// kind it is shows in its bytes. What is damaged is told and left out: the stream goes on with the next whole record.
///
/// @code
/// tool::RecordStream lStream(lFd, &lListener);
/// tool::Record lRecord;
/// while (lStream.next(&lRecord)) use(lRecord.mTick, lRecord.mData);
/// if (lStream.getError() != 0) complain();
/// @endcode
///
/// One buffer of 256 KiB, which grows only for a record that is larger, up to RecordFormat::MAX_RECORD. Nothing is
/// allocated for a record. One thread at a time.
class RecordStream {
 public:
  /// @param nFd not owned; read from where it stands, which counts as offset 0
  /// @param npListener not owned, may be null
  explicit RecordStream(int nFd, RecordDamageListener* npListener = nullptr);

  /// False at the end, and when reading fails.
  bool next(Record* npRecord);

  /// While live, the end of the file is the end for now, and a record that is not all there is waited for: next() may
  /// be asked again. Turned off, the rest is judged for good.
  void setLive(bool nIsLive) {
    mIsLive = nIsLive;
    mIsAtEnd = false;
  }

  /// UNKNOWN_RECORD before the first next(), for an empty file, and for a foreign one.
  RecordKind getKind() const { return mKind; }
  bool isForeign() const { return mIsForeign; }                 ///< it began with no record of either kind
  uint64_t getRead() const { return mOffset + mEnd - mBegin; }  ///< bytes taken from the descriptor so far
  uint64_t getOffset() const { return mOffset; }                ///< bytes dealt with
  int getError() const { return mError; }                       ///< errno of a failed read, 0 for none

 private:
  bool recognise();
  bool recogniseLater();
  void take(const RecordFormat& nFormat, RecordKind nKind);
  RecordVerdict judge();
  bool skipDamage();
  bool fill(size_t nSize);
  void makeRoom(size_t nSize);
  bool readOnce();
  void drop(size_t nSize);
  std::string_view bytes() const { return {mBuffer.data() + mBegin, mEnd - mBegin}; }
  RecordView view() const { return {bytes(), mIsAtEnd && !mIsLive, mIsLive, mIsBegun}; }

  const int mFd;
  RecordDamageListener* const mpListener;
  const RecordFormat* mpFormat = nullptr;  // null until recognised
  RecordKind mKind = UNKNOWN_RECORD;
  std::vector<char> mBuffer;
  size_t mBegin = 0, mEnd = 0;  // of what is in the buffer and not dealt with
  uint64_t mOffset = 0;         // of mBegin in the file
  bool mIsAtEnd = false;
  bool mIsLive = false;
  bool mIsBegun = false;  // as RecordView has it, of mBegin
  bool mIsForeign = false;
  int mError = 0;
};

}  // namespace tool

// The log record file being written, and where its whole records end.
#pragma once

#include <cstdint>
#include <memory>

#include "utl/File.h"

namespace nfw {

class StreamBuffer;

/// Moves records from the ring into a file. A piece may end inside a record; when a write fails, what the file holds of
/// that record and of the failed piece is cut off again, so that the file ends with a whole record and the next piece
/// may follow. Not locked: the owner says which lock each step needs.
class LogFile {
 public:
  bool open(const char* npPath);  ///< creates or truncates; false when it cannot be opened
  void close();
  void remove();  ///< closes, and takes the name away: nothing came of the file
  bool isOpen() const { return mpFile != nullptr; }
  const char* getPath() const { return mpFile->getPath(); }
  std::shared_ptr<utl::File> share() const { return mpFile; }  ///< for who syncs it, beyond a close()
  bool flush() { return mpFile->flush(); }
  bool hasName() const { return mpFile->hasName(); }
  bool hasFailed() const { return mHasFailed; }  ///< the last open or write
  int getError() const { return mError; }        ///< and its errno, 0 when none was told

  /// Bytes of the file, all of them written.
  uint64_t size() const { return mSize; }

  /// Needs the file, not the ring: writes bytes that still lie at the top of the ring.
  bool write(const void* npBytes, unsigned int nSize) { return writeBytes(npBytes, nSize) >= 0; }
  /// The top bytes of the ring were written: takes them out.
  void accept(StreamBuffer& nBuffer, unsigned int nSize);
  /// The write of the ring's top bytes failed on the way: takes out the records that came into the file whole.
  void acceptWhole(StreamBuffer& nBuffer, unsigned int nSize);
  /// A write failed: ends the file behind its last whole record, and drops what the ring holds of a record whose
  /// beginning was in the file. Every other record of the ring stays there, whole. Returns the dropped record's size, 0
  /// when there was none.
  uint64_t cutBack(StreamBuffer& nBuffer);

  /// The size of the ring's first record, of which nothing is in the file; 0 when there is none.
  static uint64_t firstSize(const StreamBuffer& nBuffer);
  static unsigned int recordNum(const StreamBuffer& nBuffer);  ///< all of them, where the first is whole

  /// A record that does not go through the ring: its parts one after the other, then it is whole; cutBack() when one
  /// fails.
  int writePart(const void* npBytes, unsigned int nSize);
  void endRecord() { mOpenSize = 0; }

 private:
  int writeBytes(const void* npBytes, unsigned int nSize);
  void noteResult(bool nIsDone, int nError);

  std::shared_ptr<utl::File> mpFile;
  bool mHasFailed = false;
  int mError = 0;
  uint64_t mSize = 0;
  uint64_t mOpenSize = 0;  // bytes of the file that belong to a record not yet wholly in it
  uint64_t mLeftSize = 0;  // bytes of that record at the top of the ring
};

}  // namespace nfw

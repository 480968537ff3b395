// Reads the records of one log type id out of a file of records.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "AskBudget.h"
#include "NfwExport.h"
#include "NfwThreadSafety.h"
#include "ReadWindow.h"
#include "Watched.h"
#include "ZTSync.h"

namespace nfw {

/// What a record says about itself.
struct RecordHeader {
  int mId = 0;
  int mVersion = 0;
  uint32_t mTime = 0;  // milliseconds
  uint32_t mSize = 0;  // bytes of data
  uint64_t mPosition = 0;
};

/// How the records of a kind of file lie in it: text that is passed over, a few fields, the data, bytes after it.
struct RecordFormat {
  static constexpr unsigned int FIELD_NUM = 3;
  static constexpr unsigned int MAX_FIELDS_SIZE = 12;
  static constexpr unsigned int MAX_HEADER_SIZE = 48;

  struct Field {
    unsigned int mSize;
    const char* mpWord;  // in the line of a failed read
  };

  const char* mpLockName;
  unsigned int mTextSize;
  Field mFields[FIELD_NUM];
  unsigned int mFieldsSize;  // the sum
  unsigned int mBytesAfter;
  uint64_t mFirstTimeAt;  // where the time of the first record stands
  bool mIsCancelable;
  void (*mpDecode)(const unsigned char* npFields, RecordHeader* npHeader);
  void (*mpLog)(const char* npOperation, const char* npText, int nId);
  void (*mpLogAt)(const char* npText, int nId, uint64_t nPosition);  // of next()
  void (*mpOnFirstTime)(int nId);                                    // may be null
  /// Whether a record may begin with these bytes: the text and the fields.
  bool (*mpIsPlausible)(const unsigned char* npBytes);
  unsigned int mChainLength;  // plausible records in a row that leave no doubt

  unsigned int headerSize() const { return mTextSize + mFieldsSize; }
};

class RecordScout;

/// The engine of both readers, which differ in their formats. Any failure of reading is final until the file is opened
/// again. Every operation but requestCancelNext() holds the reader's lock.
///
/// The file may grow and shrink meanwhile: its size is asked at every call, before anything is read from the file, and
/// before its end is told. Only who reads more than 256 records in a few milliseconds may still get, for that long, the
/// records of a file that has shrunk which were read together with those before.
class RecordReader {
 public:
  static constexpr int ERROR = -1;
  static constexpr int END_OF_FILE = -3;
  static constexpr int CANCELED = -4;

  virtual ~RecordReader() = default;
  RecordReader(const RecordReader&) = delete;
  RecordReader& operator=(const RecordReader&) = delete;

  /// False when a file is open, or this one cannot be. With a scout, its file of that number.
  bool open(int nLogTypeId, const char* npPath, RecordScout* npScout = nullptr, unsigned int nFile = 0);
  bool seek(uint64_t nPosition);  ///< where a record begins; false while no file is open
  void close();
  bool isOpened() const;

  /// The time of the file's first record, of whatever id. One failure (the position) still returns true, without a
  /// time: kept so; callers initialise theirs.
  bool getFirstLogTime(unsigned int* npTime);

  /// The next record of the id: its data size, or a negative result.
  int nextRecord(RecordHeader* npHeader, void* npBuffer, unsigned int nBufferSize);

  /// Takes several records under one taking of the lock, each as nextRecord() does: a cancel ends it between any two.
  class NFW_SCOPED_LOCK Batch {
   public:
    explicit Batch(RecordReader& nReader) NFW_ACQUIRE(nReader.mSync)
        : mReader(nReader), mLock(nReader.mSync, nReader.mHere.in("nextRecord")) {}
    ~Batch() NFW_RELEASE() = default;
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

    /// The lock is the one that the batch was made with.
    int next(RecordHeader* npHeader, void* npBuffer, unsigned int nBufferSize) NFW_NO_THREAD_SAFETY_ANALYSIS {
      return mReader.take(npHeader, npBuffer, nBufferSize);
    }

   private:
    RecordReader& mReader;
    const WatchedLock mLock;
  };

  /// Makes a running or later nextRecord() return CANCELED, until open(). Nothing for a format without a cancel.
  void requestCancelNext() {
    if (mFormat.mIsCancelable) mIsCanceled.store(true, std::memory_order_relaxed);
  }

 protected:
  RecordReader(const RecordFormat& nFormat, const Here& nHere);

 private:
  unsigned int headerSize() const { return mFormat.headerSize(); }
  bool isCanceled() const { return mIsCanceled.load(std::memory_order_relaxed); }
  int take(RecordHeader* npHeader, void* npBuffer, unsigned int nBufferSize) NFW_REQUIRES(mSync);
  bool passOver(uint64_t nPosition) NFW_REQUIRES(mSync);
  bool getSize() NFW_REQUIRES(mSync);
  bool isAtEnd(uint64_t nPosition) NFW_REQUIRES(mSync);
  bool readHeader(RecordHeader* npHeader) NFW_REQUIRES(mSync);
  bool readFields(const RecordHeader& nHeader, unsigned char* npFields) NFW_REQUIRES(mSync);
  int readData(const RecordHeader& nHeader, void* npBuffer, unsigned int nBufferSize) NFW_REQUIRES(mSync);
  int readDataOn(const RecordHeader& nHeader, void* npBuffer) NFW_REQUIRES(mSync);
  int failAt(uint64_t nPosition, const char* npFormat, ...) NFW_PRINTF(3, 4) NFW_REQUIRES(mSync);
  int fail(const char* npOperation, const char* npFormat, ...) NFW_PRINTF(3, 4) NFW_REQUIRES(mSync);

  const RecordFormat& mFormat;
  const Here mHere;
  mutable ZTSync mSync;
  std::unique_ptr<utl::File> mpFile NFW_GUARDED_BY(mSync);
  ReadWindow mWindow NFW_GUARDED_BY(mSync);
  uint64_t mFileSize NFW_GUARDED_BY(mSync) = 0;  // when last asked
  AskBudget mAskBudget NFW_GUARDED_BY(mSync);
  int mLogTypeId NFW_GUARDED_BY(mSync) = -1;
  bool mHasFailed NFW_GUARDED_BY(mSync) = false;
  RecordScout* mpScout NFW_GUARDED_BY(mSync) = nullptr;  // not owned
  unsigned int mScoutFile NFW_GUARDED_BY(mSync) = 0;
  uint64_t mAskAt NFW_GUARDED_BY(mSync) = UINT64_MAX;  // the scout, from this place on
  std::atomic<bool> mIsCanceled{false};
};

}  // namespace nfw

#pragma once

#include <optional>
#include <string>

#include "Inputs.h"
#include "Problems.h"
#include "RecordStream.h"

namespace logtool {

/// Reads the records of a recording's files one after the other.
class RecordingReader : private tool::RecordDamageListener {
 public:
  /// @param nRecording @param nProblems not owned, outlive the reader
  RecordingReader(const Recording& nRecording, Problems& nProblems) : mRecording(nRecording), mProblems(nProblems) {}
  ~RecordingReader() override { close(); }
  RecordingReader(const RecordingReader&) = delete;
  RecordingReader& operator=(const RecordingReader&) = delete;

  bool next(tool::Record* npRecord);

  /// Of the record last read; empty before the first.
  const std::string& getPath() const { return mFile > 0 ? mRecording.mPaths[mFile - 1] : mRecording.mName; }
  size_t getFileNo() const { return mFile; }          ///< from 1 on
  tool::RecordKind getKind() const { return mKind; }  ///< of the last file that had any records
  uint64_t getRead() const { return mReadBefore + (mStream ? mStream->getRead() : 0); }

 private:
  bool openNext();
  void endFile();
  void close();
  void onDamage(const tool::RecordDamage& nDamage) override { mProblems.onDamage(getPath(), nDamage); }

  const Recording& mRecording;
  Problems& mProblems;
  size_t mFile = 0;  // files opened so far
  int mFd = -1;
  std::optional<tool::RecordStream> mStream;
  tool::RecordKind mKind = tool::UNKNOWN_RECORD;
  uint64_t mReadBefore = 0;
};

}  // namespace logtool

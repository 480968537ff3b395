// Records of the inputs, one after the other, into a new file.
#pragma once

#include "OutputFile.h"
#include "ProblemReport.h"
#include "Run.h"

namespace logtool {

/// Writes records, and counts them. A file may hold records of one kind only: one of the other is refused with a
/// message.
class Copier {
 public:
  explicit Copier(OutputFile& nOutput) : mOutput(nOutput) {}

  /// False when no more can be taken.
  bool copy(const tool::Record& nRecord);

  bool isMixed() const { return mIsMixed; }
  uint64_t getRecords() const { return mRecords; }
  uint64_t getBytes() const { return mBytes; }

 private:
  bool takes(const tool::Record& nRecord);

  OutputFile& mOutput;
  tool::RecordKind mKind = tool::UNKNOWN_RECORD;
  bool mIsMixed = false;
  uint64_t mRecords = 0;
  uint64_t mBytes = 0;
};

/// Gives a copier what a command takes of one recording.
using CopyRecording = void (*)(Run& nRun, const Recording& nRecording, ProblemReport& nProblems, Copier& nCopier);
/// What a command says once the new file is complete.
using TellCopied = void (*)(const Copier& nCopier, const ProblemReport& nProblems);

/// Copies every input into the output, which appears under its name when it is complete.
/// @return the exit code
int copyRecordings(Run& nRun, CopyRecording npCopy, TellCopied npTell = nullptr);

}  // namespace logtool

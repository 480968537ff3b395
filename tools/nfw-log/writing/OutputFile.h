#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Inputs.h"
#include "Output.h"

namespace logtool {

/// Where a command writes: standard output, or a file that appears under its name only when it is complete. Until then
/// it has a temporary name beside it, which goes when the object goes and when a signal ends the program.
class OutputFile {
 public:
  OutputFile();
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// @param nPath "-" is standard output
  /// @param nForce replaces a file that exists; never one of the inputs
  /// @return false, with a line on standard error
  bool open(const std::string& nPath, bool nForce, const std::vector<Recording>& nInputs);

  void write(std::string_view nBytes) { mOutput->write(nBytes); }
  void flush() { mOutput->flush(); }
  /// Nothing more is wanted: it failed, or the reader of a pipe has gone.
  bool isClosed() const { return mOutput->getState() != tool::Output::OPEN; }
  bool isTerminal() const { return mOutput->isTerminal(); }

  /// The file while it is under way, for who writes to it by its name; empty for standard output.
  const std::string& getTemporary() const { return mTemporary; }

  /// What was written is of no use: says why, and commit() fails.
  void spoil(const char* npWhat, int nError);

  /// Completes the file. False, with a line on standard error, when it could not be written.
  bool commit();

 private:
  bool openTemporary();
  bool fail(const char* npWhat, int nError);

  std::string mPath;
  std::string mTemporary;
  bool mForce = false;
  bool mIsSpoilt = false;
  int mFd = -1;
  std::unique_ptr<tool::Output> mOutput;
};

}  // namespace logtool

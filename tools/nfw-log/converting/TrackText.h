#pragma once

#include <memory>
#include <string_view>

#include "OutputFile.h"

namespace logtool {

/// The text of one track of a document. Tracks come mixed and stand one behind the other: the first goes straight to
/// the output, others wait in a temporary file without a name.
class TrackText {
 public:
  /// @param nOutput not owned, outlives the text
  TrackText(OutputFile& nOutput, bool nIsFirst);
  ~TrackText();
  TrackText(const TrackText&) = delete;
  TrackText& operator=(const TrackText&) = delete;

  void write(std::string_view nText);
  /// Brings what has waited to the output.
  void finish();

 private:
  void fail(int nError);

  OutputFile& mOutput;
  int mFd = -1;
  std::unique_ptr<tool::Output> mWaiting;  // null: straight to the output
};

}  // namespace logtool

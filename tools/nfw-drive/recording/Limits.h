#pragma once

#include <memory>
#include <string>

#include "NfwLogRetention.h"
#include "Options.h"

namespace drive {

/// Keeps the files of one log within what the options allow, medium after medium. One thread.
class Limits {
 public:
  /// False: they will not be kept. Without limits there is nothing to do.
  bool begin(const std::string& nDirectory, const std::string& nPrefix, const RecordOptions& nRecord);
  void end();
  nfw::LogRetentionCounts endForGood();       ///< after a last look
  nfw::LogRetentionCounts getCounts() const;  ///< on all media

 private:
  nfw::LogRetentionCounts mBefore;  // on media that are gone
  std::unique_ptr<nfw::LogRetention> mpRetention;
};

}  // namespace drive

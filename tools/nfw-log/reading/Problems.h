#pragma once

#include <string>

#include "Record.h"

namespace logtool {

/// Is told of what goes wrong while recordings are read.
class Problems {
 public:
  virtual ~Problems() = default;
  virtual void onDamage(const std::string& nPath, const tool::RecordDamage& nDamage) = 0;
  /// A file that cannot be opened or read on, or is no recording.
  virtual void onUnreadable(const std::string& nPath, const std::string& nReason) = 0;
};

/// For a first look at what is read, and told of, later.
class Silence : public Problems {
 public:
  void onDamage(const std::string& /*nPath*/, const tool::RecordDamage& /*nDamage*/) override {}
  void onUnreadable(const std::string& /*nPath*/, const std::string& /*nReason*/) override {}
};

}  // namespace logtool

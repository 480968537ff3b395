#pragma once

#include <cstdint>

#include "Problems.h"

namespace logtool {

/// "FILE: offset N, M bytes: expected X, found Y".
std::string damageText(const std::string& nPath, const tool::RecordDamage& nDamage);

/// The same as a JSON object.
void damageJson(const std::string& nPath, const tool::RecordDamage& nDamage, std::string* npText);

/// Says every problem on standard error, and counts. For the commands that go on with what is whole.
class ProblemReport : public Problems {
 public:
  void onDamage(const std::string& nPath, const tool::RecordDamage& nDamage) override;
  void onUnreadable(const std::string& nPath, const std::string& nReason) override;

  uint64_t getDamages() const { return mDamages; }
  uint64_t getLostBytes() const { return mLostBytes; }
  int exitCode() const { return mUnreadable > 0 ? 2 : 0; }

 private:
  uint64_t mDamages = 0;
  uint64_t mLostBytes = 0;
  uint64_t mUnreadable = 0;
};

}  // namespace logtool

#include "ProblemReport.h"

#include <fmt/format.h>

#include <cstdio>

#include "JsonObject.h"

namespace logtool {

namespace {

const uint64_t MAX_SAID = 20;  // a file that is damaged everywhere need not fill the screen; check lists them all

}  // namespace

std::string damageText(const std::string& nPath, const tool::RecordDamage& nDamage) {
  return fmt::format("{}: offset {}, {} bytes: expected {}, found {}", nPath, nDamage.mOffset, nDamage.mLength,
                     nDamage.mExpected, nDamage.mFound);
}

void damageJson(const std::string& nPath, const tool::RecordDamage& nDamage, std::string* npText) {
  tool::JsonObject lObject(npText);
  lObject.text("file", nPath);
  lObject.number("offset", nDamage.mOffset);
  lObject.number("length", nDamage.mLength);
  lObject.text("expected", nDamage.mExpected);
  lObject.text("found", nDamage.mFound);
}

void ProblemReport::onDamage(const std::string& nPath, const tool::RecordDamage& nDamage) {
  ++mDamages;
  mLostBytes += nDamage.mLength;
  if (mDamages <= MAX_SAID) fmt::print(stderr, "nfw-log: {}\n", damageText(nPath, nDamage));
  if (mDamages == MAX_SAID + 1) fmt::print(stderr, "nfw-log: more damage; check lists all of it\n");
}

void ProblemReport::onUnreadable(const std::string& nPath, const std::string& nReason) {
  ++mUnreadable;
  fmt::print(stderr, "nfw-log: {}: {}\n", nPath, nReason);
}

}  // namespace logtool

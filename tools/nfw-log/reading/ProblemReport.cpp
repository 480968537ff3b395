#include "ProblemReport.h"

#include "JsonObject.h"
#include "Messages.h"
#include "PrintableText.h"

namespace logtool {

namespace {

const uint64_t MAX_SAID = 20;  // a file that is damaged everywhere need not fill the screen

}  // namespace

std::string damageText(const std::string& nPath, const tool::RecordDamage& nDamage) {
  return fmt::format("{}: offset {}, {}: expected {}, found {}", tool::printableText(nPath), nDamage.mOffset,
                     countText(nDamage.mLength, "byte"), nDamage.mExpected, nDamage.mFound);
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
  if (mDamages <= MAX_SAID) say(damageText(nPath, nDamage));
  if (mDamages == MAX_SAID + 1) say("more damage, which is counted and not listed");
}

void ProblemReport::onUnreadable(const std::string& nPath, const std::string& nReason) {
  ++mUnreadable;
  tell("{}: {}", nPath, nReason);
}

}  // namespace logtool

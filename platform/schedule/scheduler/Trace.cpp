#include "Trace.h"

namespace schedule {

void Trace::add(int64_t nNowNs, unsigned int nThread, const char* npOperation, const void* npObject) {
  Step& lStep = mRing[mSteps++ % KEPT];
  lStep = {nNowNs, npOperation, npObject, nThread};
  mDigest = (mDigest ^ static_cast<uint64_t>(nNowNs) ^ nThread) * 0x100000001B3u;
  for (const char* lpEach = npOperation; *lpEach != '\0'; ++lpEach) {
    mDigest = (mDigest ^ static_cast<unsigned char>(*lpEach)) * 0x100000001B3u;
  }
  if (mIsLive) print(stdout, lStep);
}

std::map<const void*, const char*>& Trace::names() {
  static auto* const lpNames = new std::map<const void*, const char*>;  // statics are named and forgotten in any order
  return *lpNames;
}

const char* Trace::nameOf(const void* npObject) {
  const auto lFound = names().find(npObject);
  return lFound == names().end() ? nullptr : lFound->second;
}

std::string Trace::describe(const void* npObject) {
  if (npObject == nullptr) return "";
  if (const char* const lpName = nameOf(npObject)) return lpName;
  const auto lNext = static_cast<unsigned int>(mNumbers.size() + 1);
  return "#" + std::to_string(mNumbers.emplace(npObject, lNext).first->second);
}

void Trace::print(FILE* npTo, const Step& nStep) {
  std::fprintf(npTo, "%12.3f ms  %-16s %s %s\n", static_cast<double>(nStep.mNowNs) / 1e6, mpThreadName(nStep.mThread),
               nStep.mpOperation, describe(nStep.mpObject).c_str());
}

void Trace::print(FILE* npTo) {
  if (mIsLive) return;
  for (uint64_t i = mSteps > SHOWN ? mSteps - SHOWN : 0; i < mSteps; ++i) print(npTo, mRing[i % KEPT]);
}

}  // namespace schedule

#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace logtool {

/// What a recording holds of one log type id.
class IdStats {
 public:
  static constexpr size_t MAX_TYPES = 64;  ///< foreign data may look like ever new types; what is beyond is "other"

  struct Type {
    uint64_t mName;  // up to eight characters
    uint64_t mCount;
    std::string name() const {
      char lText[sizeof(mName) + 1] = {};
      memcpy(lText, &mName, sizeof(mName));
      return lText;
    }
  };

  void add(std::string_view nType, size_t nDataSize) {
    ++mRecords;
    mBytes += nDataSize;
    uint64_t lName = 0;
    if (nType.size() == 3)
      memcpy(&lName, nType.data(), 3);  // most are three letters: a copy of a known size is no call
    else
      memcpy(&lName, nType.data(), nType.size() < sizeof(lName) ? nType.size() : sizeof(lName));
    for (Type& lType : mTypes) {
      if (lType.mName != lName) continue;
      ++lType.mCount;
      return;
    }
    if (mTypes.size() < MAX_TYPES) mTypes.push_back({lName, 0});
    ++(mTypes.size() < MAX_TYPES ? mTypes.back().mCount : mOther);
  }

  uint64_t getRecords() const { return mRecords; }
  uint64_t getBytes() const { return mBytes; }  ///< of data
  uint64_t getOther() const { return mOther; }
  const std::vector<Type>& getTypes() const { return mTypes; }

 private:
  uint64_t mRecords = 0;
  uint64_t mBytes = 0;
  uint64_t mOther = 0;
  std::vector<Type> mTypes;
};

}  // namespace logtool

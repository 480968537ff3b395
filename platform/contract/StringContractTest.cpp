#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "utl/StringUtil.h"

using namespace utl;

namespace {

TEST(StringContract, CopyTakesWhatFitsWithItsTerminatorAndNeverCuts) {
  const char lUnterminated[3] = {'a', 'b', 'c'};  // a counted copy reads no further
  const struct {
    const char* mpText;
    int mCount;          // -1: up to the terminator
    const char* mpCopy;  // null: it does not fit, and leaves an empty text
  } ROWS[] = {{"abcd", -1, "abcd"}, {"abcde", -1, nullptr},   {nullptr, -1, nullptr},   {"abcdefgh", 3, "abc"},
              {"ab", 3, "ab"},      {"abcdefgh", 5, nullptr}, {lUnterminated, 3, "abc"}};
  for (const auto& lRow : ROWS) {
    char lTarget[5] = "old";
    EXPECT_EQ(lRow.mpCopy != nullptr, lRow.mCount < 0
                                          ? copyStr(lTarget, 5, lRow.mpText)
                                          : copyStr(lTarget, 5, lRow.mpText, static_cast<unsigned>(lRow.mCount)));
    EXPECT_STREQ(lRow.mpCopy != nullptr ? lRow.mpCopy : "", lTarget);
    EXPECT_FALSE(copyStr(nullptr, 5, lRow.mpText) || copyStr(lTarget, 0, lRow.mpText));
  }
}

TEST(StringContract, AppendLeavesTheTextAloneWhenItDoesNotFit) {
  char lText[6] = "ab";
  EXPECT_TRUE(appendStr(lText, sizeof(lText), "cde"));
  EXPECT_STREQ("abcde", lText);
  EXPECT_FALSE(appendStr(lText, sizeof(lText), "f"));
  EXPECT_FALSE(appendStr(lText, sizeof(lText), nullptr));
  EXPECT_FALSE(appendStr(nullptr, 6, "a"));
  EXPECT_STREQ("abcde", lText);
}

TEST(StringContract, EraseTakesASpanOut) {
  char lText[] = "abcdef";
  EXPECT_EQ(4u, eraseStrSpan(lText, 1, 2));
  EXPECT_STREQ("adef", lText);
  for (const auto& [lAt, lCount] : {std::pair{3u, 2u}, {5u, 0u}, {1u, 0xFFFFFFFFu}}) {
    EXPECT_EQ(ERASE_FAILURE, eraseStrSpan(lText, lAt, lCount));
  }
  EXPECT_EQ(ERASE_FAILURE, eraseStrSpan(nullptr, 0, 0));
  EXPECT_EQ(4u, eraseStrSpan(lText, 4, 0));
  EXPECT_EQ(0u, eraseStrSpan(lText, 0, 4));
  EXPECT_STREQ("", lText);
}

/// What the reader makes of a text: its number, nothing, or a fault.
template <class T, bool (*READ)(const char*, T*)>
std::string numberOf(const char* npText) {
  T lValue = 77;
  if (READ(npText, &lValue)) return std::to_string(lValue);
  return lValue == 77 && !READ("1", nullptr) ? "" : "changed";
}

TEST(StringContract, NumbersAreWholeDecimalTextsInRange) {
  const auto lUint8 = numberOf<uint8_t, toUint8>;
  const auto lSint32 = numberOf<int32_t, toSint32>;
  const struct {
    std::string (*mpRead)(const char*);
    std::vector<const char*> mGood, mBad;
  } ROWS[] = {
      {lUint8, {"0", "255"}, {"256", " 1", "1 ", "0x1", "1.0", "\xB2", "/", ":"}},
      {numberOf<uint16_t, toUint16>, {"0", "65535"}, {"65536", "99999999999999999999999"}},
      {numberOf<uint32_t, toUint32>, {"0", "4294967295"}, {"4294967296", "18446744073709551616"}},
      {lSint32, {"2147483647", "-2147483648"}, {"+", "-", "--1", "+-1", "2147483648", "-2147483649", "1-", "1e3"}},
  };
  for (const auto& lRow : ROWS) {
    for (const char* lpText : lRow.mGood) EXPECT_EQ(lpText, lRow.mpRead(lpText));
    for (const char* lpText : lRow.mBad) EXPECT_EQ("", lRow.mpRead(lpText)) << lpText;
    for (const char* lpText : {"", static_cast<const char*>(nullptr)}) EXPECT_EQ("", lRow.mpRead(lpText));
    for (const char* lpText : {"-1", "+1"}) EXPECT_EQ(lRow.mpRead == lSint32, lRow.mpRead(lpText) != "") << lpText;
  }
  EXPECT_EQ("8 255", lUint8("08") + " " + lUint8("000000000000255"));
  EXPECT_EQ("8 0", lSint32("+08") + " " + lSint32("-0"));
}

TEST(StringContract, NumbersAreWrittenWhenTheyFit) {
  char lText[12];
  EXPECT_TRUE(fromUint32(4294967295u, lText, 11));
  EXPECT_STREQ("4294967295", lText);
  EXPECT_FALSE(fromUint32(4294967295u, lText, 10));
  EXPECT_STREQ("", lText);
  EXPECT_TRUE(fromSint32(INT32_MIN, lText, 12));
  EXPECT_STREQ("-2147483648", lText);
  EXPECT_FALSE(fromSint32(0, lText, 1));
  EXPECT_FALSE(fromSint32(0, lText, 0));
  EXPECT_FALSE(fromUint32(0, nullptr, 12));
}

TEST(StringContract, FullWidthFormsBecomeHalfWidth) {
  const std::pair<const char*, const char*> TEXTS[] = {
      {"", ""},
      {"\xEF\xBC\x81\xEF\xBC\x90\xEF\xBC\xBF\xEF\xBD\x80\xEF\xBD\x9E\xE3\x80\x80|", "!0_`~ |"},
      {"\xEF\xBC\x80\xEF\xBD\x9F\xE3\x80\x81\xC3\xA9\xF0\x9F\x98\x80",
       "\xEF\xBC\x80\xEF\xBD\x9F\xE3\x80\x81\xC3\xA9\xF0\x9F\x98\x80"},
      {"\xEF\xBC", "\xEF\xBC"},
      {"\xF3\x80\x80", "\xF3\x80\x80"},
      {"\x90\xFFz\xEFz", "\x90\xFFz\xEFz"}};
  for (const auto& lCase : TEXTS) {
    char lText[32];
    ASSERT_TRUE(copyStr(lText, sizeof(lText), lCase.first));
    EXPECT_TRUE(convertAttrib(lText, sizeof(lText), HANKAKU_ZENKAKU_PAIR));
    EXPECT_STREQ(lCase.second, lText);
  }
  char lUnterminated[] = {'a', 'b'};
  EXPECT_FALSE(convertAttrib(lUnterminated, sizeof(lUnterminated), HANKAKU_ZENKAKU_PAIR));
  EXPECT_FALSE(convertAttrib(nullptr, 4, HANKAKU_ZENKAKU_PAIR));
}

TEST(StringContract, FirstCharacterIsMeasuredInBytes) {
  const std::pair<const char*, unsigned int> ROWS[] = {
      {"#", 1}, {"\xC3\xA9x", 2}, {"\xEF\xBC\x90", 3}, {"\xF0\x9F\x98\x80", 4}, {"\x90", 1}, {"\xEF\xBC", 2}, {"", 0}};
  for (const auto& [lpText, lSize] : ROWS) {
    bool lFlag = false;
    EXPECT_EQ(lSize, strCharBytesBase(lpText, &lFlag)) << lpText;
    EXPECT_FALSE(lFlag);
  }
}

TEST(StringContract, DirectoryIsTheTextBeforeTheLastSlash) {
  const std::pair<const char*, const char*> ROWS[] = {
      {"/a/b/c.log", "/a/b"}, {"/c.log", "/"}, {"c.log", ""}, {"/a/bc/d", ""}, {nullptr, ""}};
  for (const auto& [lpPath, lpDirectory] : ROWS) {
    char lDirectory[5] = "";
    EXPECT_EQ(*lpDirectory != '\0', extractDirPath(lpPath, lDirectory, 5));
    EXPECT_STREQ(lpDirectory, lDirectory);
  }
}

}  // namespace

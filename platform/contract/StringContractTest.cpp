#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "utl/StringUtil.h"

using namespace utl;

namespace {

TEST(StringContract, CopyTakesWhatFitsWithItsTerminatorAndNeverCuts) {
  char lTarget[5] = "old";
  EXPECT_TRUE(copyStr(lTarget, sizeof(lTarget), "abcd"));
  EXPECT_STREQ("abcd", lTarget);
  EXPECT_FALSE(copyStr(lTarget, sizeof(lTarget), "abcde"));
  EXPECT_STREQ("", lTarget);
  EXPECT_TRUE(copyStr(lTarget, sizeof(lTarget), "abcdefgh", 3));
  EXPECT_STREQ("abc", lTarget);
  EXPECT_TRUE(copyStr(lTarget, sizeof(lTarget), "ab", 3));
  EXPECT_STREQ("ab", lTarget);
  EXPECT_FALSE(copyStr(lTarget, sizeof(lTarget), "abcdefgh", 5));
  EXPECT_STREQ("", lTarget);
  EXPECT_TRUE(copyStr(lTarget, sizeof(lTarget), "abcd"));
  EXPECT_FALSE(copyStr(lTarget, sizeof(lTarget), nullptr));
  EXPECT_STREQ("", lTarget);
  EXPECT_FALSE(copyStr(nullptr, 5, "a"));
  EXPECT_FALSE(copyStr(lTarget, 0, ""));
}

TEST(StringContract, CountedCopyReadsNoFurther) {
  const char lUnterminated[3] = {'a', 'b', 'c'};
  char lTarget[4];
  EXPECT_TRUE(copyStr(lTarget, sizeof(lTarget), lUnterminated, 3));
  EXPECT_STREQ("abc", lTarget);
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
  EXPECT_EQ(ERASE_FAILURE, eraseStrSpan(lText, 3, 2));
  EXPECT_EQ(ERASE_FAILURE, eraseStrSpan(lText, 5, 0));
  EXPECT_EQ(ERASE_FAILURE, eraseStrSpan(lText, 1, 0xFFFFFFFFu));
  EXPECT_EQ(ERASE_FAILURE, eraseStrSpan(nullptr, 0, 0));
  EXPECT_EQ(4u, eraseStrSpan(lText, 4, 0));
  EXPECT_EQ(0u, eraseStrSpan(lText, 0, 4));
  EXPECT_STREQ("", lText);
}

template <class T>
using Reader = bool (*)(const char*, T*);

template <class T>
struct Number {
  const char* mpText;
  T mValue;
};

template <class T, size_t N>
void expectNumbers(Reader<T> npRead, const Number<T> (&nGood)[N]) {
  for (const Number<T>& lGood : nGood) {
    T lValue = 77;
    EXPECT_TRUE(npRead(lGood.mpText, &lValue)) << lGood.mpText;
    EXPECT_EQ(lGood.mValue, lValue);
  }
}

template <class T, size_t N>
void expectNone(Reader<T> npRead, const char* const (&nBad)[N]) {
  for (const char* lpBad : nBad) {
    T lValue = 77;
    EXPECT_FALSE(npRead(lpBad, &lValue)) << lpBad;
    EXPECT_EQ(T{77}, lValue);
  }
  T lValue = 77;
  EXPECT_FALSE(npRead(nullptr, &lValue));
  EXPECT_FALSE(npRead("1", nullptr));
}

TEST(StringContract, NumbersAreWholeDecimalTextsInRange) {
  expectNumbers<uint8_t>(toUint8, {{"0", 0}, {"08", 8}, {"255", 255}, {"000000000000255", 255}});
  expectNumbers<uint16_t>(toUint16, {{"0", 0}, {"65535", 65535}});
  expectNumbers<uint32_t>(toUint32, {{"0", 0}, {"4294967295", 4294967295u}});
  expectNumbers<int32_t>(toSint32, {{"+08", 8}, {"-0", 0}, {"2147483647", INT32_MAX}, {"-2147483648", INT32_MIN}});
  expectNone<uint8_t>(toUint8, {"", "256", "-1", "+1", " 1", "1 ", "0x1", "1.0", "\xB2"});
  expectNone<uint16_t>(toUint16, {"", "65536", "-1", "+1", "99999999999999999999999"});
  expectNone<uint32_t>(toUint32, {"", "4294967296", "-1", "+1", "18446744073709551616"});
  expectNone<int32_t>(toSint32, {"", "+", "-", "--1", "+-1", "2147483648", "-2147483649", "1-", "1e3"});
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
  const Number<const char*> TEXTS[] = {
      {"", ""},
      {"\xEF\xBC\x81\xEF\xBC\x90\xEF\xBC\xBF\xEF\xBD\x80\xEF\xBD\x9E\xE3\x80\x80|", "!0_`~ |"},
      {"\xEF\xBC\x80\xEF\xBD\x9F\xE3\x80\x81\xC3\xA9\xF0\x9F\x98\x80",
       "\xEF\xBC\x80\xEF\xBD\x9F\xE3\x80\x81\xC3\xA9\xF0\x9F\x98\x80"},
      {"\xEF\xBC", "\xEF\xBC"},
      {"\xF3\x80\x80", "\xF3\x80\x80"},
      {"\x90\xFF"
       "1\xEF"
       "2",
       "\x90\xFF"
       "1\xEF"
       "2"}};
  for (const auto& lCase : TEXTS) {
    char lText[32];
    ASSERT_TRUE(copyStr(lText, sizeof(lText), lCase.mpText));
    EXPECT_TRUE(convertAttrib(lText, sizeof(lText), HANKAKU_ZENKAKU_PAIR));
    EXPECT_STREQ(lCase.mValue, lText);
  }
  char lUnterminated[] = {'a', 'b'};
  EXPECT_FALSE(convertAttrib(lUnterminated, sizeof(lUnterminated), HANKAKU_ZENKAKU_PAIR));
  EXPECT_FALSE(convertAttrib(nullptr, 4, HANKAKU_ZENKAKU_PAIR));
}

TEST(StringContract, FirstCharacterIsMeasuredInBytes) {
  bool lFlag = false;
  EXPECT_EQ(1u, strCharBytesBase("#", &lFlag));
  EXPECT_EQ(2u, strCharBytesBase("\xC3\xA9x", &lFlag));
  EXPECT_EQ(3u, strCharBytesBase("\xEF\xBC\x90", &lFlag));
  EXPECT_EQ(4u, strCharBytesBase("\xF0\x9F\x98\x80", &lFlag));
  EXPECT_EQ(1u, strCharBytesBase("\x90", &lFlag));
  EXPECT_EQ(2u, strCharBytesBase("\xEF\xBC", &lFlag));
  EXPECT_EQ(0u, strCharBytesBase("", &lFlag));
  EXPECT_FALSE(lFlag);
}

TEST(StringContract, DirectoryIsTheTextBeforeTheLastSlash) {
  char lDirectory[5];
  EXPECT_TRUE(extractDirPath("/a/b/c.log", lDirectory, 5));
  EXPECT_STREQ("/a/b", lDirectory);
  EXPECT_TRUE(extractDirPath("/c.log", lDirectory, 5));
  EXPECT_STREQ("/", lDirectory);
  EXPECT_FALSE(extractDirPath("c.log", lDirectory, 5));
  EXPECT_FALSE(extractDirPath("/a/bc/d", lDirectory, 5));
  EXPECT_STREQ("", lDirectory);
  EXPECT_FALSE(extractDirPath(nullptr, lDirectory, 5));
}

}  // namespace

#include <gtest/gtest.h>

#include <string>

#include "NfwStreamBuffer.h"

namespace {

using nfw::StreamBuffer;

std::string readAll(StreamBuffer& nBuffer, unsigned int nSize) {
  std::string lBytes(nSize, '?');
  const int lSize = nBuffer.read(lBytes.data(), nSize);
  return lSize < 0 ? std::to_string(lSize) : lBytes.substr(0, static_cast<size_t>(lSize));
}

TEST(StreamBufferTest, KeepsTheOrderAcrossTheEndOfTheStorage) {
  StreamBuffer lBuffer(5);
  EXPECT_EQ(4, lBuffer.write("abcd", 4));
  EXPECT_EQ("ab", readAll(lBuffer, 2));
  EXPECT_EQ(3, lBuffer.write("efg", 3));
  EXPECT_EQ(StreamBuffer::BUFFER_DEPLETION, lBuffer.write("h", 1));
  EXPECT_EQ(0u, lBuffer.getFreeSpace());

  const unsigned char* lpTop = nullptr;
  EXPECT_EQ(3, lBuffer.top(&lpTop));  // up to the end of the storage
  EXPECT_EQ("cde", std::string(reinterpret_cast<const char*>(lpTop), 3));
  unsigned char lPeeked[2];
  lBuffer.peek(2, lPeeked, 2);
  EXPECT_EQ("ef", std::string(reinterpret_cast<const char*>(lPeeked), 2));
  EXPECT_TRUE(lBuffer.eraseTop(1));
  EXPECT_EQ("defg", readAll(lBuffer, 9));
  EXPECT_EQ("-3", readAll(lBuffer, 9));
  EXPECT_TRUE(lBuffer.eraseTop(9));
  EXPECT_TRUE(lBuffer.isEmpty());
}

TEST(StreamBufferTest, SaysWhatItCannotDo) {
  char lByte = 0;
  const unsigned char* lpTop = nullptr;
  StreamBuffer lBuffer(4);
  EXPECT_EQ(StreamBuffer::FAILURE, lBuffer.write(nullptr, 1));
  EXPECT_EQ(StreamBuffer::FAILURE, lBuffer.read(nullptr, 1));
  EXPECT_EQ(0, lBuffer.write(&lByte, 0));

  StreamBuffer lNothing(0);
  EXPECT_EQ(StreamBuffer::BUFFER_DEPLETION, lNothing.write(&lByte, 1));
  EXPECT_EQ(0, lNothing.write(&lByte, 0));
  EXPECT_EQ(StreamBuffer::EMPTY, lNothing.read(&lByte, 1));
  EXPECT_EQ(0, lNothing.top(&lpTop));

  StreamBuffer lTooLarge(0xFFFFFFFDu);
  EXPECT_EQ(StreamBuffer::FAILURE, lTooLarge.write(&lByte, 1));
  EXPECT_EQ(StreamBuffer::FAILURE, lTooLarge.read(&lByte, 1));
  EXPECT_EQ(StreamBuffer::FAILURE, lTooLarge.top(&lpTop));
  EXPECT_TRUE(lTooLarge.eraseTop(1));
}

}  // namespace

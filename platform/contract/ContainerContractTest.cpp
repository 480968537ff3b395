#include <cstdint>
#include <cstring>
#include <set>
#include <string>

#include "gtest/gtest.h"
#include "utl/Array.h"
#include "utl/BasicString.h"
#include "utl/Map.h"
#include "utl/MemoryPool.h"
#include "utl/SmartPointer.h"

namespace {

template <class Values>
std::string join(const Values& nValues) {
  std::string lText;
  for (unsigned int i = 0; i < nValues.size(); ++i) lText += std::to_string(nValues[i]) + " ";
  return lText;
}

struct Counted {
  explicit Counted(int& nAlive) : mAlive(nAlive) { ++mAlive; }
  virtual ~Counted() { --mAlive; }
  int& mAlive;
};
struct Derived : Counted {
  using Counted::Counted;
};

TEST(ArrayContract, KeepsItsOrderAndItsLimit) {
  utl::Array<int> lArray(4, false);
  EXPECT_TRUE(lArray.add(1) && lArray.add(3) && lArray.insert(1, 2));
  EXPECT_FALSE(lArray.insert(4, 9));
  EXPECT_TRUE(lArray.insert(0, 0));
  EXPECT_FALSE(lArray.add(4));
  EXPECT_EQ("0 1 2 3 ", join(lArray));
  EXPECT_TRUE(lArray.removeAt(1));
  EXPECT_FALSE(lArray.removeAt(3));
  EXPECT_EQ("0 2 3 ", join(lArray));
  EXPECT_EQ(4u, lArray.capacity());
  lArray.clear();
  EXPECT_EQ(0u, lArray.size());
  utl::Array<std::string> lHuge(0xFFFFFFFFu, false);
  EXPECT_TRUE(lHuge.add("costs nothing until it is used"));
  EXPECT_EQ(0xFFFFFFFFu, lHuge.capacity());
}

TEST(ArrayContract, GrowsFromAnyCapacity) {
  for (unsigned int lCapacity : {0u, 1u, 64u, 1000u}) {
    utl::Array<int> lArray(lCapacity, true);
    for (int i = 0; i < 2000; ++i) ASSERT_TRUE(lArray.add(i)) << lCapacity;
    for (int i = 0; i < 2000; ++i) ASSERT_EQ(i, lArray[static_cast<unsigned int>(i)]) << lCapacity;
    EXPECT_GE(lArray.capacity(), 2000u);
  }
  EXPECT_FALSE(utl::Array<int>(0, false).add(1));
}

TEST(ArrayContract, TakesACopyOfItsOwnElement) {
  utl::Array<std::string> lArray(1, true);
  ASSERT_TRUE(lArray.add("a text that does not fit into the string object"));
  for (unsigned int i = 0; i < 100; ++i) ASSERT_TRUE(lArray.insert(0, lArray[lArray.size() - 1]));
  for (unsigned int i = 0; i < 101; ++i) ASSERT_EQ(47u, lArray[i].size());
}

TEST(ArrayContract, ReleasesWhatIsRemoved) {
  int lAlive = 0;
  utl::Array<utl::SmartPointer<Counted>> lArray(4, false);
  for (int i = 0; i < 3; ++i) ASSERT_TRUE(lArray.add(utl::SmartPointer<Counted>(new Counted(lAlive))));
  lArray.removeAt(0);
  EXPECT_EQ(2, lAlive);
  lArray.clear();
  EXPECT_EQ(0, lAlive);
}

TEST(MapContract, IsSortedAndRefusesASecondKey) {
  utl::Map<int, std::string> lMap(3, false);
  EXPECT_TRUE(lMap.insert(10, "ten") && lMap.insert(-1, "minus"));
  EXPECT_FALSE(lMap.insert(10, "again"));
  EXPECT_TRUE(lMap.insert(5, "five"));
  EXPECT_FALSE(lMap.insert(6, "full"));
  std::string lAll;
  for (unsigned int i = 0; i < lMap.size(); ++i) {
    EXPECT_EQ(lMap.valueAt(i), *lMap.find(lMap.keyAt(i)));
    lAll += std::to_string(lMap.keyAt(i)) + lMap.valueAt(i) + " ";
  }
  EXPECT_EQ("-1minus 5five 10ten ", lAll);
  EXPECT_EQ(nullptr, lMap.find(6));
  EXPECT_TRUE(lMap.remove(5));
  EXPECT_FALSE(lMap.remove(5));
  EXPECT_EQ(3u, lMap.capacity());
  lMap.clear();
  EXPECT_EQ(nullptr, lMap.find(10));
}

TEST(MapContract, GrowsAndFindsEveryKey) {
  utl::Map<unsigned int, unsigned int> lMap(0, true);
  for (unsigned int i = 0; i < 500; ++i) ASSERT_TRUE(lMap.insert(i * 7919 % 500, i));
  for (unsigned int i = 0; i < 500; ++i) ASSERT_EQ(i, *lMap.find(i * 7919 % 500));
  for (unsigned int i = 0; i < 500; ++i) ASSERT_EQ(i, lMap.keyAt(i));
}

TEST(SmartPointerContract, TheLastOneDeletesThroughTheBase) {
  int lAlive = 0;
  utl::SmartPointer<Counted> lBase;
  EXPECT_TRUE(lBase.isNull());
  {
    utl::SmartPointer<Derived> lDerived(new Derived(lAlive));
    lBase = lDerived;
    EXPECT_EQ(lDerived.get(), lBase.get());
    EXPECT_TRUE(lBase == utl::SmartPointer<Counted>(lDerived));
  }
  EXPECT_EQ(1, lAlive);
  lBase = utl::SmartPointer<Counted>();
  EXPECT_EQ(0, lAlive);
}

TEST(BasicStringContract, OwnsItsCharacters) {
  char lText[] = "name";
  const utl::BasicString<char> lString(lText);
  lText[0] = 'g';
  EXPECT_STREQ("name", lString.c_str());
  EXPECT_STREQ("", utl::BasicString<char>(nullptr).c_str());
  EXPECT_STREQ("", utl::BasicString<char>().c_str());
}

TEST(MemoryPoolContract, GivesEachBlockOnceAndNoneWithoutMemory) {
  for (unsigned int lSize : {0u, 1u, 7u, 8u, 1200u}) {
    utl::MemoryPool lPool("pool", lSize, 5);
    for (int lRound = 0; lRound < 3; ++lRound) {
      std::set<void*> lBlocks;
      while (void* const lpBlock = lPool.alloc()) {
        ASSERT_TRUE(lBlocks.insert(lpBlock).second) << lSize;
        EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(lpBlock) % sizeof(void*));
        memset(lpBlock, 0xA5, lSize);
      }
      EXPECT_EQ(5u, lBlocks.size()) << lSize;
      EXPECT_EQ(nullptr, lPool.alloc());
      for (void* lpBlock : lBlocks) lPool.free(lpBlock);
    }
    lPool.free(nullptr);
  }
  EXPECT_EQ(nullptr, utl::MemoryPool("pool", 0xFFFFFFFFu, 0xFFFFFFFFu).alloc());
  EXPECT_EQ(nullptr, utl::MemoryPool("pool", 8, 0).alloc());
}

}  // namespace

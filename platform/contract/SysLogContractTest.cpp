#include <string>
#include <thread>
#include <vector>

#include "ContractSupport.h"
#include "SysLogService.h"

namespace {

// Lines of the tests need not be seen.
class SysLogContract : public testing::Test {
 protected:
  const int mNull = ::open("/dev/null", O_WRONLY);
  contract::RedirectedError mError{mNull};
  void TearDown() override { ::close(mNull); }
};

TEST_F(SysLogContract, TakesATypeWithAndWithoutAName) {
  EXPECT_TRUE(registerLogType(901, "<TEST>", 4));
  registerLogType(902, nullptr, 4);  // it may refuse, it must not fall over
  setFilterLevel(901, 5);
  setFilterLevel(903, 5);
  setAllFilterLevel(-1);
}

TEST_F(SysLogContract, TakesAnyText) {
  registerLogType(901, "<TEST>", 4);
  for (const std::string& lText :
       {std::string(), std::string("%s %n %d"), std::string(1023, 'x'), std::string("\x80\n")}) {
    for (int lLevel = 0; lLevel <= 5; ++lLevel) applog(901, lLevel, lText.c_str());
    applog(-1, 1, lText.c_str());
  }
}

TEST_F(SysLogContract, TakesLinesFromAllThreadsAtOnce) {
  std::vector<std::thread> lThreads;
  for (int lType = 910; lType < 914; ++lType) {
    lThreads.emplace_back([lType] {
      for (int i = 0; i < 50; ++i) {
        registerLogType(lType, "<TEST>", 4);
        applog(lType, 1, "one of many");
        setAllFilterLevel(4);
      }
    });
  }
  for (std::thread& lThread : lThreads) lThread.join();
}

TEST(SysLogStuckContract, DoesNotWaitForAReaderOfStandardError) {
  contract::Pipe lPipe;
  lPipe.fill();
  contract::RedirectedError lError(lPipe.writeEnd());
  for (int i = 0; i < 100; ++i) applog(901, 1, "nobody reads this");
}

}  // namespace

#include <string>
#include <thread>
#include <vector>

#include "ContractSupport.h"
#include "SysLogService.h"

namespace {

TEST(SysLogContract, TakesAnyTypeLevelAndTextFromAllThreadsAtOnce) {
  const int lNull = ::open("/dev/null", O_WRONLY);  // the lines need not be seen
  const contract::RedirectedError lError(lNull);
  std::vector<std::thread> lThreads;
  for (int lType = 910; lType < 914; ++lType) {
    lThreads.emplace_back([lType] {
      for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(registerLogType(lType, "<TEST>", 4));
        registerLogType(902, nullptr, 4);  // it may refuse, it must not fall over
        setFilterLevel(lType, i % 6);
        setFilterLevel(903, 5);
        for (const char* lpText : {"", "%s %n %d", "\x80\n"}) applog(i % 2 == 0 ? lType : -1, i % 6, lpText);
        applog(lType, 1, std::string(1023, 'x').c_str());
        setAllFilterLevel(-1);
      }
    });
  }
  for (std::thread& lThread : lThreads) lThread.join();
  ::close(lNull);
}

TEST(SysLogContract, DoesNotWaitForAReaderOfStandardError) {
  contract::Pipe lPipe;
  lPipe.fill();
  contract::RedirectedError lError(lPipe.writeEnd());
  for (int i = 0; i < 100; ++i) applog(901, 1, "nobody reads this");
}

}  // namespace

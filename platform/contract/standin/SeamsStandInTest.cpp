// The hands that tests have on files.
#include <functional>

#include "ContractSupport.h"
#include "PlatformSeams.h"
#include "utl/File.h"

namespace {

using utl::File;

TEST(SeamsStandIn, FileOperationsFailOneByOne) {
  contract::TempDir lDir;
  contract::writeFile(lDir / "read", "abc\ndef\n");
  File lReader((lDir / "read").c_str());
  File lWriter((lDir / "written").c_str());
  ASSERT_TRUE(lReader.open(0, 0));
  ASSERT_TRUE(lWriter.open(2, 1));
  unsigned long long lNumber = 0;
  char lBytes[8];
  const struct {
    const char* mpWhat;
    seams::Point mPoint;
    std::function<bool()> mDone;
  } CASES[] = {
      {"open", seams::FILE_OPEN, [&] { return File((lDir / "read").c_str()).open(0, 0); }},
      {"read", seams::FILE_READ, [&] { return lReader.read(lBytes, 1) == 1; }},
      {"readLine", seams::FILE_READ, [&] { return lReader.readLine(lBytes, 8) >= 0; }},
      {"seek", seams::FILE_SEEK, [&] { return lReader.seek(0, File::ORIGIN_BEGIN); }},
      {"getPosition", seams::FILE_POSITION, [&] { return lReader.getPosition(&lNumber); }},
      {"getSize", seams::FILE_SIZE, [&] { return lReader.getSize(&lNumber); }},
      {"write", seams::FILE_WRITE, [&] { return lWriter.write("x", 1) == 1; }},
      {"writeLine", seams::FILE_WRITE, [&] { return lWriter.writeLine("x"); }},
      {"flush", seams::FILE_FLUSH, [&] { return lWriter.flush(); }},
      {"sync", seams::FILE_SYNC, [&] { return lWriter.sync(); }},
  };
  for (const auto& lCase : CASES) {
    seams::Failing lFailing(lCase.mPoint, 1, 1);
    EXPECT_TRUE(lCase.mDone()) << lCase.mpWhat;
    EXPECT_FALSE(lCase.mDone()) << lCase.mpWhat;
    EXPECT_EQ(1u, lFailing.hits()) << lCase.mpWhat;
    EXPECT_TRUE(lCase.mDone()) << lCase.mpWhat;
  }
}

}  // namespace

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <functional>
#include <tuple>
#include <vector>

#include "MountNamespace.h"
#include "NfwSettingFile.h"
#include "PlatformSeams.h"
#include "Split.h"
#include "TempTree.h"

namespace {

std::function<int(int)> gOnSync;

}  // namespace

/// Instead of the C library's.
extern "C" int fsync(int nDescriptor) {
  return gOnSync ? gOnSync(nDescriptor) : static_cast<int>(syscall(SYS_fsync, nDescriptor));
}

namespace {

using Strings = std::vector<std::string>;
using nfw::SettingFile;
using std::string;

const string KEY_32(32, 'k');
const string VALUE_200(200, 'v');
const string FULL_WIDTH_MINUS_12 = "\xEF\xBC\x8D\xEF\xBC\x91\xEF\xBC\x92";
const string FULL_WIDTH_PLUS_12_BLANK = "\xEF\xBC\x8B\xEF\xBC\x91\xEF\xBC\x92\xE3\x80\x80";

class Settings : public nfw::SettingFile {
 public:
  using SettingFile::SettingFile;

  int mScale = 6;
  string mName = "right";
  bool mResult = true;                 // of both operations, when they did not fail
  std::function<void()> mDuringWrite;  // called between the two parameters
  int mReadNum = 0;

 private:
  bool readParameters(utl::File& nFile) override {
    ++mReadNum;
    return readParam(nFile, "Scale", &mScale) && mResult;
  }
  bool writeParameters(utl::File& nFile) override {
    if (!writeParam(nFile, "Scale", mScale)) return false;
    if (mDuringWrite) mDuringWrite();
    return writeParam(nFile, "Name", mName.c_str()) && mResult;
  }
};

class SettingFileTest : public testing::Test {
 protected:
  string path() const { return mTree.path("settings"); }
  /// The file with this content, open at a position.
  utl::File& open(const string& nContent, long long nPosition = 0) {
    mTree.write("settings", nContent);
    mpFile.reset(new utl::File(path().c_str()));
    EXPECT_TRUE(mpFile->open(0, 0) && mpFile->seek(nPosition, utl::File::ORIGIN_BEGIN));
    return *mpFile;
  }
  /// The lines logged so far, with "@" for the file's path, and with the level of those that are no errors.
  string log() {
    string lAll;
    for (const auto& lLine : mLog.lines()) {
      lAll += (lAll.empty() ? "" : "|") + (lLine.mLevel == 1 ? "" : std::to_string(lLine.mLevel) + " ") + lLine.mText;
    }
    mLog.clear();
    for (size_t i = lAll.find(path()); i != string::npos; i = lAll.find(path())) lAll.replace(i, path().size(), "@");
    return lAll;
  }

  nfwtest::TempTree mTree;
  seams::CapturedLog mLog;
  std::unique_ptr<utl::File> mpFile;
};

TEST_F(SettingFileTest, FindsTheFirstLineOfAKey) {
  const struct {
    string mContent, mKey;
    const char* mpValue;  // null: not found
    long long mPosition = 0;
    string mLog = "";
  } ROWS[] = {
      {"a=1\na=2\n", "a", "1"},                                      // first of two
      {"a=1\na=2\n", "a", "2", 4},                                   // first behind the position
      {"a=1\nb=2\n", "b", "2", 8},                                   // at the end of the file
      {"a=1\nlong=value\nc=3\n", "long", "value", 7},                // line that straddles the position
      {"a=1\nb=2\n", "c", nullptr, 4},                               // nowhere, from the middle
      {"a=\n", "a", ""},                                             // empty value
      {"a==b=\n", "a", "=b="},                                       // '=' in the value
      {"a=1\nb=2", "b", "2"},                                        // last line without its end
      {"a=1\r\nb=2\r\n", "a", "1"},                                  // line ends of other systems
      {"a=1\r2\n", "a", "1\r2"},                                     // '\\r' inside
      {"#a=1\n# a=1\na=2\n", "a", "2"},                              // comment
      {" #a=1\n", " #a", "1"},                                       // blank before '#'
      {"#a=1\n", "#a", nullptr},                                     // commented key never matches
      {"\n\r\n\na=1\n", "a", "1"},                                   // empty lines
      {"ab=1\n", "a", nullptr},                                      // longer key
      {"a=1\n", "ab", nullptr},                                      // shorter key
      {"a\n", "a", nullptr},                                         // no '='
      {"A=1\n", "a", nullptr},                                       // other case
      {"\xFF\x80=\xFE\n", "\xFF\x80", "\xFE"},                       // bytes above 127
      {string("\0a=1\na=2\n", 9), "a", "2"},                         // zero bytes
      {"", "a", nullptr},                                            // empty file
      {KEY_32 + "=" + VALUE_200 + "\n", KEY_32, VALUE_200.c_str()},  // key of 32, value of 200 bytes
      {string(233, 'x') + "a=1\na=2\n", "a", "2"},                   // the rest of an over-long line is no line
      {"a=" + VALUE_200 + "v\na=1\n", "a", "1", 2},                  // value beyond the buffer
      {"a=" + VALUE_200 + "v\na=1\n", "a", nullptr, 0,
       "SettingFile::find():Copy Value:Line=a=" + VALUE_200 + "v [@]"},  // value beyond the buffer, met
      {"=1\n", "", nullptr, 2, "SettingFile::find():Key is Empty [@]"},  // empty key
      {KEY_32 + "k=1\n", KEY_32 + "k", nullptr, 2,
       "SettingFile::find():Key is Too Long:Key=" + KEY_32 + "k [@]"},  // key of 33 bytes
  };
  for (const auto& lRow : ROWS) {
    SCOPED_TRACE(lRow.mContent);
    char lValue[201] = {};
    const bool lIsFound =
        SettingFile::find(open(lRow.mContent, lRow.mPosition), lRow.mKey.c_str(), lValue, sizeof(lValue));
    EXPECT_EQ(lRow.mpValue != nullptr, lIsFound);
    EXPECT_STREQ(lIsFound ? lRow.mpValue : "", lValue);
    EXPECT_EQ(lRow.mLog, log());
  }
}

TEST_F(SettingFileTest, SearchesToTheEndPositionAndStaysBehindTheLine) {
  char lValue[201] = {};
  unsigned long long lPosition = 0;
  utl::File& lFile = open("a=1\n#\nbb=22\nc=3\n");
  EXPECT_TRUE(SettingFile::find(lFile, "bb", lValue, 3, 7));  // its line begins before 7 and is read whole
  EXPECT_STREQ("22", lValue);
  EXPECT_TRUE(lFile.getPosition(&lPosition) && lPosition == 12);
  for (const unsigned long long lEnd : {0ull, 4ull, 12ull}) {  // at or before the position: nothing is read
    EXPECT_FALSE(SettingFile::find(lFile, "c", lValue, sizeof(lValue), lEnd));
    EXPECT_TRUE(lFile.getPosition(&lPosition) && lPosition == 12);
  }
  EXPECT_TRUE(lFile.seek(0, utl::File::ORIGIN_BEGIN));
  EXPECT_FALSE(SettingFile::find(lFile, "bb", lValue, sizeof(lValue), 6));  // the comment's line ends the search
  EXPECT_TRUE(lFile.getPosition(&lPosition) && lPosition == 6);
  EXPECT_EQ("", log());
}

TEST_F(SettingFileTest, ReportsFailuresOfASearchOnce) {
  char lValue[201] = {};
  const std::tuple<const char*, seams::Point, unsigned int, string> ROWS[] = {
      {"initial position", seams::FILE_POSITION, 0, "SettingFile::find():Get Initial File Position:Key=x [@]"},
      {"position", seams::FILE_POSITION, 1, "SettingFile::find():Get Current File Position:Key=x [@]"},
      {"position behind a line", seams::FILE_POSITION, 2, "SettingFile::find():Get Current File Position:Key=x [@]"},
      {"read", seams::FILE_READ, 0, "SettingFile::find():Read File:Key=x [@]"},
      {"read in the second pass", seams::FILE_READ, 2, "SettingFile::find():Read File:Key=x [@]"},
      {"back to the start", seams::FILE_SEEK, 0, "SettingFile::find():Seek File:Key=x [@]"},
  };
  for (const auto& [lpName, lPoint, lAfter, lLog] : ROWS) {
    utl::File& lFile = open("a=1\nb=2\n", 4);
    const seams::Failing lFailing(lPoint, lAfter);
    EXPECT_FALSE(SettingFile::readParam(lFile, "x", lValue, sizeof(lValue)));
    EXPECT_EQ(lLog, log()) << lpName;
  }
  utl::File& lFile = open("a=1\nb=2\n", 4);
  EXPECT_FALSE(SettingFile::find(lFile, nullptr, lValue, sizeof(lValue)));
  EXPECT_FALSE(SettingFile::find(lFile, "a", nullptr, 0));
  EXPECT_EQ("SettingFile::find():Key is Null [@]|SettingFile::find():Value is Null [@]", log());
}

template <class T>
string readAs(utl::File& nFile) {
  T lValue = 77;
  if (SettingFile::readParam(nFile, "n", &lValue)) return std::to_string(lValue);
  return lValue == 77 ? "-" : "changed";
}

TEST_F(SettingFileTest, ReadsNumbersInTheRangeOfTheirType) {
  // The read of a type, and texts with their numbers; "-": it fails, and the value is as it was.
  const std::pair<string (*)(utl::File&), string> TYPES[] = {
      {&readAs<int>,
       "2147483647=2147483647|2147483648=-|-2147483648=-2147483648|-2147483649=-|21474836470=-"
       "|99999999999999999999999999=-|+5=5|00000000000000000000000012=12|-0=0|12ab=12|3.9=3|7 =7|=-|+=-|-=-|+-1=-| 1=-"
       "|x1=-|1\xEF\xBC=1|" +  // a character cut short
           FULL_WIDTH_MINUS_12 +
           "=-12|" + FULL_WIDTH_PLUS_12_BLANK + "3=12"},
      {&readAs<unsigned int>, "4294967295=4294967295|4294967296=-|+0=0|-0=-|-1=-"},
      {&readAs<short>, "32767=32767|32768=-|-32768=-32768|-32769=-"},
      {&readAs<unsigned short>, "65535=65535|65536=-"},
      {&readAs<signed char>, "127=127|128=-|-128=-128|-129=-"},
      {&readAs<unsigned char>, "255=255|256=-"},
  };
  const string lLine = "SettingFile::readParam():Convert String to Value:Key=n [@]";
  for (const auto& [lpRead, lRows] : TYPES) {
    for (const string& lRow : nfwtest::split(lRows, '|')) {
      const string lNumber = lRow.substr(lRow.find('=') + 1);
      EXPECT_EQ(lNumber, lpRead(open("n=" + lRow.substr(0, lRow.find('=')) + "\n"))) << lRow;
      EXPECT_EQ(lNumber == "-" ? lLine : "", log()) << lRow;
    }
  }
  int* const lpNone = nullptr;
  EXPECT_FALSE(SettingFile::readParam(open("n=1\n"), "n", lpNone));
  EXPECT_FALSE(SettingFile::readParam(*mpFile, "m", lpNone));  // not there: no line
  EXPECT_EQ(lLine, log());
}

TEST_F(SettingFileTest, WritesLinesThatItReads) {
  const string lKey33 = KEY_32 + "k";
  const string lValue201 = VALUE_200 + "v";
  utl::File lFile(path().c_str());
  ASSERT_TRUE(lFile.open(2, 1));
  const auto write = [&](const char* npKey, auto n) { return SettingFile::writeParam(lFile, npKey, n); };
  EXPECT_TRUE(write(KEY_32.c_str(), VALUE_200.c_str()) && write("empty", "") && write("zero", 0));
  EXPECT_TRUE(write("sc", static_cast<signed char>(SCHAR_MIN)) && write("uc", static_cast<unsigned char>(UCHAR_MAX)));
  EXPECT_TRUE(write("s", static_cast<short>(SHRT_MIN)) && write("us", static_cast<unsigned short>(USHRT_MAX)));
  EXPECT_TRUE(write("i", INT_MIN) && write("u", UINT_MAX));
  EXPECT_EQ("", log());

  const char* const lpNone = nullptr;
  EXPECT_FALSE(write(nullptr, "1") || write("a", lpNone) || write("", "1") || write(lKey33.c_str(), 1));
  EXPECT_FALSE(write("a", lValue201.c_str()));
  EXPECT_EQ(
      "SettingFile::writeParam():Key is Null [@]|SettingFile::writeParam():Value is Null [@]|"
      "SettingFile::writeParam():Key is Empty [@]|SettingFile::writeParam():Key is Too Long:Key=" +
          lKey33 + " [@]|SettingFile::writeParam():Value is Too Long:Key=a [@]",
      log());
  lFile.close();
  EXPECT_FALSE(write("a", -1));
  EXPECT_EQ("SettingFile::writeParam():Write File:Key=a Value=-1 [@]", log());
  EXPECT_EQ(
      KEY_32 + "=" + VALUE_200 + "\nempty=\nzero=0\nsc=-128\nuc=255\ns=-32768\nus=65535\ni=-2147483648\nu=4294967295\n",
      mTree.read("settings"));
}

TEST_F(SettingFileTest, TakesPathsOf259Bytes) {
  Settings lSettings(path().c_str());
  EXPECT_FALSE(lSettings.setFilePath(nullptr));  // keeps the path
  EXPECT_TRUE(lSettings.save());
  const string lLong = path() + string(259 - path().size(), 'x');
  EXPECT_TRUE(lSettings.setFilePath(lLong.c_str()));
  EXPECT_TRUE(lSettings.save());
  EXPECT_TRUE(lSettings.load());
  EXPECT_EQ(2u, mTree.entryNum());
  EXPECT_EQ("", log());
  EXPECT_FALSE(lSettings.setFilePath((lLong + "x").c_str()));
  EXPECT_EQ("SettingFile::setFilePath():Copy Path [@" + string(260 - path().size(), 'x') + "]", log());
  EXPECT_FALSE(lSettings.load());
  EXPECT_FALSE(lSettings.save());
  EXPECT_EQ("2 SettingFile::load():File does not exist []|SettingFile::save():Open File []", log());
}

TEST_F(SettingFileTest, LoadsThroughTheDerivedClass) {
  Settings lSettings(path().c_str());
  EXPECT_FALSE(lSettings.load());
  EXPECT_EQ("2 SettingFile::load():File does not exist [@]", log());
  EXPECT_EQ(0, lSettings.mReadNum);

  mTree.write("settings", "Name=left\nScale=9\n");
  EXPECT_TRUE(lSettings.load());
  EXPECT_EQ(9, lSettings.mScale);
  lSettings.mResult = false;
  EXPECT_FALSE(lSettings.load());
  EXPECT_EQ("SettingFile::load():Read Parameters [@]", log());
  const seams::Failing lFailing(seams::FILE_OPEN);
  EXPECT_FALSE(lSettings.load());
  EXPECT_EQ("SettingFile::load():Open File [@]", log());
  EXPECT_EQ(2, lSettings.mReadNum);
}

// What is wrong in each row stops the save at another place; the old file stays as it was and nothing stays beside it.
TEST_F(SettingFileTest, KeepsTheOldFileWhenASaveFails) {
  const string lParameters = "|SettingFile::save():Write Parameters [@]";
  const std::tuple<const char*, seams::Point, unsigned int, string> ROWS[] = {
      {"open", seams::FILE_OPEN, 0, "SettingFile::save():Open File [@]"},
      {"first line", seams::FILE_WRITE, 0, "SettingFile::writeParam():Write File:Key=Scale Value=6 [@]" + lParameters},
      {"second line", seams::FILE_WRITE, 1,
       "SettingFile::writeParam():Write File:Key=Name Value=right [@]" + lParameters},
      {"full disk told late", seams::FILE_FLUSH, 0, "SettingFile::save():Replace File [@]"},
  };
  mTree.write("settings", "Scale=1\nName=old\n");
  Settings lSettings(path().c_str());
  for (const auto& [lpName, lPoint, lAfter, lLog] : ROWS) {
    const seams::Failing lFailing(lPoint, lAfter);
    EXPECT_FALSE(lSettings.save());
    EXPECT_EQ(lLog, log()) << lpName;
  }
  lSettings.mDuringWrite = [&] { std::filesystem::remove(path() + ".saving"); };  // there is nothing to rename
  EXPECT_FALSE(lSettings.save());
  EXPECT_EQ("SettingFile::save():Replace File [@]", log());
  lSettings.mDuringWrite = nullptr;
  mTree.link("elsewhere", "settings.saving");
  EXPECT_FALSE(lSettings.save());
  EXPECT_EQ("SettingFile::save():Open File [@]", log());
  std::filesystem::remove(path() + ".saving");
  lSettings.mResult = false;
  EXPECT_FALSE(lSettings.save());
  EXPECT_EQ("SettingFile::save():Write Parameters [@]", log());
  EXPECT_EQ("Scale=1\nName=old\n", mTree.read("settings"));
  EXPECT_EQ(1u, mTree.entryNum());
  lSettings.mResult = true;
  EXPECT_TRUE(lSettings.save());
  EXPECT_EQ("Scale=6\nName=right\n", mTree.read("settings"));
}

TEST_F(SettingFileTest, ReplacesNothingButRegularFiles) {
  namespace fs = std::filesystem;
  mTree.write("settings", "old and longer than what is written now, as can be seen");
  fs::permissions(path(), fs::perms{0620});
  const bool lIsGiven = chown(path().c_str(), 1234, 1235) == 0;  // root may
  mTree.link("settings", "link");
  mTree.link("new", "dangling");
  for (const char* lpName : {"link", "dangling"}) {
    Settings lSettings(mTree.path(lpName).c_str());
    EXPECT_TRUE(lSettings.save());
    EXPECT_TRUE(fs::is_symlink(mTree.path(lpName)));
    EXPECT_EQ("Scale=6\nName=right\n", mTree.read(lpName));
  }
  EXPECT_EQ(fs::perms{0620}, fs::status(path()).permissions());
  EXPECT_TRUE(Settings(mTree.path("plain").c_str()).save());
  EXPECT_EQ(fs::status(mTree.path("plain")).permissions(), fs::status(mTree.path("new")).permissions());
  struct stat lStat;
  EXPECT_EQ(0, stat(path().c_str(), &lStat));
  EXPECT_TRUE(!lIsGiven || (lStat.st_uid == 1234 && lStat.st_gid == 1235));
  Settings lSettings("/dev/full");  // really full
  EXPECT_FALSE(lSettings.save());
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
  EXPECT_FALSE(lSettings.setFilePath(mTree.path().c_str()) && lSettings.save());
  EXPECT_EQ(
      "SettingFile::writeParam():Write File:Key=Scale Value=6 [/dev/full]|"
      "SettingFile::save():Write Parameters [/dev/full]|SettingFile::save():Open File [" +
          mTree.path() + "]",
      log());
  EXPECT_EQ(5u, mTree.entryNum());
}

TEST_F(SettingFileTest, LeavesAFileThatIsAMountPointAsItWas) {
  const string lRefusal = nfwtest::enterMountNamespace();
  if (!lRefusal.empty()) GTEST_SKIP() << "the kernel refuses a mount namespace: " << lRefusal;
  mTree.write("outside", "Scale=1\nName=old\n");
  mTree.write("settings", "");
  ASSERT_EQ(0, mount(mTree.path("outside").c_str(), path().c_str(), nullptr, MS_BIND, nullptr)) << strerror(errno);
  EXPECT_FALSE(Settings(path().c_str()).save());
  EXPECT_EQ("SettingFile::save():Replace File [@]", log());
  EXPECT_EQ("Scale=1\nName=old\n", mTree.read("outside"));
  EXPECT_EQ(2u, mTree.entryNum());
  EXPECT_EQ(0, umount(path().c_str()));
  EXPECT_TRUE(Settings(path().c_str()).save());
}

// Only so does a power cut leave the old file or the new one.
TEST_F(SettingFileTest, HasTheBytesOnTheMediumBeforeTheNameIsGiven) {
  mTree.write("settings", "old");
  Strings lSeen;  // by each sync: of what, and what the file holds under its name
  gOnSync = [&](int nDescriptor) {
    struct stat lStat;
    EXPECT_EQ(0, fstat(nDescriptor, &lStat));
    if (!S_ISDIR(lStat.st_mode)) ::close(0);  // the number of what is opened next
    lSeen.push_back((S_ISDIR(lStat.st_mode) ? "directory" : std::to_string(lStat.st_size)) + " " +
                    mTree.read("settings"));
    return 0;
  };
  EXPECT_TRUE(Settings(path().c_str()).save());
  EXPECT_EQ((Strings{"19 old", "directory Scale=6\nName=right\n"}), lSeen);
  for (const int lError : {EINVAL, EIO}) {  // a file system that cannot tell is taken at its word
    mTree.write("settings", "old");
    gOnSync = [lError](int) { return errno = lError, -1; };
    EXPECT_EQ(lError == EINVAL, Settings(path().c_str()).save());
    EXPECT_EQ(lError == EINVAL ? "Scale=6\nName=right\n" : "old", mTree.read("settings"));
  }
  gOnSync = nullptr;
  EXPECT_EQ(0, ::open("/dev/null", O_RDONLY));  // whoever had it has closed it
}

}  // namespace

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "NfwSettingFile.h"

namespace drive {

/// What the tool keeps from run to run, as texts of the command line: a file of lines KEY=VALUE that people edit, too.
/// Blanks around the key and the value do not count, lines that begin with "#" are comments. What the tool does not
/// know stays as it is and where it is. A line that is none of these is not guessed at: the file is refused then.
class Settings : private nfw::SettingFile {
 public:
  static constexpr size_t MAX_VALUE = 200;

  /// The settings by the names of their options; the source has the name "SOURCE".
  struct Entry {
    const char* mpOption;
    const char* mpKey;
  };
  static const Entry ENTRIES[6];

  explicit Settings(const std::string& nPath) : nfw::SettingFile(nPath.c_str()), mPath(nPath) {}

  /// A file that does not exist yet holds nothing. @param npReason of false: file, line and what was expected
  bool read(std::string* npReason);

  std::string get(std::string_view nKey) const;    ///< empty: not set
  std::string place(std::string_view nKey) const;  ///< "FILE:3: Speed", for messages

  /// @param npReason of false: why a file of settings cannot hold the value
  bool set(std::string_view nKey, const std::string& nValue, std::string* npReason);

  /// Writes the file when set() has changed anything. False when it cannot be written; the old one then stays.
  bool write();

 private:
  /// A line in parts that make the whole again. A comment has no key.
  struct Line {
    std::string mKey;
    std::string mBefore;  // to the value
    std::string mValue;
    std::string mAfter;  // blanks and the line end
  };

  bool readParameters(utl::File& nFile) override;
  bool writeParameters(utl::File& nFile) override;
  void takeText(std::string_view nText);
  void takeLine(std::string_view nLine);
  void takeSetting(std::string_view nText, Line* npLine);
  void judge(const Line& nLine);
  void refuse(const std::string& nWhat);
  size_t find(std::string_view nKey) const;

  const std::string mPath;
  std::vector<Line> mLines;
  std::string mRefusal;  // of the last read()
  bool mIsChanged = false;
};

}  // namespace drive

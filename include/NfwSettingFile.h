/// @file
/// A small text file of settings, one "key=value" a line.
#pragma once

#include "NfwExport.h"
#include "NfwThreadSafety.h"
#include "ZTSync.h"
#include "utl/File.h"

namespace nfw {

/// Base of an application's settings. The derived class holds the values and says, one parameter after the other, how
/// they are read and written:
///
/// @code
/// class MapSettings : public nfw::SettingFile {
///  public:
///   using SettingFile::SettingFile;
///   int mScale = 5;  // kept when the file does not tell
///
///  private:
///   bool readParameters(utl::File& nFile) override {
///     readParam(nFile, "Scale", &mScale);
///     return true;
///   }
///   bool writeParameters(utl::File& nFile) override { return writeParam(nFile, "Scale", mScale); }
/// };
///
/// MapSettings lSettings("/var/lib/map/settings.txt");
/// lSettings.load();
/// lSettings.mScale = 6;
/// lSettings.save();
/// @endcode
///
/// The file: a line is the key, "=" at once behind it, and the value to the end of the line. A key has 1 to 32 bytes
/// and is compared byte by byte; a value has 0 to 200 bytes. Lines that begin with "#" are comments; empty lines and
/// lines of other keys are skipped; of two lines with one key the first behind the reading position wins. Neither key
/// nor value may hold a line end, and a key no "=". Bytes are written as they are. Numbers are decimal.
///
/// Every failure writes one line to the application log. load(), save() and setFilePath() may be called from any
/// thread; one at a time runs, and the derived class is called on the caller's thread meanwhile. The static operations
/// belong to whoever holds the file.
class NFW_API SettingFile {
 public:
  /// As setFilePath(). @param npPath copied
  explicit SettingFile(char const* npPath);
  virtual ~SettingFile();
  SettingFile(const SettingFile&) = delete;
  SettingFile& operator=(const SettingFile&) = delete;

  /// @param npPath at most 259 bytes; a longer one leaves the object without a path
  /// @return false for null, which changes nothing, and for a path that is too long
  bool setFilePath(char const* npPath) NFW_EXCLUDES(mSync);

  /// Reads the file through readParameters().
  /// @return what that returned; false when the file does not exist (a warning) or cannot be opened
  bool load() NFW_EXCLUDES(mSync);

  /// Writes the whole file through writeParameters(), under a temporary name beside it (the name and ".saving"), and
  /// puts it in the old file's place only when every byte is on the medium: after a crash, a power cut or with a full
  /// disk, the path holds the old settings or the new ones, whole. The directory must allow new files. Savers of one
  /// path, in other processes too, wait for each other. Permissions are kept and a symbolic link stays one; what is no
  /// regular file (a device) is written in place. A file that is a mount point of its own (bound alone into a
  /// container) cannot be replaced, and is never written in place, where a crash would leave it torn: save() fails and
  /// the old file stays. Mount the directory that holds it instead.
  /// @return false when the file cannot be opened, written or replaced, or writeParameters() returned false
  bool save() NFW_EXCLUDES(mSync);

  /// Looks for the key from the file's position on, at most to `nEndPosition`; a line that begins before it is read
  /// whole. Afterwards the position is behind the line found, or where the search ended.
  /// @param npValue filled with the value and its terminator, when found
  /// @param nValueSize bytes of npValue, 201 for any value
  /// @return false when the key is not there (without a log line) and on a failure
  static bool find(utl::File& nFile, char const* npKey, char* npValue, unsigned int nValueSize,
                   unsigned long long nEndPosition);

  /// Looks from the position to the end of the file and then from the start to where it began: parameters may be read
  /// in any order, and those read in the order of the file are found at once.
  static bool find(utl::File& nFile, char const* npKey, char* npValue, unsigned int nValueSize);

  /// Reads a parameter. A number may have a "+" or, unless its type is unsigned, a "-" before its digits; full-width
  /// characters count as their half-width forms; what follows the digits is ignored.
  /// @return false, and `*npValue` as it was, when the key is not there (without a log line), the value does not begin
  /// with a number, or the number is out of the type's range
  static bool readParam(utl::File& nFile, char const* npKey, char* npValue, unsigned int nValueSize);
  static bool readParam(utl::File& nFile, char const* npKey, signed char* npValue);
  static bool readParam(utl::File& nFile, char const* npKey, unsigned char* npValue);
  static bool readParam(utl::File& nFile, char const* npKey, short* npValue);
  static bool readParam(utl::File& nFile, char const* npKey, unsigned short* npValue);
  static bool readParam(utl::File& nFile, char const* npKey, int* npValue);
  static bool readParam(utl::File& nFile, char const* npKey, unsigned int* npValue);

  /// Writes a parameter as the file's next line.
  static bool writeParam(utl::File& nFile, char const* npKey, char const* npValue);
  static bool writeParam(utl::File& nFile, char const* npKey, signed char nValue);
  static bool writeParam(utl::File& nFile, char const* npKey, unsigned char nValue);
  static bool writeParam(utl::File& nFile, char const* npKey, short nValue);
  static bool writeParam(utl::File& nFile, char const* npKey, unsigned short nValue);
  static bool writeParam(utl::File& nFile, char const* npKey, int nValue);
  static bool writeParam(utl::File& nFile, char const* npKey, unsigned int nValue);

 private:
  /// Called by load() and save() with the open file and the lock held. False makes load() or save() fail.
  virtual bool readParameters(utl::File& nFile) = 0;
  virtual bool writeParameters(utl::File& nFile) = 0;

  char mFilePath[260] NFW_GUARDED_BY(mSync) = {};
  ZTSync mSync{"nfw::SettingFile", 1};
};

}  // namespace nfw

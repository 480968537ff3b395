// A file that is written under a temporary name and takes the old one's place when it is whole.
#pragma once

#include <string>

namespace nfw {

/// Built before the new file is written, with its lock on the temporary name held until it goes: a second writer of the
/// path, here or in another process, waits. What is not committed is removed again; what a crash leaves behind is
/// written over by the next one. A name that is no regular file (a device, a link that leads nowhere) is not replaced
/// but written itself.
class FileReplacement {
 public:
  explicit FileReplacement(const char* npPath);
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  bool isReady() const { return mIsReady; }                   ///< false: the path cannot be written
  const char* getPath() const { return mTemporary.c_str(); }  ///< what is to be created or truncated, and written
  bool commit();                                              ///< after the file was closed

 private:
  bool prepare(const char* npPath);
  bool openTemporary(unsigned int nMode);
  void keepOwnership(unsigned int nMode, unsigned int nUser, unsigned int nGroup);

  std::string mTarget;  // empty when the path itself is written
  std::string mTemporary;
  int mDescriptor = -1;  // of the temporary file: holds the lock
  bool mHasTemporary = false;
  bool mIsReady;
};

}  // namespace nfw

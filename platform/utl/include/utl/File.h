/// @file
/// A file.
#pragma once

#include <memory>

namespace utl {

/// A file. Reads are buffered, writes go to the kernel at once. 64-bit positions on every target.
/// One thread at a time uses an object.
class File {
 public:
  enum Origin { ORIGIN_BEGIN = 0, ORIGIN_CURRENT = 1, ORIGIN_END = 2 };
  static constexpr int RESULT_ERROR = -1;
  static constexpr int RESULT_EOF = -3;

  explicit File(const char* npPath);  ///< copied; the file is not touched
  ~File();                            ///< closes
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  const char* getPath() const;
  /// True for anything but a directory (a regular file, a device); false for directories and missing names.
  static bool exists(const char* npPath);
  bool exists() const;

  /// (0, 0) reads an existing regular file; (2, 1) writes, creating or truncating.
  bool open(int nMode, int nCreate);
  void close();
  bool isOpened() const;

  int read(void* npBuffer, unsigned int nSize);         ///< bytes read, fewer only at the end; -1 error
  int write(const void* npBuffer, unsigned int nSize);  ///< all bytes, or -1
  bool flush();                                         ///< to the kernel
  /// What was written goes to the medium. False, with errno, when that failed, or nothing is open. One thread may be in
  /// it, for as long as the medium takes, while another uses the object; not while it is closed.
  bool sync();
  bool syncFileSystem();  ///< the same for all files of the medium
  /// Ends the file that is open for writing at `nSize`, whatever its name means by now; the position is there.
  bool truncate(unsigned long long nSize);

  bool getPosition(unsigned long long* npPosition);
  bool seek(long long nOffset, int nOrigin);  ///< beyond the end is allowed
  bool getSize(unsigned long long* npSize);
  /// False when the open file was removed: nobody finds what it holds, and it goes with the close. True when in doubt.
  bool hasName() const;

  /// Reads one line without its "\n" and a "\r" before it. The whole line is consumed, its first nSize - 1 bytes are
  /// stored with a terminator. The stored length (0 for an empty line), -1 error, -3 end of file.
  int readLine(char* npBuffer, unsigned int nSize);
  bool writeLine(const char* npLine);  ///< the text and "\n"

 private:
  struct State;
  std::unique_ptr<State> mpState;
};

}  // namespace utl

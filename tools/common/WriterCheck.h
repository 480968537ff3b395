#pragma once

namespace tool {

/// Whether anybody writes to an open file, in this process or another one.
/// @param nFile opened for reading alone
/// @return 0: nobody does; EAGAIN: somebody does; another errno where the file system or the owner does not let it tell
int writerError(int nFile);

}  // namespace tool

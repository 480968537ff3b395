#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace tool {

/// Hands each entry of a directory on, in no order. @return what ended it before the last one
template <class Take>
std::error_code forEachEntry(const std::string& nDirectory, const Take& nTake) {
  std::error_code lError;
  std::filesystem::directory_iterator lEntry(nDirectory, lError);
  for (; !lError && lEntry != std::filesystem::directory_iterator(); lEntry.increment(lError)) nTake(*lEntry);
  return lError;
}

/// The same for regular files, and what leads to one.
template <class Take>
std::error_code forEachFile(const std::string& nDirectory, const Take& nTake) {
  return forEachEntry(nDirectory, [&](const std::filesystem::directory_entry& nEntry) {
    std::error_code lUnknown;
    if (nEntry.is_regular_file(lUnknown)) nTake(nEntry.path());
  });
}

}  // namespace tool

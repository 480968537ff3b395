#include "KernelName.h"

#include <cstdio>
#include <string>

namespace utl {

namespace {

void remove(std::string* npText, const std::string& nPart) {
  for (size_t lAt = npText->find(nPart); lAt != std::string::npos; lAt = npText->find(nPart)) {
    npText->erase(lAt, nPart.size());
  }
}

}  // namespace

KernelName::KernelName(const char* npName) {
  std::string lName(npName);
  remove(&lName, "nfw::");
  remove(&lName, "_Thread");
  const size_t lMost = SIZE - 1, lHead = 9;
  if (lName.size() > lMost) {
    const size_t lTail = lMost - lHead - 1;
    lName = lName.substr(0, lHead) + "~" + lName.substr(lName.size() - lTail);
  }
  std::snprintf(mText, SIZE, "%s", lName.c_str());
}

}  // namespace utl

// Records compared to the last bit.
#pragma once

#include <cstring>
#include <string>

#include "RecordFields.h"

/// All fields one behind the other, without what the compiler puts between them.
template <class Record>
std::string recordBytes(const Record& nRecord) {
  std::string lBytes;
  nfw::eachField(nRecord, [&](auto& nField) {
    char lField[sizeof(nField)];
    std::memcpy(lField, &nField, sizeof(nField));
    lBytes.append(lField, sizeof(nField));
    return true;
  });
  return lBytes;
}

// Text whose every place is known but for the digits.
#pragma once

namespace nfw {

/// Whether the bytes are like the shape, in which 0 stands for a digit, X for a digit or a letter from A to F, and
/// everything else for itself.
template <unsigned int Size>
bool hasShape(const unsigned char* npBytes, const char (&nShape)[Size]) {
  for (unsigned int i = 0; i + 1 < Size; ++i) {
    const auto lShape = static_cast<unsigned char>(nShape[i]);
    const bool lIsDigit = npBytes[i] >= '0' && npBytes[i] <= '9';
    const bool lIsHex = lIsDigit || (npBytes[i] >= 'A' && npBytes[i] <= 'F');
    if (lShape == '0' ? !lIsDigit : lShape == 'X' ? !lIsHex : npBytes[i] != lShape) return false;
  }
  return true;
}

}  // namespace nfw

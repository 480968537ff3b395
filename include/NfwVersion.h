/// @file
/// The version of the library: of the headers that a program is compiled with, and of the library that it runs with.
///
/// Versions are numbered MAJOR.MINOR.PATCH. A program runs with every library of the same MAJOR whose MINOR is not
/// below that of the headers it was compiled with; docs/abi.md tells what each number promises.
#pragma once

#include "NfwExport.h"

#define NFW_VERSION_MAJOR 1  ///< of these headers; another one needs a program changed or compiled again
#define NFW_VERSION_MINOR 0  ///< of these headers; goes up when something is added
#define NFW_VERSION_PATCH 0  ///< of these headers; goes up when faults are mended

/// A version as one number, to compare in the preprocessor. MINOR and PATCH are below 100.
#define NFW_MAKE_VERSION(nMajor, nMinor, nPatch) ((nMajor)*10000 + (nMinor)*100 + (nPatch))

/// The version of these headers as one number: `#if NFW_VERSION >= NFW_MAKE_VERSION(1, 2, 0)`.
#define NFW_VERSION NFW_MAKE_VERSION(NFW_VERSION_MAJOR, NFW_VERSION_MINOR, NFW_VERSION_PATCH)

#define NFW_VERSION_TEXT_OF_(nNumber) #nNumber
#define NFW_VERSION_TEXT_(nMajor, nMinor, nPatch) \
  NFW_VERSION_TEXT_OF_(nMajor) "." NFW_VERSION_TEXT_OF_(nMinor) "." NFW_VERSION_TEXT_OF_(nPatch)

/// The version of these headers as a literal: "1.0.0".
#define NFW_VERSION_STRING NFW_VERSION_TEXT_(NFW_VERSION_MAJOR, NFW_VERSION_MINOR, NFW_VERSION_PATCH)

namespace nfw {

/// The version of the library that the program runs with, "1.0.0" for one: it may be a later one than
/// `NFW_VERSION_STRING`, which is fixed when the program is compiled. Any thread, at any time, before `main` and in a
/// handler of a signal as well. The text is the library's and stays.
NFW_API const char* version();

/// The same as one number, to compare with `NFW_VERSION` or `NFW_MAKE_VERSION`.
NFW_API int versionNumber();

}  // namespace nfw

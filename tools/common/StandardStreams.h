#pragma once

namespace tool {

/// Gives the null device to each of the descriptors 0 to 2 that the program was started without. Otherwise the next
/// file that it opens would become its standard output, and messages would go into it. Reading the standard input, or
/// writing the standard output, that nobody gave fails as before (EBADF); messages on standard error are dropped.
///
/// First thing in a program: before any other descriptor is opened.
void openStandardStreams();

}  // namespace tool

#pragma once

namespace drive {

bool isSerialSpeed(unsigned int nBaud);

/// Makes a terminal deliver bytes as they come, at the speed. False with errno set.
bool setUpSerialLine(int nFd, unsigned int nBaud);

}  // namespace drive

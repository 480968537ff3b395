#include "SerialSpeed.h"

#include <termios.h>

#include <cerrno>

namespace drive {

namespace {

struct Speed {
  unsigned int mBaud;
  speed_t mCode;
};
const Speed SPEEDS[] = {{1200, B1200},     {2400, B2400},     {4800, B4800},    {9600, B9600},
                        {19200, B19200},   {38400, B38400},   {57600, B57600},  {115200, B115200},
                        {230400, B230400}, {460800, B460800}, {921600, B921600}};

const Speed* find(unsigned int nBaud) {
  for (const Speed& lSpeed : SPEEDS) {
    if (lSpeed.mBaud == nBaud) return &lSpeed;
  }
  return nullptr;
}

}  // namespace

bool isSerialSpeed(unsigned int nBaud) { return find(nBaud) != nullptr; }

bool setUpSerialLine(int nFd, unsigned int nBaud) {
  const Speed* const lpSpeed = find(nBaud);
  termios lLine = {};
  if (lpSpeed == nullptr) errno = EINVAL;
  if (lpSpeed == nullptr || ::tcgetattr(nFd, &lLine) != 0) return false;
  ::cfmakeraw(&lLine);
  lLine.c_cflag |= CLOCAL | CREAD;
  lLine.c_cc[VMIN] = 1;
  lLine.c_cc[VTIME] = 0;
  ::cfsetispeed(&lLine, lpSpeed->mCode);
  ::cfsetospeed(&lLine, lpSpeed->mCode);
  return ::tcsetattr(nFd, TCSANOW, &lLine) == 0;
}

}  // namespace drive

// The SDK's numbers that the table of README.md uses.
#pragma once

enum SdkType {
  SDK_NOT_TOLD = 0,
  SDK_USB_STICK = 1,
  SDK_SD_CARD = 2,
  SDK_OPTICAL_DISC = 12,
  SDK_EXTERNAL_DATABASE = 14,
  SDK_DATABASE = 17,
};

enum SdkPort {
  SDK_FIRST_USB = 1,
  SDK_LAST_USB = 4,
  SDK_OTHER_PORT = 5,
  SDK_SD_SLOT = 6,
  SDK_DISC_DRIVE = 7,
  SDK_INTERNAL = 8,
};

/// 0 (detecting) and 7 (unmounting) cannot be seen in a mount table.
enum SdkEvent {
  SDK_DISCONNECTED = 1,
  SDK_CONNECTED = 2,  // there, and not mounted
  SDK_MOUNTED = 3,
  SDK_UNKNOWN_FILE_SYSTEM = 4,
  SDK_READ_ONLY = 5,
  SDK_READ_ERROR = 6,
};

#include "BlockDevice.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <memory>

#include "MountTypes.h"

// A carrier is known by the attribute that only its directory has.
struct BlockDevice::Carrier {
  const char* mpMark;
  const char* mpManufacturer;
  const char* mpProduct;
  const char* mpSerial;
  const char* mpVendorId;  // hexadecimal, as the next
  const char* mpProductId;
};

namespace {

const BlockDevice::Carrier USB = {"idVendor", "manufacturer", "product", "serial", "idVendor", "idProduct"};
const BlockDevice::Carrier MEMORY_CARD = {"cid", "manfid", "name", "serial", "manfid", "oemid"};
const BlockDevice::Carrier DRIVE = {"model", "vendor", "model", "serial", "", ""};

bool isThere(const std::string& nPath) {
  struct stat lStat;
  return ::stat(nPath.c_str(), &lStat) == 0;
}

std::string realPath(const std::string& nPath) {
  const std::unique_ptr<char, decltype(&free)> lpPath(realpath(nPath.c_str(), nullptr), &free);
  return lpPath != nullptr ? std::string(lpPath.get()) : std::string();
}

std::string baseName(const std::string& nPath) { return nPath.substr(nPath.rfind('/') + 1); }

// Some file systems (btrfs) have a number of their own and only name their device.
std::string linkOf(const std::string& nSysRoot, const MountEntry& nEntry) {
  if (nEntry.mDevice.rfind("0:", 0) != 0) return nSysRoot + "/dev/block/" + nEntry.mDevice;
  if (nEntry.mSource.rfind("/dev/", 0) != 0) return "";
  const std::string lLink = nSysRoot + "/class/block/" + baseName(nEntry.mSource);
  return isThere(lLink) ? lLink : "";
}

unsigned int hexadecimal(const std::string& nText) {
  return static_cast<unsigned int>(strtoul(nText.c_str(), nullptr, 16));
}

}  // namespace

BlockDevice::BlockDevice(const std::string& nSysRoot, const MountEntry& nEntry) : mLink(linkOf(nSysRoot, nEntry)) {
  if (mLink.empty()) return;
  const std::string lDirectory = realPath(mLink);
  mName = baseName(lDirectory.empty() ? nEntry.mSource : lDirectory);
  const std::string lTop = realPath(nSysRoot);
  if (findCarrier(USB, lDirectory, lTop) || findCarrier(MEMORY_CARD, lDirectory, lTop)) return;
  findCarrier(DRIVE, lDirectory, lTop);
}

// The nearest directory on the way up that has the mark.
bool BlockDevice::findCarrier(const Carrier& nCarrier, std::string nDirectory, const std::string& nTop) {
  for (; nDirectory.size() > nTop.size(); nDirectory.erase(nDirectory.rfind('/'))) {
    if (!isThere(nDirectory + "/" + nCarrier.mpMark)) continue;
    mpCarrier = &nCarrier;
    mOwner = nDirectory;
    return true;
  }
  return false;
}

// The kernel keeps the names of images that are not in use.
bool BlockDevice::exists() const { return isThere(isImage() ? mLink + "/loop" : mLink); }

int BlockDevice::getType() const {
  if (isCalled("sr")) return SDK_OPTICAL_DISC;
  if (mpCarrier == &USB) return SDK_USB_STICK;
  return mpCarrier == &MEMORY_CARD && attribute("type") == "SD" ? SDK_SD_CARD : SDK_NOT_TOLD;
}

// The socket of the unit that leads to the device, through whatever hubs: "2" of "2.1.4".
int BlockDevice::getPort() const {
  if (isCalled("sr")) return SDK_DISC_DRIVE;
  if (mpCarrier == &MEMORY_CARD) return attribute("type") == "SD" ? SDK_SD_SLOT : SDK_INTERNAL;
  const int lSocket = mpCarrier == &USB ? atoi(attribute("devpath").c_str()) : 0;
  return lSocket >= SDK_FIRST_USB && lSocket <= SDK_LAST_USB ? lSocket : SDK_OTHER_PORT;
}

void BlockDevice::fill(ZTSMountDef::ST_MNT_MOUNT_INFO* npInfo) const {
  if (mpCarrier == nullptr) return;
  putText(npInfo->manufacturer, attribute(mpCarrier->mpManufacturer));
  putText(npInfo->productName, attribute(mpCarrier->mpProduct));
  putText(npInfo->serialNum, attribute(mpCarrier->mpSerial));
  npInfo->vendorId = hexadecimal(attribute(mpCarrier->mpVendorId));
  npInfo->productId = hexadecimal(attribute(mpCarrier->mpProductId));
}

std::string BlockDevice::attribute(const char* npName) const {
  std::string lText;
  std::getline(std::ifstream(mOwner + "/" + npName), lText);
  lText.erase(lText.find_last_not_of(" \t\r") + 1);
  return lText;
}

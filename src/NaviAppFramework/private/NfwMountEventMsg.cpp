#include "NfwMountEventMsg.h"

#include "FieldMsg.h"
#include "MountFields.h"

namespace nfw {

MountEventMsg::MountEventMsg() : utl::Msg(RESTORE_MSG_ID) {}
MountEventMsg::MountEventMsg(const MountDevice& nDevice) : utl::Msg(RESTORE_MSG_ID), MountDevice(nDevice) {}

bool MountEventMsg::storeDataTo(utl::MsgDataBroker& nBroker) const {
  return eachMountField(*this, fields::Store{nBroker});
}
bool MountEventMsg::restoreDataFrom(utl::MsgDataBroker& nBroker) {
  return eachMountField(*this, fields::Restore{nBroker});
}

}  // namespace nfw

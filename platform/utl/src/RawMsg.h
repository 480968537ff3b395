// The bytes of a message: how they are written and how a listener reads them.
#pragma once

#include <cstring>

#include "utl/Msg.h"

namespace utl {

/// A queued message as its listener sees it. The bytes stay the queue's.
class RawMsg final : public ThreadRawMsg {
 public:
  RawMsg(int nMsgId, const unsigned char* npData, unsigned int nSize) : mMsgId(nMsgId), mpData(npData) {
    mRead = {npData, npData + nSize};
  }

  bool getMsgId(int* npMsgId) const override {
    *npMsgId = mMsgId;
    return true;
  }
  bool beginInput() override { return false; }
  bool beginOutput() override {
    mRead.mpNext = mpData;
    return true;
  }

 protected:
  bool put(ItemKind /*nKind*/, const void* /*npData*/, unsigned int /*nCount*/) override { return false; }
  bool take(ItemKind nKind, void* npData, unsigned int nCount) override;

 private:
  friend class MsgWriter;
  static uint64_t bytesOf(ItemKind nKind, unsigned int nCount);

  int mMsgId;
  const unsigned char* mpData;
};

/// Memory for the bytes of a message; null when there is none.
struct MsgRoom {
  unsigned char* mpData;
  unsigned int mSize;
};

/// Writes the fields of a message one behind the other, into a buffer that may be exchanged for a larger one.
class MsgWriter : public MsgDataBroker {
 public:
  MsgWriter(unsigned char* npBuffer, unsigned int nRoom) : mpBuffer(npBuffer) { mWrite = {npBuffer, npBuffer + nRoom}; }

  bool beginInput() override {
    mWrite.mpNext = mpBuffer;
    return true;
  }
  bool beginOutput() override { return false; }

  /// Stores the whole message: false when it does not fit, whatever the message itself makes of that.
  bool store(const Msg& nMsg) { return nMsg.storeDataTo(*this) && mpBuffer != nullptr; }
  const unsigned char* data() const { return mpBuffer; }
  unsigned int size() const { return static_cast<unsigned int>(mWrite.mpNext - mpBuffer); }

 protected:
  /// Gives memory of at least `nSize` bytes; null when there is none.
  virtual MsgRoom enlarge(uint64_t /*nSize*/) { return {nullptr, 0}; }

  bool put(ItemKind nKind, const void* npData, unsigned int nCount) override;
  bool take(ItemKind /*nKind*/, void* /*npData*/, unsigned int /*nCount*/) override { return false; }

 private:
  bool moveTo(const MsgRoom& nRoom);

  unsigned char* mpBuffer;  // null once something did not fit
};

}  // namespace utl

// Measures the data size of a message by the 32-bit target's count of its fields.
#pragma once

#include "utl/Msg.h"

namespace nfw {

/// A broker that stores nothing and counts what each read asks for: the sizes of the values, 4 for a pointer, n for n
/// bytes, 4n for n wide characters. The targets of the reads keep their values. After beginInput every read fails.
class ThreadMsgSizeCalculator : public utl::MsgDataBroker {
 public:
  bool beginInput() override;
  bool beginOutput() override;

  /// The count since beginOutput.
  unsigned int getSize() const { return mSize; }

 protected:
  bool put(ItemKind nKind, const void* npData, unsigned int nCount) override;
  bool take(ItemKind nKind, void* npData, unsigned int nCount) override;

 private:
  unsigned int mSize = 0;
  bool mIsCounting = false;
};

}  // namespace nfw

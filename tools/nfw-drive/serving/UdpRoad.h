#pragma once

#include "Road.h"

namespace drive {

/// A datagram for each sentence, to a host, a group or a network.
class UdpRoad : public Road {
 public:
  using Road::Road;

  bool open(std::string* npReason) override;
  void collect(std::vector<pollfd>* npFds) const override;
  const pollfd* serve(const pollfd* npFds) override;
  bool isDone() const override { return mAt == mRing.getEnd(); }

 private:
  bool send(const char* npText, size_t nSize);
  void noteLoss(int nError);

  uint64_t mAt = 0;
};

}  // namespace drive

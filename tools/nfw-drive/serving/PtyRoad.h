#pragma once

#include "Road.h"

namespace drive {

/// A serial line that another program opens under a name. Nothing is kept for nobody.
class PtyRoad : public Road {
 public:
  using Road::Road;
  ~PtyRoad() override { PtyRoad::close(); }

  bool open(std::string* npReason) override;
  void collect(std::vector<pollfd>* npFds) const override;
  const pollfd* serve(const pollfd* npFds) override;
  bool isDone() const override;
  void close() override;

 private:
  bool link(const char* npLine, std::string* npReason);
  void noteReader(bool nIsThere);
  void discardInput();
  void send();
  void skip();

  std::string mLine;  // the device
  uint64_t mAt = 0;
  bool mIsRead = false;     // somebody has opened it
  bool mIsStalled = false;  // who does not read, which was told
  Clock::time_point mTaken;
};

}  // namespace drive

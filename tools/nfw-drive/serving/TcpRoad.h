#pragma once

#include <list>

#include "RoadClient.h"

namespace drive {

/// A server: whoever connects gets the sentences from then on.
class TcpRoad : public Road {
 public:
  using Road::Road;

  bool open(std::string* npReason) override;
  void collect(std::vector<pollfd>* npFds) const override;
  const pollfd* serve(const pollfd* npFds) override;
  bool isDone() const override;
  void close() override;

 private:
  void accept();
  bool isKept(RoadClient& nClient, short nEvents);

  Clock::time_point mRetry;  // there was no descriptor for another client
  std::list<RoadClient> mClients;
};

}  // namespace drive

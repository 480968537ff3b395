// A message of a source that gathers what comes in.
#pragma once

#include <cstdint>

#include "FieldMsg.h"

namespace nfw {

/// The fields of `Data`, a message class, and behind them the generation of the source that the message came in under.
template <class Data>
class GatheredMsg : public Data {
 public:
  GatheredMsg() = default;
  template <class... Arguments>
  explicit GatheredMsg(uint32_t nGeneration, Arguments... nArguments) : Data(nArguments...), mGeneration(nGeneration) {}

  bool storeDataTo(utl::MsgDataBroker& nBroker) const override {
    return Data::storeDataTo(nBroker) && nBroker.write(mGeneration);
  }
  bool restoreDataFrom(utl::MsgDataBroker& nBroker) override {
    return Data::restoreDataFrom(nBroker) && nBroker.read(&mGeneration);
  }

  uint32_t mGeneration = 0;
};

}  // namespace nfw

#pragma once

#include "SentenceSource.h"

namespace drive {

/// An endless simulated drive.
class SimulatorSource : public SentenceSource, private MotionSensor {
 public:
  SimulatorSource(const SimulatorOptions& nOptions, tool::Stopper& nStopper)
      : mSimulator(nOptions), mStopper(nStopper) {}

  OpenResult open(std::string*) override { return OPENED; }
  int read(char* npBuffer, size_t nSize, std::string* npReason) override;
  const MotionSensor* motion() const override { return this; }

 private:
  double speed() const override { return mSimulator.getVehicle().mSpeed; }
  double course() const override { return mSimulator.getVehicle().mCourse; }

  Simulator mSimulator;
  tool::Stopper& mStopper;
  std::string mText;
  size_t mRead = 0;
};

}  // namespace drive

#pragma once

namespace drive {

/// What the wheels and the gyroscope tell, at this moment. Of the thread that reads the source.
struct MotionSensor {
  virtual ~MotionSensor() = default;
  virtual double speed() const = 0;   ///< metres per second
  virtual double course() const = 0;  ///< degrees true, 0 to below 360
};

}  // namespace drive

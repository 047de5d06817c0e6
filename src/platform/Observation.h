#pragma once

namespace tessarok::platform {

/// A token for one observer of one notification; destroying it ends the observation.
class Observation {
 public:
  Observation() = default;
  Observation(const Observation&) = delete;
  Observation& operator=(const Observation&) = delete;
  virtual ~Observation() = default;
};

}  // namespace tessarok::platform

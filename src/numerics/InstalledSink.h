// One process-wide slot for an outward interface (messages, math errors): a front end installs
// its own implementation, and until it does a recording default keeps whatever arrives, so the
// core never needs to know which front end is running.
#pragma once

namespace nerivane {

template <typename Interface, typename Default>
class InstalledSink {
  public:
    Interface& Get() { return installed_ ? *installed_ : default_; }
    // nullptr restores the default.
    void Install(Interface* sink) { installed_ = sink; }

  private:
    Default default_;
    Interface* installed_ = nullptr;
};

}  // namespace nerivane

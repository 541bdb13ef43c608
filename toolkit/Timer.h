#pragma once
#include <functional>
#include <memory>

#include "toolkit/Control.h"

class QTimer;

namespace tk {

// A timer that raises Action on the main thread from the event loop.
class Timer : public Control {
 public:
  Timer();
  ~Timer() override;
  const char* ClassName() const override { return "Timer"; }

  // 0 off, 1 once, 2 repeating.
  static constexpr Integer kModeOff = 0, kModeSingle = 1, kModeMultiple = 2;

  bool Enabled() const { return enabled_; }
  void SetEnabled(bool v);
  Integer Period() const { return period_; }
  void SetPeriod(Integer ms);
  Integer Mode() const { return mode_; }
  void SetMode(Integer mode);

  using ActionHandler = std::function<void(Timer&)>;
  void AddActionHandler(ActionHandler handler);

  // Delivers one tick now, exactly as the event loop would. Lets tests drive
  // the timer without waiting.
  void _CallAction();

  // True while the timer would tick.
  bool IsRunning() const;

 private:
  void Apply();

  std::unique_ptr<QTimer> timer_;
  bool enabled_ = true;
  Integer period_ = 1000;
  Integer mode_ = kModeMultiple;
  ActionHandler action_;
};

}  // namespace tk

#include "toolkit/Timer.h"

#include <QTimer>

#include <algorithm>
#include <limits>

#include "toolkit/Application.h"
#include "toolkit/Dispatch.h"

namespace tk {

Timer::Timer() : timer_((EnsureGui(), std::make_unique<QTimer>())) {
  QObject::connect(timer_.get(), &QTimer::timeout, [this] { _CallAction(); });
  Apply();
}

Timer::~Timer() = default;

void Timer::SetEnabled(bool v) { enabled_ = v; Apply(); }
void Timer::SetPeriod(Integer ms) { period_ = ms; Apply(); }
void Timer::SetMode(Integer mode) { mode_ = mode; Apply(); }

void Timer::Apply() {
  if (!enabled_ || mode_ == kModeOff) {
    timer_->stop();
    return;
  }
  timer_->setSingleShot(mode_ == kModeSingle);
  // Qt restarts a running timer on setInterval; only a real change may
  // disturb the phase of a flash.
  const int interval = static_cast<int>(std::clamp<Integer>(period_, 1, std::numeric_limits<int>::max()));
  if (timer_->interval() != interval) timer_->setInterval(interval);
  if (!timer_->isActive()) timer_->start();
}

bool Timer::IsRunning() const { return timer_->isActive(); }

void Timer::AddActionHandler(ActionHandler handler) { action_ = std::move(handler); }

void Timer::_CallAction() {
  if (mode_ == kModeSingle) mode_ = kModeOff;  // a single shot is spent
  if (action_) Dispatch([this] { action_(*this); });
}

}  // namespace tk

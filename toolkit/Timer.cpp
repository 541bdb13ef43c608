#include "toolkit/Timer.h"

#include <QThread>
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

namespace {

void Drive(QTimer& timer, bool on, bool single, int interval) {
  if (!on) {
    timer.stop();
    return;
  }
  timer.setSingleShot(single);
  // Qt restarts a running timer on setInterval; only a real change may
  // disturb the phase of a flash.
  if (timer.interval() != interval) timer.setInterval(interval);
  if (!timer.isActive()) timer.start();
}

}  // namespace

void Timer::Apply() {
  const bool on = enabled_ && mode_ != kModeOff;
  const bool single = mode_ == kModeSingle;
  const int interval = static_cast<int>(std::clamp<Integer>(period_, 1, std::numeric_limits<int>::max()));
  if (QThread::currentThread() == timer_->thread()) {
    Drive(*timer_, on, single, interval);
    return;
  }
  // The timer carries no thread guard, but Qt starts and stops a timer
  // only in its own thread: from any other the change goes there, with the
  // values of this moment, and is dropped if the timer goes first.
  QTimer* timer = timer_.get();
  QMetaObject::invokeMethod(timer, [timer, on, single, interval] { Drive(*timer, on, single, interval); },
                            Qt::QueuedConnection);
}

bool Timer::IsRunning() const { return timer_->isActive(); }

void Timer::AddActionHandler(ActionHandler handler) { action_ = std::move(handler); }

void Timer::_CallAction() {
  if (mode_ == kModeSingle) mode_ = kModeOff;  // a single shot is spent
  if (action_) Dispatch([this] { action_(*this); });
}

}  // namespace tk

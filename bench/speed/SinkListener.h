#pragma once
// Listens at a PipeWire sink's monitor and tells when sound reaches the
// sink: each block of what the sink was given, stamped with the start of
// the graph cycle in which the sink took it (CLOCK_MONOTONIC, the clock of
// std::chrono::steady_clock on Linux). A sink named "fifo:PATH" is a
// PulseAudio pipe sink timed by the system clock (16-bit mono, 44.1 kHz):
// each block read from the pipe is stamped with when it was read, less its
// length.
//
// The listener is passive: like a desktop's sink that nobody records from,
// the sink rests while nothing plays to it and wakes at the first stream
// that does, at that stream's own cycles. A busy listener instead keeps the
// sink running at PipeWire's default cycle of 1024 frames, as another
// program playing would; a stream then joins a graph already running at
// long cycles.
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

struct pw_thread_loop;
struct pw_stream;

class SinkListener {
 public:
  using Clock = std::chrono::steady_clock;
  SinkListener(const std::string& sink, bool busy);
  ~SinkListener();

  // The time of the first sample at the sink louder than the threshold,
  // taken at or after `after`; nothing if none came by the deadline.
  std::optional<Clock::time_point> FirstSound(Clock::time_point after, Clock::time_point deadline);
  // Waits until the sink has had nothing louder than the threshold for
  // `quiet`, or has rested that long since its last loud sample; false if
  // that did not happen by the deadline.
  bool WaitQuiet(Clock::duration quiet, Clock::time_point deadline);

  void OnProcess();  // for the stream's callback

 private:
  struct Block {
    Clock::time_point start;      // when its first sample was at the sink
    std::optional<double> loudAt;  // offset in seconds of its first loud sample
  };
  void Add(const Block& block);
  void ReadPipe(const std::string& path);
  std::thread pipeReader_;
  pw_thread_loop* loop_ = nullptr;
  pw_stream* stream_ = nullptr;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Block> blocks_;
  unsigned rate_ = 48000;
};

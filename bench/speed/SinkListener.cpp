#include "bench/speed/SinkListener.h"

#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// The sink is fed exact zeros between clips; anything above this is a clip.
constexpr float kThreshold = 1e-3f;
// A block comes every cycle while the sink runs (21 ms at PipeWire's
// default); none for this long means it rests.
constexpr auto kResting = std::chrono::milliseconds(100);

void Process(void* data) { static_cast<SinkListener*>(data)->OnProcess(); }

const pw_stream_events kEvents = [] {
  pw_stream_events e{};
  e.version = PW_VERSION_STREAM_EVENTS;
  e.process = Process;
  return e;
}();

}  // namespace

SinkListener::SinkListener(const std::string& sink, bool busy) {
  if (sink.rfind("fifo:", 0) == 0) {
    rate_ = 44100;
    pipeReader_ = std::thread([this, path = sink.substr(5)] { ReadPipe(path); });
    pipeReader_.detach();  // reads until the process ends
    return;
  }
  pw_init(nullptr, nullptr);
  loop_ = pw_thread_loop_new("sink-listener", nullptr);
  pw_properties* props = pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Capture",
                                           PW_KEY_MEDIA_ROLE, "Production", PW_KEY_TARGET_OBJECT, sink.c_str(),
                                           PW_KEY_STREAM_CAPTURE_SINK, "true", PW_KEY_NODE_PASSIVE,
                                           busy ? "false" : "true", nullptr);
  pw_thread_loop_lock(loop_);
  stream_ = pw_stream_new_simple(pw_thread_loop_get_loop(loop_), "calloquin-bench-listener", props, &kEvents, this);
  uint8_t buffer[1024];
  spa_pod_builder b{};
  spa_pod_builder_init(&b, buffer, sizeof(buffer));
  spa_audio_info_raw info{};
  info.format = SPA_AUDIO_FORMAT_F32;
  info.rate = rate_;
  info.channels = 1;
  const spa_pod* params[1] = {spa_format_audio_raw_build(&b, SPA_PARAM_EnumFormat, &info)};
  // In the graph's own thread, in the cycle in which the sink takes the
  // samples: the cycle's start is then the time they reached it.
  const int err = pw_stream_connect(stream_, PW_DIRECTION_INPUT, PW_ID_ANY,
                                    static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS |
                                                                 PW_STREAM_FLAG_RT_PROCESS),
                                    params, 1);
  pw_thread_loop_unlock(loop_);
  if (err < 0) {
    std::fprintf(stderr, "sink listener: cannot connect (%s)\n", std::strerror(-err));
    std::exit(2);
  }
  pw_thread_loop_start(loop_);
}

SinkListener::~SinkListener() {
  if (loop_ == nullptr) return;
  pw_thread_loop_stop(loop_);
  pw_stream_destroy(stream_);
  pw_thread_loop_destroy(loop_);
}

void SinkListener::OnProcess() {
  pw_buffer* b = pw_stream_dequeue_buffer(stream_);
  if (b == nullptr) return;
  pw_time time{};
  pw_stream_get_time_n(stream_, &time, sizeof(time));
  const spa_data& d = b->buffer->datas[0];
  const auto* samples = static_cast<const float*>(d.data);
  const uint32_t n = d.data != nullptr ? d.chunk->size / sizeof(float) : 0;
  Block block{Clock::time_point(std::chrono::nanoseconds(time.now)), std::nullopt};
  for (uint32_t i = 0; i < n; ++i) {
    if (std::fabs(samples[i]) > kThreshold) {
      block.loudAt = static_cast<double>(i) / rate_;
      break;
    }
  }
  pw_stream_queue_buffer(stream_, b);
  Add(block);
}

void SinkListener::Add(const Block& block) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    blocks_.push_back(block);
    if (blocks_.size() > 4096) blocks_.pop_front();
  }
  changed_.notify_all();
}

void SinkListener::ReadPipe(const std::string& path) {
  const int fd = open(path.c_str(), O_RDONLY);
  if (fd < 0) {
    std::fprintf(stderr, "sink listener: cannot open %s (%s)\n", path.c_str(), std::strerror(errno));
    std::exit(2);
  }
  std::int16_t samples[441];  // 10 ms
  for (;;) {
    const ssize_t got = read(fd, samples, sizeof samples);
    if (got <= 0) break;
    const auto now = Clock::now();
    const std::size_t n = static_cast<std::size_t>(got) / sizeof(std::int16_t);
    Block block{now - std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(double(n) / rate_)),
                std::nullopt};
    for (std::size_t i = 0; i < n; ++i) {
      if (std::abs(samples[i]) > kThreshold * 32768) {
        block.loudAt = static_cast<double>(i) / rate_;
        break;
      }
    }
    Add(block);
  }
  close(fd);
}

std::optional<SinkListener::Clock::time_point> SinkListener::FirstSound(Clock::time_point after,
                                                                        Clock::time_point deadline) {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    for (const Block& block : blocks_) {
      if (!block.loudAt) continue;
      const auto at = block.start + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(*block.loudAt));
      if (at >= after) return at;
    }
    if (changed_.wait_until(lock, deadline) == std::cv_status::timeout) return std::nullopt;
  }
}

bool SinkListener::WaitQuiet(Clock::duration quiet, Clock::time_point deadline) {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    Clock::time_point lastLoud{};
    for (const Block& block : blocks_) {
      if (block.loudAt) lastLoud = block.start;
    }
    // Heard up to the last block, or up to now when the sink rests.
    const auto now = Clock::now();
    const bool resting = blocks_.empty() || now - blocks_.back().start >= kResting;
    if ((resting ? now : blocks_.back().start) - lastLoud >= quiet) return true;
    if (now >= deadline) return false;
    changed_.wait_until(lock, std::min(deadline, now + kResting));
  }
}

// The voice, through the toolkit's real Sound over SDL_mixer: for each of
// the 90 clips, the cost of its first use (opening and decoding the file)
// and the time from Sound::Play to the first mixer buffer that holds its
// samples, seen by a post effect on SDL's audio thread (the post-mix hook is
// the toolkit's own: it tells a device that plays from one that is lost). Before each Play
// every channel is halted and one silent buffer is let by, so the first
// buffer with any sound in it is this clip's.
//
//   voice_bench <Resources folder>
// Runs on whatever SDL_AUDIODRIVER says; the benchmark script sets "dummy",
// which paces its buffers in real time without a device.
#include <SDL.h>
#include <SDL_mixer.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "bench/speed/Quantile.h"
#include "toolkit/Sound.h"

namespace {

using Clock = std::chrono::steady_clock;

std::atomic<std::int64_t> buffers{0};      // post-mix calls so far
std::atomic<bool> armed{false};            // looking for the clip's first samples
std::atomic<Clock::rep> heardAt{0};        // when they came
std::atomic<int> bufferBytes{0};

void PostMix(int /*channel*/, void* stream, int len, void* /*data*/) {
  bufferBytes = len;
  if (armed.load()) {
    const auto* samples = static_cast<const Sint16*>(stream);
    for (int i = 0; i < len / 2; ++i) {
      if (samples[i] != 0) {
        heardAt = Clock::now().time_since_epoch().count();
        armed = false;
        break;
      }
    }
  }
  ++buffers;
}

void WaitBuffers(std::int64_t count) {
  const std::int64_t target = buffers.load() + count;
  while (buffers.load() < target) std::this_thread::sleep_for(std::chrono::microseconds(200));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s <Resources folder>\n", argv[0]);
    return 2;
  }
  const std::string folder = argv[1];
  std::vector<double> open, heard;
  std::mt19937 rng(12345);
  std::uniform_int_distribution<int> phase(0, 50000);  // microseconds, past the longest period measured
  for (int k = 1; k <= 90; ++k) {
    const std::string path = folder + "/vocal" + std::to_string(k) + ".mp3";
    const auto start = Clock::now();
    const std::shared_ptr<tk::Sound> sound = tk::OpenMixerSound(path);
    const auto opened = Clock::now();
    if (!sound) {
      std::fprintf(stderr, "cannot open %s\n", path.c_str());
      return 1;
    }
    // The first clip also opens the device; that is start-up of the mixer,
    // not of the clip, and is reported apart.
    open.push_back(std::chrono::duration<double, std::milli>(opened - start).count());
    if (k == 1) Mix_RegisterEffect(MIX_CHANNEL_POST, PostMix, nullptr, nullptr);

    Mix_HaltChannel(-1);
    WaitBuffers(2);  // the halt has reached the mix: silence flows
    // A press comes at any moment of the device's period, not just after
    // a buffer was mixed.
    std::this_thread::sleep_for(std::chrono::microseconds(phase(rng)));
    armed = true;
    const auto played = Clock::now();
    sound->Play();
    while (armed.load()) std::this_thread::sleep_for(std::chrono::microseconds(100));
    const Clock::time_point at{Clock::duration{heardAt.load()}};
    heard.push_back(std::chrono::duration<double, std::milli>(at - played).count());
  }
  Mix_HaltChannel(-1);

  const std::vector<double> openLater(open.begin() + 1, open.end());
  int frequency = 0, channels = 0;
  Uint16 format = 0;
  Mix_QuerySpec(&frequency, &format, &channels);
  const int frames = bufferBytes.load() / (2 * std::max(channels, 1));
  std::printf("driver=%s rate=%d channels=%d buffer_frames=%d buffer_ms=%.2f\n", SDL_GetCurrentAudioDriver(), frequency,
              channels, frames, 1000.0 * frames / std::max(frequency, 1));
  std::printf("first_use median=%.3f p95=%.3f max=%.3f device_open_plus_first=%.3f\n", Quantile(openLater, 0.5),
              Quantile(openLater, 0.95), *std::max_element(openLater.begin(), openLater.end()), open.front());
  std::printf("play_to_samples median=%.3f p95=%.3f max=%.3f\n", Quantile(heard, 0.5), Quantile(heard, 0.95),
              *std::max_element(heard.begin(), heard.end()));
  return 0;
}

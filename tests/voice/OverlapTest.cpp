// What actually comes out of the mixer. SDL's disk driver writes the mixed
// output into a named pipe that this test reads: the audio thread can only
// run ahead of the reader by what the pipe holds, so the test decides how
// much audio has been produced before each press, with no clock involved.
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <numbers>
#include <thread>

#include "tests/voice/VoiceFixture.h"

namespace voicetest {
namespace {

constexpr std::size_t kWindow = 1024;  // frames per analysis window
constexpr double kPresent = 2000.0;    // amplitude of a tone that is sounding (the clips peak near 9800)

// The amplitude of one frequency in a window of mono samples (Goertzel).
double Amplitude(const std::vector<double>& samples, std::size_t from, double hz) {
  const double w = 2.0 * std::numbers::pi * hz / static_cast<double>(tk::kMixerRate);
  double s1 = 0, s2 = 0;
  for (std::size_t i = from; i < from + kWindow; ++i) {
    const double s0 = samples[i] + 2.0 * std::cos(w) * s1 - s2;
    s2 = s1;
    s1 = s0;
  }
  const double power = s1 * s1 + s2 * s2 - 2.0 * std::cos(w) * s1 * s2;
  return 2.0 * std::sqrt(std::max(power, 0.0)) / static_cast<double>(kWindow);
}

class OverlapTest : public VoiceTest {
 protected:
  void SetUp() override {
    pipe_ = (fs::temp_directory_path() / ("calloquin-mix-" + std::to_string(getpid()))).string();
    unlink(pipe_.c_str());
    ASSERT_EQ(mkfifo(pipe_.c_str(), 0600), 0);
    // A reader must exist before the driver opens the pipe for writing.
    fd_ = open(pipe_.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(fd_, 0);
    fcntl(fd_, F_SETFL, 0);
    fcntl(fd_, F_SETPIPE_SZ, 4096);
    // Read when the mixer first opens, at the first clip.
    setenv("SDL_AUDIODRIVER", "disk", 1);
    setenv("SDL_DISKAUDIOFILE", pipe_.c_str(), 1);
    setenv("SDL_DISKAUDIODELAY", "0", 1);  // paced by this reader alone
    VoiceTest::SetUp();
  }
  // The pipe is never closed: the audio thread writes to it until the
  // process ends, and the exit flushes its stream too. A reader drains it
  // from here on, so neither blocks on a full pipe.
  void TearDown() override {
    if (fd_ >= 0) {
      std::thread([fd = fd_] {
        char bytes[65536];
        while (read(fd, bytes, sizeof bytes) > 0) {
        }
      }).detach();
    }
    VoiceTest::TearDown();
    unlink(pipe_.c_str());
  }

  // Reads whole windows of the mix (left channel) until there are `frames`.
  void ReadUntil(std::size_t frames) {
    while (mono_.size() < frames) {
      pollfd p{fd_, POLLIN, 0};
      ASSERT_EQ(poll(&p, 1, 20000), 1) << "no output from the mixer";
      char bytes[8192];
      const ssize_t n = read(fd_, bytes, sizeof bytes);
      ASSERT_GT(n, 0);
      partial_.append(bytes, static_cast<std::size_t>(n));
      const std::size_t frameBytes = sizeof(std::int16_t) * tk::kMixerChannels;
      const std::size_t whole = partial_.size() / frameBytes;
      for (std::size_t f = 0; f < whole; ++f) {
        std::int16_t left;
        std::memcpy(&left, partial_.data() + f * frameBytes, sizeof left);
        mono_.push_back(left);
      }
      partial_.erase(0, whole * frameBytes);
    }
  }

  std::size_t FirstWindowWith(double hz) const {
    for (std::size_t at = 0; at + kWindow <= mono_.size(); at += kWindow)
      if (Amplitude(mono_, at, hz) > kPresent) return at;
    return mono_.size();
  }

  std::string pipe_;
  int fd_ = -1;
  std::string partial_;
  std::vector<double> mono_;
};

TEST_F(OverlapTest, QuickSecondPressStartsBesideTheFirstClip) {
  UseRealFiles();
  const std::vector<tk::Integer> draw = Draw();
  PutClip(draw[0], Tone440());
  PutClip(draw[1], Tone1000());
  PressCaller();

  PressNext();
  // Read until the first clip is audible: it has started, and (the pipe
  // being small) well over a second of it is still to come.
  std::size_t read = 0;
  while (FirstWindowWith(440) == mono_.size()) {
    read += kWindow;
    ReadUntil(read);
    ASSERT_LT(read, static_cast<std::size_t>(tk::kMixerRate)) << "the first clip never sounded";
  }
  const std::size_t firstHeard = FirstWindowWith(440);

  PressNext();
  ReadUntil(firstHeard + 3 * static_cast<std::size_t>(tk::kMixerRate));
  ASSERT_TRUE(reports_.empty());
  EXPECT_EQ(log_.played, (std::vector<std::string>{ClipName(draw[0]), ClipName(draw[1])}));

  std::size_t both = 0, only440 = 0, only1000 = 0;
  for (std::size_t at = 0; at + kWindow <= mono_.size(); at += kWindow) {
    const bool a = Amplitude(mono_, at, 440) > kPresent, b = Amplitude(mono_, at, 1000) > kPresent;
    both += a && b;
    only440 += a && !b;
    only1000 += b && !a;
  }
  const double windowsPerSecond = static_cast<double>(tk::kMixerRate) / kWindow;
  EXPECT_LT(FirstWindowWith(440), FirstWindowWith(1000));
  // The clips last 1.5 s; the second started within a fraction of a second
  // of the first, so they sound together for most of a second, and each is
  // heard to its end.
  EXPECT_GT(both, static_cast<std::size_t>(0.8 * windowsPerSecond));
  EXPECT_GT(both + only440, static_cast<std::size_t>(1.4 * windowsPerSecond));
  EXPECT_GT(both + only1000, static_cast<std::size_t>(1.4 * windowsPerSecond));
}

}  // namespace
}  // namespace voicetest

// What really comes out of the mixer. SDL's disk driver writes the mix into
// a named pipe that the test reads: the audio thread can run ahead of the
// reader only by what the pipe holds (well under 0.1 s), so the test, not a
// clock, decides how much audio there is before each press.
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <numbers>
#include <thread>

#include "tests/voice/VoiceFixture.h"

namespace voicetest {
namespace {

constexpr std::size_t kWindow = 1024;  // frames
constexpr std::size_t kSecond = static_cast<std::size_t>(tk::kMixerRate);

class OverlapTest : public VoiceTest {
 protected:
  void SetUp() override {
    pipe_ = fs::temp_directory_path() / ("calloquin-mix-" + std::to_string(getpid()));
    ASSERT_EQ(mkfifo(pipe_.c_str(), 0600), 0);
    fd_ = open(pipe_.c_str(), O_RDONLY | O_NONBLOCK);  // a reader must be there before the writer
    fcntl(fd_, F_SETFL, 0);
    fcntl(fd_, F_SETPIPE_SZ, 4096);
    setenv("SDL_AUDIODRIVER", "disk", 1);  // read when the mixer opens, at the first clip
    setenv("SDL_DISKAUDIOFILE", pipe_.c_str(), 1);
    setenv("SDL_DISKAUDIODELAY", "0", 1);  // paced by the reader alone
    VoiceTest::SetUp();
  }
  // The audio thread writes to the pipe until the process ends (and so does
  // the exit's flush): drain it from here on so that neither blocks.
  void TearDown() override {
    std::thread([fd = fd_] {
      for (char bytes[65536]; read(fd, bytes, sizeof bytes) > 0;) {
      }
    }).detach();
    fs::remove(pipe_);
    VoiceTest::TearDown();
  }
  void ReadUntil(std::size_t frames) {  // the mix is 16-bit mono
    while (left_.size() < frames) {
      pollfd p{fd_, POLLIN, 0};
      ASSERT_EQ(poll(&p, 1, 20000), 1) << "no output from the mixer";
      std::int16_t samples[4096];  // more than the pipe holds: each read takes whole writes, whole samples
      const ssize_t n = read(fd_, samples, sizeof samples);
      ASSERT_GT(n, 0);
      left_.insert(left_.end(), samples, samples + n / 2);
    }
  }
  // Whether a tone sounds in the window at `at` (Goertzel; the clips peak near 9800).
  bool Sounds(std::size_t at, double hz) const {
    const double c = 2.0 * std::cos(2.0 * std::numbers::pi * hz / tk::kMixerRate);
    double s1 = 0, s2 = 0;
    for (std::size_t i = at; i < at + kWindow; ++i) s2 = std::exchange(s1, left_[i] + c * s1 - s2);
    return 2.0 * std::sqrt(std::max(s1 * s1 + s2 * s2 - c * s1 * s2, 0.0)) / kWindow > 2000.0;
  }
  std::size_t Windows(double hz, double with = 0) const {  // where hz sounds, and `with` too if given
    std::size_t count = 0;
    for (std::size_t at = 0; at + kWindow <= left_.size(); at += kWindow) count += Sounds(at, hz) && (with == 0 || Sounds(at, with));
    return count;
  }

  fs::path pipe_;
  int fd_ = -1;
  std::vector<double> left_;
};

TEST_F(OverlapTest, QuickSecondPressStartsBesideTheFirstClip) {
  realFiles_ = true;
  const auto draw = Look().draw;
  PutClip(draw[0], 440);
  PutClip(draw[1], 1000);
  PressCaller();
  PressNext();
  // Read until the first clip is heard: it has begun, and over a second of it is still to come.
  while (!HasFatalFailure() && left_.size() < kSecond && (left_.size() < kWindow || !Sounds(left_.size() - kWindow, 440)))
    ReadUntil(left_.size() + kWindow);
  PressNext();
  ReadUntil(left_.size() + 3 * kSecond);

  EXPECT_TRUE(failures.empty());
  EXPECT_EQ(played_, (std::vector{ClipName(draw[0]), ClipName(draw[1])}));
  const double perSecond = static_cast<double>(kSecond) / kWindow;
  EXPECT_GT(Windows(440, 1000), 0.8 * perSecond) << "the clips sound together";
  // Each clip (1.5 s) is heard to its end: nothing cut the first one off.
  EXPECT_GT(Windows(440), 1.4 * perSecond);
  EXPECT_GT(Windows(1000), 1.4 * perSecond);
}

}  // namespace
}  // namespace voicetest

// Integrated loudness (EBU R128, ITU-R BS.1770) of a 16-bit PCM WAV file,
// for making and checking the voice clips at build time. Prints
// "<LUFS> <seconds>" for the file heard 1 + repeats times over: the meter
// works in 400 ms blocks, and a spoken part shorter than that is measured
// as a loop, which leaves its loudness as it is.
//
//   loudness <file.wav> [repeats]
//
// A tool of its own, a few milliseconds a file, where a general-purpose
// media program spent a tenth of a second starting for each of the 450
// measurements the clips take. Exits non-zero, printing nothing on
// stdout, when the file can't be read or is too short to measure.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <numbers>
#include <vector>

namespace {

struct Audio {
  double rate = 0;
  int channels = 0;
  std::vector<double> samples;  // interleaved, -1 to 1
};

std::uint32_t Le(const unsigned char* p, int bytes) {
  std::uint32_t v = 0;
  for (int i = bytes - 1; i >= 0; --i) v = v << 8 | p[i];
  return v;
}

bool Read(const char* path, Audio& audio) {
  std::ifstream in(path, std::ios::binary);
  const std::vector<unsigned char> b{std::istreambuf_iterator<char>(in), {}};
  if (b.size() < 12 || std::memcmp(b.data(), "RIFF", 4) != 0 || std::memcmp(b.data() + 8, "WAVE", 4) != 0) return false;
  int bits = 0;
  for (std::size_t at = 12; at + 8 <= b.size();) {
    const std::size_t size = Le(&b[at + 4], 4), body = at + 8;
    const std::size_t end = body + size > b.size() ? b.size() : body + size;  // a stream's writer may leave the size open
    if (std::memcmp(&b[at], "fmt ", 4) == 0 && size >= 16) {
      const std::uint32_t format = Le(&b[body], 2);  // PCM, or the extensible form of it
      if (format != 1 && format != 0xFFFE) return false;
      audio.channels = static_cast<int>(Le(&b[body + 2], 2));
      audio.rate = Le(&b[body + 4], 4);
      bits = static_cast<int>(Le(&b[body + 14], 2));
    } else if (std::memcmp(&b[at], "data", 4) == 0) {
      if (bits != 16 || audio.channels < 1) return false;
      for (std::size_t i = body; i + 1 < end; i += 2) {
        audio.samples.push_back(static_cast<std::int16_t>(Le(&b[i], 2)) / 32768.0);
      }
      return audio.rate > 0;
    }
    at = body + size + (size & 1);
  }
  return false;
}

// One second-order section, direct form I.
struct Biquad {
  double b0, b1, b2, a1, a2;
  double x1 = 0, x2 = 0, y1 = 0, y2 = 0;
  double operator()(double x) {
    const double y = b0 * x + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2;
    x2 = x1, x1 = x, y2 = y1, y1 = y;
    return y;
  }
};

// The K-weighting of BS.1770 at any sample rate: its high shelf (the head's
// effect) and high-pass, from their analogue prototypes by the bilinear
// transform. At 48 kHz these are the standard's own coefficients.
Biquad Shelf(double rate) {
  const double f0 = 1681.974450955533, gain = 3.999843853973347, q = 0.7071752369554196;
  const double k = std::tan(std::numbers::pi * f0 / rate), vh = std::pow(10.0, gain / 20.0), vb = std::pow(vh, 0.4996667741545416);
  const double a0 = 1.0 + k / q + k * k;
  return {(vh + vb * k / q + k * k) / a0, 2.0 * (k * k - vh) / a0, (vh - vb * k / q + k * k) / a0,
          2.0 * (k * k - 1.0) / a0, (1.0 - k / q + k * k) / a0};
}
Biquad HighPass(double rate) {
  const double f0 = 38.13547087602444, q = 0.5003270373238773;
  const double k = std::tan(std::numbers::pi * f0 / rate), a0 = 1.0 + k / q + k * k;
  return {1.0, -2.0, 1.0, 2.0 * (k * k - 1.0) / a0, (1.0 - k / q + k * k) / a0};
}

double Lufs(double meanSquare) { return -0.691 + 10.0 * std::log10(meanSquare); }

}  // namespace

int main(int argc, char** argv) {
  Audio audio;
  if (argc < 2 || argc > 3 || !Read(argv[1], audio)) {
    std::fprintf(stderr, "usage: loudness <16-bit PCM WAV file> [repeats]\n");
    return 2;
  }
  const int times = 1 + (argc == 3 ? std::atoi(argv[2]) : 0);
  const std::size_t frames = audio.samples.size() / static_cast<std::size_t>(audio.channels);

  // The weighted power of each 100 ms step; a block is four steps (400 ms,
  // overlapping by three quarters). Channels add up, each weighted 1 (the
  // clips are mono).
  std::vector<Biquad> shelf(static_cast<std::size_t>(audio.channels), Shelf(audio.rate));
  std::vector<Biquad> highPass(static_cast<std::size_t>(audio.channels), HighPass(audio.rate));
  const auto step = static_cast<std::size_t>(std::lround(audio.rate / 10.0));
  std::vector<double> steps;
  double sum = 0;
  std::size_t inStep = 0;
  for (int t = 0; t < times; ++t) {
    for (std::size_t f = 0; f < frames; ++f) {
      for (std::size_t c = 0; c < shelf.size(); ++c) {
        const double y = highPass[c](shelf[c](audio.samples[f * shelf.size() + c]));
        sum += y * y;
      }
      if (++inStep == step) steps.push_back(sum), sum = 0, inStep = 0;
    }
  }
  std::vector<double> blocks;
  for (std::size_t i = 3; i < steps.size(); ++i) {
    blocks.push_back((steps[i - 3] + steps[i - 2] + steps[i - 1] + steps[i]) / (4.0 * static_cast<double>(step)));
  }

  // Gated twice: blocks under -70 LUFS (silence) count for nothing, then
  // blocks more than 10 LU under the loudness of the rest.
  auto gated = [&](double threshold) {
    double total = 0;
    std::size_t n = 0;
    for (double z : blocks) {
      if (z > 0 && Lufs(z) > threshold) total += z, ++n;
    }
    return n == 0 ? 0.0 : total / static_cast<double>(n);
  };
  const double absolute = gated(-70.0);
  if (absolute <= 0) {
    std::fprintf(stderr, "loudness: %s is silent or shorter than 400 ms\n", argv[1]);
    return 1;
  }
  const double relative = gated(std::max(-70.0, Lufs(absolute) - 10.0));
  std::printf("%.2f %.3f\n", Lufs(relative), static_cast<double>(frames) / audio.rate);
  return 0;
}

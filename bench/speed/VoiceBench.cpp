// The first use of each of the 90 clips through the toolkit's real Sound:
// opening and decoding the file, the cost a press pays the first time its
// number is spoken. Press to sound is measured end to end at a PipeWire
// sink (sound.sh).
//
//   voice_bench <Resources folder>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/speed/Quantile.h"
#include "toolkit/Sound.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s <Resources folder>\n", argv[0]);
    return 2;
  }
  using Clock = std::chrono::steady_clock;
  const std::string folder = argv[1];
  std::vector<double> open;
  for (int k = 1; k <= 90; ++k) {
    const std::string path = folder + "/vocal" + std::to_string(k) + ".mp3";
    const auto start = Clock::now();
    const std::shared_ptr<tk::Sound> sound = tk::OpenMixerSound(path);
    if (!sound) {
      std::fprintf(stderr, "cannot open %s\n", path.c_str());
      return 1;
    }
    open.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
  }
  // The first clip also loads the libraries; that is reported apart.
  const std::vector<double> later(open.begin() + 1, open.end());
  std::printf("decoder rate=%lld channels=%lld\n", static_cast<long long>(tk::kMixerRate),
              static_cast<long long>(tk::kMixerChannels));
  std::printf("first_use median=%.3f p95=%.3f max=%.3f libraries_plus_first=%.3f\n", Quantile(later, 0.5),
              Quantile(later, 0.95), *std::max_element(later.begin(), later.end()), open.front());
  return 0;
}

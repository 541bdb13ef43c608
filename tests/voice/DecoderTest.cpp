// A clip decodes to exactly its own samples: the encoder's delay and
// padding are cut, so the voice starts the moment its press is mixed.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <variant>

#include "tests/voice/VoiceFixture.h"
#include "toolkit/Decoder.h"

TEST(Decoder, AClipIsItsOwnSamplesFromTheFirst) {
  const auto decoded = tk::sound::Decode(voicetest::Tone(440).string());
  const auto* samples = std::get_if<tk::sound::Samples>(&decoded);
  ASSERT_TRUE(samples);
  EXPECT_EQ((*samples)->size(), static_cast<std::size_t>(1.5 * tk::kMixerRate)) << "1.5 s of tone";
  int loudest = 0;  // over the first 5 ms, two periods of the tone
  for (std::size_t i = 0; i < 220; ++i) loudest = std::max(loudest, std::abs(static_cast<int>((**samples)[i])));
  EXPECT_GT(loudest, 5000) << "the tone sounds from its first milliseconds";
}

#include "toolkit/Sound.h"

#include <SDL.h>
#include <SDL_mixer.h>

#include <cstdio>
#include <fstream>
#include <utility>

namespace tk {
namespace {

// Room for all 90 clips sounding at once and a few repeats on top; SDL's
// default of 8 would drop clips after quick presses.
constexpr int kChannelCount = 96;
// A clip starts with the next buffer the mixer fills, so the buffer's length
// is how late a clip can start after its press: 512 frames are 11.6 ms.
constexpr int kDeviceBufferFrames = 512;

class MixerSound final : public Sound {
 public:
  explicit MixerSound(Mix_Chunk* chunk) : chunk_(chunk) {}
  ~MixerSound() override { Mix_FreeChunk(chunk_); }
  MixerSound(const MixerSound&) = delete;
  MixerSound& operator=(const MixerSound&) = delete;

  // Any free channel; with every channel busy the clip is skipped rather
  // than cutting off one that is sounding.
  void Play() override { Mix_PlayChannel(-1, chunk_, 0); }

 private:
  Mix_Chunk* chunk_;
};

// Stands in for a clip when no output at all could be opened.
class SilentSound final : public Sound {
 public:
  void Play() override {}
};

bool OpenDevice() {
  if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) return false;
  // No allowed changes: SDL converts to the device, so the mix format is fixed.
  if (Mix_OpenAudioDevice(static_cast<int>(kMixerRate), AUDIO_S16SYS, static_cast<int>(kMixerChannels),
                          kDeviceBufferFrames, nullptr, 0) != 0) {
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
    return false;
  }
  return true;
}

// Opened at the first clip, never at start-up, and never closed.
bool MixerReady() {
  static const bool ready = [] {
    Mix_Init(MIX_INIT_MP3);
    bool ok = OpenDevice();
    if (!ok) {
      std::fprintf(stderr, "Calloquin: no sound device (%s); the caller will be silent.\n", SDL_GetError());
      std::fflush(stderr);
      // Overrides SDL_AUDIODRIVER from the environment too.
      SDL_SetHintWithPriority(SDL_HINT_AUDIODRIVER, "dummy", SDL_HINT_OVERRIDE);
      ok = OpenDevice();
    }
    if (ok) Mix_AllocateChannels(kChannelCount);
    return ok;
  }();
  return ready;
}

bool IsReadableNonEmpty(const String& path) {
  std::ifstream in(path, std::ios::binary);
  return in && in.peek() != std::ifstream::traits_type::eof();
}

SoundOpener& Opener() {
  static SoundOpener opener;
  return opener;
}

}  // namespace

std::shared_ptr<Sound> OpenMixerSound(const String& path) {
  if (!MixerReady()) {
    // Not even the silent driver: keep the game going, judging the file
    // only by whether there is something to read.
    return IsReadableNonEmpty(path) ? std::make_shared<SilentSound>() : nullptr;
  }
  Mix_Chunk* chunk = Mix_LoadWAV(path.c_str());
  if (chunk == nullptr) return nullptr;
  if (chunk->alen == 0) {  // decoded to nothing: not a clip
    Mix_FreeChunk(chunk);
    return nullptr;
  }
  return std::make_shared<MixerSound>(chunk);
}

SoundOpener SetSoundOpener(SoundOpener opener) { return std::exchange(Opener(), std::move(opener)); }

std::shared_ptr<Sound> OpenSound(const String& path) { return Opener() ? Opener()(path) : OpenMixerSound(path); }

}  // namespace tk

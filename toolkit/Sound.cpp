#include "toolkit/Sound.h"

#include <utility>

#include "toolkit/FailureCause.h"
#include "toolkit/Hook.h"
#include "toolkit/Mixer.h"

namespace tk {
namespace {

class MixerSound final : public Sound {
 public:
  explicit MixerSound(Mix_Chunk* chunk) : chunk_(chunk) {}
  ~MixerSound() override { mixer::Load()->FreeChunk(chunk_); }
  MixerSound(const MixerSound&) = delete;
  MixerSound& operator=(const MixerSound&) = delete;

  // Any free channel; with every channel busy the clip is skipped rather
  // than cutting off one that is sounding.
  void Play() override {
    mixer::BeforePlay();
    mixer::Load()->PlayChannelTimed(-1, chunk_, 0, -1);
  }

 private:
  Mix_Chunk* chunk_;
};

// Stands in for a clip when no output at all could be opened, not even SDL's
// silent one; the operator has been told that there is no sound device.
class SilentSound final : public Sound {
 public:
  void Play() override {}
};

constinit Hook<SoundOpener> opener;

}  // namespace

Opened<Sound> OpenMixerSound(const String& path) {
  // What can be told of the file before a decoder sees it is told in
  // plainer words than the decoder's.
  if (const auto why = WhyUnreadable(path)) return FileCause(path, "opened", *why);
  if (!mixer::Ready()) {
    if (mixer::Load() == nullptr) {
      // No clip at all can be played: a clip that counted as opened would
      // be a voice that is silently missing. The library was looked for by
      // the system's loader, not in the clip's folder, so none is named.
      FailureCause cause = FileCause(path, "played", "the sound library SDL2_mixer is not installed",
                                     mixer::LoadError(), mixer::NoLibraryAdvice());
      cause.folder.clear();
      return cause;
    }
    return std::make_shared<SilentSound>();
  }
  const mixer::Api& mix = *mixer::Load();
  Mix_Chunk* chunk = mix.LoadWAV_RW(mix.RWFromFile(path.c_str(), "rb"), 1);
  if (chunk != nullptr && chunk->alen == 0) {  // decoded to nothing: not a clip
    mix.FreeChunk(chunk);
    chunk = nullptr;
  }
  if (chunk == nullptr) return FileCause(path, "opened", "it is not a sound that can be played", mix.GetError());
  return std::make_shared<MixerSound>(chunk);
}

void WarmUpSound() { mixer::WarmUp(); }

void SetMixerLibrary(const char* name) { mixer::SetLibraryName(name); }

SoundOpener SetSoundOpener(SoundOpener replacement) { return opener.Set(std::move(replacement)); }

Opened<Sound> OpenSound(const String& path) { return opener ? opener(path) : OpenMixerSound(path); }

}  // namespace tk

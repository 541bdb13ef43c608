#include "toolkit/Sound.h"

#include <SDL.h>
#include <SDL_mixer.h>
#include <dlfcn.h>

#include "toolkit/FailureCause.h"
#include "toolkit/Hook.h"
#include "toolkit/Notice.h"

#include <cstdio>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace tk {
namespace {

// Room for all 90 clips sounding at once and a few repeats on top; SDL's
// default of 8 would drop clips after quick presses.
constexpr int kChannelCount = 96;
// A clip starts with the next buffer the mixer fills, so the buffer's length
// is how late a clip can start after its press: 512 frames are 11.6 ms.
constexpr int kDeviceBufferFrames = 512;

// SDL_mixer and SDL are loaded at the first clip, not linked: they bring
// some forty libraries (every codec and sound server SDL knows), and a
// start-up should not pay for a voice that may never be used.
// It is looked for in this order, and the first that opens is used.
#if defined(__APPLE__)
// Inside the bundle first, so that a deployed app plays its own copy. A bare
// name reaches only DYLD_LIBRARY_PATH, the current folder and
// DYLD_FALLBACK_LIBRARY_PATH, and the program's run paths only through
// @rpath; Homebrew's folders (Apple Silicon, then Intel) and MacPorts' are
// searched only when named.
constexpr const char* kMixerLibraries[] = {
    "@executable_path/../Frameworks/libSDL2_mixer-2.0.0.dylib",
    "libSDL2_mixer-2.0.0.dylib",
    "@rpath/libSDL2_mixer-2.0.0.dylib",
    "/opt/homebrew/lib/libSDL2_mixer-2.0.0.dylib",
    "/usr/local/lib/libSDL2_mixer-2.0.0.dylib",
    "/opt/local/lib/libSDL2_mixer-2.0.0.dylib",
};
// What to do when none of them is there.
constexpr const char* kNoMixerAdvice =
    "Install SDL2_mixer (with Homebrew: brew install sdl2_mixer) and start Calloquin again, "
    "or switch BINGO CALLER off to go on without the voice.";
#else
// The soname, wherever the system's loader finds it.
constexpr const char* kMixerLibraries[] = {"libSDL2_mixer-2.0.so.0"};
constexpr const char* kNoMixerAdvice =
    "Install SDL2_mixer (on Debian and Ubuntu the package libsdl2-mixer-2.0-0) and start Calloquin again, "
    "or switch BINGO CALLER off to go on without the voice.";
#endif

struct MixerApi {
  decltype(&SDL_InitSubSystem) InitSubSystem = nullptr;
  decltype(&SDL_QuitSubSystem) QuitSubSystem = nullptr;
  decltype(&SDL_GetError) GetError = nullptr;
  decltype(&SDL_SetHintWithPriority) SetHintWithPriority = nullptr;
  decltype(&SDL_RWFromFile) RWFromFile = nullptr;
  decltype(&Mix_Init) Init = nullptr;
  decltype(&Mix_OpenAudioDevice) OpenAudioDevice = nullptr;
  decltype(&Mix_AllocateChannels) AllocateChannels = nullptr;
  decltype(&Mix_LoadWAV_RW) LoadWAV_RW = nullptr;
  decltype(&Mix_FreeChunk) FreeChunk = nullptr;
  decltype(&Mix_PlayChannelTimed) PlayChannelTimed = nullptr;
};

template <class F>
bool Resolve(void* library, const char* name, F& function) {
  function = reinterpret_cast<F>(dlsym(library, name));
  return function != nullptr;
}

std::vector<const char*>& LibraryNames() {
  static std::vector<const char*> names(std::begin(kMixerLibraries), std::end(kMixerLibraries));
  return names;
}

// Why the library could not be had, in the loader's words.
String& LoadError() {
  static String error;
  return error;
}

// Nil when the library or any of its functions is missing.
const MixerApi* Api() {
  static const MixerApi* const api = []() -> const MixerApi* {
    void* library = nullptr;
    const char* name = nullptr;
    for (const char* candidate : LibraryNames()) {
      name = candidate;
      library = dlopen(name, RTLD_NOW | RTLD_LOCAL);  // never closed, like the clips
      if (library != nullptr) break;
      const char* error = dlerror();
      if (!LoadError().empty()) LoadError() += "; ";
      LoadError() += error != nullptr ? error : name;
    }
    if (library == nullptr) return nullptr;
    static MixerApi a;
    const bool ok = Resolve(library, "SDL_InitSubSystem", a.InitSubSystem) &&
                    Resolve(library, "SDL_QuitSubSystem", a.QuitSubSystem) &&
                    Resolve(library, "SDL_GetError", a.GetError) &&
                    Resolve(library, "SDL_SetHintWithPriority", a.SetHintWithPriority) &&
                    Resolve(library, "SDL_RWFromFile", a.RWFromFile) && Resolve(library, "Mix_Init", a.Init) &&
                    Resolve(library, "Mix_OpenAudioDevice", a.OpenAudioDevice) &&
                    Resolve(library, "Mix_AllocateChannels", a.AllocateChannels) &&
                    Resolve(library, "Mix_LoadWAV_RW", a.LoadWAV_RW) && Resolve(library, "Mix_FreeChunk", a.FreeChunk) &&
                    Resolve(library, "Mix_PlayChannelTimed", a.PlayChannelTimed);
    if (!ok) LoadError() = String(name) + " lacks a function that Calloquin needs";
    return ok ? &a : nullptr;
  }();
  return api;
}

class MixerSound final : public Sound {
 public:
  explicit MixerSound(Mix_Chunk* chunk) : chunk_(chunk) {}
  ~MixerSound() override { Api()->FreeChunk(chunk_); }
  MixerSound(const MixerSound&) = delete;
  MixerSound& operator=(const MixerSound&) = delete;

  // Any free channel; with every channel busy the clip is skipped rather
  // than cutting off one that is sounding.
  void Play() override { Api()->PlayChannelTimed(-1, chunk_, 0, -1); }

 private:
  Mix_Chunk* chunk_;
};

// Stands in for a clip when no output at all could be opened, not even SDL's
// silent one; the operator has been told that there is no sound device.
class SilentSound final : public Sound {
 public:
  void Play() override {}
};

bool OpenDevice(const MixerApi& mix) {
  if (mix.InitSubSystem(SDL_INIT_AUDIO) != 0) return false;
  // No allowed changes: SDL converts to the device, so the mix format is fixed.
  if (mix.OpenAudioDevice(static_cast<int>(kMixerRate), AUDIO_S16SYS, static_cast<int>(kMixerChannels),
                          kDeviceBufferFrames, nullptr, 0) != 0) {
    mix.QuitSubSystem(SDL_INIT_AUDIO);
    return false;
  }
  return true;
}

// Opened at the first clip, never at start-up, and never closed.
bool MixerReady() {
  static const bool ready = [] {
    const MixerApi* mix = Api();
    if (mix == nullptr) {
      std::fprintf(stderr, "Calloquin: no sound library (%s); no clip can be played.\n", LoadError().c_str());
      std::fflush(stderr);
      return false;
    }
    // SDL would otherwise take SIGINT and SIGTERM for its own event queue,
    // which nobody reads, and a plain kill or a session's end would no
    // longer end the program once the voice has spoken.
    mix->SetHintWithPriority(SDL_HINT_NO_SIGNAL_HANDLERS, "1", SDL_HINT_OVERRIDE);
    mix->Init(MIX_INIT_MP3);
    bool ok = OpenDevice(*mix);
    if (!ok) {
      std::fprintf(stderr, "Calloquin: no sound device (%s); the caller will be silent.\n", mix->GetError());
      std::fflush(stderr);
      // Once a run, and without stopping the game: the numbers are still
      // called and shown, only not heard.
      ShowNotice("No sound device was found, so the caller's voice can't be heard.",
                 "The game goes on without sound. To hear the voice, connect speakers or headphones and "
                 "start Calloquin again.");
      // Overrides SDL_AUDIODRIVER from the environment too.
      mix->SetHintWithPriority(SDL_HINT_AUDIODRIVER, "dummy", SDL_HINT_OVERRIDE);
      ok = OpenDevice(*mix);
    }
    if (ok) mix->AllocateChannels(kChannelCount);
    return ok;
  }();
  return ready;
}

constinit Hook<SoundOpener> opener;

}  // namespace

Opened<Sound> OpenMixerSound(const String& path) {
  // What can be told of the file before a decoder sees it is told in
  // plainer words than the decoder's.
  if (const auto why = WhyUnreadable(path)) return FileCause(path, "opened", *why);
  if (!MixerReady()) {
    if (Api() == nullptr) {
      // No clip at all can be played: a clip that counted as opened would
      // be a voice that is silently missing.
      return FileCause(path, "played", "the sound library SDL2_mixer is not installed", LoadError(), kNoMixerAdvice);
    }
    return std::make_shared<SilentSound>();
  }
  const MixerApi& mix = *Api();
  Mix_Chunk* chunk = mix.LoadWAV_RW(mix.RWFromFile(path.c_str(), "rb"), 1);
  if (chunk != nullptr && chunk->alen == 0) {  // decoded to nothing: not a clip
    mix.FreeChunk(chunk);
    chunk = nullptr;
  }
  if (chunk == nullptr) return FileCause(path, "opened", "it is not a sound that can be played", mix.GetError());
  return std::make_shared<MixerSound>(chunk);
}

void SetMixerLibrary(const char* name) { LibraryNames() = {name}; }

SoundOpener SetSoundOpener(SoundOpener replacement) { return opener.Set(std::move(replacement)); }

Opened<Sound> OpenSound(const String& path) { return opener ? opener(path) : OpenMixerSound(path); }

}  // namespace tk

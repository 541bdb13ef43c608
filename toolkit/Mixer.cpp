#include "toolkit/Mixer.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <thread>
#include <vector>

#include "toolkit/Application.h"
#include "toolkit/MixerLibraries.h"
#include "toolkit/Notice.h"
#include "toolkit/Sound.h"

namespace tk::mixer {
namespace {

using Clock = std::chrono::steady_clock;

// Room for all 90 clips sounding at once and a few repeats on top; SDL's
// default of 8 would drop clips after quick presses.
constexpr int kChannelCount = 96;
// A clip starts with the next buffer the mixer fills, so the buffer bounds
// how late a clip starts after its press. Through PipeWire a clip reaches
// the sink some three and a half buffers after its press (the stream's
// queue, and the graph runs at the buffer's length): 128 frames put the
// voice there about 10 ms after the number. Elsewhere the server or the
// sound card sets the pace, and a longer buffer is safer from dropouts.
constexpr int kPipeWireBufferFrames = 128;
constexpr int kDeviceBufferFrames = 512;
// SDL 2.26's PipeWire output (Debian 12's) gives the server one buffer a
// cycle, however long the cycle; later ones fill what each cycle asks for.
// A server whose cycles are longer than the buffer (a minimum latency set
// against crackles, a quantum fixed for music work) would play a broken,
// stretched fraction of each clip. So the time between buffers
// is followed: asked for at under three quarters of the pace the output
// plays (a busy machine misses a cycle now and then, never that many), the
// output opens again with a buffer at least as long as the server's cycle.
constexpr double kSlowestPace = 0.75;
constexpr auto kPaceSettles = std::chrono::milliseconds(500);
constexpr int kLongestBuffer = 8192;  // PipeWire's own longest cycle
// A device that has asked for no sound for this long has gone: it asks
// every few milliseconds while it plays, silence included. A PipeWire that
// was restarted is told sooner, by its socket, once it has gone quiet.
constexpr auto kQuietMeansLost = std::chrono::seconds(1);
constexpr auto kQuietBeforeServerCheck = std::chrono::milliseconds(100);
// While a run has had no device at all, one is looked for at most this
// often: each look through every driver costs milliseconds (and ALSA's
// complaints on stderr). A device that was lost is looked for again at
// every clip, through its own driver alone, which costs next to nothing.
constexpr auto kLookAgainAfter = std::chrono::seconds(1);

#if defined(__APPLE__)
constexpr const char* kNoLibraryAdvice =
    "Install SDL2_mixer (with Homebrew: brew install sdl2_mixer) and start Calloquin again, "
    "or switch BINGO CALLER off to go on without the voice.";
// SDL's own choice: Core Audio.
constexpr const char* kDrivers = nullptr;
#else
constexpr const char* kNoLibraryAdvice =
    "Install SDL2_mixer (on Debian and Ubuntu the package libsdl2-mixer-2.0-0) and start Calloquin again, "
    "or switch BINGO CALLER off to go on without the voice.";
// PipeWire spoken to directly where it runs: through its PulseAudio service,
// which SDL would pick first, every clip starts about a third later.
constexpr const char* kDrivers = "pipewire,pulseaudio,alsa,jack,sndio,oss";
#endif

std::vector<const char*>& LibraryNames() {
#if defined(__APPLE__)
  static std::vector<const char*> names(std::begin(kMacLibraries), std::end(kMacLibraries));
#else
  static std::vector<const char*> names(std::begin(kSonameLibraries), std::end(kSonameLibraries));
#endif
  return names;
}

String& LoadErrorText() {
  static String error;
  return error;
}

template <class F>
bool Resolve(void* library, const char* name, F& function) {
  function = reinterpret_cast<F>(dlsym(library, name));
  return function != nullptr;
}

// The audio thread stamps each buffer it mixes; the main thread reads the
// stamp to tell a device that plays from one that has gone quiet for good.
// It also keeps the time between buffers, averaged over the last few, so
// that a missed cycle barely moves it and a server's new cycle shows within
// a fraction of a second.
std::atomic<Clock::rep> lastMixed{0};
std::atomic<double> mixedEvery{0};  // seconds
void Mixed(void* /*unused*/, Uint8* /*stream*/, int /*length*/) {
  const Clock::rep now = Clock::now().time_since_epoch().count();
  const Clock::rep before = lastMixed.exchange(now, std::memory_order_relaxed);
  if (before == 0) return;
  const double gap = std::chrono::duration<double>(Clock::duration(now - before)).count();
  const double average = mixedEvery.load(std::memory_order_relaxed);
  mixedEvery.store(average == 0 ? gap : average + (gap - average) / 8, std::memory_order_relaxed);
}

enum class Output {
  Untried,  // nothing opened yet
  Device,   // playing through a device
  Silent,   // on SDL's silent driver while no device can be had
  None,     // not even that: no clip can be decoded
};

struct State {
  Output output = Output::Untried;
  String drivers;      // what is tried while Silent: the device's own driver once one was lost
  bool hadDevice = false;
  String whyNone;      // SDL's words for the first device that could not be opened
  SDL_AudioDeviceID device = 0;
  std::optional<std::pair<dev_t, ino_t>> server;  // PipeWire's socket when the device was opened
  bool pipeWire = false;                          // the device is PipeWire's
  int pipeWireFrames = kPipeWireBufferFrames;     // a PipeWire device's buffer; grows to the server's cycle
  Clock::time_point openedAt, lookedAt;
  bool told = false;
  std::thread warmUp;
};
State& S() {
  static State state;
  return state;
}

void Say(const String& line) {
  std::fprintf(stderr, "Calloquin: %s\n", line.c_str());
  std::fflush(stderr);
}

// The drivers the operator's environment names, or ours.
String Drivers() {
  if (const char* chosen = std::getenv("SDL_AUDIODRIVER"); chosen != nullptr && *chosen != '\0') return chosen;
  return kDrivers != nullptr ? kDrivers : "";
}

// The socket of the PipeWire server that a client of this environment
// reaches; a restarted server makes a new one.
std::optional<std::pair<dev_t, ino_t>> PipeWireSocket() {
  const char* dir = std::getenv("PIPEWIRE_RUNTIME_DIR");
  if (dir == nullptr) dir = std::getenv("XDG_RUNTIME_DIR");
  const char* name = std::getenv("PIPEWIRE_REMOTE");
  if (dir == nullptr) return std::nullopt;
  struct stat st {};
  if (stat((String(dir) + "/" + (name != nullptr ? name : "pipewire-0")).c_str(), &st) != 0) return std::nullopt;
  return std::make_pair(st.st_dev, st.st_ino);
}

// Mix_OpenAudioDevice keeps the device's id to itself. This process opens
// no other, so it is the one that plays (SDL numbers them from 2).
SDL_AudioDeviceID OpenedDevice(const Api& mix) {
  for (SDL_AudioDeviceID id = 2; id < 64; ++id) {
    if (mix.GetAudioDeviceStatus(id) == SDL_AUDIO_PLAYING) return id;
  }
  return 0;
}

bool Open(const Api& mix, const String& drivers) {
  mix.SetHintWithPriority(SDL_HINT_AUDIODRIVER, drivers.empty() ? nullptr : drivers.c_str(), SDL_HINT_OVERRIDE);
  if (mix.InitSubSystem(SDL_INIT_AUDIO) != 0) return false;
  const char* driver = mix.GetCurrentAudioDriver();
  const bool pipewire = driver != nullptr && String(driver) == "pipewire";
  const int frames = pipewire ? S().pipeWireFrames : kDeviceBufferFrames;
  // A new device's pace is its own.
  lastMixed.store(0, std::memory_order_relaxed);
  mixedEvery.store(0, std::memory_order_relaxed);
  // No allowed changes: SDL converts to the device, so the mix format, and
  // with it every clip decoded so far, stays the same across devices.
  if (mix.OpenAudioDevice(static_cast<int>(kMixerRate), AUDIO_S16SYS, static_cast<int>(kMixerChannels), frames,
                          nullptr, 0) != 0) {
    mix.QuitSubSystem(SDL_INIT_AUDIO);
    return false;
  }
  mix.AllocateChannels(kChannelCount);
  mix.SetPostMix(Mixed, nullptr);
  State& s = S();
  s.device = OpenedDevice(mix);
  s.server = pipewire ? PipeWireSocket() : std::nullopt;
  s.pipeWire = pipewire;
  s.openedAt = Clock::now();
  return true;
}

void Close(const Api& mix) {
  mix.CloseAudio();
  mix.QuitSubSystem(SDL_INIT_AUDIO);
}

// Falls back to the silent driver, from which drivers are tried again later.
void OpenSilent(const Api& mix, const String& drivers) {
  State& s = S();
  s.drivers = drivers;
  s.lookedAt = Clock::now();
  s.output = Open(mix, "dummy") ? Output::Silent : Output::None;
}

// Opens the output anew through those drivers, or else the silent one.
void Reopen(const Api& mix, const String& drivers) {
  Close(mix);
  if (Open(mix, drivers)) {
    S().output = Output::Device;
    S().hadDevice = true;
  } else {
    OpenSilent(mix, drivers);
  }
}

// The first opening; on the warm-up thread or at the first clip. Touches
// nothing of Qt.
void Connect() {
  State& s = S();
  const Api* mix = Load();
  if (mix == nullptr) {
    s.output = Output::None;
    return;
  }
  // SDL would otherwise take SIGINT and SIGTERM for its own event queue,
  // which nobody reads, and a plain kill or a session's end would no longer
  // end the program once the voice has spoken.
  mix->SetHintWithPriority(SDL_HINT_NO_SIGNAL_HANDLERS, "1", SDL_HINT_OVERRIDE);
  // How the desktop's volume control names the voice.
  mix->SetHintWithPriority(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Calloquin", SDL_HINT_OVERRIDE);
  mix->SetHintWithPriority(SDL_HINT_AUDIO_DEVICE_STREAM_NAME, "Caller's voice", SDL_HINT_OVERRIDE);
  mix->Init(MIX_INIT_MP3);
  if (Open(*mix, Drivers())) {
    s.output = Output::Device;
    s.hadDevice = s.told = true;  // a device lost later is found again without a word to the operator
    return;
  }
  s.whyNone = mix->GetError();
  OpenSilent(*mix, Drivers());
}

void JoinWarmUp() {
  if (S().warmUp.joinable()) S().warmUp.join();
}

bool Lost(const Api& mix) {
  const State& s = S();
  if (s.device != 0 && mix.GetAudioDeviceStatus(s.device) != SDL_AUDIO_PLAYING) return true;  // SDL saw it go
  const Clock::time_point mixed{Clock::duration(lastMixed.load(std::memory_order_relaxed))};
  const Clock::duration quiet = Clock::now() - std::max(mixed, s.openedAt);
  if (s.server && quiet > kQuietBeforeServerCheck && PipeWireSocket() != s.server) return true;
  return quiet > kQuietMeansLost;  // nobody asks for sound any more
}

// The PipeWire output opened again with a longer buffer when the server
// asks for sound more slowly than it plays.
void FollowPace(const Api& mix) {
  State& s = S();
  if (!s.pipeWire || Clock::now() - s.openedAt < kPaceSettles) return;
  const double every = mixedEvery.load(std::memory_order_relaxed);
  const double cycle = every * static_cast<double>(kMixerRate);  // frames the server plays a cycle
  if (every <= 0 || s.pipeWireFrames >= kSlowestPace * cycle) return;
  if (mix.Playing(-1) > 0) return;  // not under a clip: looked at again at the next one
  int frames = s.pipeWireFrames;
  while (frames < cycle && frames < kLongestBuffer) frames *= 2;
  if (frames == s.pipeWireFrames) return;
  s.pipeWireFrames = frames;
  Say("the sound server's cycles are longer than the voice's buffer; opening the output again with " +
      std::to_string(frames) + " frames.");
  Reopen(mix, "pipewire");
}

}  // namespace

const Api* Load() {
  static const Api* const api = []() -> const Api* {
    void* library = nullptr;
    const char* name = nullptr;
    for (const char* candidate : LibraryNames()) {
      name = candidate;
      library = dlopen(name, RTLD_NOW | RTLD_LOCAL);  // never closed, like the clips
      if (library != nullptr) break;
      const char* error = dlerror();
      if (!LoadErrorText().empty()) LoadErrorText() += "; ";
      LoadErrorText() += error != nullptr ? error : name;
    }
    if (library == nullptr) return nullptr;
    static Api a;
    const bool ok =
        Resolve(library, "SDL_InitSubSystem", a.InitSubSystem) && Resolve(library, "SDL_QuitSubSystem", a.QuitSubSystem) &&
        Resolve(library, "SDL_GetError", a.GetError) &&
        Resolve(library, "SDL_SetHintWithPriority", a.SetHintWithPriority) &&
        Resolve(library, "SDL_GetCurrentAudioDriver", a.GetCurrentAudioDriver) &&
        Resolve(library, "SDL_GetAudioDeviceStatus", a.GetAudioDeviceStatus) &&
        Resolve(library, "SDL_RWFromFile", a.RWFromFile) && Resolve(library, "Mix_Init", a.Init) &&
        Resolve(library, "Mix_OpenAudioDevice", a.OpenAudioDevice) && Resolve(library, "Mix_CloseAudio", a.CloseAudio) &&
        Resolve(library, "Mix_AllocateChannels", a.AllocateChannels) && Resolve(library, "Mix_SetPostMix", a.SetPostMix) &&
        Resolve(library, "Mix_LoadWAV_RW", a.LoadWAV_RW) && Resolve(library, "Mix_FreeChunk", a.FreeChunk) &&
        Resolve(library, "Mix_PlayChannelTimed", a.PlayChannelTimed) && Resolve(library, "Mix_Playing", a.Playing);
    if (!ok) LoadErrorText() = String(name) + " lacks a function that Calloquin needs";
    return ok ? &a : nullptr;
  }();
  return api;
}

const String& LoadError() { return LoadErrorText(); }
const char* NoLibraryAdvice() { return kNoLibraryAdvice; }

void WarmUp() {
  State& s = S();
  if (s.output != Output::Untried || s.warmUp.joinable()) return;
  s.warmUp = std::thread(Connect);
  AtFinalize(JoinWarmUp);  // a quit in the meantime waits for it
}

bool Ready() {
  JoinWarmUp();
  State& s = S();
  if (s.output == Output::Untried) Connect();
  if (Load() == nullptr) {
    if (!s.told) Say("no sound library (" + LoadError() + "); no clip can be played.");
    s.told = true;
    return false;
  }
  if (s.output != Output::Device && !s.told) {
    s.told = true;
    Say("no sound device (" + s.whyNone + "); the caller is silent until there is one.");
    // Once a run, and without stopping the game: the numbers are still
    // called and shown, only not heard.
    ShowNotice("No sound device was found, so the caller's voice can't be heard.",
               "The game goes on without sound. The voice comes back by itself once speakers or headphones "
               "are connected and the desktop's sound is running.");
  }
  return s.output != Output::None;
}

void BeforePlay() {
  State& s = S();
  const Api* mix = Load();
  if (mix == nullptr) return;
  if (s.output == Output::Device) {
    if (!Lost(*mix)) {
      FollowPace(*mix);
      return;
    }
    const String driver = mix->GetCurrentAudioDriver() != nullptr ? mix->GetCurrentAudioDriver() : "";
    Say("the sound output (" + driver + ") was lost; opening it again.");
    // Through the same driver only: with the desktop's sound server away,
    // another would take the sound card from it for good.
    Reopen(*mix, driver);
    return;
  }
  if (s.output == Output::Silent && (s.hadDevice || Clock::now() - s.lookedAt >= kLookAgainAfter)) {
    Reopen(*mix, String(s.drivers));
    if (s.output == Output::Device) Say(String("sound through ") + mix->GetCurrentAudioDriver() + " from here on.");
  }
}

void SetLibraryName(const char* name) { LibraryNames() = {name}; }

}  // namespace tk::mixer

#include "toolkit/SoundOutput.h"

#include <SDL.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "toolkit/Sound.h"
#include "toolkit/SoundLibrary.h"

namespace tk::sound {
namespace {

using Clock = std::chrono::steady_clock;

// A clip starts with the next buffer the audio thread mixes, so the buffer
// bounds how late a clip starts after its press. Through PipeWire a clip
// reaches the sink some three and a half buffers after its press (the
// stream's queue, and the graph runs at the buffer's length): 128 frames
// put the voice there about 10 ms after the number. Elsewhere the server or
// the sound card sets the pace, and a longer buffer is safer from dropouts.
constexpr int kPipeWireBufferFrames = 128;
constexpr int kDeviceBufferFrames = 512;
// SDL 2.26's PipeWire output (Debian 12's) gives the server one buffer a
// cycle, however long the cycle; later ones fill what each cycle asks for.
// A server whose cycles are longer than the buffer (a minimum latency set
// against crackles, a quantum fixed for music work) would play a broken,
// stretched fraction of each clip. So the time between buffers is
// followed: asked for at under three quarters of the pace the output plays
// (a busy machine misses a cycle now and then, never that many), the next
// opening has a buffer at least as long as the server's cycle.
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
// The output closes once this long has passed without a clip sounding: a
// quick game keeps it open from press to press, and an idle one costs the
// sound server nothing.
constexpr auto kCloseAfterQuiet = std::chrono::seconds(2);
constexpr auto kTick = std::chrono::milliseconds(250);

#if defined(__APPLE__)
constexpr const char* kDrivers = nullptr;  // SDL's own choice: Core Audio
#else
// PipeWire spoken to directly where it runs: through its PulseAudio service,
// which SDL would pick first, every clip starts about a third later.
constexpr const char* kDrivers = "pipewire,pulseaudio,alsa,jack,sndio,oss";
#endif

struct Sdl {
  decltype(&SDL_InitSubSystem) InitSubSystem = nullptr;
  decltype(&SDL_QuitSubSystem) QuitSubSystem = nullptr;
  decltype(&SDL_GetError) GetError = nullptr;
  decltype(&SDL_SetHintWithPriority) SetHintWithPriority = nullptr;
  decltype(&SDL_GetCurrentAudioDriver) GetCurrentAudioDriver = nullptr;
  decltype(&SDL_OpenAudioDevice) OpenAudioDevice = nullptr;
  decltype(&SDL_CloseAudioDevice) CloseAudioDevice = nullptr;
  decltype(&SDL_PauseAudioDevice) PauseAudioDevice = nullptr;
  decltype(&SDL_GetAudioDeviceStatus) GetAudioDeviceStatus = nullptr;
  decltype(&SDL_GetVersion) GetVersion = nullptr;
};

String& SdlLoadError() {
  static String error;
  return error;
}

const Sdl* Library() {
  static const Sdl* const api = []() -> const Sdl* {
    void* library = OpenLibrary(kSdl, &SdlLoadError());
    if (library == nullptr) return nullptr;
    static Sdl a;
    const bool ok =
        Resolve(library, "SDL_InitSubSystem", a.InitSubSystem) && Resolve(library, "SDL_QuitSubSystem", a.QuitSubSystem) &&
        Resolve(library, "SDL_GetError", a.GetError) && Resolve(library, "SDL_SetHintWithPriority", a.SetHintWithPriority) &&
        Resolve(library, "SDL_GetCurrentAudioDriver", a.GetCurrentAudioDriver) &&
        Resolve(library, "SDL_OpenAudioDevice", a.OpenAudioDevice) &&
        Resolve(library, "SDL_CloseAudioDevice", a.CloseAudioDevice) &&
        Resolve(library, "SDL_PauseAudioDevice", a.PauseAudioDevice) &&
        Resolve(library, "SDL_GetAudioDeviceStatus", a.GetAudioDeviceStatus) &&
        Resolve(library, "SDL_GetVersion", a.GetVersion);
    if (!ok) {
      SdlLoadError() = String(kSdl.soname) + " lacks a function that Calloquin needs";
      return nullptr;
    }
    return &a;
  }();
  return api;
}

struct Request {
  Samples clip;
  Clock::time_point at;
  unsigned long number;
};
struct Voice {
  Samples clip;
  std::size_t at;
};
Clock::duration Length(const Samples& clip) {
  return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(
      static_cast<double>(clip->size()) / static_cast<double>(kMixerRate)));
}

// What the GUI thread, the owner and the audio thread share. Made once and
// never destroyed: the audio thread may still be mixing while the process
// exits, and the owner may be waiting inside the sound system for good.
struct Shared {
  // Guards pending and why; held for a few instructions at a time, never
  // while SDL is called. The audio thread only tries it.
  std::mutex lock;
  std::condition_variable wake;
  std::vector<Request> pending;
  String why;
  unsigned long handedOut = 0;  // the GUI thread's
  std::once_flag ownerStarted;
  // Written by the audio thread.
  std::atomic<Clock::rep> lastMixed{0}, lastSounded{0};
  std::atomic<double> mixedEvery{0};  // seconds between buffers, averaged
  std::atomic<int> sounding{0};
  std::atomic<Clock::rep> endsBy{0};  // when the clips begun so far end, played at their pace
  std::atomic<unsigned long> begun{0};
  // Written by the owner.
  // The starts handed out before an output was last found lost: SDL goes on
  // asking a lost device's callback for sound at its pace, so such a start
  // may have begun into nothing.
  std::atomic<unsigned long> lostUpTo{0};
  std::atomic<bool> open{false}, opening{false};
  std::atomic<bool> holding{false};  // no clip starts: the new device's pace is not known yet
  // The audio thread's own; the owner touches them only with the device closed.
  std::vector<Voice> voices;
  std::vector<int> sum;
};
Shared& S() {
  static Shared* const shared = new Shared;
  return *shared;
}

Clock::time_point At(Clock::rep stamp) { return Clock::time_point(Clock::duration(stamp)); }

void Say(const String& line) {
  const String text = "Calloquin: " + line + "\n";
  std::fputs(text.c_str(), stderr);
}

// Mixes on SDL's audio thread: takes the clips handed over since the last
// buffer (those still fresh), adds every sounding clip, and notes the pace.
void Mix(void* /*unused*/, Uint8* stream, int length) {
  Shared& s = S();
  const Clock::time_point now = Clock::now();
  const Clock::rep before = s.lastMixed.exchange(now.time_since_epoch().count(), std::memory_order_relaxed);
  if (before != 0) {
    const double gap = std::chrono::duration<double>(now - At(before)).count();
    const double average = s.mixedEvery.load(std::memory_order_relaxed);
    s.mixedEvery.store(average == 0 ? gap : average + (gap - average) / 8, std::memory_order_relaxed);
  }
  if (!s.holding.load(std::memory_order_relaxed) && s.lock.try_lock()) {  // else at the next buffer
    for (Request& r : s.pending) {
      if (now - r.at <= kFreshFor) {
        const Clock::rep end = (now + Length(r.clip)).time_since_epoch().count();
        if (end > s.endsBy.load(std::memory_order_relaxed)) s.endsBy.store(end, std::memory_order_relaxed);
        s.voices.push_back({std::move(r.clip), 0});
        s.begun.store(r.number, std::memory_order_relaxed);
      }
    }
    s.pending.clear();
    s.lock.unlock();
  }
  const std::size_t frames = static_cast<std::size_t>(length) / sizeof(std::int16_t);
  auto* out = reinterpret_cast<std::int16_t*>(stream);
  if (s.voices.empty()) {
    std::memset(stream, 0, static_cast<std::size_t>(length));
  } else {
    s.sum.assign(frames, 0);
    for (Voice& v : s.voices) {
      const std::size_t n = std::min(frames, v.clip->size() - v.at);
      for (std::size_t i = 0; i < n; ++i) s.sum[i] += (*v.clip)[v.at + i];
      v.at += n;
    }
    for (std::size_t i = 0; i < frames; ++i) out[i] = static_cast<std::int16_t>(std::clamp(s.sum[i], -32768, 32767));
    std::erase_if(s.voices, [](const Voice& v) { return v.at >= v.clip->size(); });
    s.lastSounded.store(now.time_since_epoch().count(), std::memory_order_relaxed);
  }
  s.sounding.store(static_cast<int>(s.voices.size()), std::memory_order_relaxed);
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

void SetWhy(const String& why) {
  const std::lock_guard hold(S().lock);
  S().why = why;
}

// The owner thread's own state.
class Owner {
 public:
  void Run() {
    Shared& s = S();
    Start();
    std::unique_lock hold(s.lock);
    for (;;) {
      // Closed, it sleeps until a clip comes; open, it looks in now and then
      // to close the output once nothing has sounded for a while.
      if (device_ == 0 && !AwaitingServer()) {
        s.wake.wait(hold, [&] { return !s.pending.empty(); });
      } else if (device_ == 0) {
        // No output could be had: the driver is readied as soon as a
        // PipeWire server is there, so the press that finds it only opens.
        if (!s.wake.wait_for(hold, kLookAgainAfter, [&] { return !s.pending.empty(); })) {
          hold.unlock();
          if (PipeWireSocket()) Init();
          hold.lock();
          continue;
        }
      } else {
        s.wake.wait_for(hold, kTick);
      }
      const bool wanted = !s.pending.empty();
      hold.unlock();
      if (wanted) {
        Serve();
      } else if (device_ != 0 && Lost()) {
        CloseLost();  // told now, not at the next clip
      } else if (device_ != 0) {
        CloseIfQuiet();
      }
      hold.lock();
    }
  }

 private:
  // The library and the sound system's driver, without a stream.
  bool Start() {
    if (sdl_ != nullptr) return true;
    sdl_ = Library();
    if (sdl_ == nullptr) {
      SetWhy("no sound library: " + SdlLoadError());
      return false;
    }
    // SDL would otherwise take SIGINT and SIGTERM for its own event queue,
    // which nobody reads, and a plain kill or a session's end would no
    // longer end the program once the voice has spoken.
    sdl_->SetHintWithPriority(SDL_HINT_NO_SIGNAL_HANDLERS, "1", SDL_HINT_OVERRIDE);
    // How the desktop's volume control names the voice.
    sdl_->SetHintWithPriority(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Calloquin", SDL_HINT_OVERRIDE);
    sdl_->SetHintWithPriority(SDL_HINT_AUDIO_DEVICE_STREAM_NAME, "Caller's voice", SDL_HINT_OVERRIDE);
    drivers_ = Drivers();
    return Init();
  }
  bool Init() {
    sdl_->SetHintWithPriority(SDL_HINT_AUDIODRIVER, drivers_.empty() ? nullptr : drivers_.c_str(), SDL_HINT_OVERRIDE);
    inited_ = sdl_->InitSubSystem(SDL_INIT_AUDIO) == 0;
    if (!inited_) SetWhy(sdl_->GetError());
    return inited_;
  }
  void Quit() {
    if (inited_) sdl_->QuitSubSystem(SDL_INIT_AUDIO);
    inited_ = false;
  }

  // A clip waits: the output is opened, or opened again, so that it plays.
  void Serve() {
    if (!Start() && sdl_ == nullptr) return Drop();
    if (device_ != 0) {
      if (Lost()) {
        CloseLost();
      } else if (FollowPace()) {
        Say("the sound server's cycles are longer than the voice's buffer; opening the output again with " +
            std::to_string(pipeWireFrames_) + " frames.");
        Close();
      } else {
        return;  // it plays: the audio thread takes the clip
      }
    }
    if (!hadDevice_ && failedAt_ && Clock::now() - *failedAt_ < kLookAgainAfter) return Drop();
    if (!Open()) {
      failedAt_ = Clock::now();
      Quit();  // not at the next press: a driver that failed is let go of now
      afresh_ = false;
      Drop();
    }
  }
  bool AwaitingServer() const { return failedAt_ && !inited_ && sdl_ != nullptr; }

  bool Open() {
    // A driver that failed or lost its device, or a PipeWire that was
    // restarted: the sound system is started afresh. Once a device has
    // played, only its own driver is tried: with the desktop's sound server
    // away, another would take the sound card from it for good.
    if (afresh_ || (server_ && PipeWireSocket() != server_)) Quit();
    afresh_ = false;
    if (!inited_ && !Init()) {
      afresh_ = true;
      return false;
    }
    const char* driver = sdl_->GetCurrentAudioDriver();
    const bool pipewire = driver != nullptr && String(driver) == "pipewire";
    Shared& s = S();
    s.lastMixed.store(0, std::memory_order_relaxed);  // a new device's pace is its own
    s.mixedEvery.store(0, std::memory_order_relaxed);
    SDL_AudioSpec want{};
    want.freq = static_cast<int>(kMixerRate);
    want.format = AUDIO_S16SYS;
    want.channels = static_cast<Uint8>(kMixerChannels);
    want.samples = static_cast<Uint16>(pipewire ? pipeWireFrames_ : kDeviceBufferFrames);
    want.callback = Mix;
    SDL_AudioSpec have{};
    // SDL converts to whatever the device takes: the mix stays 16-bit mono.
    // This can wait for good on a server that takes the stream and never
    // starts it; nothing but this thread waits with it.
    s.opening.store(true);
    device_ = sdl_->OpenAudioDevice(nullptr, 0, &want, &have, 0);
    s.opening.store(false);
    if (device_ == 0) {
      SetWhy(sdl_->GetError());
      afresh_ = true;
      return false;
    }
    openedAt_ = Clock::now();
    pipeWire_ = pipewire;
    server_ = pipewire ? PipeWireSocket() : std::nullopt;
    // An SDL that gives the server one buffer a cycle learns the server's
    // cycle before a clip starts on it: a clip started on a buffer shorter
    // than the cycle would come out broken and stretched.
    // Once a server's cycle is known to fit the buffer, later openings
    // through it start their clip at once (a cycle that grows later is
    // followed while the output plays).
    if (server_ != paceOf_) paceKnown_ = false;
    const bool learnPace =
        pipewire && OneBufferACycle() && pipeWireFrames_ == kPipeWireBufferFrames && !paceKnown_;
    s.holding.store(learnPace);
    sdl_->PauseAudioDevice(device_, 0);
    s.open.store(true);
    if (learnPace) {
      const double cycle = FirstCycle();
      s.holding.store(false);
      if (pipeWireFrames_ < kSlowestPace * cycle) {
        while (pipeWireFrames_ < cycle && pipeWireFrames_ < kLongestBuffer) pipeWireFrames_ *= 2;
        Say("the sound server's cycles are longer than the voice's buffer; opening the output with " +
            std::to_string(pipeWireFrames_) + " frames.");
        Close();
        return Open();
      }
      paceKnown_ = cycle > 0;
      paceOf_ = server_;
    }
    if (!hadDevice_ && failedAt_) Say(String("sound through ") + (driver != nullptr ? driver : "") + " from here on.");
    hadDevice_ = true;
    drivers_ = driver != nullptr ? driver : "";
    return true;
  }

  void Close() {
    sdl_->CloseAudioDevice(device_);  // the audio thread has ended when this returns
    device_ = 0;
    Shared& s = S();
    s.open.store(false);
    s.voices.clear();  // nothing sounds: only a lost device is closed under a clip
    s.sounding.store(0);
  }

  void CloseLost() {
    const char* driver = sdl_->GetCurrentAudioDriver();
    Say(String("the sound output (") + (driver != nullptr ? driver : "") + ") was lost; it opens again at the next clip.");
    Close();
    afresh_ = true;
    Shared& s = S();
    const std::lock_guard hold(s.lock);
    s.lostUpTo.store(s.handedOut);
  }

  void CloseIfQuiet() {
    const Shared& s = S();
    if (s.sounding.load() > 0) return;
    const Clock::time_point since = std::max(At(s.lastSounded.load()), openedAt_);
    if (Clock::now() - since < kCloseAfterQuiet) return;
    GrowToPace();
    Close();
  }

  bool Lost() const {
    const Shared& s = S();
    if (sdl_->GetAudioDeviceStatus(device_) != SDL_AUDIO_PLAYING) return true;  // SDL saw it go
    const Clock::duration quiet = Clock::now() - std::max(At(s.lastMixed.load()), openedAt_);
    if (server_ && quiet > kQuietBeforeServerCheck && PipeWireSocket() != server_) return true;
    return quiet > kQuietMeansLost;  // nobody asks for sound any more
  }

  // SDL before 2.28 (Debian 12's 2.26) fills one buffer a PipeWire cycle.
  bool OneBufferACycle() const {
    SDL_version v{};
    sdl_->GetVersion(&v);
    return v.major == 2 && v.minor < 28;
  }
  // The frames of the new device's cycle, as far as they can be longer
  // than its buffer: the first time between two of its buffers that is
  // short enough, or else the shortest of three (a server's first cycles
  // can run long while it wakes its sink or settles the graph); 0 if it
  // asks for nothing within a fraction of a second.
  double FirstCycle() const {
    const Clock::time_point until = Clock::now() + kPaceSettles;
    Clock::rep last = 0;
    double shortest = 0;
    for (int gaps = -1; gaps < 3 && Clock::now() < until;) {
      const Clock::rep mixed = S().lastMixed.load();
      if (mixed != 0 && mixed != last) {
        if (last != 0) {
          const double frames =
              std::chrono::duration<double>(At(mixed) - At(last)).count() * static_cast<double>(kMixerRate);
          if (pipeWireFrames_ >= kSlowestPace * frames) return frames;
          shortest = shortest == 0 ? frames : std::min(shortest, frames);
        }
        last = mixed;
        ++gaps;
      }
      std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return shortest;
  }

  // A PipeWire output asked for sound more slowly than it plays: the next
  // opening has a buffer as long as the server's cycle. True when it grew.
  bool GrowToPace() {
    if (!pipeWire_ || Clock::now() - openedAt_ < kPaceSettles) return false;
    const double every = S().mixedEvery.load(std::memory_order_relaxed);
    const double cycle = every * static_cast<double>(kMixerRate);  // frames the server plays a cycle
    if (every <= 0 || pipeWireFrames_ >= kSlowestPace * cycle) return false;
    int frames = pipeWireFrames_;
    while (frames < cycle && frames < kLongestBuffer) frames *= 2;
    if (frames == pipeWireFrames_) return false;
    pipeWireFrames_ = frames;
    return true;
  }
  // Before a clip and never within the time of one: a clip is never cut.
  // A clip that the slow server has stretched past its own length is
  // broken already, and would keep every later clip broken with it.
  bool FollowPace() { return Clock::now() >= At(S().endsBy.load()) && GrowToPace(); }

  void Drop() {
    const std::lock_guard hold(S().lock);
    S().pending.clear();
  }

  const Sdl* sdl_ = nullptr;
  bool inited_ = false, afresh_ = false, hadDevice_ = false, pipeWire_ = false;
  String drivers_;
  SDL_AudioDeviceID device_ = 0;
  int pipeWireFrames_ = kPipeWireBufferFrames;
  std::optional<std::pair<dev_t, ino_t>> server_, paceOf_;
  bool paceKnown_ = false;
  Clock::time_point openedAt_;
  std::optional<Clock::time_point> failedAt_;
};

void StartOwner() {
  std::call_once(S().ownerStarted, [] {
    S().voices.reserve(128);
    // Detached: nothing ever waits for it, not even the end of the run.
    std::thread([] { (new Owner)->Run(); }).detach();
  });
}

}  // namespace

void Prepare() { StartOwner(); }

unsigned long Start(Samples clip) {
  Shared& s = S();
  StartOwner();
  const Clock::time_point now = Clock::now();
  unsigned long number = 0;
  {
    const std::lock_guard hold(s.lock);
    number = ++s.handedOut;
    std::erase_if(s.pending, [&](const Request& r) { return now - r.at > kFreshFor; });
    s.pending.push_back({std::move(clip), now, number});
  }
  s.wake.notify_one();
  return number;
}

bool StartedOrPlaying(unsigned long start) {
  const Shared& s = S();
  if (s.begun.load() >= start && s.lostUpTo.load() < start) return true;
  return s.open.load() && Clock::now() - At(s.lastMixed.load()) < kQuietMeansLost;
}

String WhyNoOutput() {
  Shared& s = S();
  if (s.opening.load()) return "the sound server has not started the stream";
  const std::lock_guard hold(s.lock);
  return s.why.empty() ? "no output could be opened" : s.why;
}

String OutputLibraryError() { return Library() == nullptr ? SdlLoadError() : String(); }

}  // namespace tk::sound

#include "toolkit/SoundOutput.h"

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

#include "toolkit/PipeWireStream.h"
#include "toolkit/SdlAudio.h"
#include "toolkit/Sound.h"
#include "toolkit/SoundLibrary.h"
#include "toolkit/Strings.h"

namespace tk::sound {
namespace {

using Clock = std::chrono::steady_clock;

// Where SDL's drivers play (PulseAudio, ALSA and the rest) a clip starts
// with the next buffer SDL mixes, so the buffer bounds how late it starts;
// the server or the sound card sets the pace.
constexpr int kDeviceBufferFrames = 512;
// A device that has asked for no sound for this long has gone: it asks
// every few milliseconds while it plays, silence included.
constexpr auto kQuietMeansLost = std::chrono::seconds(1);
// While a run has no output, one is looked for at most this often: each
// look through every driver costs milliseconds (and ALSA's complaints on
// stderr), and a PipeWire that refused the stream (no sink yet) would be
// asked again and again.
constexpr auto kLookAgainAfter = std::chrono::seconds(1);
// The output rests once this long has passed without a clip sounding: a
// quick game keeps it playing from press to press, and an idle one costs
// the sound server nothing.
constexpr auto kCloseAfterQuiet = std::chrono::seconds(2);
constexpr auto kTick = std::chrono::milliseconds(250);

#if defined(__APPLE__)
constexpr const char* kDrivers = nullptr;  // SDL's own choice: Core Audio
#else
// "pipewire" is our own stream (PipeWireStream.h), the rest SDL's drivers.
// Through PipeWire's PulseAudio service, which SDL would pick first, every
// clip starts about a third later.
constexpr const char* kDrivers = "pipewire,pulseaudio,alsa,jack,sndio,oss";
#endif

struct Sdl {
  sdl::InitSubSystem InitSubSystem = nullptr;
  sdl::QuitSubSystem QuitSubSystem = nullptr;
  sdl::GetError GetError = nullptr;
  sdl::SetHintWithPriority SetHintWithPriority = nullptr;
  sdl::GetCurrentAudioDriver GetCurrentAudioDriver = nullptr;
  sdl::OpenAudioDevice OpenAudioDevice = nullptr;
  sdl::CloseAudioDevice CloseAudioDevice = nullptr;
  sdl::PauseAudioDevice PauseAudioDevice = nullptr;
  sdl::GetAudioDeviceStatus GetAudioDeviceStatus = nullptr;
};

const Loaded<Sdl>& SdlLibrary() {
  static const Loaded<Sdl> loaded = LoadFunctions<Sdl>(kSdl, [](void* library, Sdl& a) {
    return Resolve(library, "SDL_InitSubSystem", a.InitSubSystem) &&
           Resolve(library, "SDL_QuitSubSystem", a.QuitSubSystem) && Resolve(library, "SDL_GetError", a.GetError) &&
           Resolve(library, "SDL_SetHintWithPriority", a.SetHintWithPriority) &&
           Resolve(library, "SDL_GetCurrentAudioDriver", a.GetCurrentAudioDriver) &&
           Resolve(library, "SDL_OpenAudioDevice", a.OpenAudioDevice) &&
           Resolve(library, "SDL_CloseAudioDevice", a.CloseAudioDevice) &&
           Resolve(library, "SDL_PauseAudioDevice", a.PauseAudioDevice) &&
           Resolve(library, "SDL_GetAudioDeviceStatus", a.GetAudioDeviceStatus);
  });
  return loaded;
}
const Sdl* Library() { return SdlLibrary().api; }

struct Request {
  Samples clip;
  Clock::time_point at;
  unsigned long number;
};
struct Voice {
  Samples clip;
  std::size_t at;
};
// The tests of what to drop are named functions, not lambdas: clang 14
// names a lambda's type by its source file's full path in the debug
// information, past the build's prefix map, and the program's build id
// then depends on the folder it was built in.
bool Finished(const Voice& v) { return v.at >= v.clip->size(); }
struct StaleAt {
  Clock::time_point now;
  bool operator()(const Request& r) const { return now - r.at > kFreshFor; }
};

// What the GUI thread, the owner and the mixing thread share. Made once and
// never destroyed: the mixing thread may still run while the process exits.
struct Shared {
  // Guards pending and why; held for a few instructions at a time, never
  // while the sound system is called. The mixing thread only tries it.
  std::mutex lock;
  std::condition_variable wake;
  std::vector<Request> pending;
  String why;
  unsigned long handedOut = 0;  // the GUI thread's
  std::once_flag ownerStarted;
  // Written by the mixing thread.
  std::atomic<Clock::rep> lastMixed{0}, lastSounded{0};
  std::atomic<int> sounding{0};
  std::atomic<unsigned long> begun{0};
  // Written by the owner.
  // The starts handed out before an output was last found lost: a lost
  // output may go on asking for sound, so such a start may have begun
  // into nothing.
  std::atomic<unsigned long> lostUpTo{0};
  std::atomic<bool> open{false};
  std::atomic<bool> resting{false};  // set under lock, with nothing sounding
  // The mixing thread's own; the owner touches them only once the output
  // is closed.
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

// Mixes on the output's own thread: takes the clips handed over since the
// last buffer (those still fresh) and adds every sounding clip.
void Mix(std::int16_t* out, std::size_t frames) {
  Shared& s = S();
  const Clock::time_point now = Clock::now();
  s.lastMixed.store(now.time_since_epoch().count(), std::memory_order_relaxed);
  // Clips are taken, and counted, only under the lock (tried, else at the
  // next buffer): an output put to rest under it takes no more.
  if (s.lock.try_lock()) {
    if (!s.resting.load(std::memory_order_relaxed)) {
      for (Request& r : s.pending) {
        if (now - r.at <= kFreshFor) {
          s.voices.push_back({std::move(r.clip), 0});
          s.begun.store(r.number, std::memory_order_relaxed);
        }
      }
      s.pending.clear();
      s.sounding.store(static_cast<int>(s.voices.size()), std::memory_order_relaxed);
    }
    s.lock.unlock();
  }
  if (s.voices.empty()) {
    std::fill_n(out, frames, std::int16_t{0});
  } else {
    s.sum.assign(frames, 0);
    for (Voice& v : s.voices) {
      const std::size_t n = std::min(frames, v.clip->size() - v.at);
      for (std::size_t i = 0; i < n; ++i) s.sum[i] += (*v.clip)[v.at + i];
      v.at += n;
    }
    for (std::size_t i = 0; i < frames; ++i) out[i] = static_cast<std::int16_t>(std::clamp(s.sum[i], -32768, 32767));
    std::erase_if(s.voices, Finished);
    s.lastSounded.store(now.time_since_epoch().count(), std::memory_order_relaxed);
  }
  s.sounding.store(static_cast<int>(s.voices.size()), std::memory_order_relaxed);
}
void MixForSdl(void* /*unused*/, std::uint8_t* stream, int length) {
  Mix(reinterpret_cast<std::int16_t*>(stream), static_cast<std::size_t>(length) / sizeof(std::int16_t));
}

// The drivers the operator's environment names, or ours.
String Drivers() {
  if (const char* chosen = std::getenv("SDL_AUDIODRIVER"); chosen != nullptr && *chosen != '\0') return chosen;
  return kDrivers != nullptr ? kDrivers : "";
}
// The list without "pipewire", which is ours: SDL's drivers alone.
String WithoutPipeWire(const String& drivers, bool* named) {
  String rest;
  *named = false;
  const Array<String> names = Split(drivers, ",");
  for (Integer i = 0; i <= names.Ubound(); ++i) {
    const String one = names(i);
    if (one == "pipewire") {
      *named = true;
    } else if (!one.empty()) {
      rest += (rest.empty() ? "" : ",") + one;
    }
  }
  return rest;
}

void SetWhy(const String& why) {
  const std::lock_guard hold(S().lock);
  S().why = why;
}

// Wakes the owner when our PipeWire stream fails. The lock is taken so
// that the wake can't fall between the owner's look and its wait.
void StreamFailing() {
  { const std::lock_guard hold(S().lock); }
  S().wake.notify_one();
}

// The owner thread's own state. The output is either our PipeWire stream,
// made ahead of the first clip and woken for clips, or a device of one of
// SDL's drivers, opened for clips and closed after them. PipeWire is tried
// first wherever its socket is.
class Owner {
 public:
  void Run() {
    Shared& s = S();
    if (LoadSdl() && !MakeStream() && sdlToo_) InitSdl();
    std::unique_lock hold(s.lock);
    for (;;) {
      const auto failed = [&] { return stream_ && stream_->Failed(); };
      const auto wanted = [&] { return !s.pending.empty() || failed(); };
      if (Playing()) {
        // A clip now is the mixing thread's to take: the lock is left to it.
        s.wake.wait_for(hold, kTick, failed);
      } else if (!Looking()) {
        s.wake.wait(hold, wanted);  // at rest: nothing at all until a clip
      } else if (!s.wake.wait_for(hold, kLookAgainAfter, wanted)) {
        // A PipeWire that refused the stream (no sink yet), or no output
        // since a clip found none: a stream is made ahead of the next clip
        // as soon as PipeWire takes one.
        hold.unlock();
        MakeStream();
        hold.lock();
        continue;
      }
      const bool clip = !s.pending.empty();
      hold.unlock();
      if (Lost()) Rest(true);  // told now, not at the next clip
      if (clip) {
        Serve();
      } else if (Playing()) {
        RestIfQuiet();
      }
      hold.lock();
    }
  }

 private:
  bool Playing() const { return (stream_ && stream_->Active()) || device_ != 0; }
  bool Looking() const { return pipeWire_ && !stream_ && device_ == 0 && (failedAt_ || PipeWireServerThere()); }

  // A new inactive stream, where PipeWire runs. Once one has been made, the
  // voice stays with PipeWire: with the desktop's sound server away, one of
  // SDL's drivers would take the sound card from it for good.
  bool MakeStream() {
    if (!pipeWire_ || stream_ || device_ != 0 || !PipeWireServerThere()) return false;
    String why;
    stream_ = PipeWireStream::Make(Mix, StreamFailing, &why);
    if (!stream_) {
      SetWhy(why);
      return false;
    }
    QuitSdl();
    viaPipeWire_ = hadOutput_ = true;
    return true;
  }
  bool LoadSdl() {
    if (sdl_ != nullptr) return true;
    sdl_ = Library();
    if (sdl_ == nullptr) {
      SetWhy("no sound library: " + SdlLibrary().error);
      return false;
    }
    // SDL would otherwise take SIGINT and SIGTERM for its own event queue,
    // which nobody reads, and a plain kill or a session's end would no
    // longer end the program once the voice has spoken.
    sdl_->SetHintWithPriority(sdl::kHintNoSignalHandlers, "1", sdl::kHintOverride);
    // How the desktop's volume control names the voice.
    sdl_->SetHintWithPriority(sdl::kHintAppName, "Calloquin", sdl::kHintOverride);
    sdl_->SetHintWithPriority(sdl::kHintStreamName, "Caller's voice", sdl::kHintOverride);
    const String drivers = Drivers();
    sdlDrivers_ = WithoutPipeWire(drivers, &pipeWire_);
    sdlToo_ = drivers.empty() || !sdlDrivers_.empty();  // empty: SDL's own choice
    return true;
  }
  bool InitSdl() {
    sdl_->SetHintWithPriority(sdl::kHintAudioDriver, sdlDrivers_.empty() ? nullptr : sdlDrivers_.c_str(),
                              sdl::kHintOverride);
    inited_ = sdl_->InitSubSystem(sdl::kInitAudio) == 0;
    if (!inited_) SetWhy(sdl_->GetError());
    return inited_;
  }
  void QuitSdl() {
    if (inited_) sdl_->QuitSubSystem(sdl::kInitAudio);
    inited_ = false;
  }

  // A clip waits: the output wakes, or is made or opened, so that it plays.
  void Serve() {
    if (!LoadSdl()) return Drop();
    if (Playing()) return;  // the mixing thread takes the clip
    // Until an output has played, every driver is looked through, which
    // costs milliseconds: not at every press.
    if (!hadOutput_ && failedAt_ && Clock::now() - *failedAt_ < kLookAgainAfter) return Drop();
    if (stream_ || MakeStream()) return Wake();
    if (!viaPipeWire_ && sdlToo_ && (inited_ || InitSdl()) && Open()) return;
    failedAt_ = Clock::now();
    Drop();
  }

  void Wake() {
    Shared& s = S();
    s.lastMixed.store(0);  // it plays once it asks for sound again
    awakeAt_ = Clock::now();
    s.resting.store(false);
    stream_->SetActive(true);
    s.open.store(true);
    failedAt_.reset();
  }

  bool Open() {
    Shared& s = S();
    s.lastMixed.store(0);
    sdl::AudioSpec want{};
    want.freq = static_cast<int>(kMixerRate);
    want.format = sdl::kS16Native;
    want.channels = static_cast<std::uint8_t>(kMixerChannels);
    want.samples = static_cast<std::uint16_t>(kDeviceBufferFrames);
    want.callback = MixForSdl;
    sdl::AudioSpec have{};
    // SDL converts to whatever the device takes: the mix stays 16-bit mono.
    device_ = sdl_->OpenAudioDevice(nullptr, 0, &want, &have, 0);
    if (device_ == 0) {
      SetWhy(sdl_->GetError());
      QuitSdl();  // a driver that failed is let go of now, and readied afresh
      return false;
    }
    awakeAt_ = Clock::now();
    sdl_->PauseAudioDevice(device_, 0);
    s.open.store(true);
    const char* driver = sdl_->GetCurrentAudioDriver();
    if (failedAt_) Say(String("sound through ") + (driver != nullptr ? driver : "") + " from here on.");
    failedAt_.reset();
    hadOutput_ = true;
    // From here on only this driver: with the desktop's sound server away,
    // another would take the sound card from it for good.
    sdlDrivers_ = driver != nullptr ? driver : "";
    return true;
  }

  // The output stops asking for sound, or is closed. Nothing sounds then,
  // except on an output that was lost, whose clips are told as not begun.
  // A stream refused before it was woken is let go of without a word.
  void Rest(bool lost) {
    Shared& s = S();
    const bool playing = Playing();
    if (lost && stream_) SetWhy(stream_->Why());
    if (lost && playing) {
      const char* driver = stream_ ? "pipewire" : sdl_->GetCurrentAudioDriver();
      Say(String("the sound output (") + (driver != nullptr ? driver : "") + ") was lost" +
          (stream_ ? " (" + stream_->Why() + ")" : String()) + "; it is looked for again.");
      const std::lock_guard hold(s.lock);
      s.lostUpTo.store(s.handedOut);
    }
    if (stream_ && !lost) {
      stream_->SetActive(false);  // nothing sounds and no clip is taken: see RestIfQuiet
      s.open.store(false);
      return;
    }
    if (stream_) {
      stream_.reset();  // PipeWire calls it no more once this returns
      failedAt_ = Clock::now();
    } else if (device_ != 0) {
      sdl_->CloseAudioDevice(device_);  // SDL's audio thread has ended when this returns
      device_ = 0;
      if (lost) QuitSdl();  // the driver is readied afresh at the next clip
    }
    s.open.store(false);
    s.voices.clear();
    s.sounding.store(0);
  }

  void RestIfQuiet() {
    Shared& s = S();
    if (s.sounding.load() > 0) return;
    const Clock::time_point since = std::max(At(s.lastSounded.load()), awakeAt_);
    if (Clock::now() - since < kCloseAfterQuiet) return;
    if (stream_) {
      // PipeWire may still call the stream a cycle after it is put to rest:
      // it must have nothing to play, then or when woken.
      const std::lock_guard hold(s.lock);
      if (s.sounding.load() > 0) return;  // a clip was taken just now
      s.resting.store(true);
    }
    Rest(false);
  }

  bool Lost() const {
    if (stream_) return stream_->Failed();
    if (device_ == 0) return false;
    if (sdl_->GetAudioDeviceStatus(device_) != sdl::kAudioPlaying) return true;  // SDL saw it go
    const Clock::duration quiet = Clock::now() - std::max(At(S().lastMixed.load()), awakeAt_);
    return quiet > kQuietMeansLost;  // nobody asks for sound any more
  }

  void Drop() {
    const std::lock_guard hold(S().lock);
    S().pending.clear();
  }

  const Sdl* sdl_ = nullptr;
  bool inited_ = false, pipeWire_ = false, sdlToo_ = true, viaPipeWire_ = false, hadOutput_ = false;
  String sdlDrivers_;
  std::unique_ptr<PipeWireStream> stream_;
  sdl::AudioDeviceID device_ = 0;
  Clock::time_point awakeAt_;
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
    std::erase_if(s.pending, StaleAt{now});
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
  if (s.open.load()) return "the sound server has not started the stream";
  const std::lock_guard hold(s.lock);
  return s.why.empty() ? "no output could be opened" : s.why;
}

String OutputLibraryError() { return Library() == nullptr ? SdlLibrary().error : String(); }

}  // namespace tk::sound

#include "toolkit/PipeWireStream.h"

#include <sys/stat.h>

#include <cstdlib>

#if __has_include(<pipewire/pipewire.h>) && !defined(__APPLE__)
#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>

#include <algorithm>
#include <cstring>
#include <mutex>

#include "toolkit/Sound.h"
#include "toolkit/SoundLibrary.h"
#endif

namespace tk::sound {

bool PipeWireServerThere() {
  const char* remote = std::getenv("PIPEWIRE_REMOTE");
  String path;
  if (remote != nullptr && remote[0] == '/') {
    path = remote;
  } else {
    const char* dir = std::getenv("PIPEWIRE_RUNTIME_DIR");
    if (dir == nullptr) dir = std::getenv("XDG_RUNTIME_DIR");
    if (dir == nullptr) return false;
    path = String(dir) + "/" + (remote != nullptr ? remote : "pipewire-0");
  }
  struct stat st {};
  return stat(path.c_str(), &st) == 0 && S_ISSOCK(st.st_mode);
}

#if __has_include(<pipewire/pipewire.h>) && !defined(__APPLE__)

namespace {

// libpipewire is loaded ahead of the first clip, like SDL2: a machine
// without PipeWire still plays through SDL's drivers. Never on a Mac.
constexpr LibraryPlaces kPipeWire = {
    "PipeWire", {}, "libpipewire-0.3.so.0", "",
    "Install PipeWire's library (on Debian and Ubuntu the package libpipewire-0.3-0)",
};

struct Pw {
  decltype(&pw_init) init = nullptr;
  decltype(&pw_thread_loop_new) thread_loop_new = nullptr;
  decltype(&pw_thread_loop_get_loop) thread_loop_get_loop = nullptr;
  decltype(&pw_thread_loop_start) thread_loop_start = nullptr;
  decltype(&pw_thread_loop_lock) thread_loop_lock = nullptr;
  decltype(&pw_thread_loop_unlock) thread_loop_unlock = nullptr;
  decltype(&pw_properties_new) properties_new = nullptr;
  decltype(&pw_stream_new_simple) stream_new_simple = nullptr;
  decltype(&pw_stream_connect) stream_connect = nullptr;
  decltype(&pw_stream_set_active) stream_set_active = nullptr;
  decltype(&pw_stream_dequeue_buffer) stream_dequeue_buffer = nullptr;
  decltype(&pw_stream_queue_buffer) stream_queue_buffer = nullptr;
  decltype(&pw_stream_destroy) stream_destroy = nullptr;
};

const Loaded<Pw>& PwLibrary() {
  static const Loaded<Pw> loaded = LoadFunctions<Pw>(kPipeWire, [](void* library, Pw& a) {
    if (!(Resolve(library, "pw_init", a.init) && Resolve(library, "pw_thread_loop_new", a.thread_loop_new) &&
          Resolve(library, "pw_thread_loop_get_loop", a.thread_loop_get_loop) &&
          Resolve(library, "pw_thread_loop_start", a.thread_loop_start) &&
          Resolve(library, "pw_thread_loop_lock", a.thread_loop_lock) &&
          Resolve(library, "pw_thread_loop_unlock", a.thread_loop_unlock) &&
          Resolve(library, "pw_properties_new", a.properties_new) &&
          Resolve(library, "pw_stream_new_simple", a.stream_new_simple) &&
          Resolve(library, "pw_stream_connect", a.stream_connect) &&
          Resolve(library, "pw_stream_set_active", a.stream_set_active) &&
          Resolve(library, "pw_stream_dequeue_buffer", a.stream_dequeue_buffer) &&
          Resolve(library, "pw_stream_queue_buffer", a.stream_queue_buffer) &&
          Resolve(library, "pw_stream_destroy", a.stream_destroy))) {
      return false;
    }
    a.init(nullptr, nullptr);
    return true;
  });
  return loaded;
}
const Pw* Library() { return PwLibrary().api; }

// One loop thread for the run; streams come and go on it. Never stopped:
// the end of the run waits for nothing of the sound.
pw_thread_loop* Loop(const Pw& pw) {
  static pw_thread_loop* const loop = [&] {
    pw_thread_loop* made = pw.thread_loop_new("calloquin-voice", nullptr);
    if (made != nullptr && pw.thread_loop_start(made) != 0) made = nullptr;
    return made;
  }();
  return loop;
}

class Locked {
 public:
  explicit Locked(const Pw& pw) : pw_(pw), loop_(Loop(pw)) { pw_.thread_loop_lock(loop_); }
  ~Locked() { pw_.thread_loop_unlock(loop_); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;

 private:
  const Pw& pw_;
  pw_thread_loop* loop_;
};

// Asked of the server: the voice's own buffer of about 3 ms, so a clip
// reaches the sink some 10 ms after its press.
constexpr const char* kLatency = "128/44100";

}  // namespace

struct PipeWireStream::Callbacks {
  static void State(void* data, pw_stream_state /*old*/, pw_stream_state state, const char* error) {
    auto* self = static_cast<PipeWireStream*>(data);
    // Made unconnected, a stream only comes back to it when the server
    // goes; an error is the server's or its session manager's refusal.
    if ((state == PW_STREAM_STATE_ERROR || state == PW_STREAM_STATE_UNCONNECTED) && !self->failed_.load()) {
      self->why_ = error != nullptr ? error : "the sound server closed the stream";
      self->failed_.store(true);
      self->failing_();
    }
  }
  // On PipeWire's real-time thread, once a cycle while the stream is active.
  static void Process(void* data) {
    auto* self = static_cast<PipeWireStream*>(data);
    const Pw& pw = *Library();
    pw_buffer* buffer = pw.stream_dequeue_buffer(self->stream_);
    if (buffer == nullptr) return;
    spa_data& d = buffer->buffer->datas[0];
    if (d.data != nullptr) {
      std::size_t frames = d.maxsize / sizeof(std::int16_t);
      if (buffer->requested != 0) frames = std::min<std::size_t>(frames, buffer->requested);
      self->fill_(static_cast<std::int16_t*>(d.data), frames);
      d.chunk->offset = 0;
      d.chunk->stride = sizeof(std::int16_t);
      d.chunk->size = static_cast<std::uint32_t>(frames * sizeof(std::int16_t));
    }
    pw.stream_queue_buffer(self->stream_, buffer);
  }
};

namespace {
pw_stream_events Events() {
  pw_stream_events events{};
  events.version = PW_VERSION_STREAM_EVENTS;
  events.state_changed = PipeWireStream::Callbacks::State;
  events.process = PipeWireStream::Callbacks::Process;
  return events;
}
const pw_stream_events kEvents = Events();
}  // namespace

std::unique_ptr<PipeWireStream> PipeWireStream::Make(Fill fill, Failing failing, String* why) {
  const Pw* pw = Library();
  if (pw == nullptr) {
    *why = PwLibrary().error;
    return nullptr;
  }
  if (!PipeWireServerThere()) {
    *why = "no PipeWire server";
    return nullptr;
  }
  if (Loop(*pw) == nullptr) {
    *why = "PipeWire's loop thread could not start";
    return nullptr;
  }
  std::unique_ptr<PipeWireStream> self(new PipeWireStream);
  self->fill_ = fill;
  self->failing_ = failing;
  spa_audio_info_raw format{};
  format.format = SPA_AUDIO_FORMAT_S16;
  format.rate = static_cast<std::uint32_t>(kMixerRate);
  format.channels = static_cast<std::uint32_t>(kMixerChannels);
  format.position[0] = SPA_AUDIO_CHANNEL_MONO;
  std::uint8_t room[512];
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, room, sizeof room);
  const spa_pod* params[] = {spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &format)};
  const Locked locked(*pw);
  // How the desktop's volume control names the voice.
  pw_properties* props = pw->properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Playback",
                                            PW_KEY_APP_NAME, "Calloquin", PW_KEY_NODE_NAME, "Calloquin",
                                            PW_KEY_NODE_LATENCY, kLatency, nullptr);
  self->stream_ = pw->stream_new_simple(pw->thread_loop_get_loop(Loop(*pw)), "Caller's voice", props, &kEvents,
                                        self.get());
  if (self->stream_ == nullptr) {
    *why = std::strerror(errno);
    return nullptr;
  }
  const auto flags = static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_INACTIVE |
                                                  PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS);
  if (const int res = pw->stream_connect(self->stream_, PW_DIRECTION_OUTPUT, PW_ID_ANY, flags, params, 1); res < 0) {
    *why = std::strerror(-res);
    return nullptr;
  }
  return self;
}

PipeWireStream::~PipeWireStream() {
  if (stream_ == nullptr) return;
  const Pw& pw = *Library();
  const Locked locked(pw);
  pw.stream_destroy(stream_);  // takes it off the real-time thread first
}

void PipeWireStream::SetActive(bool active) {
  const Pw& pw = *Library();
  const Locked locked(pw);
  pw.stream_set_active(stream_, active);
  active_ = active;
}

String PipeWireStream::Why() const { return failed_.load() ? why_ : String(); }

#else  // no PipeWire on this platform

std::unique_ptr<PipeWireStream> PipeWireStream::Make(Fill, Failing, String* why) {
  *why = "no PipeWire on this platform";
  return nullptr;
}
PipeWireStream::~PipeWireStream() = default;
void PipeWireStream::SetActive(bool active) { active_ = active; }
String PipeWireStream::Why() const { return String(); }

#endif

}  // namespace tk::sound

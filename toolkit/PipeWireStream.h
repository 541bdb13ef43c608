#pragma once
// The voice's stream straight at a PipeWire server, where one runs. It is
// made once, inactive: the server links it to the sink but runs none of
// it until a clip comes, so a prepared stream costs the server nothing,
// and the first clip only has to wake it. Made, woken and put back to
// sleep on the sound output's owner thread; filled on PipeWire's own
// real-time thread. Nothing here ever waits on the server.
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "toolkit/Types.h"

struct pw_stream;

namespace tk::sound {

class PipeWireStream {
 public:
  // Fills frames of 16-bit mono at kMixerRate; called on the real-time
  // thread.
  using Fill = void (*)(std::int16_t* out, std::size_t frames);
  // Called on PipeWire's loop thread when the stream fails.
  using Failing = void (*)();

  // Connects a new inactive stream, or gives nil and why: no library, no
  // server, or a server that refused it at once.
  static std::unique_ptr<PipeWireStream> Make(Fill fill, Failing failing, String* why);
  ~PipeWireStream();
  PipeWireStream(const PipeWireStream&) = delete;
  PipeWireStream& operator=(const PipeWireStream&) = delete;

  void SetActive(bool active);
  bool Active() const { return active_; }
  // The server went away, or it (or its session manager) refused the
  // stream: this stream never plays again. Why, in the server's words.
  bool Failed() const { return failed_.load(); }
  String Why() const;

  struct Callbacks;  // PipeWire's calls into the stream

 private:
  PipeWireStream() = default;

  ::pw_stream* stream_ = nullptr;
  Fill fill_ = nullptr;
  Failing failing_ = nullptr;
  bool active_ = false;
  // Written on PipeWire's loop thread, why_ before failed_; read once
  // failed_ is seen.
  String why_;
  std::atomic<bool> failed_{false};
};

// Whether the environment names a PipeWire server whose socket is there.
bool PipeWireServerThere();

}  // namespace tk::sound

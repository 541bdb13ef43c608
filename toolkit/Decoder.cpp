#include "toolkit/Decoder.h"

#include <mpg123.h>

#include "toolkit/Sound.h"
#include "toolkit/SoundLibrary.h"

namespace tk::sound {
namespace {

struct Mpg123 {
  decltype(&mpg123_init) init = nullptr;
  decltype(&mpg123_new) open_handle = nullptr;
  decltype(&mpg123_delete) close_handle = nullptr;
  decltype(&mpg123_param) param = nullptr;
  decltype(&mpg123_format_none) format_none = nullptr;
  decltype(&mpg123_format) format = nullptr;
  decltype(&mpg123_open) open = nullptr;
  decltype(&mpg123_read) read = nullptr;
  decltype(&mpg123_close) close = nullptr;
  decltype(&mpg123_strerror) strerror = nullptr;
  decltype(&mpg123_plain_strerror) plain_strerror = nullptr;
};

const Loaded<Mpg123>& Mpg123Library() {
  static const Loaded<Mpg123> loaded = LoadFunctions<Mpg123>(kMpg123, [](void* library, Mpg123& m) {
    if (!(Resolve(library, "mpg123_init", m.init) && Resolve(library, "mpg123_new", m.open_handle) &&
          Resolve(library, "mpg123_delete", m.close_handle) && Resolve(library, "mpg123_param", m.param) &&
          Resolve(library, "mpg123_format_none", m.format_none) && Resolve(library, "mpg123_format", m.format) &&
          (Resolve(library, "mpg123_open", m.open) || Resolve(library, "mpg123_open_64", m.open)) &&
          Resolve(library, "mpg123_read", m.read) && Resolve(library, "mpg123_close", m.close) &&
          Resolve(library, "mpg123_strerror", m.strerror) &&
          Resolve(library, "mpg123_plain_strerror", m.plain_strerror))) {
      return false;
    }
    m.init();  // needed before 1.27, harmless after
    return true;
  });
  return loaded;
}

}  // namespace

std::variant<Samples, DecodeError> Decode(const String& path) {
  const Mpg123* m = Mpg123Library().api;
  if (m == nullptr) return DecodeError{"the sound library mpg123 is not installed", Mpg123Library().error, true};
  int error = MPG123_OK;
  mpg123_handle* h = m->open_handle(nullptr, &error);
  if (h == nullptr) return DecodeError{"it is not a sound that can be played", m->plain_strerror(error)};
  // The decoder mixes stereo down and resamples to the mixer's own format,
  // so the audio thread only adds samples.
  // Added to the default flags, which keep gapless decoding: the encoder's
  // delay and padding (some 25 ms of silence) are cut, so the voice starts
  // with the clip's first sample.
  m->param(h, MPG123_ADD_FLAGS, MPG123_QUIET, 0);
  m->format_none(h);
  m->format(h, static_cast<long>(kMixerRate), MPG123_MONO, MPG123_ENC_SIGNED_16);
  auto samples = std::make_shared<std::vector<std::int16_t>>();
  String why;
  if (m->open(h, path.c_str()) != MPG123_OK) {
    why = m->strerror(h);
  } else {
    std::int16_t block[8192];
    for (;;) {
      size_t done = 0;
      const int status = m->read(h, reinterpret_cast<unsigned char*>(block), sizeof block, &done);
      samples->insert(samples->end(), block, block + done / sizeof(std::int16_t));
      if (status == MPG123_OK || status == MPG123_NEW_FORMAT) continue;
      if (status != MPG123_DONE) why = m->strerror(h);
      break;
    }
    m->close(h);
  }
  m->close_handle(h);
  if (!why.empty() || samples->empty()) return DecodeError{"it is not a sound that can be played", why};
  return Samples(std::move(samples));
}

}  // namespace tk::sound

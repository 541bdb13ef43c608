#include "toolkit/Sound.h"

#include <QTimer>

#include <cstdio>
#include <utility>
#include <variant>

#include "toolkit/Decoder.h"
#include "toolkit/FailureCause.h"
#include "toolkit/Hook.h"
#include "toolkit/Notice.h"
#include "toolkit/SoundLibrary.h"
#include "toolkit/SoundOutput.h"

namespace tk {
namespace {

constinit Hook<SoundOpener> opener;
std::chrono::milliseconds checkDelay{2000};
bool told = false, checking = false;

// Once a run, and without stopping the game: the numbers are still called
// and shown, only not heard. The words hold for a sound server that is
// missing as well as for one that doesn't answer.
void TellIfSilent(unsigned long start) {
  if (sound::StartedOrPlaying(start)) return;
  told = true;
  std::fprintf(stderr, "Calloquin: no sound output plays (%s); the caller is silent until one does.\n",
               sound::WhyNoOutput().c_str());
  ShowNotice("The caller's voice can't be heard: the computer's sound isn't playing.",
             "The game goes on without sound. The voice comes back by itself once the desktop's sound is running "
             "and speakers or headphones are connected.");
}

class ClipSound final : public Sound {
 public:
  explicit ClipSound(sound::Samples samples) : samples_(std::move(samples)) {}
  void Play() override {
    const unsigned long start = sound::Start(samples_);
    if (told || checking) return;
    checking = true;
    QTimer::singleShot(checkDelay, [start] {
      checking = false;
      TellIfSilent(start);
    });
  }

 private:
  sound::Samples samples_;
};

}  // namespace

Opened<Sound> OpenMixerSound(const String& path) {
  // What can be told of the file before a decoder sees it is told in
  // plainer words than the decoder's.
  if (const auto why = WhyUnreadable(path)) return FileCause(path, "opened", *why);
  // No clip at all can be played without the libraries: a clip that counted
  // as opened would be a voice that is silently missing. A library is
  // looked for by the system's loader, not in the clip's folder, so none is
  // named.
  auto noLibrary = [&](const sound::LibraryPlaces& library, const String& detail) {
    FailureCause cause = FileCause(path, "played", String("the sound library ") + library.name + " is not installed",
                                   detail, sound::InstallAdvice(library).c_str());
    cause.folder.clear();
    return cause;
  };
  if (const String error = sound::OutputLibraryError(); !error.empty()) return noLibrary(sound::kSdl, error);
  auto decoded = sound::Decode(path);
  if (auto* error = std::get_if<sound::DecodeError>(&decoded)) {
    if (error->noLibrary) return noLibrary(sound::kMpg123, error->detail);
    return FileCause(path, "opened", error->why, error->detail);
  }
  return std::make_shared<ClipSound>(std::get<sound::Samples>(std::move(decoded)));
}

void WarmUpSound() { sound::Prepare(); }

void SetSoundLibrary(const char* which, const char* name) {
  sound::SetLibraryName(String(which) == sound::kSdl.name ? sound::kSdl : sound::kMpg123, name);
}

void SetOutputCheckDelay(std::chrono::milliseconds delay) { checkDelay = delay; }

SoundOpener SetSoundOpener(SoundOpener replacement) { return opener.Set(std::move(replacement)); }

Opened<Sound> OpenSound(const String& path) { return opener ? opener(path) : OpenMixerSound(path); }

}  // namespace tk

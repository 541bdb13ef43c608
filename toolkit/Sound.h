#pragma once
// A voice clip, opened once from a file and then played as often as asked.
// Play starts the clip and returns at once; each clip sounds on a channel
// of its own, so clips started close together overlap rather than cut each
// other off. Nothing stops a clip, nor sets its volume or pan.
#include <functional>
#include <memory>

#include "toolkit/FailureCause.h"
#include "toolkit/Types.h"

namespace tk {

class Sound {
 public:
  virtual ~Sound() = default;
  virtual void Play() = 0;
};

// Turns the file at a path into a Sound, or nil and why when the file can't
// be played (missing, empty, unreadable, not audio).
using SoundOpener = std::function<Opened<Sound>(const String& path)>;

// Tests replace the opener to see which files are opened and which clips
// are played without a sound device. Returns the previous opener; an empty
// one restores the mixer.
SoundOpener SetSoundOpener(SoundOpener opener);

// Opens through the current opener; what FolderItem::OpenAsSound uses.
Opened<Sound> OpenSound(const String& path);

// The real opener: decodes the file for the mixer, or gives nil and why.
// The output device is open by then (see WarmUpSound) or opened at the
// first call. Without a usable device the mixer plays into a silent one,
// tells the operator once and looks for a device again as clips are
// played, so the game never fails for lack of sound hardware and the voice
// comes back when a device does. Without the sound library no clip can be
// had at all.
Opened<Sound> OpenMixerSound(const String& path);

// Opens the output device beside the event loop, ahead of the first clip.
// The event loop calls it once the first frame is on screen.
void WarmUpSound();

// Tests name a sound library that isn't there. Takes effect only before the
// first clip is opened, which loads the library for the rest of the run.
void SetMixerLibrary(const char* name);

// The mixer's output format: 16-bit signed native-endian mono at this rate,
// converted by SDL to whatever the device takes. The clips are mono speech,
// and mono holds them in half the memory of stereo.
inline constexpr Integer kMixerRate = 44100;
inline constexpr Integer kMixerChannels = 1;

}  // namespace tk

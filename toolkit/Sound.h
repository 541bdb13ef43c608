#pragma once
// A voice clip, opened once from a file and then played as often as asked.
// Play starts the clip and returns at once; each play sounds beside the
// others, so clips started close together overlap rather than cut each
// other off. Nothing stops a clip, nor sets its volume or pan.
//
// The sound never holds up the window. No call made on the GUI thread
// waits on the sound system: not opening, closing or reopening the output,
// not a join, not the end of the run, and not a play, which only hands
// the clip to the output's own thread. Opening a clip decodes it there and
// then, with no output needed, so a file that can't be played is known in
// the press that opens it.
#include <chrono>
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
// one restores the real one.
SoundOpener SetSoundOpener(SoundOpener opener);

// Opens through the current opener; what FolderItem::OpenAsSound uses.
Opened<Sound> OpenSound(const String& path);

// The real opener: decodes the file, or gives nil and why. Without the
// sound libraries no clip can be had at all. Without a sound output the
// clip still opens and its plays are dropped: if no output plays a while
// after a play, the operator is told once, the game goes on, and the voice
// comes back by itself when the desktop's sound does.
Opened<Sound> OpenMixerSound(const String& path);

// Readies the output ahead of the first clip, without sound: where PipeWire
// runs, a stream that the server links but does not run; elsewhere the
// sound system's driver. The event loop calls it once the first frame is
// on screen.
void WarmUpSound();

// Tests name a library that isn't there, SDL2's or mpg123's ("SDL2",
// "mpg123"). Takes effect only before that library is first loaded.
void SetSoundLibrary(const char* which, const char* name);

// How long after a play the output is looked at, to tell the operator if
// none plays. Tests shorten it; the event loop runs the look.
void SetOutputCheckDelay(std::chrono::milliseconds delay);

// The mix: 16-bit signed native-endian mono at this rate, converted by SDL
// to whatever the device takes. The clips are mono speech, and mono holds
// them in half the memory of stereo.
inline constexpr Integer kMixerRate = 44100;
inline constexpr Integer kMixerChannels = 1;

}  // namespace tk

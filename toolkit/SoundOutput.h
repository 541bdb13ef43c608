#pragma once
// The one owner of the sound output: a thread of its own that alone makes,
// wakes, opens and closes it, and the output's own thread (PipeWire's or
// SDL's), which mixes the clips into it. The GUI thread only hands clips
// over (a short lock that nothing holds while it calls the sound system)
// and reads a few atomics, so a sound server that takes a stream and never
// starts it holds up the voice, never the window.
//
// The output plays only while there is something to play: our PipeWire
// stream is woken at a clip and put back to sleep a little after the last
// clip ends; a device of SDL's is opened and closed the same way. While
// nothing sounds the sound server does no work for the program. A clip starts from
// its beginning within kFreshFor of its Start, or not at all: a voice that
// trails the board is worse than none.
#include <chrono>

#include "toolkit/Decoder.h"

namespace tk::sound {

inline constexpr auto kFreshFor = std::chrono::milliseconds(100);

// Readies the output's thread and the output, without sound, ahead of the
// first clip.
void Prepare();

// Starts the clip as soon as the output plays; returns at once. Safe with
// no output at all: the clip is then dropped. The number identifies this
// start for StartedOrPlaying.
unsigned long Start(Samples clip);

// Whether the clip of that start has begun on an output not lost since,
// or the output plays now.
bool StartedOrPlaying(unsigned long start);

// Why there is no output, in the sound system's words, for the log.
String WhyNoOutput();

// The loader's words when SDL2 can't be had; empty when it can. Loads it
// (no more: nothing of SDL is called) on the calling thread. SDL2 is
// needed even where PipeWire plays: it is what plays everywhere else.
String OutputLibraryError();

}  // namespace tk::sound

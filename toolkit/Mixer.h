#pragma once
// The sound output behind the clips, for Sound.cpp alone: SDL2_mixer, loaded
// at its first need, and the one output device it plays through. The device
// is opened once a run; it is opened again only when it was lost (the sound
// server restarted, a speaker went), and a run that started with none looks
// for one again, so the voice comes back by itself.
#include <SDL.h>
#include <SDL_mixer.h>

#include "toolkit/Types.h"

namespace tk::mixer {

struct Api {
  decltype(&SDL_InitSubSystem) InitSubSystem = nullptr;
  decltype(&SDL_QuitSubSystem) QuitSubSystem = nullptr;
  decltype(&SDL_GetError) GetError = nullptr;
  decltype(&SDL_SetHintWithPriority) SetHintWithPriority = nullptr;
  decltype(&SDL_GetCurrentAudioDriver) GetCurrentAudioDriver = nullptr;
  decltype(&SDL_GetAudioDeviceStatus) GetAudioDeviceStatus = nullptr;
  decltype(&SDL_RWFromFile) RWFromFile = nullptr;
  decltype(&Mix_Init) Init = nullptr;
  decltype(&Mix_OpenAudioDevice) OpenAudioDevice = nullptr;
  decltype(&Mix_CloseAudio) CloseAudio = nullptr;
  decltype(&Mix_AllocateChannels) AllocateChannels = nullptr;
  decltype(&Mix_SetPostMix) SetPostMix = nullptr;
  decltype(&Mix_LoadWAV_RW) LoadWAV_RW = nullptr;
  decltype(&Mix_FreeChunk) FreeChunk = nullptr;
  decltype(&Mix_PlayChannelTimed) PlayChannelTimed = nullptr;
  decltype(&Mix_Playing) Playing = nullptr;
};

// The library's functions, or nil when it or one of them is missing.
const Api* Load();
// Why Load gave nil, in the loader's words.
const String& LoadError();
// What to do when the library is missing, for this platform.
const char* NoLibraryAdvice();

// Readies the output on a thread of its own. The event loop calls it once
// the first frame is on screen, so that the first clip finds the device
// open without the first frame waiting for it.
void WarmUp();
// True when clips can be decoded: the mixer stands, on a device or, while
// there is none, on SDL's silent one. The first call without a device tells
// the operator once that the voice can't be heard.
bool Ready();
// Before a clip starts: a lost device is opened again, and while there is
// none one is looked for, at most once a second. A PipeWire output that is
// asked for sound more slowly than it plays is opened again with a longer
// buffer, while nothing sounds. A device that plays is never touched, so
// nothing that sounds is cut off.
void BeforePlay();

// The test hook of Sound.h.
void SetLibraryName(const char* name);

}  // namespace tk::mixer

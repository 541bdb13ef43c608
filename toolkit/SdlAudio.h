#pragma once
// The part of SDL2's audio that the sound output calls, declared as SDL2's
// ABI has fixed it since 2.0.0. SDL2 is opened at run time
// (SoundLibrary.h), so nothing more is needed to build: its development
// package brought some seventy others (the headers of X11, Wayland, ALSA,
// PulseAudio, D-Bus, IBus...) to every build, for nine functions.
#include <bit>
#include <cstdint>

namespace tk::sound::sdl {

using AudioDeviceID = std::uint32_t;
using AudioFormat = std::uint16_t;
using AudioCallback = void (*)(void* userdata, std::uint8_t* stream, int length);

struct AudioSpec {
  int freq;
  AudioFormat format;
  std::uint8_t channels;
  std::uint8_t silence;
  std::uint16_t samples;
  std::uint16_t padding;
  std::uint32_t size;
  AudioCallback callback;
  void* userdata;
};

enum HintPriority : int { kHintDefault, kHintNormal, kHintOverride };
enum AudioStatus : int { kAudioStopped, kAudioPlaying, kAudioPaused };

inline constexpr std::uint32_t kInitAudio = 0x10;
// Signed 16-bit samples in the machine's own byte order.
inline constexpr AudioFormat kS16Native = std::endian::native == std::endian::little ? 0x8010 : 0x9010;

inline constexpr const char* kHintAudioDriver = "SDL_AUDIODRIVER";
inline constexpr const char* kHintAppName = "SDL_AUDIO_DEVICE_APP_NAME";
inline constexpr const char* kHintStreamName = "SDL_AUDIO_DEVICE_STREAM_NAME";
inline constexpr const char* kHintNoSignalHandlers = "SDL_NO_SIGNAL_HANDLERS";

// The functions, as pointers that the loader fills by their SDL_ names.
using InitSubSystem = int (*)(std::uint32_t flags);
using QuitSubSystem = void (*)(std::uint32_t flags);
using GetError = const char* (*)();
using SetHintWithPriority = int (*)(const char* name, const char* value, HintPriority priority);
using GetCurrentAudioDriver = const char* (*)();
using OpenAudioDevice = AudioDeviceID (*)(const char* device, int iscapture, const AudioSpec* desired,
                                          AudioSpec* obtained, int allowed_changes);
using CloseAudioDevice = void (*)(AudioDeviceID device);
using PauseAudioDevice = void (*)(AudioDeviceID device, int pause_on);
using GetAudioDeviceStatus = AudioStatus (*)(AudioDeviceID device);

}  // namespace tk::sound::sdl

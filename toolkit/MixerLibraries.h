#pragma once
// Where SDL2_mixer is looked for, in order; the first that opens is used.
// Both lists are compiled everywhere, so that a test on Linux reads the very
// list that a Mac build searches.

namespace tk::mixer {

// On a Mac: the app's own copy first, so that a deployed app plays what it
// ships; then the program's run paths; then Homebrew's folders (Apple
// Silicon, then Intel) and MacPorts'. A bare name comes last: Apple's loader
// looks it up in DYLD_LIBRARY_PATH and the current folder too, and a library
// planted where the program was started from must never win over these.
inline constexpr const char* kMacLibraries[] = {
    "@executable_path/../Frameworks/libSDL2_mixer-2.0.0.dylib",
    "@rpath/libSDL2_mixer-2.0.0.dylib",
    "/opt/homebrew/lib/libSDL2_mixer-2.0.0.dylib",
    "/usr/local/lib/libSDL2_mixer-2.0.0.dylib",
    "/opt/local/lib/libSDL2_mixer-2.0.0.dylib",
    "libSDL2_mixer-2.0.0.dylib",
};

// Elsewhere: the soname, wherever the system's loader finds it (the
// loader's own folders; a bare name never means the current folder here).
inline constexpr const char* kSonameLibraries[] = {"libSDL2_mixer-2.0.so.0"};

}  // namespace tk::mixer

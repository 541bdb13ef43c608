#pragma once
// Where the two sound libraries are looked for, in order; the first that
// opens is used. SDL2 plays, mpg123 decodes. The lists are compiled
// everywhere, so that a test on Linux reads the very list a Mac searches.

namespace tk::sound {

struct LibraryPlaces {
  const char* name;        // as the operator knows it
  const char* mac[6];      // a Mac's places, the bare name last
  const char* soname;      // elsewhere: wherever the system's loader finds it
  const char* macAdvice;   // how to install it
  const char* debianAdvice;
};

// On a Mac: the app's own copy first, so that a deployed app plays what it
// ships; then the program's run paths; then Homebrew's folders (Apple
// Silicon, then Intel) and MacPorts'. A bare name comes last: Apple's loader
// looks it up in DYLD_LIBRARY_PATH and the current folder too, and a library
// planted where the program was started from must never win over these.
// Elsewhere a bare soname never means the current folder.
inline constexpr LibraryPlaces kSdl = {
    "SDL2",
    {"@executable_path/../Frameworks/libSDL2-2.0.0.dylib", "@rpath/libSDL2-2.0.0.dylib",
     "/opt/homebrew/lib/libSDL2-2.0.0.dylib", "/usr/local/lib/libSDL2-2.0.0.dylib", "/opt/local/lib/libSDL2-2.0.0.dylib",
     "libSDL2-2.0.0.dylib"},
    "libSDL2-2.0.so.0",
    "Install SDL2 (with Homebrew: brew install sdl2)",
    "Install SDL2 (on Debian and Ubuntu the package libsdl2-2.0-0)",
};
inline constexpr LibraryPlaces kMpg123 = {
    "mpg123",
    {"@executable_path/../Frameworks/libmpg123.0.dylib", "@rpath/libmpg123.0.dylib", "/opt/homebrew/lib/libmpg123.0.dylib",
     "/usr/local/lib/libmpg123.0.dylib", "/opt/local/lib/libmpg123.0.dylib", "libmpg123.0.dylib"},
    "libmpg123.so.0",
    "Install mpg123 (with Homebrew: brew install mpg123)",
    "Install mpg123's library (on Debian and Ubuntu the package libmpg123-0)",
};

}  // namespace tk::sound

#pragma once
// Opens one of the sound libraries at its first need and resolves its
// functions by name. Nothing is linked at build time: a machine without the
// library still runs the game, and is told what to install when a clip is
// first wanted.
#include <dlfcn.h>

#include "toolkit/SoundLibraries.h"
#include "toolkit/Types.h"

namespace tk::sound {

// The library's handle, or nil with the loader's words in *error. Never
// closed, like the clips.
void* OpenLibrary(const LibraryPlaces& places, String* error);

// The test hook of Sound.h: every later OpenLibrary of that library tries
// this name alone.
void SetLibraryName(const LibraryPlaces& places, const char* name);

// What to do when the library is missing, for this platform.
String InstallAdvice(const LibraryPlaces& places);

template <class F>
bool Resolve(void* library, const char* name, F& function) {
  function = reinterpret_cast<F>(dlsym(library, name));
  return function != nullptr;
}

// A library's table of the functions we call (Api), filled at its first
// need: nil, with the reason in error, when the library is missing or
// lacks one of them.
template <class Api>
struct Loaded {
  const Api* api = nullptr;
  String error;
};

// fill resolves each of the table's functions, and answers whether all
// were found. Called once for each Api, from a function-local static.
template <class Api, class Fill>
Loaded<Api> LoadFunctions(const LibraryPlaces& places, Fill fill) {
  static Api api;
  Loaded<Api> loaded;
  void* library = OpenLibrary(places, &loaded.error);
  if (library == nullptr) return loaded;
  if (!fill(library, api)) {
    loaded.error = String(places.soname) + " lacks a function that Calloquin needs";
    return loaded;
  }
  loaded.api = &api;
  return loaded;
}

}  // namespace tk::sound

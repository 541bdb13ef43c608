#include "toolkit/SoundLibrary.h"

#include <iterator>
#include <map>
#include <vector>

namespace tk::sound {
namespace {

std::map<const LibraryPlaces*, std::vector<const char*>>& Overrides() {
  static std::map<const LibraryPlaces*, std::vector<const char*>> overrides;
  return overrides;
}

std::vector<const char*> Names(const LibraryPlaces& places) {
  if (auto it = Overrides().find(&places); it != Overrides().end()) return it->second;
#if defined(__APPLE__)
  return {std::begin(places.mac), std::end(places.mac)};
#else
  return {places.soname};
#endif
}

}  // namespace

void* OpenLibrary(const LibraryPlaces& places, String* error) {
  for (const char* name : Names(places)) {
    if (void* library = dlopen(name, RTLD_NOW | RTLD_LOCAL)) return library;
    const char* why = dlerror();
    if (!error->empty()) *error += "; ";
    *error += why != nullptr ? why : name;
  }
  return nullptr;
}

void SetLibraryName(const LibraryPlaces& places, const char* name) { Overrides()[&places] = {name}; }

String InstallAdvice(const LibraryPlaces& places) {
#if defined(__APPLE__)
  const char* how = places.macAdvice;
#else
  const char* how = places.debianAdvice;
#endif
  return String(how) + " and start Calloquin again, or switch BINGO CALLER off to go on without the voice.";
}

}  // namespace tk::sound

#include "caller/VoiceClips.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "shell/BundleResources.h"
#include "toolkit/Exceptions.h"
#include "toolkit/FolderItem.h"

namespace caller {

template <int k>
class _x_vocal {
  static_assert(1 <= k && k <= 90);

 public:
  // "vocal<k>.mp3", spelled out by the compiler: the number in plain
  // digits, no leading zero.
  static constexpr std::array<char, 12> kFileName = [] {
    std::array<char, 12> name{};
    std::size_t i = 0;
    for (const char c : std::string_view("vocal")) name[i++] = c;
    if (k >= 10) name[i++] = static_cast<char>('0' + k / 10);
    name[i++] = static_cast<char>('0' + k % 10);
    for (const char c : std::string_view(".mp3")) name[i++] = c;
    return name;
  }();

  static const tk::Opened<tk::Sound>& vocal() {
    if (!loaded) {
      // Set before any file is looked at: however this call ends, the
      // clip is not looked for again in this run.
      loaded = true;
      // Looked up anew by each member; nothing is shared between them.
      const std::shared_ptr<tk::FolderItem> folder = shell::_GetApplicationBundleResources();
      if (folder) {
        const std::shared_ptr<tk::FolderItem> item = folder->Child(kFileName.data());
        if (!item) throw tk::NilObjectException();
        permaSound = item->OpenAsSound();  // kept even when nil, with why: that is the Failed state
      }
    }
    return permaSound;
  }

 private:
  // False and nil at process start without any initialiser running. A nil
  // keeps why its file failed, so that every press it fails tells the same.
  static inline bool loaded;
  static inline tk::Opened<tk::Sound> permaSound;
};

// Each function is its member's, and the compiler checks that the member's
// file name is the one its number spells.
#define CALLOQUIN_DEFINE_VOCAL(k)                                                        \
  static_assert(std::string_view(_x_vocal<k>::kFileName.data()) == "vocal" #k ".mp3"); \
  const tk::Opened<tk::Sound>& vocal##k() { return _x_vocal<k>::vocal(); }
CALLOQUIN_FOR_EACH_NUMBER(CALLOQUIN_DEFINE_VOCAL)
#undef CALLOQUIN_DEFINE_VOCAL

}  // namespace caller

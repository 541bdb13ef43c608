// Writes each of the window's 103 streams, behind its class byte, as one
// file of the seed corpus in the given folder.
#include <cstdio>
#include <fstream>
#include <string>

#include "tests/fuzz/FuzzInput.h"
#include "window/LayoutData.h"

namespace {

void Write(const std::string& path, fuzz::Class cls, const layout::Stream& bytes) {
  std::ofstream out(path, std::ios::binary);
  out.put(static_cast<char>(cls));
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

fuzz::Class ClassOf(const std::string& name) {
  if (name == "Timer1") return fuzz::kTimer;
  if (name.rfind("PushButton", 0) == 0) return fuzz::kPushButton;
  return fuzz::kLabel;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s <folder>\n", argv[0]);
    return 1;
  }
  const std::string dir = argv[1];
  Write(dir + "/Window1", fuzz::kWindow, layout::WindowStream());
  int count = 1;
  for (const layout::NamedStream& s : layout::ControlStreams()) {
    const std::string name = s.name;
    Write(dir + "/" + name + (s.index == tk::kNoIndex ? "" : std::to_string(s.index)), ClassOf(name), s.bytes);
    ++count;
  }
  std::printf("%d seed streams\n", count);
  return count == 103 ? 0 : 1;
}

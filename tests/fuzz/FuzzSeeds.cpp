// Writes each of the window's 103 streams, behind its class byte, as one
// file of the seed corpus in the given folder.
#include <cstdio>
#include <fstream>
#include <string>

#include "tests/fuzz/FuzzInput.h"
#include "window/LayoutData.h"

void Write(const std::string& path, fuzz::Class cls, const layout::Stream& bytes) {
  std::ofstream out(path, std::ios::binary);
  out.put(static_cast<char>(cls));
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

int main(int argc, char** argv) {
  if (argc != 2) return std::fprintf(stderr, "usage: %s <folder>\n", argv[0]), 1;
  const std::string dir = argv[1];
  Write(dir + "/Window1", fuzz::kWindow, layout::WindowStream());
  for (const layout::NamedStream& s : layout::ControlStreams()) {
    const std::string name = s.name;
    const fuzz::Class cls = name == "Timer1" ? fuzz::kTimer : name.rfind("PushButton", 0) == 0 ? fuzz::kPushButton : fuzz::kLabel;
    Write(dir + "/" + name + (s.index == tk::kNoIndex ? "" : std::to_string(s.index)), cls, s.bytes);
  }
  std::printf("%zu seed streams\n", layout::ControlStreams().size() + 1);
  return layout::ControlStreams().size() == 102 ? 0 : 1;
}

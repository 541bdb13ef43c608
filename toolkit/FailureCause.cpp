#include "toolkit/FailureCause.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace tk {
namespace {

// Without a voice the game still runs: with the caller off no clip is asked
// for, so that is what the operator can do at once.
constexpr const char* kSoundAdvice =
    "Switch BINGO CALLER off to go on without the voice. Installing Calloquin again puts its sound files back.";
constexpr const char* kFileAdvice = "Installing Calloquin again puts its files back.";

}  // namespace

FailureCause FileCause(const String& path, const String& verb, const String& why, const String& detail,
                       const char* advice) {
  const std::filesystem::path p(path);
  String ext = p.extension().string();
  for (char& c : ext) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  const bool sound = ext == ".mp3" || ext == ".wav" || ext == ".ogg";
  const char* kind = sound ? "sound file" : ext == ".png" ? "picture" : "file";
  return {String("The ") + kind + " " + p.filename().string() + " could not be " + verb, why,
          p.parent_path().string(), advice != nullptr ? advice : sound ? kSoundAdvice : kFileAdvice, detail};
}

std::optional<String> WhyUnreadable(const String& path) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path p(path);
  const fs::file_status status = fs::status(p, error);
  if (status.type() == fs::file_type::not_found) {
    const fs::file_status folder = fs::status(p.parent_path(), error);
    if (folder.type() == fs::file_type::not_found) return "its folder " + p.parent_path().string() + " does not exist";
    if (folder.type() != fs::file_type::directory) return p.parent_path().string() + " is not a folder";
    return String("there is no such file");
  }
  if (status.type() == fs::file_type::directory) return String("it is a folder, not a file");
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return "it can't be read (" + String(std::strerror(errno)) + ")";
  const bool empty = std::fgetc(file) == EOF;
  std::fclose(file);
  if (empty) return String("the file is empty");
  return std::nullopt;
}

}  // namespace tk

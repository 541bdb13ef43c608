#include "toolkit/FolderItem.h"

#include <filesystem>
#include <utility>

#include "toolkit/Application.h"
#include "toolkit/FailureCause.h"
#include "toolkit/Hook.h"

namespace fs = std::filesystem;

namespace tk {
namespace {

// Told when the executable's folder has no parent, which the installed
// layout always gives it.
#if defined(__APPLE__)
constexpr const char* kLayoutAdvice =
    "Calloquin expects its program in the folder \"Contents/MacOS\" of Calloquin.app, beside its folder "
    "\"Contents/Resources\"; installing it again puts them back in place.";
#else
constexpr const char* kLayoutAdvice =
    "Calloquin expects its program in a folder \"bin\" beside its folder \"Resources\"; "
    "installing it again puts them back in place.";
#endif

constinit Hook<ExecutableFileSource> source;

}  // namespace

FolderItem::FolderItem(const String& nativePath) {
  fs::path p = fs::path(nativePath).lexically_normal();
  // "/a/b/" and "/a/b" are one folder; keep the form without the slash so
  // that Parent steps up a level.
  if (p.has_relative_path() && !p.has_filename()) p = p.parent_path();
  path_ = p.string();
}

std::shared_ptr<FolderItem> FolderItem::Parent() const {
  const fs::path p(path_);
  const fs::path parent = p.parent_path();
  if (parent.empty() || parent == p) return nullptr;
  return std::make_shared<FolderItem>(parent.string());
}

std::shared_ptr<FolderItem> FolderItem::Child(const String& name) const {
  if (name.empty() || name == "." || name == ".." || name.find('/') != String::npos) return nullptr;
  return std::make_shared<FolderItem>((fs::path(path_) / name).string());
}

Opened<Sound> FolderItem::OpenAsSound() const { return OpenSound(path_); }

std::shared_ptr<FolderItem> ExecutableFile() {
  std::shared_ptr<FolderItem> item;
  if (source) {
    item = source();
  } else if (const String path = ExecutableFilePath(); !path.empty()) {
    item = std::make_shared<FolderItem>(path);
  }
  return item;
}

std::shared_ptr<FolderItem> ResourcesFolder(const std::function<void(const FailureCause&)>& stepMissing) {
  std::shared_ptr<FolderItem> item = ExecutableFile();
  if (!item) {
    if (stepMissing) {
      stepMissing({"Calloquin could not find its own program file", "the system did not say where it is", {},
                   "Start Calloquin from where it is installed.", {}});
    }
    return nullptr;
  }
  for (int up = 0; up < 2; ++up) {  // the executable's folder, then its parent
    std::shared_ptr<FolderItem> parent = item->Parent();
    if (!parent) {
      if (stepMissing) {
        stepMissing({"The folder above " + item->NativePath() + " could not be found",
                     item->NativePath() + " is the top folder", {}, kLayoutAdvice, {}});
      }
      return nullptr;
    }
    item = std::move(parent);
  }
  return item->Child("Resources");
}

ExecutableFileSource SetExecutableFileSource(ExecutableFileSource replacement) {
  return source.Set(std::move(replacement));
}

}  // namespace tk

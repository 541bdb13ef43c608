#include "toolkit/FolderItem.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "toolkit/Application.h"

namespace fs = std::filesystem;

namespace tk {
namespace {

ExecutableFileSource& Source() {
  static ExecutableFileSource source;
  return source;
}

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
  std::error_code error;
  if (!fs::is_directory(path_, error)) return nullptr;
  return std::make_shared<FolderItem>((fs::path(path_) / name).string());
}

std::shared_ptr<Sound> FolderItem::OpenAsSound() const { return OpenSound(path_); }

std::shared_ptr<FolderItem> ExecutableFile() {
  if (Source()) return Source()();
  const String path = ExecutableFilePath();
  if (path.empty()) return nullptr;
  return std::make_shared<FolderItem>(path);
}

ExecutableFileSource SetExecutableFileSource(ExecutableFileSource source) {
  return std::exchange(Source(), std::move(source));
}

}  // namespace tk

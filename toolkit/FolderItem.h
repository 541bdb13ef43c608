#pragma once
// A file or folder named by its absolute path. Whether anything is there
// is asked only when it matters: an item can stand for a file that doesn't
// exist, and opening that is what fails.
#include <functional>
#include <memory>

#include "toolkit/Sound.h"
#include "toolkit/Types.h"

namespace tk {

class FolderItem {
 public:
  explicit FolderItem(const String& nativePath);

  const String& NativePath() const { return path_; }

  // The folder that holds the item; nil for the root, which has none.
  std::shared_ptr<FolderItem> Parent() const;

  // The item of that name in this folder, whether or not such a file (or
  // even this folder) exists: that is found out when the file is opened,
  // which can then say why it failed. Nil when the name is not one plain
  // name (empty, ".", ".." or with a separator in it).
  std::shared_ptr<FolderItem> Child(const String& name) const;

  // The file as a sound ready to play, or nil and why when it can't be one.
  Opened<Sound> OpenAsSound() const;

 private:
  String path_;
};

// Application.ExecutableFile: the running executable, links resolved; nil
// if it can't be determined.
std::shared_ptr<FolderItem> ExecutableFile();

// The folder "Resources" beside the folder that holds the executable (the
// executable's parent's parent's child "Resources"): the one rule by which
// the program finds its clips and its backdrop. Whether that folder exists
// is not asked. Where a step finds nothing (no executable, no parent),
// stepMissing is told why, and may raise; then, or without it, nil.
std::shared_ptr<FolderItem> ResourcesFolder(const std::function<void(const FailureCause&)>& stepMissing = {});

// Tests put the executable somewhere else, to find their own bundle.
// Returns the previous source; an empty one restores the real executable.
using ExecutableFileSource = std::function<std::shared_ptr<FolderItem>()>;
ExecutableFileSource SetExecutableFileSource(ExecutableFileSource source);

}  // namespace tk

#include "shell/BundleResources.h"

#include "toolkit/Exceptions.h"

namespace shell {

std::shared_ptr<tk::FolderItem> _GetApplicationBundleResources() {
  const std::shared_ptr<tk::FolderItem> executable = tk::ExecutableFile();
  if (!executable) throw tk::NilObjectException();
  const std::shared_ptr<tk::FolderItem> binFolder = executable->Parent();
  if (!binFolder) throw tk::NilObjectException();
  const std::shared_ptr<tk::FolderItem> bundle = binFolder->Parent();
  if (!bundle) throw tk::NilObjectException();
  // A nil here is the caller's to judge: it means no resources, not a fault.
  return bundle->Child("Resources");
}

}  // namespace shell

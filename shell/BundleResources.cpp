#include "shell/BundleResources.h"

#include "toolkit/Exceptions.h"

namespace shell {

std::shared_ptr<tk::FolderItem> _GetApplicationBundleResources() {
  // A missing executable or parent is a fault; what the last step gives,
  // nil included, is the caller's to judge.
  return tk::ResourcesFolder([](const tk::FailureCause& why) { throw tk::NilObjectException(why); });
}

}  // namespace shell

#pragma once
// Where the resources lie, by the toolkit's one rule (tk::ResourcesFolder).
#include <memory>

#include "toolkit/FolderItem.h"

namespace shell {

// The folder of the resources, or nil when the executable's grandparent
// has no such child. Raises NilObjectException when the executable or
// either of its parents can't be had. Walks the steps anew at every call.
std::shared_ptr<tk::FolderItem> _GetApplicationBundleResources();

}  // namespace shell

#pragma once
// A reference that doesn't keep its object alive: Value is nil once the
// object is gone.
#include <memory>

#include "toolkit/Control.h"

namespace tk {

class WeakRef {
 public:
  explicit WeakRef(const Object* object) {
    if (object != nullptr) token_ = object->LifeToken();
  }
  Object* Value() const {
    const auto token = token_.lock();
    return token ? *token : nullptr;
  }

 private:
  std::weak_ptr<Object* const> token_;
};

}  // namespace tk

#pragma once
#include <memory>

#include "toolkit/Types.h"

class QPixmap;

namespace tk {

// An image from the application's resources.
class Picture {
 public:
  explicit Picture(const QPixmap& pixmap);
  ~Picture();
  Integer Width() const;
  Integer Height() const;
  const QPixmap& Pixmap() const { return *pixmap_; }

  // The picture of that bare name from the folder "Resources" beside the
  // executable's folder: "<name>.png", with "<name>@2x.png" used on screens
  // of a higher pixel ratio when it is there. Nil when there is none.
  static std::shared_ptr<Picture> OpenFromApp(const String& name);

 private:
  std::unique_ptr<QPixmap> pixmap_;
};

}  // namespace tk

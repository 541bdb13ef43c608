#pragma once
#include <memory>

#include "toolkit/Types.h"

class QPixmap;

namespace tk {

// An image from the application's resources.
class Picture {
 public:
  // Pixels on their way: a decoding that Pixmap() waits for.
  struct Pending;
  // A picture of the given logical size whose pixels are still coming.
  Picture(double width, double height, double ratio, std::unique_ptr<Pending> pixels);
  ~Picture();
  Integer Width() const;
  Integer Height() const;
  // The pixels, ready to draw. The first call waits for the decoding; a
  // file that fails past its header gives an empty pixmap, drawn as nothing.
  const QPixmap& Pixmap() const;

  // The picture of that bare name from the resources (ResourcesFolder in
  // FolderItem.h): "<name>.png", with "<name>@2x.png" used on screens
  // of a higher pixel ratio when it is there. Nil when there is none or its
  // header can't be read. Only the header is read here: the pixels are
  // decoded on a worker thread while the window goes on being built.
  static std::shared_ptr<Picture> _OpenFromApp(const String& name);

 private:
  double width_, height_, ratio_;
  mutable std::unique_ptr<Pending> pixels_;
  mutable std::unique_ptr<QPixmap> pixmap_;
};

}  // namespace tk

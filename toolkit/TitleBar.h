#pragma once
// The title bar a window draws itself where the desktop would otherwise
// draw one that offers more than the window allows. A Wayland compositor
// either leaves the frame to the program (GNOME, weston: Qt would then draw
// minimise, maximise and close) or draws its own with a close box (KDE):
// Wayland has no way to ask for a frame without one. So there the window
// goes frameless and this bar stands in: the title, and only the controls
// the window has. Dragging it moves the window; a double-click does
// nothing, as there is no maximise.
#include <QWidget>


namespace tk {

class TitleBar : public QWidget {
 public:
  explicit TitleBar(QWidget* parent);
  void SetTitle(const QString& title);
  // Which controls stand at its right end, in the desktop's usual order.
  void SetControls(bool minimise, bool close);
  // True where the window should draw this bar: on Wayland.
  static bool Wanted();

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString title_;
  QWidget* minimise_;
  QWidget* close_;
};

}  // namespace tk

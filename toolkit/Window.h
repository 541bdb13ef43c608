#pragma once
// A top-level window: a fixed content area that holds the controls, with an
// optional backdrop picture and menu bar. Subclasses fill it in the events
// Layout and CreateControls, and start work in Open.
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "toolkit/Control.h"
#include "toolkit/Exceptions.h"
#include "toolkit/UITrap.h"

class QWidget;
class QMainWindow;
class QMenuBar;

namespace tk {

class Picture;
class MenuBar;
class PushButton;
class TitleBar;

class Window : public Object {
 public:
  Window();
  ~Window() override;
  const char* ClassName() const override { return "Window"; }

  // Builds the window: Layout, then CreateControls, then Open through the
  // failure route. A failure in the first two goes to the caller.
  void Constructor();

  // Creates an object that the window owns for the rest of its life. Its
  // own Constructor, if it has one, is the caller's next call.
  template <class T, class... Args>
  T& New(Args&&... args) {
    static_assert(std::is_base_of_v<Object, T>);
    auto object = std::make_unique<T>(std::forward<Args>(args)...);
    T& ref = *object;
    // A control knows its window from birth, before it is added to it.
    if constexpr (std::is_base_of_v<Control, T>) static_cast<Control&>(ref).window_ = this;
    owned_.push_back(std::move(object));
    return ref;
  }

  // Registers a control under a name (and its Index, for control sets).
  // Creation order is stacking order: later controls lie over earlier ones.
  void AddControl(const String& name, Control& control);
  // The control of that name (and Index), or nil.
  Control* ControlByName(const String& name) const;
  Control* ControlByNameIndex(const String& name, Integer index) const;
  // Controls in the order they were added.
  const std::vector<Control*>& Controls() const { return controls_; }

  // Frame properties.
  Integer Width() const { return width_; }
  void SetWidth(Integer v);
  Integer Height() const { return height_; }
  void SetHeight(Integer v);
  Integer MinWidth() const { return minWidth_; }
  void SetMinWidth(Integer v) { minWidth_ = v; ApplySize(); }
  Integer MinHeight() const { return minHeight_; }
  void SetMinHeight(Integer v) { minHeight_ = v; ApplySize(); }
  Integer MaxWidth() const { return maxWidth_; }
  void SetMaxWidth(Integer v) { maxWidth_ = v; ApplySize(); }
  Integer MaxHeight() const { return maxHeight_; }
  void SetMaxHeight(Integer v) { maxHeight_ = v; ApplySize(); }
  String Title() const { return title_; }
  void SetTitle(const String& v);
  bool CloseButton() const { return closeButton_; }
  void SetCloseButton(bool v) { closeButton_ = v; ApplyFlags(); }
  bool Resizeable() const { return resizeable_; }
  void SetResizeable(bool v) { resizeable_ = v; ApplySize(); }
  bool MaximizeButton() const { return maximizeButton_; }
  void SetMaximizeButton(bool v) { maximizeButton_ = v; ApplyFlags(); }
  bool MinimizeButton() const { return minimizeButton_; }
  void SetMinimizeButton(bool v) { minimizeButton_ = v; ApplyFlags(); }
  bool FullScreenButton() const { return fullScreenButton_; }
  void SetFullScreenButton(bool v) { fullScreenButton_ = v; ApplyFlags(); }
  bool Visible() const { return visible_; }
  void SetVisible(bool v);
  bool FullScreen() const { return fullScreen_; }
  void SetFullScreen(bool v);
  bool HasBackColor() const { return hasBackColor_; }
  void SetHasBackColor(bool v);
  Color BackColor() const { return backColor_; }
  void SetBackColor(Color v);
  bool MenuBarVisible() const { return menuBarVisible_; }
  void SetMenuBarVisible(bool v);
  // Kept as given: nothing on this platform acts on them.
  Integer Frame() const { return frame_; }
  void SetFrame(Integer v) { frame_ = v; }
  Integer Placement() const { return placement_; }
  void SetPlacement(Integer v) { placement_ = v; }
  Integer MacProcID() const { return macProcID_; }
  void SetMacProcID(Integer v) { macProcID_ = v; }
  bool Composite() const { return composite_; }
  void SetComposite(bool v) { composite_ = v; }
  bool LiveResize() const { return liveResize_; }
  void SetLiveResize(bool v) { liveResize_ = v; }

  const std::shared_ptr<Picture>& Backdrop() const { return backdrop_; }
  void SetBackdrop(std::shared_ptr<Picture> picture);
  MenuBar* GetMenuBar() const { UITrap(); return menuBar_; }
  void SetMenuBar(MenuBar* bar);

  // For the toolkit and its tests only.
  QWidget* Content() const;
  QMainWindow* TopLevel() const;

 protected:
  virtual void Layout() {}
  virtual void CreateControls() {}
  virtual void Open() {}

 private:
  class TopLevel_;
  class Surface;
  void ApplySize();
  void ApplyFlags();
  void PressDefaultButton();
  // Puts the shown menu bar in place: below the window's own title bar
  // where it draws one, else where Qt keeps a main window's bar.
  void ShowMenuBar(QMenuBar* bar);
  QWidget* ShownMenuBar() const;

  std::unique_ptr<TopLevel_> top_;
  Surface* surface_ = nullptr;
  // Where the window draws its own title bar: the bar, and the column of
  // title bar and menu bar above the content.
  TitleBar* titleBar_ = nullptr;
  QWidget* chrome_ = nullptr;
  QMenuBar* menuBarShown_ = nullptr;
  std::vector<std::unique_ptr<Object>> owned_;
  std::vector<Control*> controls_;

  Integer width_ = 300, height_ = 300, minWidth_ = 64, minHeight_ = 64, maxWidth_ = 32000, maxHeight_ = 32000;
  String title_;
  bool closeButton_ = true, resizeable_ = true, maximizeButton_ = true, minimizeButton_ = true,
       fullScreenButton_ = false, visible_ = false, fullScreen_ = false, hasBackColor_ = false,
       menuBarVisible_ = true, composite_ = false, liveResize_ = true;
  bool building_ = false;  // inside Constructor: showing waits for its end
  Color backColor_ = 0xFFFFFF;
  Integer frame_ = 0, placement_ = 0, macProcID_ = 0;
  std::shared_ptr<Picture> backdrop_;
  MenuBar* menuBar_ = nullptr;
};

// A checked cast: nil stays nil, an object of another class raises
// IllegalCastException.
template <class T>
T* CheckCast(Object* object) {
  if (object == nullptr) return nullptr;
  if (auto* cast = dynamic_cast<T*>(object)) return cast;
  throw IllegalCastException(String("A ") + object->ClassName() + " is not of the class it was cast to.");
}

}  // namespace tk

#pragma once
// The base classes of everything a window holds. Controls keep every value
// they were given (so a property always reads back what was set) and pass it
// on to their Qt widget where Qt has a counterpart.
#include <functional>
#include <memory>

#include "toolkit/Types.h"
#include "toolkit/UITrap.h"

class QWidget;

namespace tk {

class Window;

class Object {
 public:
  virtual ~Object() = default;
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual const char* ClassName() const = 0;

  // Around the applying of a property stream: a control may gather there
  // what each setting would make Qt redo (a font set by size, bold, italic
  // and underline in turn is resolved and spread to the widget four
  // times) and do it once at the end.
  virtual void BeginProperties() {}
  virtual void EndProperties() {}

  // A token that lives exactly as long as the object, for WeakRef.
  std::weak_ptr<Object* const> LifeToken() const {
    if (!lifeToken_) lifeToken_ = std::make_shared<Object* const>(const_cast<Object*>(this));
    return lifeToken_;
  }

 private:
  mutable std::shared_ptr<Object* const> lifeToken_;
};

// A child of a window: has a name and may belong to a control set.
class Control : public Object {
 public:
  const String& Name() const { return name_; }
  void SetName(const String& name) { name_ = name; }
  Integer Index() const { return index_; }
  void SetIndex(Integer index) { UITrap(); index_ = index; }

  // The window this control was added to, or nil.
  Window* OwnerWindow() const { UITrap(); return window_; }
  virtual void AttachTo(Window& window) { window_ = &window; }

 private:
  friend class Window;  // a window's New tells its controls whose they are

  String name_;
  Integer index_ = kNoIndex;
  Window* window_ = nullptr;
};

// A control with a rectangle on screen, backed by one Qt widget.
class RectControl : public Control {
 public:
  ~RectControl() override;

  // Finishes a control once its object exists. The widget is made along
  // with the object here, so nothing is left to do.
  void Constructor() { UITrap(); }

  // Position in the window's content area, whatever the parent.
  Integer Left() const { return left_; }
  void SetLeft(Integer v) { left_ = v; ApplyGeometry(); }
  Integer Top() const { return top_; }
  void SetTop(Integer v) { top_ = v; ApplyGeometry(); }
  Integer Width() const { return width_; }
  void SetWidth(Integer v) { width_ = v; ApplyGeometry(); }
  Integer Height() const { return height_; }
  void SetHeight(Integer v) { height_ = v; ApplyGeometry(); }

  bool Visible() const { return visible_; }
  void SetVisible(bool v);
  bool Enabled() const { return enabled_; }
  void SetEnabled(bool v);
  String HelpTag() const { return helpTag_; }
  void SetHelpTag(const String& v);
  bool TabStop() const { return tabStop_; }
  void SetTabStop(bool v);

  // What assistive technology is told of the control. Every setting is sent
  // on as an accessibility event, even an unchanged one, so that a number
  // called again is announced again.
  const String& AccessibleName() const { return accessibleName_; }
  void SetAccessibleName(const String& v);
  const String& AccessibleDescription() const { return accessibleDescription_; }
  void SetAccessibleDescription(const String& v);
  // Asks a screen reader to speak the text once it has finished what it is
  // saying (politely), where Qt has such an event (6.8 and later). Older Qt
  // has none; there a screen reader follows the description's change.
  void Announce(const String& text);

  // Another control of the same window, by name, that this one lies in.
  const String& InitialParent() const { return initialParent_; }
  void SetInitialParent(const String& name);

  // Values Qt has no counterpart for; kept so they read back.
  Integer TabIndex() const { return tabIndex_; }
  void SetTabIndex(Integer v) { tabIndex_ = v; }
  Integer TabPanelIndex() const { return tabPanelIndex_; }
  void SetTabPanelIndex(Integer v) { tabPanelIndex_ = v; }
  bool AutoDeactivate() const { return autoDeactivate_; }
  void SetAutoDeactivate(bool v) { autoDeactivate_ = v; }
  bool LockTop() const { return lockTop_; }
  void SetLockTop(bool v) { lockTop_ = v; }
  bool LockLeft() const { return lockLeft_; }
  void SetLockLeft(bool v) { lockLeft_ = v; }
  bool LockBottom() const { return lockBottom_; }
  void SetLockBottom(bool v) { lockBottom_ = v; }
  bool LockRight() const { return lockRight_; }
  void SetLockRight(bool v) { lockRight_ = v; }

  void AttachTo(Window& window) override;

  // For the toolkit and its tests only.
  QWidget* Widget() const { return widget_; }

 protected:
  explicit RectControl(QWidget* widget);

 private:
  void ApplyGeometry();

  QWidget* widget_;
  Integer left_ = 0, top_ = 0, width_ = 0, height_ = 0;
  bool visible_ = true, enabled_ = true, tabStop_ = true, autoDeactivate_ = true;
  bool lockTop_ = true, lockLeft_ = true, lockBottom_ = false, lockRight_ = false;
  Integer tabIndex_ = 0, tabPanelIndex_ = 0;
  String helpTag_, initialParent_;
  String accessibleName_, accessibleDescription_;
};

// Font properties shared by labels and buttons. Sizes are pixels, as the
// layout was drawn at 72 dpi; 0 means the ordinary size.
class TextStyle {
 public:
  String TextFont() const { return font_; }
  double TextSize() const { return size_; }
  Integer TextUnit() const { return unit_; }
  bool Bold() const { return bold_; }
  bool Italic() const { return italic_; }
  bool Underline() const { return underline_; }

 protected:
  String font_ = "System";
  double size_ = 0;
  Integer unit_ = 0;
  bool bold_ = false, italic_ = false, underline_ = false;
};

inline constexpr int kOrdinaryTextPixels = 13;

// Work a control holds back between BeginProperties and EndProperties.
class Deferred {
 public:
  enum : unsigned { kFont = 1, kStyle = 2 };
  void Begin() { on_ = true; }
  // True while held back; the work is then remembered for End.
  bool Hold(unsigned work) {
    if (on_) pending_ |= work;
    return on_;
  }
  // The work held back, to be done now.
  unsigned End() {
    on_ = false;
    const unsigned work = pending_;
    pending_ = 0;
    return work;
  }

 private:
  bool on_ = false;
  unsigned pending_ = 0;
};

// Hears every accessibility event a control sends, besides Qt, which passes
// them on only while a screen reader listens. For tests. Returns the
// previous observer.
enum class AccessibleChange { Name, Description, Announcement };
using AccessibleObserver = std::function<void(const RectControl&, AccessibleChange)>;
AccessibleObserver SetAccessibleObserver(AccessibleObserver observer);

}  // namespace tk

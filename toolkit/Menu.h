#pragma once
// Menus as a model: a tree of items that the program builds once and that
// the toolkit shows as a menu bar, in a window or for the whole application.
// The model needs no GUI until it is shown.
#include <memory>
#include <vector>

#include "toolkit/Control.h"
#include "toolkit/Ref.h"
#include "toolkit/Window.h"

class QAction;

namespace tk {

class MenuItem : public Object {
 public:
  MenuItem();
  ~MenuItem() override;
  const char* ClassName() const override { return "MenuItem"; }

  // The name by which Child and _Lookup find the item.
  const String& Name() const { return name_; }
  void SetName(const String& name) { UITrap(); name_ = name; }
  // The label. "-" makes the item a separator; "&" marks the mnemonic.
  const String& Text() const { return text_; }
  void SetText(const String& text);
  bool IsSeparator() const { return text_ == "-"; }
  // "Cmd+Q": modifier words and the key, joined by "+". Cmd is the
  // platform's command modifier (Ctrl, or Command on macOS); empty is none.
  const String& KeyboardShortcut() const { return shortcut_; }
  void SetKeyboardShortcut(const String& shortcut);
  // True leaves the enabled state to the toolkit, which keeps items enabled.
  bool AutoEnable() const { return autoEnable_; }
  void SetAutoEnable(bool v) { UITrap(); autoEnable_ = v; }
  bool Visible() const { return visible_; }
  void SetVisible(bool v);

  // Adds an item at the end; the parent owns it from then on.
  void Append(std::unique_ptr<MenuItem> item);
  Integer Count() const { return static_cast<Integer>(children_.size()); }
  // The direct child at that position, or nil.
  Ref<MenuItem> Item(Integer index) const;
  // The direct child of that name, or nil.
  Ref<MenuItem> Child(const String& name) const;
  // The item of that name anywhere below this one, or nil.
  Ref<MenuItem> _Lookup(const String& name) const;

  // Raised when the operator chooses the item, through the failure route.
  // A plain item does nothing.
  virtual void Action() {}

  // For the toolkit: every QAction that shows this item, so that later
  // changes of text, shortcut or visibility reach all of them.
  void _Show(QAction* action);
  std::vector<QAction*> _Shown() const;

 private:
  struct Views;
  void Sync();

  String name_, text_, shortcut_;
  bool autoEnable_ = false, visible_ = true;
  std::vector<std::unique_ptr<MenuItem>> children_;
  std::unique_ptr<Views> views_;
};

// The top of a tree of menus; its children are the menus on the bar.
class MenuBar : public MenuItem {
 public:
  const char* ClassName() const override { return "MenuBar"; }
};

// Choosing it ends the application with status 0. On macOS it moves into
// the application menu.
class QuitMenuItem : public MenuItem {
 public:
  const char* ClassName() const override { return "QuitMenuItem"; }
  void Action() override;
};

// The item of that name anywhere on the window's menu bar, check-cast to T;
// nil if there is none. A window without a bar raises NilObjectException.
template <class T>
Ref<T> WindowMenuItem(const Window& window, const String& name) {
  return CheckCast<T>(Ref<MenuBar>(window.GetMenuBar())->_Lookup(name).get());
}

// The bar given to SetApplicationMenuBar, or nil.
MenuBar* ApplicationMenuBar();

}  // namespace tk

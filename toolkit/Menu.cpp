#include "toolkit/Menu.h"

#include <QAction>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QString>
#include <QStringList>

#include "toolkit/Application.h"
#include "toolkit/Dispatch.h"
#include "toolkit/Window.h"

namespace tk {
namespace {

// "Cmd+Q" in Qt's terms. Qt::CTRL is the platform's command key (Command
// on macOS, Ctrl elsewhere). Built from the key code, never from a standard
// key such as QKeySequence::Quit, which is empty on some platforms.
QKeySequence ToKeySequence(const String& shortcut) {
  QStringList parts = QString::fromStdString(shortcut).split(QLatin1Char('+'));
  if (parts.isEmpty() || parts.last().isEmpty()) return {};
  const QKeySequence key = QKeySequence::fromString(parts.takeLast(), QKeySequence::PortableText);
  if (key.count() != 1 || key[0].keyboardModifiers() != Qt::NoModifier) return {};
  Qt::KeyboardModifiers modifiers;
  for (const QString& word : parts) {
    const QString w = word.trimmed().toLower();
    if (w == QLatin1String("cmd") || w == QLatin1String("command")) {
      modifiers |= Qt::ControlModifier;
    } else if (w == QLatin1String("shift")) {
      modifiers |= Qt::ShiftModifier;
    } else if (w == QLatin1String("alt") || w == QLatin1String("option")) {
      modifiers |= Qt::AltModifier;
    } else if (w == QLatin1String("ctrl") || w == QLatin1String("control")) {
#ifdef Q_OS_MACOS
      modifiers |= Qt::MetaModifier;  // the Control key, as Qt::CTRL is Command there
#else
      modifiers |= Qt::ControlModifier;
#endif
    } else {
      return {};  // a word we don't know: better no shortcut than a wrong one
    }
  }
  return QKeySequence(QKeyCombination(modifiers, key[0].key()));
}

// Adds the view of item, and of everything below it, to a QMenuBar or QMenu.
template <class Container>
void AddView(Container& container, MenuItem& item) {
  QAction* action = nullptr;
  if (item.Count() > 0) {
    QMenu* menu = container.addMenu(QString());
    for (Integer i = 0; i < item.Count(); ++i) AddView(*menu, *item.Item(i));
    action = menu->menuAction();
  } else if (item.IsSeparator()) {
    action = container.addSeparator();
  } else {
    action = container.addAction(QString());
    // On macOS Quit belongs in the application menu; nothing else moves.
    // Qt's Cocoa menu bar hides a menu left with no item, so File, whose
    // one item moves, is not shown there at all rather than shown empty.
    action->setMenuRole(dynamic_cast<QuitMenuItem*>(&item) != nullptr ? QAction::QuitRole : QAction::NoRole);
    QObject::connect(action, &QAction::triggered, [&item] { Dispatch([&item] { item.Action(); }); });
  }
  item._Show(action);
}

void Populate(QMenuBar& shown, MenuBar& bar) {
  for (Integer i = 0; i < bar.Count(); ++i) AddView(shown, *bar.Item(i));
}

MenuBar* gApplicationMenuBar = nullptr;
#ifdef Q_OS_MACOS
QPointer<QMenuBar> gApplicationShown;
#endif

}  // namespace

struct MenuItem::Views {
  std::vector<QPointer<QAction>> actions;
};

MenuItem::MenuItem() : views_((UITrap(), std::make_unique<Views>())) {}

MenuItem::~MenuItem() {
  // A view that outlives its item would call into it when chosen.
  for (const QPointer<QAction>& action : views_->actions) {
    if (!action) continue;
    // A menu's action belongs to its QMenu, so the menu goes as a whole.
    if (auto* menu = action->menu<QMenu*>()) {
      delete menu;
    } else {
      delete action.data();
    }
  }
}

void MenuItem::SetText(const String& text) {
  UITrap();
  text_ = text;
  Sync();
}
void MenuItem::SetKeyboardShortcut(const String& shortcut) {
  UITrap();
  shortcut_ = shortcut;
  Sync();
}
void MenuItem::SetVisible(bool v) {
  UITrap();
  visible_ = v;
  Sync();
}

void MenuItem::Append(std::unique_ptr<MenuItem> item) {
  UITrap();
  if (!item) throw NilObjectException();
  children_.push_back(std::move(item));
}

Ref<MenuItem> MenuItem::Item(Integer index) const {
  if (index < 0 || index >= Count()) return nullptr;
  return children_[static_cast<std::size_t>(index)].get();
}

Ref<MenuItem> MenuItem::Child(const String& name) const {
  UITrap();
  for (const auto& child : children_) {
    if (child->Name() == name) return child.get();
  }
  return nullptr;
}

Ref<MenuItem> MenuItem::_Lookup(const String& name) const {
  UITrap();
  for (const auto& child : children_) {
    if (child->Name() == name) return child.get();
    if (Ref<MenuItem> below = child->_Lookup(name)) return below;
  }
  return nullptr;
}

void MenuItem::_Show(QAction* action) {
  views_->actions.emplace_back(action);
  Sync();
}

std::vector<QAction*> MenuItem::_Shown() const {
  std::vector<QAction*> shown;
  for (const QPointer<QAction>& action : views_->actions) {
    if (action) shown.push_back(action.data());
  }
  return shown;
}

void MenuItem::Sync() {
  const QKeySequence key = ToKeySequence(shortcut_);
  for (const QPointer<QAction>& action : views_->actions) {
    if (!action) continue;
    if (!action->isSeparator()) {
      action->setText(QString::fromStdString(text_));
      action->setShortcut(key);
      // Window-wide, so the keys work whichever control has the focus.
      action->setShortcutContext(Qt::WindowShortcut);
    }
    action->setVisible(visible_);
  }
}

void QuitMenuItem::Action() { Quit(0); }

// The window shows its own bar. On Linux and Windows that is a bar inside
// the window above the content area, which keeps its exact size while the
// frame grows to hold both.
void Window::SetMenuBar(MenuBar* bar) {
  UITrap();
  menuBar_ = bar;
  QMenuBar* shown = nullptr;
  if (bar != nullptr) {
    shown = new QMenuBar;
    Populate(*shown, *bar);
  }
  ShowMenuBar(shown);
  if (shown != nullptr && !menuBarVisible_) shown->hide();
  ApplySize();
}

MenuBar* ApplicationMenuBar() { return gApplicationMenuBar; }

void SetApplicationMenuBar(MenuBar* bar) {
  UITrap();
  gApplicationMenuBar = bar;
#ifdef Q_OS_MACOS
  // Only macOS has a menu bar of the application, shown while no window of
  // ours has its own; a bar without a parent becomes it.
  EnsureGui();
  delete gApplicationShown.data();
  if (bar != nullptr) {
    gApplicationShown = new QMenuBar(nullptr);
    Populate(*gApplicationShown, *bar);
    AtFinalize([] { delete gApplicationShown.data(); });
  }
#endif
}

}  // namespace tk

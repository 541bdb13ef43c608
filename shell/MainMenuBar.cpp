#include "shell/MainMenuBar.h"

#include <memory>

namespace {

// Every item gets its properties in the same order; a separator has no
// shortcut at all, where a menu or a plain item has an empty one.
template <class T = tk::MenuItem>
std::unique_ptr<tk::MenuItem> NewItem(const char* name, const char* text, const char* shortcut) {
  auto item = std::make_unique<T>();
  item->SetName(name);
  item->SetAutoEnable(true);
  item->SetText(text);
  item->SetVisible(true);
  item->SetKeyboardShortcut(shortcut);
  return item;
}

std::unique_ptr<tk::MenuItem> NewSeparator(const char* name) {
  auto item = std::make_unique<tk::MenuItem>();
  item->SetName(name);
  item->SetAutoEnable(true);
  item->SetText("-");
  item->SetVisible(true);
  return item;
}

}  // namespace

// A menu stands on the bar before its first item comes, and items are
// added to it through the bar by its name.
void MainMenuBar::Constructor() {
  Append(NewItem("FileMenu", "&File", ""));
  Child("FileMenu")->Append(NewItem<tk::QuitMenuItem>("FileQuit", "&Quit", "Cmd+Q"));

  Append(NewItem("EditMenu", "&Edit", ""));
  Child("EditMenu")->Append(NewItem("EditUndo", "&Undo", "Cmd+Z"));
  Child("EditMenu")->Append(NewSeparator("EditSeparator1"));
  Child("EditMenu")->Append(NewItem("EditCut", "Cu&t", "Cmd+X"));
  Child("EditMenu")->Append(NewItem("EditCopy", "&Copy", "Cmd+C"));
  Child("EditMenu")->Append(NewItem("EditPaste", "&Paste", "Cmd+V"));
  // Named Clear, shown as Delete.
  Child("EditMenu")->Append(NewItem("EditClear", "&Delete", ""));
  Child("EditMenu")->Append(NewSeparator("EditSeparator2"));
  Child("EditMenu")->Append(NewItem("EditSelectAll", "Select &All", "Cmd+A"));
}

MainMenuBar& ImplicitMainMenuBar() {
  static std::unique_ptr<MainMenuBar> instance;  // lives until the process ends
  if (!instance) {
    auto bar = std::make_unique<MainMenuBar>();
    bar->Constructor();
    instance = std::move(bar);
  }
  return *instance;
}

#pragma once
// The thread guard. Windows, controls, menus and dialogs belong to the main
// thread: Qt's widgets are not thread-safe, and a widget touched from a
// worker corrupts it silently or crashes much later, far from the cause.
// Every operation on them calls UITrap first, so a thread that tries fails
// at once, loudly, and changes nothing.
namespace tk {

// Raises ThreadAccessingUIException when called off the main thread. Before
// the application object exists there is no main thread yet to tell apart,
// and everything passes.
void UITrap();

}  // namespace tk

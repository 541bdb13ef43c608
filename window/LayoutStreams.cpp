// The layout's values written as property streams, entry by entry in the
// order each kind of object takes them. The order matters: a control gets
// its parent first, its size and place late, and its Index and Name last.
#include <algorithm>

#include "toolkit/Exceptions.h"
#include "toolkit/PropertyStream.h"
#include "window/LayoutData.h"

namespace layout {
namespace {

constexpr const char* kFont = "System";
constexpr tk::Integer kCentred = 1;

// Names are written as the streams have always spelt them ("Multiline",
// "MacProcID"); the reader matches them without regard to case.

Stream Write(const WindowLayout& w) {
  return tk::StreamBuilder()
      .i8("Width", w.width).i8("Height", w.height)
      .i8("MinWidth", w.minWidth).i8("MinHeight", w.minHeight)
      .i8("MaxWidth", w.maxWidth).i8("MaxHeight", w.maxHeight)
      .i8("Frame", w.frame).s("Title", w.title)
      .b("CloseButton", w.closeButton).b("Resizeable", w.resizeable)
      .b("MaximizeButton", w.maximizeButton).b("MinimizeButton", w.minimizeButton)
      .b("FullScreenButton", w.fullScreenButton).b("Composite", w.composite)
      .i8("MacProcID", w.macProcId).i8("Placement", w.placement)
      .b("Visible", w.visible).b("LiveResize", w.liveResize).b("FullScreen", w.fullScreen)
      .b("HasBackColor", w.hasBackColor).c("BackColor", w.backColor)
      .b("MenuBarVisible", w.menuBarVisible)
      .Bytes();
}

Stream Write(const LabelLayout& l) {
  return tk::StreamBuilder()
      .s("InitialParent", "").s("DataField", "").s("DataSource", "")
      .b("Underline", false).b("Italic", false).b("Bold", l.bold)
      .u1("TextUnit", 0).f4("TextSize", l.textSize).s("TextFont", kFont)
      .b("AutoDeactivate", true).s("HelpTag", "")
      .b("Transparent", true)  // the backdrop shows through every label
      .b("Selectable", false).b("Visible", true).b("Enabled", true).b("Multiline", false)
      .c("TextColor", l.textColor).i8("TextAlign", kCentred).s("Text", l.text)
      .i8("TabIndex", l.tabIndex).i8("TabPanelIndex", 0)
      .b("LockBottom", false).b("LockRight", false).b("LockTop", true).b("LockLeft", true)
      .i8("Height", l.height).i8("Width", l.width).i8("Top", l.top).i8("Left", l.left)
      .i8("Index", l.index).s("Name", l.name)
      .b("TabStop", true)
      .Bytes();
}

Stream Write(const ButtonLayout& b) {
  return tk::StreamBuilder()
      .s("InitialParent", b.initialParent)
      .b("Underline", false).b("Italic", false).b("Bold", false)
      .u1("TextUnit", 0).f4("TextSize", 0).s("TextFont", kFont)
      .i8("ButtonStyle", b.buttonStyle)
      .b("AutoDeactivate", true).s("HelpTag", "")
      .b("Visible", true).b("Enabled", true)  // no command is ever greyed out
      .b("Cancel", false).b("Default", b.isDefault)
      .s("Caption", b.caption).b("TabStop", true)
      .i8("TabIndex", b.tabIndex).i8("TabPanelIndex", 0)
      .b("LockBottom", false).b("LockRight", false).b("LockTop", true).b("LockLeft", true)
      .i8("Height", b.height).i8("Width", b.width).i8("Top", b.top).i8("Left", b.left)
      .i8("Index", tk::kNoIndex).s("Name", b.name)
      .Bytes();
}

// Enabled stays out: the window's opening switches the timer off.
Stream Write(const TimerLayout& t) { return tk::StreamBuilder().i8("Period", t.period).i8("Mode", t.mode).Bytes(); }

}  // namespace

const Stream& WindowStream() {
  static const Stream stream = Write(Window());
  return stream;
}

const std::vector<NamedStream>& ControlStreams() {
  static const std::vector<NamedStream> streams = [] {
    std::vector<NamedStream> all;
    for (const LabelLayout& l : Labels()) all.push_back({l.name, l.index, Write(l)});
    for (const ButtonLayout& b : Buttons()) all.push_back({b.name, tk::kNoIndex, Write(b)});
    for (tk::Integer i = 0; i < 90; ++i) all.push_back({"n1", i, Write(Cell(i))});
    all.push_back({"Timer1", tk::kNoIndex, Write(Timer())});
    return all;
  }();
  return streams;
}

const Stream& ControlStream(std::string_view name, tk::Integer index) {
  const auto& all = ControlStreams();
  const auto it = std::find_if(all.begin(), all.end(), [&](const NamedStream& s) { return s.name == name && s.index == index; });
  if (it == all.end()) throw tk::OutOfBoundsException("The layout has no control \"" + tk::String(name) + "\" (" + std::to_string(index) + ").");
  return it->bytes;
}

const Stream& CellStream(tk::Integer index) { return ControlStream("n1", index); }

}  // namespace layout

// The window the program builds and its layout streams, against the tables
// as the design gives them (Tables.h), and the order it makes its controls in.
#include <QMainWindow>
#include <QWidget>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <span>

#include "tests/tables/Tables.h"
#include "toolkit/PropertyStream.h"
#include "window/LayoutData.h"
#include "window/Window1.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Entries = std::vector<tables::Entry>;

// One control as the tables give it: its entries in its stream's order.
struct Expected {
  std::string name;
  tk::Integer index;
  Entries entries;
};

// The control's own entries and the shared ones, in the kind's order.
Entries InOrder(std::span<const std::string_view> order, const Entries& alike, Entries entries) {
  entries.insert(entries.end(), alike.begin(), alike.end());
  EXPECT_EQ(entries.size(), order.size());
  std::ranges::sort(entries, {}, [&](const tables::Entry& e) { return std::ranges::find(order, e.name) - order.begin(); });
  return entries;
}

Expected OfLabel(const tables::Label& l, tk::Integer index) {
  return {l.name, index, InOrder(tables::kLabelOrder, tables::kLabelsAlike, {
      {"Left", l.left}, {"Top", l.top}, {"Width", l.width}, {"Height", l.height}, {"TextSize", l.textSize},
      {"Bold", l.bold}, {"TextColor", l.textColor}, {"Text", tk::String(l.text)}, {"TabIndex", l.tabIndex},
      {"Index", index}, {"Name", tk::String(l.name)}})};
}

// The 102 controls: panel, board, buttons, timer.
std::vector<Expected> Controls() {
  std::vector<Expected> all;
  for (const tables::Label& l : tables::kPanel) all.push_back(OfLabel(l, tk::kNoIndex));
  for (tk::Integer k = 0; k < 90; ++k) {
    tables::Label cell = tables::kCell;
    cell.left = tables::kCellLeft[std::size_t(k % 10)];
    cell.top = tables::kCellTop[std::size_t(k / 10)][std::size_t(k % 10)];
    cell.tabIndex = k + 8;
    all.push_back(OfLabel(cell, k));
  }
  for (const tables::Button& b : tables::kButtons) {
    all.push_back({b.name, tk::kNoIndex, InOrder(tables::kButtonOrder, tables::kButtonsAlike, {
        {"InitialParent", tk::String(b.initialParent)}, {"ButtonStyle", b.buttonStyle}, {"Cancel", b.cancel},
        {"Default", b.isDefault}, {"Caption", tk::String(b.caption)}, {"TabIndex", b.tabIndex},
        {"Height", b.height}, {"Width", b.width}, {"Top", b.top}, {"Left", b.left}, {"Name", tk::String(b.name)}})});
  }
  all.push_back({"Timer1", tk::kNoIndex, tables::kTimer});
  return all;
}

// The window with its layout alone: the opening's reset, which repaints the
// numbers, does not run.
class LaidOutWindow : public Window1 {
 protected:
  void Event_Open() override {}
};

// Each object's stream holds its entries, names spelt as written, in order
// and nothing more; the object holds each value, read back through the
// toolkit; its widget stands at its place in window coordinates, in its font.
TEST(DesignTables, EveryStreamAndTheWindowBuiltFromItHoldTheTables) {
  auto window = std::make_unique<LaidOutWindow>();
  window->Constructor();
  window->Timer1()->SetEnabled(false);
  auto expect = [](const tk::Object& object, const Bytes& stream, const Entries& want, const std::string& who) {
    std::size_t i = 0;
    tk::PropertyReader reader(object, stream);
    for (tk::PropertyEntry e; reader.Next(e); ++i) {
      if (i >= want.size()) continue;  // counted below
      const auto name = stream.begin() + std::ptrdiff_t(e.offset);
      EXPECT_EQ(std::string(name, std::find(name, stream.end(), ' ')), want[i].name) << who << " entry " << i;
      EXPECT_EQ(e.value, want[i].value) << who << "." << want[i].name << " in the stream";
      EXPECT_EQ(tk::GetProperty(object, want[i].name), want[i].value) << who << "." << want[i].name;
    }
    EXPECT_EQ(i, want.size()) << who;
  };
  expect(*window, layout::WindowStream(), tables::kWindow, "Window1");
  EXPECT_EQ(window->Content()->size(), QSize(1036, 572));
  EXPECT_EQ(window->TopLevel()->windowTitle(), "Calloquin");
  const Qt::WindowFlags flags = window->TopLevel()->windowFlags();
  EXPECT_FALSE(flags & (Qt::WindowCloseButtonHint | Qt::WindowMaximizeButtonHint));
  EXPECT_TRUE(flags & Qt::WindowMinimizeButtonHint);

  EXPECT_EQ(layout::ControlStreams().size(), 102u);
  for (const Expected& c : Controls()) {
    const std::string who = c.index == tk::kNoIndex ? c.name : c.name + "(" + std::to_string(c.index) + ")";
    tk::Control* control = c.index == tk::kNoIndex ? window->ControlByName(c.name) : window->ControlByNameIndex(c.name, c.index);
    ASSERT_NE(control, nullptr) << who;
    expect(*control, layout::ControlStream(c.name, c.index), c.entries, who);
    auto* rect = dynamic_cast<tk::RectControl*>(control);
    if (rect == nullptr) continue;
    auto value = [&](std::string_view name) {
      return std::find_if(c.entries.begin(), c.entries.end(), [&](const tables::Entry& e) { return e.name == name; })->value;
    };
    auto at = [&](std::string_view name) { return int(std::get<tk::Integer>(value(name))); };
    const QWidget* w = rect->Widget();
    EXPECT_EQ(QRect(w->mapTo(window->Content(), QPoint(0, 0)), w->size()), QRect(at("Left"), at("Top"), at("Width"), at("Height"))) << who;
    const float size = std::get<float>(value("TextSize"));
    EXPECT_EQ(w->font().pixelSize(), size > 0 ? int(size) : tk::kOrdinaryTextPixels) << who;
    EXPECT_EQ(w->font().bold(), std::get<bool>(value("Bold"))) << who;
    EXPECT_TRUE(w->isVisibleTo(window->Content())) << who;
  }

  // Made in this order, which is Qt's stacking order too: each lies over
  // those made before it, and PushButton3 lies in MainNumber's widget.
  std::vector<std::string> names = {"MainNumber", "PushButton3", "LastNumber", "NumbersGone", "Label1",
                                    "Label2", "Label3", "PushButton1", "PushButton2"};
  names.resize(99, "n1");
  names.insert(names.end(), {"LastNumber1", "LastNumber2", "Timer1"});
  ASSERT_EQ(window->Controls().size(), 102u);
  std::vector<QObject*> made, stacked;
  for (std::size_t i = 0; i < 102; ++i) {
    const tk::Control* c = window->Controls()[i];
    EXPECT_EQ(c->Name(), names[i]) << i;
    EXPECT_EQ(c->Index(), i >= 9 && i < 99 ? tk::Integer(i - 9) : tk::kNoIndex) << i;
    auto* r = dynamic_cast<const tk::RectControl*>(c);
    if (r != nullptr && r->Widget()->parentWidget() == window->Content()) made.push_back(r->Widget());
  }
  for (QObject* child : window->Content()->children())
    if (std::ranges::count(made, child) > 0) stacked.push_back(child);
  EXPECT_EQ(made.size(), 100u);
  EXPECT_EQ(stacked, made);
  EXPECT_EQ(window->PushButton3()->Widget()->parentWidget(), window->MainNumber()->Widget());
}

}  // namespace

// The window the program builds, its layout streams and its calls, against
// the tables as the design gives them (Tables.h).
#include <QMainWindow>
#include <QWidget>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <span>

#include "engine/Module1.h"
#include "tests/game/GameFixture.h"
#include "tests/tables/Tables.h"
#include "toolkit/PropertyStream.h"
#include "window/LayoutData.h"
#include "window/Window1.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Entries = std::vector<tables::Entry>;
using namespace std::string_literals;

// One control as the tables give it: its entries in its stream's order.
struct Expected {
  std::string name;
  tk::Integer index;
  Entries entries;
};

// The shared entries and the control's own, in the kind's order; every
// name of the order has exactly one value.
Entries InOrder(std::span<const std::string_view> order, const Entries& alike, const Entries& own) {
  std::map<std::string_view, tk::PropertyValue> values;
  for (const Entries* part : {&alike, &own})
    for (const auto& e : *part) EXPECT_TRUE(values.emplace(e.name, e.value).second) << e.name << " twice";
  EXPECT_EQ(values.size(), order.size());
  Entries entries;
  for (std::string_view name : order) entries.push_back({name, values.at(name)});
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

std::string Who(const Expected& c) { return c.index == tk::kNoIndex ? c.name : c.name + "(" + std::to_string(c.index) + ")"; }

// Each stream holds its object's entries, names spelt as written and in
// order, and nothing more.
TEST(DesignTables, EveryLayoutStreamHoldsItsObjectsEntriesInOrder) {
  tk::Window window;
  tk::Label label;
  tk::PushButton button;
  tk::Timer timer;
  timer.SetEnabled(false);
  auto expect = [](const tk::Object& kind, const Bytes& stream, const Entries& want, const std::string& who) {
    Entries got;
    tk::PropertyReader reader(kind, stream);
    for (tk::PropertyEntry e; reader.Next(e);) {
      const auto name = stream.begin() + std::ptrdiff_t(e.offset);
      got.push_back({std::string_view(reinterpret_cast<const char*>(&*name), std::size_t(std::find(name, stream.end(), ' ') - name)), e.value});
    }
    ASSERT_EQ(got.size(), want.size()) << who;
    for (std::size_t i = 0; i < want.size(); ++i) {
      EXPECT_EQ(got[i].name, want[i].name) << who << " entry " << i;
      EXPECT_EQ(got[i].value, want[i].value) << who << "." << want[i].name;
    }
  };
  expect(window, layout::WindowStream(), tables::kWindow, "Window1");
  for (const Expected& c : Controls()) {
    const tk::Object& kind = c.name.starts_with("PushButton") ? button : c.name == "Timer1" ? static_cast<tk::Object&>(timer) : label;
    expect(kind, layout::ControlStream(c.name, c.index), c.entries, Who(c));
  }
  EXPECT_EQ(layout::ControlStreams().size(), 102u);
}

TEST(DesignTables, WorkedExamplesHaveTheirExactBytes) {
  auto bytes = [](const std::string& text) { return Bytes(text.begin(), text.end()); };
  auto holds = [&](const Bytes& stream, const std::string& text) {
    const Bytes entry = bytes(text);
    return std::search(stream.begin(), stream.end(), entry.begin(), entry.end()) != stream.end();
  };
  EXPECT_EQ(layout::ControlStream("Timer1"), bytes("Period \x90\x01\0\0\0\0\0\0Mode \x02\0\0\0\0\0\0\0"s));
  const Bytes& window = layout::WindowStream();
  EXPECT_EQ(window.size(), 331u);
  EXPECT_EQ(Bytes(window.begin(), window.begin() + 29), bytes("Width \x0C\x04\0\0\0\0\0\0Height \x3C\x02\0\0\0\0\0\0"s));
  EXPECT_TRUE(holds(window, "Title \x09\0\0\0CalloquinCloseButton \0"s));
  // Values whose bytes look like blanks or letters, and colours blue first.
  const Bytes& main = layout::ControlStream("MainNumber");
  EXPECT_TRUE(holds(main, "Top \xF6\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s));
  EXPECT_TRUE(holds(main, "TextSize \x00\x00\x66\x43"s));
  EXPECT_TRUE(holds(main, "TextColor \xFE\xFE\xFF\x00"s));
  EXPECT_TRUE(holds(main, "Index \x00\x00\x00\x80\xFF\xFF\xFF\xFF"s));
  EXPECT_TRUE(holds(layout::CellStream(0), "Height \x24\0\0\0\0\0\0\0Width \x2A\0\0\0\0\0\0\0Top \x20\0\0\0\0\0\0\0"s));
  EXPECT_TRUE(holds(layout::ControlStream("PushButton3"), "InitialParent \x0A\0\0\0MainNumberUnderline "s));

  EXPECT_EQ(layout::CellStream(0).size(), 408u);
  EXPECT_EQ(main.size(), 416u);
  EXPECT_EQ(layout::ControlStream("Label3").size(), 436u);
  EXPECT_EQ(layout::ControlStream("PushButton1").size(), 376u);
  EXPECT_EQ(layout::ControlStream("PushButton3").size(), 384u);
}

// The window with its layout alone: the opening's reset, which repaints the
// numbers, does not run.
class LaidOutWindow : public Window1 {
 protected:
  void Event_Open() override {}
};

// Every object holds its tables' values, read back through the toolkit, and
// every widget stands at its place in window coordinates with its font.
TEST(DesignTables, TheBuiltWindowHoldsEveryValueAndEveryWidgetStandsThere) {
  auto window = std::make_unique<LaidOutWindow>();
  window->Constructor();
  window->Timer1()->SetEnabled(false);
  for (const auto& e : tables::kWindow) EXPECT_EQ(tk::GetProperty(*window, e.name), e.value) << "Window1." << e.name;
  EXPECT_EQ(window->Content()->size(), QSize(1036, 572));
  EXPECT_EQ(window->TopLevel()->windowTitle(), "Calloquin");
  const Qt::WindowFlags flags = window->TopLevel()->windowFlags();
  EXPECT_FALSE(flags & (Qt::WindowCloseButtonHint | Qt::WindowMaximizeButtonHint));
  EXPECT_TRUE(flags & Qt::WindowMinimizeButtonHint);

  for (const Expected& c : Controls()) {
    tk::Control* control = c.index == tk::kNoIndex ? window->ControlByName(c.name) : window->ControlByNameIndex(c.name, c.index);
    ASSERT_NE(control, nullptr) << Who(c);
    std::map<std::string_view, tk::PropertyValue> v;
    for (const auto& e : c.entries) {
      EXPECT_EQ(tk::GetProperty(*control, e.name), e.value) << Who(c) << "." << e.name;
      v[e.name] = e.value;
    }
    auto* rect = dynamic_cast<tk::RectControl*>(control);
    if (rect == nullptr) continue;
    const QWidget* w = rect->Widget();
    auto at = [&](std::string_view name) { return int(std::get<tk::Integer>(v[name])); };
    EXPECT_EQ(QRect(w->mapTo(window->Content(), QPoint(0, 0)), w->size()), QRect(at("Left"), at("Top"), at("Width"), at("Height"))) << Who(c);
    const float size = std::get<float>(v["TextSize"]);
    EXPECT_EQ(w->font().pixelSize(), size > 0 ? int(size) : tk::kOrdinaryTextPixels) << Who(c);
    EXPECT_EQ(w->font().bold(), std::get<bool>(v["Bold"])) << Who(c);
    EXPECT_TRUE(w->isVisibleTo(window->Content())) << Who(c);
  }
}

using CallTableTest = testgame::GameTest;

// The opening builds the calls; the game shows them (WholeGameTest).
TEST_F(CallTableTest, TheOpeningHoldsEveryCallLetterForLetter) {
  Open();
  ASSERT_EQ(Module1::nickname.Count(), 90);
  for (tk::Integer i = 0; i < 90; ++i) EXPECT_EQ(Module1::nickname(i), tables::kCalls[std::size_t(i)]) << "number " << i + 1;
}

}  // namespace

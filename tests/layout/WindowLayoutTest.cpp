// The window's layout streams, and the window built from them.
#include <QLabel>
#include <QMainWindow>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "toolkit/PropertyStream.h"
#include "window/LayoutData.h"
#include "window/Window1.h"
#include "window/Window1_n1.h"
#include "window/Window1_wrapper_Timer1.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using namespace std::string_literals;

std::vector<tk::PropertyEntry> Decode(const tk::Object& object, const Bytes& stream) {
  std::vector<tk::PropertyEntry> entries;
  tk::PropertyReader reader(object, stream);
  for (tk::PropertyEntry e; reader.Next(e);) entries.push_back(e);
  return entries;
}

// The bytes of an entry's value, as the reader delimits them.
Bytes ValueOf(const tk::Object& kind, const Bytes& stream, std::string_view name) {
  const auto entries = Decode(kind, stream);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (entries[i].property->name != name) continue;
    const std::size_t end = i + 1 < entries.size() ? entries[i + 1].offset : stream.size();
    return Bytes(stream.begin() + std::ptrdiff_t(entries[i].offset + name.size() + 1), stream.begin() + std::ptrdiff_t(end));
  }
  return {};
}

TEST(LayoutStreams, EachHasItsLengthAndItsKindsEntryCount) {
  EXPECT_EQ(layout::WindowStream().size(), 331u);
  tk::Label label;
  tk::PushButton button;
  tk::Timer timer;
  std::map<std::size_t, int> streamsByEntries;
  auto named = [](const auto& rows, const std::string& name) { return *std::find_if(rows.begin(), rows.end(), [&](auto& x) { return name == x.name; }); };
  for (const auto& s : layout::ControlStreams()) {
    const std::string name = s.name;
    const tk::Object* kind = &label;
    std::size_t length = 28;  // the timer's
    if (name.starts_with("PushButton")) {
      const auto& b = named(layout::Buttons(), name);
      kind = &button;
      length = 347 + std::strlen(b.initialParent) + std::strlen(b.caption) + name.size();
    } else if (name == "Timer1") {
      kind = &timer;
    } else {
      length = 404 + std::strlen(name == "n1" ? layout::Cell(s.index).text : named(layout::Labels(), name).text) + name.size();
    }
    EXPECT_EQ(s.bytes.size(), length) << name;
    ++streamsByEntries[Decode(*kind, s.bytes).size()];
  }
  timer.SetEnabled(false);
  EXPECT_EQ(streamsByEntries, (std::map<std::size_t, int>{{32, 98}, {28, 3}, {2, 1}}));
  EXPECT_EQ(layout::CellStream(0).size(), 408u);
  EXPECT_EQ(layout::ControlStream("MainNumber").size(), 416u);
  EXPECT_EQ(layout::ControlStream("Label3").size(), 436u);
  EXPECT_EQ(layout::ControlStream("PushButton1").size(), 376u);
  EXPECT_EQ(layout::ControlStream("PushButton3").size(), 384u);
}

TEST(LayoutStreams, WorkedExamplesHaveTheirExactBytes) {
  const std::string timer = "Period \x90\x01\0\0\0\0\0\0Mode \x02\0\0\0\0\0\0\0"s;
  EXPECT_EQ(layout::ControlStream("Timer1"), Bytes(timer.begin(), timer.end()));

  const Bytes& window = layout::WindowStream();
  const std::string head = "Width \x0C\x04\0\0\0\0\0\0Height \x3C\x02\0\0\0\0\0\0"s;
  EXPECT_TRUE(std::equal(head.begin(), head.end(), window.begin()));
  for (const std::string& text : {"Title \x09\0\0\0CalloquinCloseButton \0"s, "MacProcID "s, "BackColor \xFF\xFF\xFF\0"s}) {
    const Bytes part(text.begin(), text.end());
    EXPECT_NE(std::search(window.begin(), window.end(), part.begin(), part.end()), window.end()) << text;
  }

  tk::Label label;
  const Bytes& main = layout::ControlStream("MainNumber");
  EXPECT_EQ(ValueOf(label, main, "Top"), (Bytes{0xF6, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(ValueOf(label, main, "TextSize"), (Bytes{0x00, 0x00, 0x66, 0x43}));
  EXPECT_EQ(ValueOf(label, main, "TextColor"), (Bytes{0xFE, 0xFE, 0xFF, 0x00}));  // blue first
  EXPECT_EQ(ValueOf(label, main, "Index"), (Bytes{0x00, 0x00, 0x00, 0x80, 0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(ValueOf(label, layout::CellStream(0), "Top"), (Bytes{0x20, 0, 0, 0, 0, 0, 0, 0}));
  tk::PushButton button;
  EXPECT_EQ(ValueOf(button, layout::ControlStream("PushButton3"), "InitialParent"), (Bytes{10, 0, 0, 0, 'M', 'a', 'i', 'n', 'N', 'u', 'm', 'b', 'e', 'r'}));
}

class BuiltWindow : public ::testing::Test {
 protected:
  void SetUp() override { window->Constructor(); }
  std::unique_ptr<Window1> window = std::make_unique<Window1>();
};

TEST_F(BuiltWindow, MakesThe102ControlsInOrderAndStacksThemSo) {
  std::vector<std::string> names = {"MainNumber", "PushButton3", "LastNumber", "NumbersGone", "Label1", "Label2", "Label3", "PushButton1", "PushButton2"};
  names.resize(99, "n1");
  names.insert(names.end(), {"LastNumber1", "LastNumber2", "Timer1"});

  const auto& controls = window->Controls();
  ASSERT_EQ(controls.size(), 102u);
  std::vector<QWidget*> created;
  for (std::size_t i = 0; i < controls.size(); ++i) {
    EXPECT_EQ(controls[i]->Name(), names[i]) << i;
    EXPECT_EQ(controls[i]->Index(), i >= 9 && i < 99 ? tk::Integer(i - 9) : tk::kNoIndex) << i;
    auto* rect = dynamic_cast<tk::RectControl*>(controls[i]);
    if (rect != nullptr && rect->Widget()->parentWidget() == window->Content()) created.push_back(rect->Widget());
  }

  // Qt stacks siblings in the order of its child list; PushButton3 lies in
  // MainNumber's widget, so over it.
  std::vector<QWidget*> stacked;
  for (QObject* child : window->Content()->children())
    if (std::count(created.begin(), created.end(), child) > 0) stacked.push_back(static_cast<QWidget*>(child));
  EXPECT_EQ(created.size(), 100u);
  EXPECT_EQ(stacked, created);
  EXPECT_EQ(window->PushButton3()->Widget()->parentWidget(), window->MainNumber()->Widget());
}

// Every stream value stands on its object and reaches Qt: places in window
// coordinates whatever the parent, font sizes in pixels.
TEST_F(BuiltWindow, EveryObjectHoldsItsStreamAndEveryWidgetStandsThere) {
  for (const auto& e : Decode(*window, layout::WindowStream())) EXPECT_EQ(e.property->get(*window), e.value) << e.property->name;
  EXPECT_EQ(window->Content()->size(), QSize(1036, 572));
  EXPECT_EQ(window->TopLevel()->windowTitle(), "Calloquin");
  const Qt::WindowFlags flags = window->TopLevel()->windowFlags();
  EXPECT_FALSE(flags & (Qt::WindowCloseButtonHint | Qt::WindowMaximizeButtonHint));
  EXPECT_TRUE(flags & Qt::WindowMinimizeButtonHint);

  for (const auto& s : layout::ControlStreams()) {
    tk::Control* control = s.index == tk::kNoIndex ? window->ControlByName(s.name) : window->ControlByNameIndex(s.name, s.index);
    ASSERT_NE(control, nullptr) << s.name;
    for (const auto& e : Decode(*control, s.bytes)) {
      const std::string_view property = e.property->name;
      if (property == "Text" || property == "TextColor") continue;  // the opening's reset rewrites these
      EXPECT_EQ(e.property->get(*control), e.value) << s.name << "(" << s.index << ")." << property;
    }
    if (auto* rect = dynamic_cast<tk::RectControl*>(control)) {
      QWidget* w = rect->Widget();
      EXPECT_EQ(QRect(w->mapTo(window->Content(), QPoint(0, 0)), w->size()),
                QRect(int(rect->Left()), int(rect->Top()), int(rect->Width()), int(rect->Height()))) << s.name << "(" << s.index << ")";
      EXPECT_TRUE(w->isVisibleTo(window->Content()));
    }
  }
  auto at = [&](tk::Integer i) { return window->n1(i)->Widget()->geometry().topLeft(); };
  EXPECT_EQ(at(0), QPoint(35, 32));
  EXPECT_EQ(at(9), QPoint(602, 31));
  EXPECT_EQ(at(80), QPoint(35, 418));
  EXPECT_EQ(at(89), QPoint(602, 417));
  EXPECT_EQ(window->MainNumber()->Widget()->geometry(), QRect(671, -10, 345, 324));
  EXPECT_EQ(window->PushButton3()->Widget()->geometry(), QRect(714 - 671, 23 + 10, 258, 36));  // within its parent
  EXPECT_EQ(window->MainNumber()->Widget()->font().pixelSize(), 230);
  EXPECT_TRUE(window->MainNumber()->Widget()->font().bold());
  EXPECT_EQ(window->Label1()->Widget()->font().pixelSize(), tk::kOrdinaryTextPixels);
  EXPECT_EQ(window->Label1()->Text(), "Previous 3 Numbers");
}

TEST_F(BuiltWindow, ACellMadeAtRunTimeTakesCellZerosLayoutAndJoinsTheSet) {
  Window1_n1& cell = window->New<Window1_n1>();
  cell.Constructor();
  EXPECT_EQ(window->Controls().back(), &cell);
  EXPECT_EQ(cell.Name(), "n1");
  EXPECT_EQ(cell.Index(), 0);
  EXPECT_EQ(cell.Widget()->geometry(), QRect(35, 32, 42, 36));

  Window1_n1 orphan;  // not made by a window, so it has none
  EXPECT_THROW(orphan.Constructor(), tk::NilObjectException);
}

TEST_F(BuiltWindow, TheTimerHoldsItsWindowWeakly) {
  auto* timer = dynamic_cast<Window1_wrapper_Timer1*>(window->Timer1().get());
  ASSERT_NE(timer, nullptr);
  EXPECT_EQ(timer->Window(), window.get());
  Window1_wrapper_Timer1 loose;
  auto other = std::make_unique<tk::Window>();
  loose._SetWindow(other.get());
  EXPECT_EQ(loose.Window(), other.get());
  other.reset();
  EXPECT_EQ(loose.Window(), nullptr);
}

}  // namespace

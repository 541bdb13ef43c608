// The window's layout streams, and the window built from them.
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>

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

// The bytes of an entry's value, as the reader delimits it.
Bytes ValueOf(const tk::Object& kind, const Bytes& stream, std::string_view name) {
  const auto entries = Decode(kind, stream);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (entries[i].property->name != name) continue;
    const std::size_t begin = entries[i].offset + std::strlen(entries[i].property->name) + 1;
    const std::size_t end = i + 1 < entries.size() ? entries[i + 1].offset : stream.size();
    return Bytes(stream.begin() + std::ptrdiff_t(begin), stream.begin() + std::ptrdiff_t(end));
  }
  ADD_FAILURE() << name;
  return {};
}

TEST(LayoutStreams, EachHasItsLengthAndItsKindsEntriesInOrder) {
  EXPECT_EQ(layout::WindowStream().size(), 331u);
  int labels = 0, buttons = 0, timers = 0;
  tk::Label label;
  tk::PushButton button;
  for (const auto& s : layout::ControlStreams()) {
    const std::string name = s.name;
    if (name == "Timer1") {
      ++timers;
      EXPECT_EQ(s.bytes.size(), 28u);
    } else if (name.rfind("PushButton", 0) == 0) {
      ++buttons;
      const auto& b = *std::find_if(layout::Buttons().begin(), layout::Buttons().end(), [&](auto& x) { return name == x.name; });
      EXPECT_EQ(s.bytes.size(), 347 + std::strlen(b.initialParent) + std::strlen(b.caption) + name.size()) << name;
      EXPECT_EQ(Decode(button, s.bytes).size(), 28u);
    } else {
      ++labels;
      const auto entries = Decode(label, s.bytes);
      ASSERT_EQ(entries.size(), 32u) << name;
      EXPECT_EQ(s.bytes.size(), 404 + std::get<tk::String>(entries[18].value).size() + name.size()) << name;
      EXPECT_STREQ(entries.front().property->name, "InitialParent");
      EXPECT_STREQ(entries[29].property->name, "Index");
      EXPECT_EQ(std::get<tk::Integer>(entries[29].value), s.index);
    }
  }
  EXPECT_EQ(labels, 98);
  EXPECT_EQ(buttons, 3);
  EXPECT_EQ(timers, 1);
  EXPECT_EQ(layout::CellStream(0).size(), 408u);
  EXPECT_EQ(layout::ControlStream("MainNumber").size(), 416u);
  EXPECT_EQ(layout::ControlStream("Label3").size(), 436u);
  EXPECT_EQ(layout::ControlStream("PushButton1").size(), 376u);
  EXPECT_EQ(layout::ControlStream("PushButton3").size(), 384u);
  EXPECT_THROW(layout::ControlStream("n1", 90), tk::OutOfBoundsException);
}

TEST(LayoutStreams, WorkedExamplesHaveTheirExactBytes) {
  const Bytes timer = {'P', 'e', 'r', 'i', 'o', 'd', ' ', 0x90, 0x01, 0, 0, 0, 0, 0, 0,
                       'M', 'o', 'd', 'e', ' ', 0x02, 0, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(layout::ControlStream("Timer1"), timer);

  tk::Window frame;
  tk::Label label;
  tk::PushButton button;
  const Bytes& window = layout::WindowStream();
  const std::string head = "Width \x0C\x04\0\0\0\0\0\0Height \x3C\x02\0\0\0\0\0\0"s;
  EXPECT_EQ(Bytes(window.begin(), window.begin() + std::ptrdiff_t(head.size())), Bytes(head.begin(), head.end()));
  const std::string title = "Title \x09\0\0\0CalloquinCloseButton \0"s;
  EXPECT_NE(std::search(window.begin(), window.end(), title.begin(), title.end()), window.end());
  const std::string procId = "MacProcID ";  // spelt as the streams spell it
  EXPECT_NE(std::search(window.begin(), window.end(), procId.begin(), procId.end()), window.end());
  EXPECT_EQ(ValueOf(frame, window, "BackColor"), (Bytes{0xFF, 0xFF, 0xFF, 0}));

  const Bytes& main = layout::ControlStream("MainNumber");
  EXPECT_EQ(ValueOf(label, main, "Top"), (Bytes{0xF6, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(ValueOf(label, main, "TextSize"), (Bytes{0x00, 0x00, 0x66, 0x43}));
  EXPECT_EQ(ValueOf(label, main, "TextColor"), (Bytes{0xFE, 0xFE, 0xFF, 0x00}));  // blue first
  EXPECT_EQ(ValueOf(label, main, "Index"), (Bytes{0x00, 0x00, 0x00, 0x80, 0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(ValueOf(label, layout::ControlStream("LastNumber"), "TextSize"), (Bytes{0x00, 0x00, 0x5C, 0x42}));
  EXPECT_EQ(ValueOf(label, layout::CellStream(0), "Top").at(0), 0x20);
  EXPECT_EQ(ValueOf(label, layout::CellStream(0), "TextColor"), (Bytes{0x8B, 0x8B, 0x8B, 0x00}));
  EXPECT_EQ(ValueOf(button, layout::ControlStream("PushButton3"), "InitialParent"),
            (Bytes{10, 0, 0, 0, 'M', 'a', 'i', 'n', 'N', 'u', 'm', 'b', 'e', 'r'}));
}

class BuiltWindow : public ::testing::Test {
 protected:
  void SetUp() override {
    window = std::make_unique<Window1>();
    window->Constructor();
  }
  std::unique_ptr<Window1> window;
};

TEST_F(BuiltWindow, MakesThe102ControlsInOrderAndStacksThemSo) {
  std::vector<std::string> expected = {"MainNumber", "PushButton3", "LastNumber", "NumbersGone", "Label1",
                                       "Label2", "Label3", "PushButton1", "PushButton2"};
  for (int i = 0; i < 90; ++i) expected.emplace_back("n1");
  for (const char* name : {"LastNumber1", "LastNumber2", "Timer1"}) expected.emplace_back(name);

  const auto& controls = window->Controls();
  ASSERT_EQ(controls.size(), 102u);
  std::vector<QWidget*> stacked;
  for (std::size_t i = 0; i < controls.size(); ++i) {
    EXPECT_EQ(controls[i]->Name(), expected[i]) << i;
    if (i >= 9 && i < 99) {
      EXPECT_EQ(controls[i]->Index(), static_cast<tk::Integer>(i - 9));
      EXPECT_STREQ(controls[i]->ClassName(), "Window1.n1");
    } else {
      EXPECT_EQ(controls[i]->Index(), tk::kNoIndex);
    }
    auto* rect = dynamic_cast<tk::RectControl*>(controls[i]);
    if (rect != nullptr && rect->Widget()->parentWidget() == window->Content()) stacked.push_back(rect->Widget());
  }
  EXPECT_STREQ(controls.back()->ClassName(), "Window1._wrapper_Timer1");
  EXPECT_EQ(stacked.size(), 100u);  // all but the timer and PushButton3, which lies in MainNumber

  std::vector<QWidget*> qtOrder;
  for (QObject* child : window->Content()->children()) {
    if (auto* w = qobject_cast<QWidget*>(child); w != nullptr && std::count(stacked.begin(), stacked.end(), w) > 0) qtOrder.push_back(w);
  }
  EXPECT_EQ(qtOrder, stacked);
  EXPECT_EQ(window->PushButton3()->Widget()->parentWidget(), window->MainNumber()->Widget());
}

// Every stream value stands on its control and reaches Qt: places in window
// coordinates, whatever the parent, and font sizes in pixels.
TEST_F(BuiltWindow, EveryControlHoldsItsStreamAndItsWidgetStandsThere) {
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
                QRect(int(rect->Left()), int(rect->Top()), int(rect->Width()), int(rect->Height())))
          << s.name << "(" << s.index << ")";
      EXPECT_TRUE(w->isVisibleTo(window->Content()));
    }
  }
  auto at = [&](tk::Integer i) { return window->n1(i)->Widget()->geometry().topLeft(); };
  EXPECT_EQ(at(0), QPoint(35, 32));
  EXPECT_EQ(at(9), QPoint(602, 31));
  EXPECT_EQ(at(80), QPoint(35, 418));
  EXPECT_EQ(at(89), QPoint(602, 417));
  EXPECT_EQ(window->MainNumber()->Widget()->geometry(), QRect(671, -10, 345, 324));
  EXPECT_EQ(window->PushButton3()->Widget()->geometry(), QRect(714 - 671, 23 + 10, 258, 36));  // in its parent

  const QFont big = window->MainNumber()->Widget()->font();
  EXPECT_EQ(big.pixelSize(), 230);
  EXPECT_TRUE(big.bold());
  EXPECT_EQ(window->Label1()->Widget()->font().pixelSize(), tk::kOrdinaryTextPixels);
  EXPECT_EQ(window->n1(5)->Widget()->font().pixelSize(), 30);
  EXPECT_EQ(window->Label1()->Text(), "Previous 3 Numbers");
  EXPECT_TRUE(window->PushButton2()->Default());
  EXPECT_EQ(window->PushButton1()->ButtonStyle(), 7);
  EXPECT_EQ(window->Timer1()->Period(), 400);
}

TEST_F(BuiltWindow, TheWindowHoldsItsStream) {
  for (const auto& e : Decode(*window, layout::WindowStream())) EXPECT_EQ(e.property->get(*window), e.value) << e.property->name;
  EXPECT_EQ(window->Content()->size(), QSize(1036, 572));
  EXPECT_EQ(window->TopLevel()->windowTitle(), "Calloquin");
  const Qt::WindowFlags flags = window->TopLevel()->windowFlags();
  EXPECT_FALSE(flags & Qt::WindowCloseButtonHint);
  EXPECT_FALSE(flags & Qt::WindowMaximizeButtonHint);
  EXPECT_TRUE(flags & Qt::WindowMinimizeButtonHint);
}

TEST_F(BuiltWindow, HandlersAreBoundToTheirControls) {
  window->PushButton1()->Push();
  EXPECT_EQ(window->PushButton1()->Caption(), "BINGO CALLER - ON");
  window->PushButton1()->Push();
  EXPECT_EQ(window->PushButton1()->Caption(), "BINGO CALLER - OFF");
  window->MainNumber()->SetTextColor(0xFFFFFF);
  window->Timer1()->_CallAction();
  EXPECT_EQ(window->MainNumber()->TextColor(), 0u);
}

TEST_F(BuiltWindow, ACellMadeAtRunTimeTakesCellZerosPlaceAndJoinsTheSet) {
  Window1_n1& cell = window->New<Window1_n1>();
  cell.Constructor();
  EXPECT_EQ(window->Controls().size(), 103u);
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
  timer->_SetIndex(3);
  EXPECT_EQ(timer->_Index(), 3);

  Window1_wrapper_Timer1 loose;
  EXPECT_EQ(loose.Window(), nullptr);
  auto other = std::make_unique<tk::Window>();
  loose._SetWindow(other.get());
  EXPECT_EQ(loose.Window(), other.get());
  other.reset();
  EXPECT_EQ(loose.Window(), nullptr);
}

}  // namespace

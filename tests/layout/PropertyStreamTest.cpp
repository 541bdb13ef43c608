// The byte form of property streams, read against the toolkit's classes.
#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

#include <limits>

#include "toolkit/Label.h"
#include "toolkit/PropertyStream.h"
#include "toolkit/PushButton.h"
#include "toolkit/Timer.h"
#include "toolkit/Window.h"

namespace {

using tk::PropertyType;
using tk::PropertyValue;

// Writes one entry holding a value other than the property's present one.
std::pair<std::vector<std::uint8_t>, PropertyValue> ChangeEntry(const tk::Object& object, const tk::Property& p) {
  const PropertyValue now = p.get(object);
  tk::StreamBuilder b;
  switch (p.type) {
    case PropertyType::I8: b.i8(p.name, std::get<tk::Integer>(now) + 77); break;
    case PropertyType::B: b.b(p.name, !std::get<bool>(now)); break;
    case PropertyType::U1: b.u1(p.name, static_cast<std::uint8_t>(std::get<std::uint8_t>(now) + 3)); break;
    case PropertyType::F4: b.f4(p.name, std::get<float>(now) + 12.5f); break;
    case PropertyType::C: b.c(p.name, std::get<tk::Color>(now) ^ 0x123456); break;
    case PropertyType::S: b.s(p.name, std::get<tk::String>(now) + "x"); break;
  }
  tk::PropertyEntry entry;
  tk::PropertyReader(object, b.Bytes()).Next(entry);
  return {b.Bytes(), entry.value};
}

// Every row sets what its getter reads back: a row pairing the wrong setter
// and getter shows here.
TEST(PropertyStream, EveryPropertyOfEveryClassSetsAndReadsBackByName) {
  tk::Label label;
  tk::PushButton button;
  tk::Timer timer;
  tk::Window window;
  for (tk::Object* object : std::initializer_list<tk::Object*>{&label, &button, &timer, &window}) {
    for (const tk::Property* p : tk::PropertiesOf(*object)) {
      if (object == &window && (p->name == std::string_view("Visible") || p->name == std::string_view("FullScreen"))) continue;
      const auto [stream, value] = ChangeEntry(*object, *p);
      tk::SetProperties(*object, stream);
      EXPECT_EQ(tk::GetProperty(*object, p->name), value) << object->ClassName() << "." << p->name;
    }
  }
  timer.SetEnabled(false);
}

// Names match in any case, and what the window's layout never sets still
// reaches the widget. (Values whose bytes look like blanks, and the place,
// size and boldness they give, are checked against the design's tables in
// tests/tables.)
TEST(PropertyStream, NamesMatchInAnyCaseAndEveryLookReachesTheWidget) {
  tk::Label label;
  tk::SetProperties(label, tk::StreamBuilder().b("Italic", true).b("underline", true).b("Transparent", false)
                               .b("Enabled", false).i8("textALIGN", 2).s("Text", "88").Bytes());
  auto* q = static_cast<QLabel*>(label.Widget());
  EXPECT_EQ(q->text(), "88");
  EXPECT_TRUE(q->font().italic() && q->font().underline());
  EXPECT_TRUE(q->alignment() & Qt::AlignRight);
  EXPECT_TRUE(q->autoFillBackground());
  EXPECT_FALSE(q->isEnabled());

  tk::PushButton button;
  tk::SetProperties(button, tk::StreamBuilder().i8("ButtonStyle", 7).b("Default", true).s("Caption", "NEXT").Bytes());
  EXPECT_EQ(static_cast<QPushButton*>(button.Widget())->text(), "NEXT");
  EXPECT_FALSE(button.Widget()->styleSheet().isEmpty());  // the switch's own look
}

// An entry can't be skipped: a bad one stops the stream there, with the
// entries before it set, and says on which object, what and where.
TEST(PropertyStream, UnknownNamesAndShortStreamsStopWithTheObjectPropertyAndOffset) {
  tk::Label label;
  label.SetName("MainNumber");
  auto message = [&](const std::vector<std::uint8_t>& stream) -> std::string {
    try {
      tk::SetProperties(label, stream);
    } catch (const tk::UnsupportedFormatException& e) {
      return e.Message;
    }
    return "no failure";
  };
  EXPECT_EQ(message(tk::StreamBuilder().i8("Top", -10).b("Sparkle", true).Bytes()),
            "Label \"MainNumber\", property \"Sparkle\", byte 12: no property of that name");
  EXPECT_EQ(label.Top(), -10);

  auto cut = tk::StreamBuilder().i8("Left", 5).f4("TextSize", 230).Bytes();
  cut.resize(cut.size() - 2);
  EXPECT_EQ(message(cut), "Label \"MainNumber\", property \"TextSize\", byte 22: the stream ends inside the value (4 bytes needed, 2 left)");
  EXPECT_EQ(label.Left(), 5);
  EXPECT_EQ(label.TextSize(), 0);

  auto text = tk::StreamBuilder().s("Text", "Calloquin").Bytes();
  text.pop_back();
  EXPECT_NE(message(text).find("ends inside the value"), std::string::npos);
  text.resize(3);
  EXPECT_NE(message(text).find("ends inside the property's name"), std::string::npos);
}

}  // namespace

// A label of the window, under that name.
static tk::Label& AddLabel(tk::Window& window, const char* name) {
  tk::Label& label = window.New<tk::Label>();
  window.AddControl(name, label);
  return label;
}

TEST(PropertyStream, AControlCannotLieInItselfOrInItsOwnChild) {
  tk::Window window;
  tk::Label& outer = AddLabel(window, "Outer");
  tk::Label& inner = AddLabel(window, "Inner");
  tk::SetProperties(inner, tk::StreamBuilder().s("InitialParent", "Outer").Bytes());
  // Qt would loop for ever on either.
  EXPECT_THROW(tk::SetProperties(outer, tk::StreamBuilder().s("InitialParent", "Outer").Bytes()),
               tk::UnsupportedFormatException);
  EXPECT_THROW(tk::SetProperties(outer, tk::StreamBuilder().s("InitialParent", "Inner").Bytes()),
               tk::UnsupportedFormatException);
  EXPECT_EQ(outer.InitialParent(), "");
  EXPECT_EQ(inner.Widget()->parentWidget(), outer.Widget());
}

// Qt holds geometry in int and adds it up; a stream may hold any 64 bits.
// What reaches Qt is brought into its range, what reads back is exact.
TEST(PropertyStream, ExtremeGeometryReadsBackAndReachesQtWithoutOverflow) {
  tk::Window window;
  tk::Label& parent = AddLabel(window, "Parent");
  tk::Label& child = AddLabel(window, "Child");
  constexpr tk::Integer kLow = std::numeric_limits<tk::Integer>::min(), kHigh = std::numeric_limits<tk::Integer>::max();
  tk::SetProperties(parent, tk::StreamBuilder().i8("Left", kHigh).i8("Top", kHigh).Bytes());
  tk::SetProperties(child, tk::StreamBuilder().s("InitialParent", "Parent").i8("Height", kHigh).i8("Width", kHigh)
                               .i8("Top", kLow).i8("Left", kLow).Bytes());
  EXPECT_EQ(child.Left(), kLow);
  EXPECT_EQ(child.Height(), kHigh);
  EXPECT_EQ(child.Widget()->width(), QWIDGETSIZE_MAX);
  tk::SetProperties(window, tk::StreamBuilder().i8("Width", kHigh).i8("Height", -1).Bytes());
  EXPECT_EQ(window.Width(), kHigh);
}

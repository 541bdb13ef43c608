// The byte form of property streams, read against the toolkit's classes.
#include <QLabel>
#include <QMainWindow>
#include <QPalette>
#include <QPushButton>

#include <gtest/gtest.h>

#include "toolkit/Label.h"
#include "toolkit/PropertyStream.h"
#include "toolkit/PushButton.h"
#include "toolkit/Timer.h"
#include "toolkit/Window.h"

namespace {

using tk::PropertyType;
using tk::PropertyValue;

// A value of the property's type that differs from what it holds now.
PropertyValue OtherValue(const tk::Object& object, const tk::Property& p) {
  const PropertyValue now = p.get(object);
  switch (p.type) {
    case PropertyType::I8: return std::get<tk::Integer>(now) == 123 ? tk::Integer{124} : tk::Integer{123};
    case PropertyType::B: return !std::get<bool>(now);
    case PropertyType::U1: return static_cast<std::uint8_t>(std::get<std::uint8_t>(now) + 3);
    case PropertyType::F4: return std::get<float>(now) + 12.5f;
    case PropertyType::C: return tk::Color{0x123456};
    case PropertyType::S: return tk::String("x") + p.name;
  }
  return now;
}

// One entry in byte form, by the property's own type.
std::vector<std::uint8_t> Entry(const tk::Property& p, const PropertyValue& v) {
  tk::StreamBuilder b;
  switch (p.type) {
    case PropertyType::I8: b.i8(p.name, std::get<tk::Integer>(v)); break;
    case PropertyType::B: b.b(p.name, std::get<bool>(v)); break;
    case PropertyType::U1: b.u1(p.name, std::get<std::uint8_t>(v)); break;
    case PropertyType::F4: b.f4(p.name, std::get<float>(v)); break;
    case PropertyType::C: b.c(p.name, std::get<tk::Color>(v)); break;
    case PropertyType::S: b.s(p.name, std::get<tk::String>(v)); break;
  }
  return std::move(b).Bytes();
}

// Every row of a class's table sets what its getter reads back: a row that
// pairs the wrong setter with a getter shows here.
void ExpectEveryPropertyRoundTrips(tk::Object& object, std::size_t expectedCount) {
  const auto properties = tk::PropertiesOf(object);
  EXPECT_EQ(properties.size(), expectedCount) << object.ClassName();
  for (const tk::Property* p : properties) {
    if (p->name == std::string_view("Visible") || p->name == std::string_view("FullScreen")) continue;  // no window shown in a unit test
    const PropertyValue value = OtherValue(object, *p);
    tk::SetProperties(object, Entry(*p, value));
    EXPECT_EQ(tk::GetProperty(object, p->name), value) << object.ClassName() << "." << p->name;
  }
}

TEST(PropertyStream, EveryPropertyOfEveryClassSetsAndReadsBackByName) {
  tk::Label label;
  ExpectEveryPropertyRoundTrips(label, 2 + 16 + 14);
  tk::PushButton button;
  ExpectEveryPropertyRoundTrips(button, 2 + 16 + 10);
  tk::Timer timer;
  ExpectEveryPropertyRoundTrips(timer, 2 + 3);
  timer.SetEnabled(false);
  tk::Window window;
  ExpectEveryPropertyRoundTrips(window, 22);
}

TEST(PropertyStream, ValuesHoldingBlanksAndLettersAreReadByTypeAndReachTheWidget) {
  tk::Label label;
  // Top 32 is the byte 0x20 itself, Width 42 is '*', Height 36 is '$'; the
  // empty strings are four zero bytes with the next name straight after.
  const auto stream = tk::StreamBuilder()
                          .s("InitialParent", "").s("HelpTag", "")
                          .b("Underline", true).b("Italic", true).b("Bold", true)
                          .u1("TextUnit", 0).f4("TextSize", 30).s("TextFont", "System")
                          .b("Transparent", false).b("Enabled", false)
                          .c("TextColor", 0x8B8B8B).i8("TextAlign", 2).s("Text", "88")
                          .i8("Height", 36).i8("Width", 42).i8("Top", 32).i8("Left", 35)
                          .Bytes();
  tk::SetProperties(label, stream.data(), stream.size());

  auto* q = static_cast<QLabel*>(label.Widget());
  EXPECT_EQ(q->geometry(), QRect(35, 32, 42, 36));
  EXPECT_EQ(q->text(), "88");
  EXPECT_EQ(q->font().pixelSize(), 30);
  EXPECT_TRUE(q->font().bold());
  EXPECT_TRUE(q->font().italic());
  EXPECT_TRUE(q->font().underline());
  EXPECT_EQ(q->palette().color(QPalette::WindowText).rgb() & 0xFFFFFFu, 0x8B8B8Bu);
  EXPECT_TRUE(q->alignment() & Qt::AlignRight);
  EXPECT_TRUE(q->autoFillBackground());
  EXPECT_FALSE(q->isEnabled());
}

TEST(PropertyStream, ColoursAreBlueGreenRedAndButtonValuesReachTheWidget) {
  tk::Label label;
  const std::vector<std::uint8_t> yellow = {'T', 'e', 'x', 't', 'C', 'o', 'l', 'o', 'r', ' ', 0x00, 0xFF, 0xFF, 0x00};
  tk::SetProperties(label, yellow);
  EXPECT_EQ(label.TextColor(), 0xFFFF00u);
  EXPECT_EQ(tk::StreamBuilder().c("C", 0xFFFEFE).Bytes(), (std::vector<std::uint8_t>{'C', ' ', 0xFE, 0xFE, 0xFF, 0x00}));

  tk::PushButton button;
  tk::SetProperties(button, tk::StreamBuilder().i8("ButtonStyle", 7).b("Default", true).s("Caption", "NEXT").Bytes());
  auto* q = static_cast<QPushButton*>(button.Widget());
  EXPECT_EQ(q->text(), "NEXT");
  EXPECT_TRUE(button.Default());
  EXPECT_FALSE(q->styleSheet().isEmpty());  // the switch's own look
  EXPECT_EQ(q->font().pixelSize(), tk::kOrdinaryTextPixels);
}

TEST(PropertyStream, NamesMatchWithoutCaseAsTheStreamsSpellThem) {
  tk::Label label;
  tk::SetProperties(label, tk::StreamBuilder().b("Multiline", true).b("tabstop", false).Bytes());
  EXPECT_TRUE(label.Multiline());
  EXPECT_FALSE(label.TabStop());
  EXPECT_STREQ(tk::FindProperty(label, "MULTILINE")->name, "MultiLine");

  tk::Window window;
  tk::SetProperties(window, tk::StreamBuilder().i8("MacProcID", 7).s("Title", "Calloquin").Bytes());
  EXPECT_EQ(window.MacProcID(), 7);
  EXPECT_STREQ(tk::FindProperty(window, "MacProcID")->name, "MacProcId");
  EXPECT_EQ(window.TopLevel()->windowTitle(), "Calloquin");
}

// An entry can't be skipped: a bad one stops the stream there, the entries
// before it set, and the message says what, where and on which object.
TEST(PropertyStream, UnknownNamesAndShortStreamsStopWithTheObjectPropertyAndOffset) {
  tk::Label label;
  label.SetName("MainNumber");
  const auto unknown = tk::StreamBuilder().i8("Top", -10).b("Sparkle", true).Bytes();
  try {
    tk::SetProperties(label, unknown);
    FAIL() << "an unknown name was skipped";
  } catch (const tk::UnsupportedFormatException& e) {
    const std::string m = e.Message;
    EXPECT_NE(m.find("Label \"MainNumber\""), std::string::npos) << m;
    EXPECT_NE(m.find("\"Sparkle\""), std::string::npos) << m;
    EXPECT_NE(m.find("byte 12"), std::string::npos) << m;
  }
  EXPECT_EQ(label.Top(), -10);

  auto cut = tk::StreamBuilder().i8("Left", 5).f4("TextSize", 230).Bytes();
  cut.resize(cut.size() - 2);  // half of the float
  try {
    tk::SetProperties(label, cut);
    FAIL() << "a short value was read";
  } catch (const tk::UnsupportedFormatException& e) {
    const std::string m = e.Message;
    EXPECT_NE(m.find("\"TextSize\""), std::string::npos) << m;
    EXPECT_NE(m.find("byte 22"), std::string::npos) << m;  // where the value starts
  }
  EXPECT_EQ(label.Left(), 5);
  EXPECT_EQ(label.TextSize(), 0);

  const auto nameOnly = tk::StreamBuilder().s("Text", "x").Bytes();
  EXPECT_THROW(tk::SetProperties(label, std::span(nameOnly).first(3)), tk::UnsupportedFormatException);
  const auto shortString = tk::StreamBuilder().s("Text", "Calloquin").Bytes();
  EXPECT_THROW(tk::SetProperties(label, std::span(shortString).first(shortString.size() - 1)), tk::UnsupportedFormatException);
  EXPECT_THROW(tk::GetProperty(label, "Sparkle"), tk::UnsupportedFormatException);
}

}  // namespace

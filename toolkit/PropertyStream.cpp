#include "toolkit/PropertyStream.h"

#include <array>
#include <bit>
#include <functional>
#include <type_traits>

#include "toolkit/Exceptions.h"
#include "toolkit/Label.h"
#include "toolkit/PushButton.h"
#include "toolkit/Strings.h"
#include "toolkit/Timer.h"
#include "toolkit/Window.h"

namespace tk {
namespace {

using enum PropertyType;

// The plain type a setter takes, whatever its const and reference.
template <class>
struct SetterArg;
template <class C, class A>
struct SetterArg<void (C::*)(A)> {
  using type = std::remove_cvref_t<A>;
};

// One table row from a getter and a setter of class C. The row's type tag
// picks the variant alternative; the value is converted to what the setter
// takes (an f4 to double, a u1 to Integer) and back for the getter.
template <class C, PropertyType T, auto Getter, auto Setter>
constexpr Property Row(const char* name) {
  constexpr auto kAlt = static_cast<std::size_t>(T);
  using Alt = std::variant_alternative_t<kAlt, PropertyValue>;
  using Arg = typename SetterArg<decltype(Setter)>::type;
  return {name, T,
          [](Object& object, const PropertyValue& value) {
            std::invoke(Setter, static_cast<C&>(object), static_cast<Arg>(std::get<kAlt>(value)));
          },
          [](const Object& object) -> PropertyValue {
            return PropertyValue(std::in_place_index<kAlt>, static_cast<Alt>(std::invoke(Getter, static_cast<const C&>(object))));
          }};
}

// Font rows are the same on labels and buttons, though each class has its
// own setters (each applies the font to its own widget).
template <class C>
constexpr std::array<Property, 6> FontRows() {
  return {{
      Row<C, B, &C::Underline, &C::SetUnderline>("Underline"),
      Row<C, B, &C::Italic, &C::SetItalic>("Italic"),
      Row<C, B, &C::Bold, &C::SetBold>("Bold"),
      Row<C, U1, &C::TextUnit, &C::SetTextUnit>("TextUnit"),
      Row<C, F4, &C::TextSize, &C::SetTextSize>("TextSize"),
      Row<C, S, &C::TextFont, &C::SetTextFont>("TextFont"),
  }};
}

template <std::size_t N, std::size_t M>
constexpr std::array<Property, N + M> Join(const std::array<Property, N>& a, const std::array<Property, M>& b) {
  std::array<Property, N + M> out{};
  for (std::size_t i = 0; i < N; ++i) out[i] = a[i];
  for (std::size_t i = 0; i < M; ++i) out[N + i] = b[i];
  return out;
}

constexpr std::array<Property, 2> kControlRows = {{
    Row<Control, I8, &Control::Index, &Control::SetIndex>("Index"),
    Row<Control, S, &Control::Name, &Control::SetName>("Name"),
}};

constexpr std::array<Property, 16> kRectControlRows = {{
    Row<RectControl, I8, &RectControl::Left, &RectControl::SetLeft>("Left"),
    Row<RectControl, I8, &RectControl::Top, &RectControl::SetTop>("Top"),
    Row<RectControl, I8, &RectControl::Width, &RectControl::SetWidth>("Width"),
    Row<RectControl, I8, &RectControl::Height, &RectControl::SetHeight>("Height"),
    Row<RectControl, B, &RectControl::Visible, &RectControl::SetVisible>("Visible"),
    Row<RectControl, B, &RectControl::Enabled, &RectControl::SetEnabled>("Enabled"),
    Row<RectControl, S, &RectControl::HelpTag, &RectControl::SetHelpTag>("HelpTag"),
    Row<RectControl, B, &RectControl::TabStop, &RectControl::SetTabStop>("TabStop"),
    Row<RectControl, S, &RectControl::InitialParent, &RectControl::SetInitialParent>("InitialParent"),
    Row<RectControl, I8, &RectControl::TabIndex, &RectControl::SetTabIndex>("TabIndex"),
    Row<RectControl, I8, &RectControl::TabPanelIndex, &RectControl::SetTabPanelIndex>("TabPanelIndex"),
    Row<RectControl, B, &RectControl::AutoDeactivate, &RectControl::SetAutoDeactivate>("AutoDeactivate"),
    Row<RectControl, B, &RectControl::LockTop, &RectControl::SetLockTop>("LockTop"),
    Row<RectControl, B, &RectControl::LockLeft, &RectControl::SetLockLeft>("LockLeft"),
    Row<RectControl, B, &RectControl::LockBottom, &RectControl::SetLockBottom>("LockBottom"),
    Row<RectControl, B, &RectControl::LockRight, &RectControl::SetLockRight>("LockRight"),
}};

constexpr auto kLabelRows = Join(FontRows<Label>(), std::array<Property, 8>{{
    Row<Label, S, &Label::DataField, &Label::SetDataField>("DataField"),
    Row<Label, S, &Label::DataSource, &Label::SetDataSource>("DataSource"),
    Row<Label, B, &Label::Transparent, &Label::SetTransparent>("Transparent"),
    Row<Label, B, &Label::Selectable, &Label::SetSelectable>("Selectable"),
    Row<Label, B, &Label::Multiline, &Label::SetMultiline>("MultiLine"),
    Row<Label, C, &Label::TextColor, &Label::SetTextColor>("TextColor"),
    Row<Label, I8, &Label::TextAlign, &Label::SetTextAlign>("TextAlign"),
    Row<Label, S, &Label::Text, &Label::SetText>("Text"),
}});

constexpr auto kPushButtonRows = Join(FontRows<PushButton>(), std::array<Property, 4>{{
    Row<PushButton, I8, &PushButton::ButtonStyle, &PushButton::SetButtonStyle>("ButtonStyle"),
    Row<PushButton, B, &PushButton::Cancel, &PushButton::SetCancel>("Cancel"),
    Row<PushButton, B, &PushButton::Default, &PushButton::SetDefault>("Default"),
    Row<PushButton, S, &PushButton::Caption, &PushButton::SetCaption>("Caption"),
}});

constexpr std::array<Property, 3> kTimerRows = {{
    Row<Timer, I8, &Timer::Period, &Timer::SetPeriod>("Period"),
    Row<Timer, I8, &Timer::Mode, &Timer::SetMode>("Mode"),
    Row<Timer, B, &Timer::Enabled, &Timer::SetEnabled>("Enabled"),
}};

constexpr std::array<Property, 22> kWindowRows = {{
    Row<Window, I8, &Window::Width, &Window::SetWidth>("Width"),
    Row<Window, I8, &Window::Height, &Window::SetHeight>("Height"),
    Row<Window, I8, &Window::MinWidth, &Window::SetMinWidth>("MinWidth"),
    Row<Window, I8, &Window::MinHeight, &Window::SetMinHeight>("MinHeight"),
    Row<Window, I8, &Window::MaxWidth, &Window::SetMaxWidth>("MaxWidth"),
    Row<Window, I8, &Window::MaxHeight, &Window::SetMaxHeight>("MaxHeight"),
    Row<Window, I8, &Window::Frame, &Window::SetFrame>("Frame"),
    Row<Window, S, &Window::Title, &Window::SetTitle>("Title"),
    Row<Window, B, &Window::CloseButton, &Window::SetCloseButton>("CloseButton"),
    Row<Window, B, &Window::Resizeable, &Window::SetResizeable>("Resizeable"),
    Row<Window, B, &Window::MaximizeButton, &Window::SetMaximizeButton>("MaximizeButton"),
    Row<Window, B, &Window::MinimizeButton, &Window::SetMinimizeButton>("MinimizeButton"),
    Row<Window, B, &Window::FullScreenButton, &Window::SetFullScreenButton>("FullScreenButton"),
    Row<Window, B, &Window::Composite, &Window::SetComposite>("Composite"),
    Row<Window, I8, &Window::MacProcID, &Window::SetMacProcID>("MacProcId"),
    Row<Window, I8, &Window::Placement, &Window::SetPlacement>("Placement"),
    Row<Window, B, &Window::Visible, &Window::SetVisible>("Visible"),
    Row<Window, B, &Window::LiveResize, &Window::SetLiveResize>("LiveResize"),
    Row<Window, B, &Window::FullScreen, &Window::SetFullScreen>("FullScreen"),
    Row<Window, B, &Window::HasBackColor, &Window::SetHasBackColor>("HasBackColor"),
    Row<Window, C, &Window::BackColor, &Window::SetBackColor>("BackColor"),
    Row<Window, B, &Window::MenuBarVisible, &Window::SetMenuBarVisible>("MenuBarVisible"),
}};

}  // namespace

// A class's own rows and the class it inherits from.
struct PropertyClass {
  std::span<const Property> rows;
  const PropertyClass* base;
};

namespace {

constexpr PropertyClass kControl{kControlRows, nullptr};
constexpr PropertyClass kRectControl{kRectControlRows, &kControl};
constexpr PropertyClass kLabel{kLabelRows, &kRectControl};
constexpr PropertyClass kPushButton{kPushButtonRows, &kRectControl};
constexpr PropertyClass kTimer{kTimerRows, &kControl};
constexpr PropertyClass kWindow{kWindowRows, nullptr};

// The table of the nearest toolkit class; subclasses (a window's own class,
// a cell, the window's timer) declare no properties of their own.
const PropertyClass* ClassOf(const Object& object) {
  if (dynamic_cast<const Label*>(&object) != nullptr) return &kLabel;
  if (dynamic_cast<const PushButton*>(&object) != nullptr) return &kPushButton;
  if (dynamic_cast<const Timer*>(&object) != nullptr) return &kTimer;
  if (dynamic_cast<const RectControl*>(&object) != nullptr) return &kRectControl;
  if (dynamic_cast<const Control*>(&object) != nullptr) return &kControl;
  if (dynamic_cast<const Window*>(&object) != nullptr) return &kWindow;
  return nullptr;
}

// The object as an error message names it: class, name, set index.
String Describe(const Object& object) {
  String text = object.ClassName();
  if (const auto* control = dynamic_cast<const Control*>(&object)) {
    if (!control->Name().empty()) text += " \"" + control->Name() + "\"";
    if (control->Index() != kNoIndex) text += "(" + std::to_string(control->Index()) + ")";
  } else if (const auto* window = dynamic_cast<const Window*>(&object)) {
    if (!window->Title().empty()) text += " \"" + window->Title() + "\"";
  }
  return text;
}

std::uint64_t ReadLe(const std::uint8_t* p, int count) {
  std::uint64_t value = 0;
  for (int i = count - 1; i >= 0; --i) value = (value << 8) | p[i];
  return value;
}

}  // namespace

namespace {

// Property names are ASCII and matched without regard to case. Names of
// another length can't match, which spares most rows the letter-by-letter
// comparison: a window's hundred streams look up some two thousand names.
const Property* FindIn(const PropertyClass* cls, std::string_view name) {
  for (; cls != nullptr; cls = cls->base) {
    for (const Property& p : cls->rows) {
      if (p.name.size() == name.size() && RuntimeStringCompare(p.name, name) == 0) return &p;
    }
  }
  return nullptr;
}

}  // namespace

const Property* FindProperty(const Object& object, std::string_view name) { return FindIn(ClassOf(object), name); }

std::vector<const Property*> PropertiesOf(const Object& object) {
  std::vector<const Property*> all;
  for (const PropertyClass* cls = ClassOf(object); cls != nullptr; cls = cls->base) {
    for (const Property& p : cls->rows) all.push_back(&p);
  }
  return all;
}

PropertyValue GetProperty(const Object& object, std::string_view name) {
  const Property* p = FindProperty(object, name);
  if (p == nullptr) throw UnsupportedFormatException(Describe(object) + " has no property \"" + String(name) + "\"");
  return p->get(object);
}

PropertyReader::PropertyReader(const Object& object, std::span<const std::uint8_t> stream)
    : object_(object), class_(ClassOf(object)), stream_(stream) {}

void PropertyReader::Fail(std::string_view property, const String& what, std::size_t offset) const {
  throw UnsupportedFormatException(Describe(object_) + ", property \"" + String(property) + "\", byte " +
                                   std::to_string(offset) + ": " + what);
}

const std::uint8_t* PropertyReader::Take(std::size_t count, std::string_view property) {
  const std::size_t left = stream_.size() - pos_;
  if (left < count) {
    Fail(property, "the stream ends inside the value (" + std::to_string(count) + " bytes needed, " +
                       std::to_string(left) + " left)", pos_);
  }
  const std::uint8_t* p = stream_.data() + pos_;
  pos_ += count;
  return p;
}

bool PropertyReader::Next(PropertyEntry& entry) {
  if (pos_ >= stream_.size()) return false;
  const std::size_t start = pos_;
  // The name runs to the first blank; values are never searched, as any of
  // their bytes may be 0x20.
  std::size_t blank = start;
  while (blank < stream_.size() && stream_[blank] != 0x20) ++blank;
  const std::string_view name(reinterpret_cast<const char*>(stream_.data() + start), blank - start);
  if (blank == stream_.size()) Fail(name, "the stream ends inside the property's name", start);
  const Property* property = FindIn(class_, name);
  if (property == nullptr) Fail(name, "no property of that name", start);
  pos_ = blank + 1;

  entry.offset = start;
  entry.property = property;
  switch (property->type) {
    case I8:
      entry.value.emplace<0>(static_cast<Integer>(ReadLe(Take(8, name), 8)));
      break;
    case B:
      entry.value.emplace<1>(*Take(1, name) != 0);
      break;
    case U1:
      entry.value.emplace<2>(*Take(1, name));
      break;
    case F4:
      entry.value.emplace<3>(std::bit_cast<float>(static_cast<std::uint32_t>(ReadLe(Take(4, name), 4))));
      break;
    case C:
      entry.value.emplace<4>(static_cast<Color>(ReadLe(Take(4, name), 4)));
      break;
    case S: {
      const auto length = static_cast<std::size_t>(ReadLe(Take(4, name), 4));
      const auto* text = reinterpret_cast<const char*>(Take(length, name));
      entry.value.emplace<5>(text, length);
      break;
    }
  }
  return true;
}

void SetProperties(Object& object, std::span<const std::uint8_t> stream) {
  PropertyReader reader(object, stream);
  PropertyEntry entry;
  // Ends even when an entry fails: those before it stay set, and applied.
  object.BeginProperties();
  struct End {
    Object& object;
    ~End() { object.EndProperties(); }
  } end{object};
  while (reader.Next(entry)) entry.property->set(object, entry.value);
}

void SetProperties(Object& object, const std::uint8_t* data, std::size_t length) {
  SetProperties(object, std::span<const std::uint8_t>(data, length));
}

void StreamBuilder::Name(std::string_view name) {
  bytes_.insert(bytes_.end(), name.begin(), name.end());
  bytes_.push_back(0x20);
}

void StreamBuilder::Le(std::uint64_t value, int count) {
  for (int i = 0; i < count; ++i) bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

StreamBuilder& StreamBuilder::i8(std::string_view name, Integer value) {
  Name(name);
  Le(static_cast<std::uint64_t>(value), 8);
  return *this;
}

StreamBuilder& StreamBuilder::b(std::string_view name, bool value) {
  Name(name);
  bytes_.push_back(value ? 1 : 0);
  return *this;
}

StreamBuilder& StreamBuilder::u1(std::string_view name, std::uint8_t value) {
  Name(name);
  bytes_.push_back(value);
  return *this;
}

StreamBuilder& StreamBuilder::f4(std::string_view name, float value) {
  Name(name);
  Le(std::bit_cast<std::uint32_t>(value), 4);
  return *this;
}

StreamBuilder& StreamBuilder::c(std::string_view name, Color value) {
  Name(name);
  Le(value, 4);  // so blue comes first
  return *this;
}

StreamBuilder& StreamBuilder::s(std::string_view name, std::string_view value) {
  Name(name);
  Le(value.size(), 4);
  bytes_.insert(bytes_.end(), value.begin(), value.end());
  return *this;
}

}  // namespace tk

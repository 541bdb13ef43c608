#pragma once
// Property streams: the compact byte form that gives a window or a control
// its whole layout in one call.
//
// A stream is a run of entries with no header, count or end mark. An entry
// is the property's name (ASCII, up to the first blank), one blank 0x20, and
// the value in the form of the property's type:
//
//   i8  8 bytes, little-endian two's complement
//   b   1 byte, 0 or 1
//   u1  1 byte
//   f4  IEEE single, little-endian
//   c   a colour 0x00RRGGBB, little-endian: blue, green, red, 0
//   s   4-byte little-endian length n, then n bytes of UTF-8
//
// Nothing in the stream says a value's type: it comes from the property
// table of the object's class, so a stream can only be read with the object
// at hand, and an entry can never be skipped.
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "toolkit/Control.h"
#include "toolkit/Types.h"

namespace tk {

enum class PropertyType { I8, B, U1, F4, C, S };

// A decoded value. The alternative is fixed by the type tag, in the order
// of PropertyType.
using PropertyValue = std::variant<Integer, bool, std::uint8_t, float, Color, String>;

// One row of a class's property table. Set and Get take the object as the
// class the row belongs to; the table lookup guarantees that it is one.
struct Property {
  std::string_view name;  // as the class declares it; matched without case
  PropertyType type;
  void (*set)(Object& object, const PropertyValue& value);
  PropertyValue (*get)(const Object& object);
};

// The property of that name on the object's class or one of its bases, or
// nil. Names match without regard to case.
const Property* FindProperty(const Object& object, std::string_view name);

// Every property the object's class has, its own first, then its bases'.
std::vector<const Property*> PropertiesOf(const Object& object);

// Reads a property back by name; an unknown name raises
// UnsupportedFormatException.
PropertyValue GetProperty(const Object& object, std::string_view name);

// One entry of a stream, decoded.
struct PropertyEntry {
  std::size_t offset;  // where the entry's name starts
  const Property* property;
  PropertyValue value;
};

// Walks a stream entry by entry for the given object. An unknown name or a
// stream that ends inside a name or a value raises
// UnsupportedFormatException, naming the object, the property and the byte.
class PropertyReader {
 public:
  PropertyReader(const Object& object, std::span<const std::uint8_t> stream);
  // False once the stream is used up exactly.
  bool Next(PropertyEntry& entry);

 private:
  [[noreturn]] void Fail(std::string_view property, const String& what, std::size_t offset) const;
  const std::uint8_t* Take(std::size_t count, std::string_view property);

  const Object& object_;
  const struct PropertyClass* class_;  // the object's table, found once per stream
  std::span<const std::uint8_t> stream_;
  std::size_t pos_ = 0;
};

// Applies a stream: each value is set through the property's setter as soon
// as it is read, in stream order, so later entries see earlier ones. On a
// failure the entries before it stay set and the later ones are not made.
void SetProperties(Object& object, std::span<const std::uint8_t> stream);
void SetProperties(Object& object, const std::uint8_t* data, std::size_t length);

// Writes streams, one typed entry at a time:
//   StreamBuilder().i8("Width", 1036).s("Title", "Calloquin").Bytes()
class StreamBuilder {
 public:
  StreamBuilder& i8(std::string_view name, Integer value);
  StreamBuilder& b(std::string_view name, bool value);
  StreamBuilder& u1(std::string_view name, std::uint8_t value);
  StreamBuilder& f4(std::string_view name, float value);
  StreamBuilder& c(std::string_view name, Color value);
  StreamBuilder& s(std::string_view name, std::string_view value);

  const std::vector<std::uint8_t>& Bytes() const& { return bytes_; }
  std::vector<std::uint8_t> Bytes() && { return std::move(bytes_); }

 private:
  void Name(std::string_view name);
  void Le(std::uint64_t value, int count);

  std::vector<std::uint8_t> bytes_;
};

}  // namespace tk

#include "toolkit/Strings.h"

#include <cctype>
#include <cstdlib>
#include <string>

namespace tk {

String Str(Integer value) { return std::to_string(value); }

String Str(const Variant& value) {
  struct Visitor {
    String operator()(Integer v) const { return Str(v); }
    String operator()(double v) const {
      std::string s = std::to_string(v);
      // Trim trailing zeros the way a person writes a number.
      if (s.find('.') != std::string::npos) {
        while (!s.empty() && s.back() == '0') s.pop_back();
        if (!s.empty() && s.back() == '.') s.pop_back();
      }
      return s;
    }
    String operator()(bool v) const { return v ? "True" : "False"; }
    String operator()(const String& v) const { return v; }
  };
  return std::visit(Visitor{}, value);
}

double Val(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  // Copy the numeric prefix so strtod never reads past the view.
  std::string prefix;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) prefix += text[i++];
  bool digits = false;
  while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) {
    prefix += text[i++];
    digits = true;
  }
  if (i < text.size() && text[i] == '.') {
    prefix += text[i++];
    while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) {
      prefix += text[i++];
      digits = true;
    }
  }
  if (!digits) return 0.0;
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    std::string exponent(1, 'e');
    std::size_t j = i + 1;
    if (j < text.size() && (text[j] == '+' || text[j] == '-')) exponent += text[j++];
    const std::size_t firstDigit = j;
    while (j < text.size() && std::isdigit(static_cast<unsigned char>(text[j]))) exponent += text[j++];
    if (j > firstDigit) prefix += exponent;
  }
  return std::strtod(prefix.c_str(), nullptr);
}

Array<String> Split(std::string_view source, std::string_view delimiter) {
  std::vector<String> parts;
  if (delimiter.empty()) {
    parts.emplace_back(source);
    return Array<String>(std::move(parts));
  }
  std::size_t start = 0;
  for (;;) {
    const std::size_t at = source.find(delimiter, start);
    if (at == std::string_view::npos) {
      parts.emplace_back(source.substr(start));
      break;
    }
    parts.emplace_back(source.substr(start, at - start));
    start = at + delimiter.size();
  }
  return Array<String>(std::move(parts));
}

String EndOfLine() {
#ifdef _WIN32
  return "\r\n";
#else
  return "\n";
#endif
}

Integer RuntimeStringCompare(std::string_view a, std::string_view b) {
  const std::size_t n = a.size() < b.size() ? a.size() : b.size();
  for (std::size_t i = 0; i < n; ++i) {
    const int ca = std::tolower(static_cast<unsigned char>(a[i]));
    const int cb = std::tolower(static_cast<unsigned char>(b[i]));
    if (ca != cb) return ca < cb ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

}  // namespace tk

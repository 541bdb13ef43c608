#include "toolkit/Font.h"

#include <QFontDatabase>

#include "toolkit/QtRange.h"

#include <cmath>

namespace tk {

QFont MakeFont(const String& family, double pixels, bool bold, bool italic, bool underline) {
  // "System" is the platform's own interface font.
  QFont font = family.empty() || family == "System" ? QFontDatabase::systemFont(QFontDatabase::GeneralFont)
                                                    : QFont(QString::fromStdString(family));
  // Layout sizes are pixels (drawn at 72 dpi), not points: 230 must stay
  // 230 pixels tall on a 96 dpi screen or two digits would not fit.
  const int px = QtPixels(pixels) > 0 ? QtPixels(pixels) : kOrdinaryTextPixels;
  font.setPixelSize(px);
  font.setBold(bold);
  font.setItalic(italic);
  font.setUnderline(underline);
  return font;
}

}  // namespace tk

// A label lays its text out once and keeps it, in a face made without
// fontconfig; what it draws must still be what Qt's own label draws.
#include <gtest/gtest.h>

#include <QImage>
#include <QLabel>
#include <QWidget>

#include "toolkit/Label.h"

namespace {

struct Case {
  const char* text;
  double size;
  bool bold;
  tk::Integer align;  // 0 left, 1 centred, 2 right
};

QImage Grab(QWidget& w) { return w.grab().toImage().convertToFormat(QImage::Format_RGB32); }

int Differing(const QImage& a, const QImage& b) {
  if (a.size() != b.size()) return -1;
  int n = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) n += a.pixel(x, y) != b.pixel(x, y);
  }
  return n;
}

// Both labels on the same dark parent, ours and a QLabel with the same
// font, colour and alignment.
QImage Ours(const Case& c, const QString& text) {
  QWidget parent;
  parent.setStyleSheet(QStringLiteral("background: #203040"));
  tk::Label label;
  label.Widget()->setParent(&parent);
  label.SetTextSize(c.size);
  label.SetBold(c.bold);
  label.SetTextAlign(c.align);
  label.SetTextColor(0xFFFF00);
  label.Widget()->setGeometry(0, 0, 300, int(c.size * 1.5) + 4);
  label.SetText(text.toStdString());
  parent.resize(label.Widget()->size());
  return Grab(parent);
}

QImage Qts(const Case& c, const QString& text) {
  tk::Label probe;  // for its font
  probe.SetTextSize(c.size);
  probe.SetBold(c.bold);
  QWidget parent;
  parent.setStyleSheet(QStringLiteral("background: #203040"));
  QLabel label(text, &parent);
  label.setFont(probe.Widget()->font());
  label.setStyleSheet(QStringLiteral("color: #ffff00; background: transparent"));
  const Qt::Alignment h = c.align == 1 ? Qt::AlignHCenter : c.align == 2 ? Qt::AlignRight : Qt::AlignLeft;
  label.setAlignment(h | Qt::AlignTop);
  label.setGeometry(0, 0, 300, int(c.size * 1.5) + 4);
  parent.resize(label.size());
  return Grab(parent);
}

TEST(LabelText, SmallTextIsDrawnAsQtsOwnLabelDrawsIt) {
  // The sizes below the kept images, each alignment, and a text with a
  // character the face lacks, which is drawn with Qt's fallback fonts.
  for (const Case& c : {Case{"Buckle My Shoe", 0, false, 1}, Case{"88", 30, false, 1}, Case{"7", 30, true, 0},
                        Case{"Previous 3 Numbers", 18, true, 2}, Case{"Two Little Ducks", 55, true, 1},
                        Case{"Kelly\xe2\x80\x99s Eye \xe6\x9d\xb1", 30, false, 0}}) {
    const QString text = QString::fromUtf8(c.text);
    EXPECT_EQ(Differing(Ours(c, text), Qts(c, text)), 0) << c.text << " at " << c.size;
  }
}

TEST(LabelText, LargeTextStaysWithinAPixelOfQtsOwn) {
  // From 65 pixels glyphs come from kept images placed on whole pixels;
  // only anti-aliased edges may differ from Qt's outline fill.
  for (const Case& c : {Case{"88", 230, true, 1}, Case{"7", 80, true, 1}, Case{"90", 80, true, 2}}) {
    const QString text = QString::fromUtf8(c.text);
    const QImage ours = Ours(c, text), qts = Qts(c, text);
    int solid = 0, far = 0;
    for (int y = 0; y < ours.height(); ++y) {
      for (int x = 0; x < ours.width(); ++x) {
        solid += qts.pixel(x, y) == 0xFFFFFF00u;
        if (qts.pixel(x, y) == 0xFFFFFF00u && qGray(ours.pixel(x, y)) < 128) ++far;
      }
    }
    EXPECT_GT(solid, 500) << c.text;
    EXPECT_EQ(far, 0) << c.text << " at " << c.size << ": solid pixels of Qt's text missing from ours";
  }
}

}  // namespace

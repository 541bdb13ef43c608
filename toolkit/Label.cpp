#include "toolkit/Label.h"

#include <QLabel>
#include <QPainter>
#include <QPalette>

#include "toolkit/Application.h"
#include "toolkit/BigText.h"
#include "toolkit/Font.h"

namespace tk {
namespace {

// A label whose large single-line text is drawn from kept glyph images;
// any other text is drawn by QLabel itself.
class TextLabel : public QLabel {
 protected:
  void paintEvent(QPaintEvent* event) override {
    if (font().pixelSize() < kBigTextPixels || wordWrap() || textInteractionFlags() != Qt::NoTextInteraction ||
        !(alignment() & Qt::AlignTop) || text().contains(QLatin1Char('\n'))) {
      QLabel::paintEvent(event);
      return;
    }
    QPainter painter(this);
    DrawBigText(painter, contentsRect(), alignment(), font(), palette().color(foregroundRole()), text());
  }
};

}  // namespace

Label::Label() : RectControl((EnsureGui(), new TextLabel)) {
  QLabel* l = label();
  l->setTextFormat(Qt::PlainText);  // a call is text, never markup
  l->setFocusPolicy(Qt::NoFocus);   // a label takes no focus, so never steals Return
  l->setAutoFillBackground(false);
  l->setWordWrap(false);
  l->setTextInteractionFlags(Qt::NoTextInteraction);
  SetTextAlign(0);
  ApplyFont();
}

QLabel* Label::label() const { return static_cast<QLabel*>(Widget()); }

void Label::SetText(const String& text) {
  text_ = text;
  label()->setText(QString::fromStdString(text));
  if (changed_) changed_(*this);
}

void Label::SetTextColor(Color color) {
  const bool same = color_ == color && paletteSet_;
  color_ = color;
  paletteSet_ = true;
  // Restating the colour a label already has is common (every call sets
  // the big number white, to end a flash); a palette change costs a
  // propagation through Qt, so only a real change makes one.
  if (same) {
    if (changed_) changed_(*this);
    return;
  }
  QPalette palette = label()->palette();
  const QColor c(static_cast<QRgb>(0xFF000000u | (color & 0xFFFFFFu)));
  for (auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) palette.setColor(group, QPalette::WindowText, c);
  label()->setPalette(palette);
  if (changed_) changed_(*this);
}

void Label::ApplyFont() { label()->setFont(MakeFont(font_, size_, bold_, italic_, underline_)); }
void Label::SetTextFont(const String& v) { font_ = v; ApplyFont(); }
void Label::SetTextSize(double v) { size_ = v; ApplyFont(); }
void Label::SetBold(bool v) { bold_ = v; ApplyFont(); }
void Label::SetItalic(bool v) { italic_ = v; ApplyFont(); }
void Label::SetUnderline(bool v) { underline_ = v; ApplyFont(); }

void Label::SetTextAlign(Integer v) {
  align_ = v;
  // Text stands at the top of the label, as the layout was drawn for.
  Qt::Alignment h = Qt::AlignLeft;
  if (v == 1) h = Qt::AlignHCenter;
  if (v == 2) h = Qt::AlignRight;
  label()->setAlignment(h | Qt::AlignTop);
}

void Label::SetTransparent(bool v) {
  transparent_ = v;
  label()->setAutoFillBackground(!v);
}

void Label::SetSelectable(bool v) {
  selectable_ = v;
  label()->setTextInteractionFlags(v ? Qt::TextSelectableByMouse : Qt::NoTextInteraction);
}

void Label::SetMultiline(bool v) {
  multiline_ = v;
  label()->setWordWrap(v);
}

}  // namespace tk

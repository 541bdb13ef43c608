#include "toolkit/Label.h"

#include <QEvent>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QPalette>

#include "toolkit/Application.h"
#include "toolkit/KeptText.h"
#include "toolkit/Font.h"

namespace tk {
namespace {

// A label that paints its text in a colour of its own: setting a colour
// is then a repaint, where a palette change would propagate through Qt
// (every press colours two labels, every new game 90). A single line of
// text is drawn from its kept layout (KeptText). Selectable text is
// QLabel's to draw, with its palette.
class TextLabel : public QLabel {
 public:
  TextLabel() { kept_.SetFont(font()); }

  void SetColour(const QColor& colour) {
    if (colour == colour_) return;
    colour_ = colour;
    if (textInteractionFlags() != Qt::NoTextInteraction) ApplyPalette();
    // Not laid out before the label shows: its font may not be final yet.
    if (isVisible()) update(IsBig(text()) ? kept_.Ink(this, contentsRect(), alignment(), text()) : contentsRect());
  }
  // Selectable text is drawn by QLabel, from the palette.
  void ApplyPalette() {
    QPalette palette = this->palette();
    for (auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) palette.setColor(group, QPalette::WindowText, colour_);
    setPalette(palette);
  }

  void SetContent(const QString& next) {
    if (next == text()) return;
    if (!isVisible() || !updatesEnabled() || !IsBig(text()) || !IsBig(next)) {
      setText(next);
      return;
    }
    // The big number is mostly backdrop: only what the old text covered
    // and what the new one will is painted again, so that a press copies
    // and sends a third of the label's pixels.
    const QRect changed = kept_.Ink(this, contentsRect(), alignment(), text()) | kept_.Ink(this, contentsRect(), alignment(), next);
    setAttribute(Qt::WA_UpdatesDisabled, true);
    setText(next);
    setAttribute(Qt::WA_UpdatesDisabled, false);
    update(changed);
  }

 protected:
  void changeEvent(QEvent* event) override {
    if (event->type() == QEvent::FontChange) kept_.SetFont(font());
    QLabel::changeEvent(event);
  }

  void paintEvent(QPaintEvent* event) override {
    if (textInteractionFlags() != Qt::NoTextInteraction) {
      QLabel::paintEvent(event);
      return;
    }
    QPainter painter(this);
    if (IsPlainLine(text())) {
      if (!IsBig(text())) {
        kept_.Draw(painter, contentsRect(), alignment(), colour_, text(), devicePixelRatio());
        return;
      }
      // Under a plain rectangular clip the raster engine blends each glyph
      // image row by row; under a clip of several rectangles (a neighbour's
      // repaint reaching in) it sends every pixel through its span path.
      for (const QRect& r : event->region()) {
        painter.setClipRect(r);
        kept_.Draw(painter, contentsRect(), alignment(), colour_, text(), devicePixelRatio());
      }
      return;
    }
    // What QLabel draws for plain text, in the label's own colour.
    painter.setPen(colour_);
    painter.drawText(contentsRect(), static_cast<int>(alignment()) | (wordWrap() ? Qt::TextWordWrap : 0), text());
  }

 private:
  // One line of plain text, drawn from its kept layout; from 65 pixels
  // its glyphs come from kept images and only what changes is repainted.
  bool IsPlainLine(const QString& text) const {
    return textInteractionFlags() == Qt::NoTextInteraction && !wordWrap() && (alignment() & Qt::AlignTop) &&
           !text.contains(QLatin1Char('\n'));
  }
  bool IsBig(const QString& text) const { return IsPlainLine(text) && font().pixelSize() >= kBigTextPixels; }

  QColor colour_ = Qt::black;
  KeptText kept_;
};

}  // namespace

Label::Label() : RectControl((UITrap(), EnsureGui(), new TextLabel)) {
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
  UITrap();
  text_ = text;
  static_cast<TextLabel*>(label())->SetContent(QString::fromStdString(text));
  if (changed_) changed_(*this);
}

void Label::SetTextColor(Color color) {
  UITrap();
  color_ = color;
  static_cast<TextLabel*>(label())->SetColour(QColor(static_cast<QRgb>(0xFF000000u | (color & 0xFFFFFFu))));
  if (changed_) changed_(*this);
}

void Label::ApplyFont() {
  if (deferred_.Hold(Deferred::kFont)) return;
  label()->setFont(MakeFont(font_, size_, bold_, italic_, underline_));
}

void Label::EndProperties() {
  if (deferred_.End() & Deferred::kFont) ApplyFont();
}
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
  if (v) static_cast<TextLabel*>(label())->ApplyPalette();
}

void Label::SetMultiline(bool v) {
  multiline_ = v;
  label()->setWordWrap(v);
}

}  // namespace tk

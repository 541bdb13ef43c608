#include "toolkit/PushButton.h"

#include <QImage>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>

#include "toolkit/Dispatch.h"
#include "toolkit/Application.h"
#include "toolkit/Font.h"

namespace tk {
namespace {

// A button that keeps an image of its last look and copies it while
// nothing it shows has changed. A button lying inside a label is repainted
// whenever the label is (RESET lies inside the called number, which
// changes at every press), and the style's bevel, gradient and text cost
// far more than a copy.
class CachedButton : public QPushButton {
 protected:
  void paintEvent(QPaintEvent*) override {
    QStyleOptionButton option;
    initStyleOption(&option);
    const qreal ratio = devicePixelRatioF();
    // Everything the style draws from: the option's state, text and size,
    // the font, the palette and the style sheet.
    const Look look{option.state, option.features, option.text, size(), ratio, font().key(),
                    palette().cacheKey(), styleSheet()};
    if (!(look == look_) || image_.isNull()) {
      image_ = QImage(size() * ratio, QImage::Format_ARGB32_Premultiplied);
      image_.setDevicePixelRatio(ratio);
      image_.fill(Qt::transparent);
      QPainter p(&image_);
      // What a painter on the widget itself would start with.
      p.setFont(font());
      p.setPen(palette().color(foregroundRole()));
      p.setBrush(palette().brush(backgroundRole()));
      p.setLayoutDirection(layoutDirection());
      style()->drawControl(QStyle::CE_PushButton, &option, &p, this);
      look_ = look;
    }
    QPainter(this).drawImage(0, 0, image_);
  }

 private:
  struct Look {
    QStyle::State state;
    QStyleOptionButton::ButtonFeatures features;
    QString text;
    QSize size;
    qreal ratio = 0;
    QString font;
    qint64 palette = 0;
    QString sheet;
    bool operator==(const Look&) const = default;
  };
  Look look_;
  QImage image_;
};

}  // namespace

PushButton::PushButton() : RectControl((UITrap(), EnsureGui(), new CachedButton)) {
  QPushButton* b = button();
  // Qt's own default-button logic acts only inside dialogs; the window binds
  // Return and Enter itself, so no button may grab them on focus.
  b->setAutoDefault(false);
  b->setDefault(false);
  b->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(b, &QPushButton::clicked, [this] { Push(); });
  ApplyFont();
}

QPushButton* PushButton::button() const { return static_cast<QPushButton*>(Widget()); }

void PushButton::SetCaption(const String& caption) {
  UITrap();
  caption_ = caption;
  button()->setText(QString::fromStdString(caption));
  SetAccessibleName(caption);  // a switch's caption tells its state too
}

void PushButton::SetDefault(bool v) {
  default_ = v;
  ApplyStyle();
}

void PushButton::SetButtonStyle(Integer v) {
  style_ = v;
  ApplyStyle();
}

void PushButton::ApplyFont() {
  if (deferred_.Hold(Deferred::kFont)) return;
  button()->setFont(MakeFont(font_, size_, bold_, italic_, underline_));
}

void PushButton::EndProperties() {
  const unsigned work = deferred_.End();
  if (work & Deferred::kFont) ApplyFont();
  if (work & Deferred::kStyle) ApplyStyle();
}
void PushButton::SetTextFont(const String& v) { font_ = v; ApplyFont(); }
void PushButton::SetTextSize(double v) { size_ = v; ApplyFont(); }
void PushButton::SetBold(bool v) { bold_ = v; ApplyFont(); }
void PushButton::SetItalic(bool v) { italic_ = v; ApplyFont(); }
void PushButton::SetUnderline(bool v) { underline_ = v; ApplyFont(); }

void PushButton::ApplyStyle() {
  if (deferred_.Hold(Deferred::kStyle)) return;
  // Style 7 sets a switch apart from the ordinary commands; the default
  // button shows that Return presses it.
  QString css;
  if (style_ == 7) {
    css = QStringLiteral(
        "QPushButton { background: #2b3a55; color: #f2f2f2; border: 2px solid #8fa6d0; border-radius: 12px; }"
        "QPushButton:pressed { background: #1c2638; }"
        "QPushButton:focus { border-color: #ffd84a; }");
  } else if (default_) {
    css = QStringLiteral(
        "QPushButton { background: #f4f4f4; color: #101010; border: 3px solid #3f8cff; border-radius: 6px; }"
        "QPushButton:pressed { background: #cfd9ea; }");
  }
  button()->setStyleSheet(css);
}

void PushButton::AddActionHandler(ActionHandler handler) { action_ = std::move(handler); }

void PushButton::Push() {
  if (action_) Dispatch([this] { action_(*this); });
}

}  // namespace tk

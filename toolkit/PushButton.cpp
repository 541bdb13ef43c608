#include "toolkit/PushButton.h"

#include <QPushButton>

#include "toolkit/Dispatch.h"
#include "toolkit/Application.h"
#include "toolkit/Font.h"

namespace tk {

PushButton::PushButton() : RectControl((UITrap(), EnsureGui(), new QPushButton)) {
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

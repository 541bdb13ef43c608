#pragma once
#include <functional>

#include "toolkit/Control.h"
#include "toolkit/UITrap.h"

class QPushButton;

namespace tk {

class PushButton : public RectControl, public TextStyle {
 public:
  PushButton();
  const char* ClassName() const override { return "PushButton"; }

  const String& Caption() const { UITrap(); return caption_; }
  void SetCaption(const String& caption);

  // The default button answers Return and Enter wherever the focus is in
  // its window (the window binds the keys); Cancel would answer Escape.
  bool Default() const { return default_; }
  void SetDefault(bool v);
  bool Cancel() const { return cancel_; }
  void SetCancel(bool v) { cancel_ = v; }
  // 0 an ordinary push button; 7 a bevel that sets a switch apart.
  Integer ButtonStyle() const { return style_; }
  void SetButtonStyle(Integer v);

  void SetTextFont(const String& v);
  void SetTextSize(double v);
  void SetTextUnit(Integer v) { unit_ = v; }
  void SetBold(bool v);
  void SetItalic(bool v);
  void SetUnderline(bool v);

  // Action: raised by a click, Space on the focused button, or Return and
  // Enter on the default button. Runs through the failure route.
  using ActionHandler = std::function<void(PushButton&)>;
  void AddActionHandler(ActionHandler handler);
  void Push();  // as if clicked

 private:
  QPushButton* button() const;
  void ApplyFont();
  void ApplyStyle();
  void BeginProperties() override { deferred_.Begin(); }
  void EndProperties() override;

  String caption_;
  bool default_ = false, cancel_ = false;
  Integer style_ = 0;
  ActionHandler action_;
  Deferred deferred_;
};

}  // namespace tk

#pragma once
#include <functional>

#include "toolkit/Control.h"
#include "toolkit/UITrap.h"

class QLabel;

namespace tk {

class Label : public RectControl, public TextStyle {
 public:
  Label();
  const char* ClassName() const override { return "Label"; }

  // Exactly the text last set.
  const String& Text() const { UITrap(); return text_; }
  void SetText(const String& text);
  // Exactly the colour last set.
  Color TextColor() const { UITrap(); return color_; }
  void SetTextColor(Color color);

  void SetTextFont(const String& v);
  void SetTextSize(double v);
  void SetTextUnit(Integer v) { unit_ = v; }
  void SetBold(bool v);
  void SetItalic(bool v);
  void SetUnderline(bool v);

  // 0 left, 1 centred, 2 right.
  Integer TextAlign() const { return align_; }
  void SetTextAlign(Integer v);
  bool Transparent() const { return transparent_; }
  void SetTransparent(bool v);
  bool Selectable() const { return selectable_; }
  void SetSelectable(bool v);
  bool Multiline() const { return multiline_; }
  void SetMultiline(bool v);
  String DataField() const { return dataField_; }
  void SetDataField(const String& v) { dataField_ = v; }
  String DataSource() const { return dataSource_; }
  void SetDataSource(const String& v) { dataSource_ = v; }

  // Runs after every setting of the text or the colour, so that what
  // assistive technology is told keeps step with what the label shows.
  using ChangeHandler = std::function<void(Label&)>;
  void SetChangeHandler(ChangeHandler handler) { changed_ = std::move(handler); }

 private:
  QLabel* label() const;
  void ApplyFont();
  void BeginProperties() override { deferred_.Begin(); }
  void EndProperties() override;

  String text_;
  Color color_ = 0;
  Integer align_ = 0;
  bool transparent_ = true, selectable_ = false, multiline_ = false;
  String dataField_, dataSource_;
  ChangeHandler changed_;
  Deferred deferred_;
};

}  // namespace tk

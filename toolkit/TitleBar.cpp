#include "toolkit/TitleBar.h"

#include <QAbstractButton>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

namespace tk {
namespace {

constexpr int kHeight = 34;  // logical pixels: scaled with the display
constexpr int kButton = 24;

// A round, flat button with a glyph drawn as lines, so that it is sharp at
// every scale. It takes no focus: Return stays with the window.
class GlyphButton : public QAbstractButton {
 public:
  enum Glyph { Minimise, Close };
  GlyphButton(Glyph glyph, const QString& name, QWidget* parent) : QAbstractButton(parent), glyph_(glyph) {
    setFixedSize(kButton, kButton);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(name);
    setToolTip(name);
    setAttribute(Qt::WA_Hover);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QPalette& pal = palette();
    if (isDown() || underMouse()) {
      QColor hover = pal.color(QPalette::WindowText);
      hover.setAlphaF(isDown() ? 0.25f : 0.12f);
      p.setPen(Qt::NoPen);
      p.setBrush(hover);
      p.drawEllipse(rect());
    }
    QPen pen(pal.color(QPalette::WindowText), 1.5);
    pen.setCapStyle(Qt::RoundCap);
    p.setPen(pen);
    const QPointF c = QRectF(rect()).center();
    if (glyph_ == Minimise) {
      p.drawLine(c + QPointF(-5, 4), c + QPointF(5, 4));
    } else {
      p.drawLine(c + QPointF(-4.5, -4.5), c + QPointF(4.5, 4.5));
      p.drawLine(c + QPointF(-4.5, 4.5), c + QPointF(4.5, -4.5));
    }
  }

 private:
  Glyph glyph_;
};

}  // namespace

TitleBar::TitleBar(QWidget* parent) : QWidget(parent) {
  setFixedHeight(kHeight);
  setAccessibleName(QStringLiteral("Title bar"));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(6, 0, 6, 0);
  row->setSpacing(6);
  row->addStretch();
  auto* minimise = new GlyphButton(GlyphButton::Minimise, QStringLiteral("Minimise"), this);
  auto* close = new GlyphButton(GlyphButton::Close, QStringLiteral("Close"), this);
  row->addWidget(minimise);
  row->addWidget(close);
  connect(minimise, &QAbstractButton::clicked, this, [this] { window()->showMinimized(); });
  connect(close, &QAbstractButton::clicked, this, [this] { window()->close(); });
  minimise_ = minimise;
  close_ = close;
}

void TitleBar::SetTitle(const QString& title) {
  title_ = title;
  setAccessibleDescription(title);
  update();
}

void TitleBar::SetControls(bool minimise, bool close) {
  minimise_->setVisible(minimise);
  close_->setVisible(close);
}

bool TitleBar::Wanted() { return QGuiApplication::platformName().startsWith(QLatin1String("wayland")); }

void TitleBar::mousePressEvent(QMouseEvent* event) {
  // The compositor moves the window: a Wayland client can't place itself.
  if (event->button() == Qt::LeftButton && window()->windowHandle() != nullptr) {
    window()->windowHandle()->startSystemMove();
  }
  event->accept();
}

// Where a desktop would maximise, nothing happens: the window has one size.
void TitleBar::mouseDoubleClickEvent(QMouseEvent* event) { event->accept(); }

void TitleBar::paintEvent(QPaintEvent* /*event*/) {
  QPainter p(this);
  const QPalette& pal = palette();
  p.fillRect(rect(), pal.color(QPalette::Window).darker(108));
  p.setPen(pal.color(QPalette::Mid));
  p.drawLine(rect().bottomLeft(), rect().bottomRight());
  QFont bold = font();
  bold.setBold(true);
  p.setFont(bold);
  p.setPen(pal.color(QPalette::WindowText));
  // Centred on the whole bar, as desktops centre a title; the controls
  // keep their end clear.
  const int reserve = 2 * (kButton + 12);
  p.drawText(rect().adjusted(reserve, 0, -reserve, 0), Qt::AlignCenter,
             p.fontMetrics().elidedText(title_, Qt::ElideRight, width() - 2 * reserve));
}

}  // namespace tk

// The reference for the speed benchmarks: the least a Qt Widgets program can
// be with the same content size as Calloquin's window and one big label where
// Calloquin shows its number. Return changes the label's text, as a press
// does; nothing else happens. Its text is Calloquin's board grey, so the
// start-up probe can wait for it the same way.
#include <QApplication>
#include <QFont>
#include <QKeySequence>
#include <QLabel>
#include <QPalette>
#include <QShortcut>
#include <QWidget>

#include "window/LayoutData.h"

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  QWidget window;
  window.setWindowTitle(QStringLiteral("Bare"));
  window.setFixedSize(static_cast<int>(layout::Window().width), static_cast<int>(layout::Window().height));
  QPalette palette = window.palette();
  palette.setColor(QPalette::Window, QColor(0x1e, 0x22, 0x2a));
  palette.setColor(QPalette::WindowText, QColor(0xAA, 0xAA, 0xAA));
  window.setPalette(palette);
  window.setAutoFillBackground(true);

  const layout::LabelLayout& big = layout::Labels().front();  // MainNumber
  auto* label = new QLabel(QStringLiteral("0"), &window);
  label->setGeometry(static_cast<int>(big.left), static_cast<int>(big.top), static_cast<int>(big.width),
                     static_cast<int>(big.height));
  QFont font;
  font.setPixelSize(static_cast<int>(big.textSize));
  font.setBold(true);
  label->setFont(font);
  label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);

  int count = 0;
  auto* shortcut = new QShortcut(QKeySequence(Qt::Key_Return), &window);
  QObject::connect(shortcut, &QShortcut::activated, [&] { label->setText(QString::number(count++ % 90 + 1)); });
  window.show();
  return QApplication::exec();
}

#include "toolkit/MsgBox.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include <utility>

#include "toolkit/Hook.h"
#include "toolkit/ModalDialog.h"
#include "toolkit/UITrap.h"

namespace tk {
namespace {

constinit Hook<MsgBoxAnswerer> answerer;

Integer ShowDialog(const String& text, Integer style, const String& title) {
  QMessageBox box(QApplication::activeWindow());
  box.setWindowTitle(title.empty() ? QStringLiteral("Calloquin") : QString::fromStdString(title));
  box.setText(QString::fromStdString(text));
  switch (style & 0x70) {
    case 16: box.setIcon(QMessageBox::Critical); break;
    case 32: box.setIcon(QMessageBox::Question); break;
    case 48: box.setIcon(QMessageBox::Warning); break;
    case 64: box.setIcon(QMessageBox::Information); break;
    default: break;
  }
  // Buttons code 4 is Yes and No; other codes are not used by the program,
  // but a plain OK keeps any of them answerable.
  if ((style & 0x7) == kMsgBoxYesNo) {
    QPushButton* yes = box.addButton(QMessageBox::Yes);
    box.addButton(QMessageBox::No);
    box.setDefaultButton(yes);  // the key that calls the numbers answers Yes
  } else {
    box.setDefaultButton(box.addButton(QMessageBox::Ok));
  }
  RunModal(box);
  switch (box.standardButton(box.clickedButton())) {
    case QMessageBox::Yes: return kAnswerYes;
    case QMessageBox::No: return kAnswerNo;
    case QMessageBox::Ok: return 1;
    default: return 0;
  }
}

}  // namespace

Integer MsgBox(const String& text, Integer style, const String& title) {
  UITrap();
  if (answerer) return answerer(text, style, title);
  return ShowDialog(text, style, title);
}

MsgBoxAnswerer SetMsgBoxAnswerer(MsgBoxAnswerer replacement) {
  return answerer.Set(std::move(replacement));
}

}  // namespace tk

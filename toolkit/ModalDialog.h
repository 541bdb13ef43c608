#pragma once
// Runs a dialog that holds its caller until it is answered, with every key
// the operator types going to it in the order typed.
//
// Qt's own modality drops the keys that reach the window behind the dialog
// while the focus is on its way to the dialog or back, so a run of quick
// Return presses would lose some at each question. Here the dialog never
// takes the focus: the window behind keeps it, and while the dialog stands
// its keys are handed to the dialog and its clicks are swallowed.
class QDialog;

namespace tk {

// Shows the dialog and returns once it is done, with its result.
int RunModal(QDialog& dialog);

}  // namespace tk

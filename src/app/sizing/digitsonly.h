// The number fields of the sizing dialogs take digits and backspace only. Keys that move
// the cursor, Delete, and the keys the dialog itself needs (Tab, Enter, Escape) still work;
// letters, signs, blanks and pasting are refused.
#pragma once

class QLineEdit;
class QKeyEvent;

namespace ostrivex {

// Installs the filter on `edit` (it lives as long as the field).
void AcceptDigitsOnly(QLineEdit* edit);
// Whether a key press reaches a digits-only field.
bool DigitsOnlyAccepts(const QKeyEvent& event);

} // namespace ostrivex

// Pieces the sizing dialogs build alike: the number field of a side, the rows of width and
// height, and the row of OK and Cancel.
#pragma once

#include <cstdint>

class QDialog;
class QGridLayout;
class QHBoxLayout;
class QLineEdit;
class QPushButton;
class QWidget;

namespace ostrivex {

// A right-aligned field named `name`, `width` pixels wide, that holds `value` and takes
// up to `digits` digits and nothing else.
QLineEdit* DigitsField(QWidget* parent, const char* name, int32_t value, int digits, int width);
// The field of one side of a size: five digits.
QLineEdit* SizeField(QWidget* parent, const char* name, int32_t value);

// Rows 0 and 1 of a grid: "&Width:" and "&Height:" (each the buddy label of its field), the
// field, and "pixels". The caller may add rows below.
QGridLayout* SizeFieldRows(QWidget* parent, QLineEdit* width, QLineEdit* height);

// The bottom row: a stretch, then "OK" (cmdOK, the default button) and "Cancel"
// (cmdCancel, which rejects the dialog). What OK does is the dialog's own to connect.
QHBoxLayout* OkCancelRow(QDialog* dialog, QPushButton*& ok, QPushButton*& cancel);

} // namespace ostrivex

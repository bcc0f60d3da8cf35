#include "app/sizing/sizingwidgets.h"

#include "app/sizing/digitsonly.h"

#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace ostrivex {

QLineEdit* DigitsField(QWidget* parent, const char* name, int32_t value, int digits, int width) {
    auto* edit = new QLineEdit(QString::number(value), parent);
    edit->setObjectName(name);
    edit->setMaxLength(digits);
    edit->setAlignment(Qt::AlignRight);
    edit->setFixedWidth(width);
    AcceptDigitsOnly(edit);
    return edit;
}

QLineEdit* SizeField(QWidget* parent, const char* name, int32_t value) {
    return DigitsField(parent, name, value, 5, 72);
}

QGridLayout* SizeFieldRows(QWidget* parent, QLineEdit* width, QLineEdit* height) {
    auto* fields = new QGridLayout;
    auto* lblW = new QLabel("&Width:", parent);
    auto* lblH = new QLabel("&Height:", parent);
    lblW->setBuddy(width);
    lblH->setBuddy(height);
    fields->addWidget(lblW, 0, 0);
    fields->addWidget(width, 0, 1);
    fields->addWidget(new QLabel("pixels", parent), 0, 2);
    fields->addWidget(lblH, 1, 0);
    fields->addWidget(height, 1, 1);
    fields->addWidget(new QLabel("pixels", parent), 1, 2);
    return fields;
}

QHBoxLayout* OkCancelRow(QDialog* dialog, QPushButton*& ok, QPushButton*& cancel) {
    ok = new QPushButton("OK", dialog);
    ok->setObjectName("cmdOK");
    ok->setDefault(true);
    cancel = new QPushButton("Cancel", dialog);
    cancel->setObjectName("cmdCancel");
    QObject::connect(cancel, &QPushButton::clicked, dialog, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    return buttons;
}

} // namespace ostrivex

#include "app/shell/about.h"

#include "app/shell/splash.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#ifndef OSTRIVEX_VERSION
#define OSTRIVEX_VERSION "0.1"
#endif

namespace ostrivex {

QString fAbout::versionText() {
    const QString v = QCoreApplication::applicationVersion();
    return QStringLiteral("Version ") + (v.isEmpty() ? QStringLiteral(OSTRIVEX_VERSION) : v);
}

fAbout::fAbout(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("fAbout"));
    setWindowTitle(QStringLiteral("About Ostrivex Basic"));

    auto* picture = new QLabel(this);
    picture->setPixmap(fSplash::picture().scaledToWidth(300, Qt::SmoothTransformation));
    lblTitle = new QLabel(QStringLiteral("<b>Ostrivex Basic</b>"), this);
    lblVersion = new QLabel(versionText(), this);
    lblText = new QLabel(
        QStringLiteral("A raster image editor for digital imaging and artistic work.\n\n"
                       "Free software under the GNU General Public License, version 3 or "
                       "later. It comes with no warranty."),
        this);
    lblText->setWordWrap(true);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(picture, 0, Qt::AlignHCenter);
    layout->addWidget(lblTitle);
    layout->addWidget(lblVersion);
    layout->addWidget(lblText);
    layout->addLayout(buttons);
    setFixedWidth(340);
}

} // namespace ostrivex

#include "utilities/capture/fcapture.h"

#include "document/host.h"
#include "utilities/capture/capture.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <array>

namespace ostrivex {

namespace {

// The list's items in order, with their words; the index is also the capture's kind.
constexpr std::array<std::pair<const char*, const char*>, 3> kItems{{
    {"Desktop", "CAPTUREDESKTOP"},
    {"Foreground", "CAPTUREFOREGROUND"},
    {"Background", "CAPTUREBACKGROUND"},
}};

} // namespace

fCapture::fCapture(ScreenCapture& capture, QWidget* parent)
    : QDialog(parent), capture_(capture) {
    setObjectName(QStringLiteral("fCapture"));
    setWindowTitle(QString::fromLatin1(kCaptureTitle));
    setAttribute(Qt::WA_DeleteOnClose);

    cb = new QComboBox(this);
    cb->setObjectName(QStringLiteral("cb"));
    for (const auto& item : kItems) cb->addItem(QString::fromLatin1(item.first));
    cb->setCurrentIndex(0);
    cmdCapture = new QPushButton(QStringLiteral("Capture"), this);
    cmdCapture->setObjectName(QStringLiteral("cmdCapture"));
    cmdCapture->setDefault(true);
    CmdCustom = new QPushButton(QStringLiteral("Custom"), this);
    CmdCustom->setObjectName(QStringLiteral("CmdCustom"));
    CmdExit = new QPushButton(QStringLiteral("Exit"), this);
    CmdExit->setObjectName(QStringLiteral("CmdExit"));

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdCapture);
    buttons->addWidget(CmdCustom);
    buttons->addWidget(CmdExit);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(cb);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(cmdCapture, &QPushButton::clicked, this, &fCapture::cmdCapture_Click);
    connect(CmdCustom, &QPushButton::clicked, this, &fCapture::CmdCustom_Click);
    connect(CmdExit, &QPushButton::clicked, this, &QDialog::close);
}

QString fCapture::commandWord() const {
    const int i = cb->currentIndex();
    return i >= 0 && i < int(kItems.size()) ? QString::fromLatin1(kItems[size_t(i)].second)
                                             : QString();
}

void fCapture::cmdCapture_Click() {
    const QString word = commandWord();
    close();
    if (DocumentHost* host = GetDocumentHost(); host && !word.isEmpty()) host->RunCommand(word);
}

void fCapture::CmdCustom_Click() {
    const int kind = cb->currentIndex();
    close();
    if (kind >= 0 && kind < int(kItems.size()))
        capture_.CaptureRectangle(ScreenCapture::Kind(kind));
}

} // namespace ostrivex

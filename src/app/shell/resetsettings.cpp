#include "app/shell/resetsettings.h"

#include "app/settings/settings.h"

#include <QMessageBox>
#include <QWidget>

#include <cstdio>

namespace ostrivex {

bool ResetSettings(QWidget* parent) {
    const std::string name = SettingsFileName();
    if (!FileExists(name)) return false;

    QMessageBox box(QMessageBox::NoIcon, QString::fromLatin1(kResetTitle),
                    QString::fromLatin1(kResetQuestion), QMessageBox::Yes | QMessageBox::No,
                    parent);
    if (box.exec() != QMessageBox::Yes) return false;

    Settings.ResetPending = kTrue16;
    std::remove(name.c_str());
    if (parent) parent->window()->close();
    return true;
}

} // namespace ostrivex

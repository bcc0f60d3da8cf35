#include "app/shell/help.h"

#include "app/settings/settings.h"

#include <QDesktopServices>
#include <QMessageBox>
#include <QUrl>

namespace ostrivex {

bool OpenHelp(QWidget* parent) {
    const std::string page = AppFolder() + "/Help/default.htm";
    if (!FileExists(page)) {
        QMessageBox box(QMessageBox::NoIcon, QString::fromLatin1(kHelpMissingTitle),
                        QString::fromLatin1(kHelpMissingText), QMessageBox::Ok, parent);
        box.exec();
        return false;
    }
    return QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(page)));
}

} // namespace ostrivex

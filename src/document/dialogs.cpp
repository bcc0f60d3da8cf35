#include "document/dialogs.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QStringList>

namespace ostrivex {

QString QtFilterFromPairs(const QString& pairs) {
    const QStringList parts = pairs.split('|');
    QStringList out;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1];
        patterns.replace(';', ' ');
        out << parts[i].trimmed() + " (" + patterns.trimmed() + ")";
    }
    return out.join(";;");
}

std::function<void(QWidget*, const QString&, const QString&)> DocumentDialogs::Inform =
    [](QWidget* parent, const QString& text, const QString& title) {
        QMessageBox::information(parent, title, text);
    };

std::function<int(QWidget*, const QString&, const QString&)> DocumentDialogs::AskYesNoCancel =
    [](QWidget* parent, const QString& text, const QString& title) {
        return int(QMessageBox::question(parent, title, text,
                                         QMessageBox::Yes | QMessageBox::No |
                                             QMessageBox::Cancel));
    };

std::function<QString(QWidget*, const QString&, const QString&, const QString&, const QString&)>
    DocumentDialogs::AskSaveName = [](QWidget* parent, const QString& title,
                                      const QString& folder, const QString& filter,
                                      const QString& currentName) {
        QFileDialog dialog(parent, title, folder, QtFilterFromPairs(filter));
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setOption(QFileDialog::DontUseNativeDialog, true);
        if (!currentName.isEmpty()) dialog.selectFile(currentName);
        // A name typed without an extension keeps the document's format.
        const QString suffix = QFileInfo(currentName).suffix();
        if (!suffix.isEmpty() && !suffix.contains('*')) dialog.setDefaultSuffix(suffix);
        if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
            return QString();
        return dialog.selectedFiles().first();
    };

std::function<QString(QWidget*, const QString&, const QString&, const QString&)>
    DocumentDialogs::AskOpenName = [](QWidget* parent, const QString& title,
                                      const QString& folder, const QString& filter) {
        QFileDialog dialog(parent, title, folder, QtFilterFromPairs(filter));
        dialog.setAcceptMode(QFileDialog::AcceptOpen);
        dialog.setFileMode(QFileDialog::ExistingFile);
        dialog.setOption(QFileDialog::DontUseNativeDialog, true);
        if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
            return QString();
        return dialog.selectedFiles().first();
    };

} // namespace ostrivex

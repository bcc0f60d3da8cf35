// The rows of the Browser Box's list (`lv`): every file of the folder with the seven
// columns "Name", "Location", "Size (KB)", "Type", "Attributes", "Date Created" and
// "Last Accessed". A click on a column's header sorts by it (numbers and dates by value).
#pragma once

#include "utilities/browser/folderscan.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>

#include <vector>

namespace ostrivex {

// `ExtractIcon`: the type icon of files with this extension, asked of the desktop's icon
// theme for a made-up name, so no real file is touched.
QIcon ExtractIcon(const QString& lowerExtension);
// The type shown for an extension: the desktop's name for it ("PNG image"), or the
// extension in capitals and " File" when the desktop knows none.
QString TypeName(const QString& lowerExtension);

class DetailsModel : public QAbstractTableModel {
    Q_OBJECT
  public:
    enum Column { Name, Location, Size, Type, Attributes, Created, Accessed, ColumnCount };
    static const QStringList& Headers();

    explicit DetailsModel(QObject* parent = nullptr);

    // The folder's files replace the rows (in their order: the folder listing sorts by name).
    void SetEntries(std::vector<FileEntry> entries);
    const FileEntry& Entry(int row) const { return entries_[size_t(row)]; }
    // The text of one cell, as shown.
    QString Text(int row, int column) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

  private:
    std::vector<FileEntry> entries_;
    mutable QHash<QString, QString> types_;
    mutable QHash<QString, QIcon> icons_;
};

} // namespace ostrivex

#include "utilities/browser/detailsmodel.h"

#include <QApplication>
#include <QFileIconProvider>
#include <QLocale>
#include <QMimeDatabase>
#include <QStyle>

#include <algorithm>

namespace ostrivex {

namespace {

QMimeType mimeOf(const QString& ext) {
    static const QMimeDatabase db;
    return db.mimeTypeForFile(QStringLiteral("hhh.") + ext, QMimeDatabase::MatchExtension);
}

QString dateText(const QDateTime& t) {
    return t.isValid() ? QLocale().toString(t, QLocale::ShortFormat) : QString();
}

} // namespace

QIcon ExtractIcon(const QString& ext) {
    const QMimeType mime = mimeOf(ext);
    QIcon icon = QIcon::fromTheme(mime.iconName());
    if (icon.isNull()) icon = QIcon::fromTheme(mime.genericIconName());
    if (icon.isNull()) icon = QFileIconProvider().icon(QAbstractFileIconProvider::File);
    return icon;
}

QString TypeName(const QString& ext) {
    const QMimeType mime = mimeOf(ext);
    if (!ext.isEmpty() && !mime.isDefault() && !mime.comment().isEmpty()) return mime.comment();
    return ext.isEmpty() ? QStringLiteral("File") : ext.toUpper() + QStringLiteral(" File");
}

const QStringList& DetailsModel::Headers() {
    static const QStringList headers{"Name", "Location", "Size (KB)", "Type", "Attributes",
                                     "Date Created", "Last Accessed"};
    return headers;
}

DetailsModel::DetailsModel(QObject* parent) : QAbstractTableModel(parent) {}

void DetailsModel::SetEntries(std::vector<FileEntry> entries) {
    beginResetModel();
    entries_ = std::move(entries);
    endResetModel();
}

int DetailsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(entries_.size());
}

int DetailsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QString DetailsModel::Text(int row, int column) const {
    const FileEntry& e = entries_[size_t(row)];
    switch (column) {
    case Name: return e.name;
    case Location: return e.folder;
    case Size: return SizeText(e.size);
    case Type: {
        auto it = types_.constFind(e.extension);
        if (it == types_.cend()) it = types_.insert(e.extension, TypeName(e.extension));
        return *it;
    }
    case Attributes: return AttributeCode(e.readOnly, e.hidden, false, false);
    case Created: return dateText(e.created);
    case Accessed: return dateText(e.accessed);
    default: return {};
    }
}

QVariant DetailsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= int(entries_.size())) return {};
    if (role == Qt::DisplayRole) return Text(index.row(), index.column());
    if (role == Qt::ToolTipRole && index.column() == Name)
        return QFile::decodeName(entries_[size_t(index.row())].path);
    if (role == Qt::TextAlignmentRole && index.column() == Size)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::DecorationRole && index.column() == Name) {
        const QString& ext = entries_[size_t(index.row())].extension;
        auto it = icons_.constFind(ext);
        if (it == icons_.cend()) it = icons_.insert(ext, ExtractIcon(ext));
        return *it;
    }
    return {};
}

QVariant DetailsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    if (section < 0 || section >= ColumnCount) return {};
    return Headers()[section];
}

void DetailsModel::sort(int column, Qt::SortOrder order) {
    if (column < 0 || column >= ColumnCount) return;
    emit layoutAboutToBeChanged();
    // The texts of the text columns once per row, not once per comparison.
    const bool byText = column == Location || column == Type || column == Attributes;
    std::vector<QString> keys;
    if (byText) {
        keys.reserve(entries_.size());
        for (size_t i = 0; i < entries_.size(); ++i) keys.push_back(Text(int(i), column));
    }
    std::vector<size_t> rows(entries_.size());
    for (size_t i = 0; i < rows.size(); ++i) rows[i] = i;
    // Ties keep name order.
    auto less = [&](size_t i, size_t j) {
        const FileEntry& a = entries_[i];
        const FileEntry& b = entries_[j];
        if (column == Size && a.size != b.size) return a.size < b.size;
        if (column == Created && a.created != b.created) return a.created < b.created;
        if (column == Accessed && a.accessed != b.accessed) return a.accessed < b.accessed;
        if (byText) {
            const int c = keys[i].compare(keys[j], Qt::CaseInsensitive);
            if (c != 0) return c < 0;
        }
        return NameLess(a, b);
    };
    if (order == Qt::AscendingOrder)
        std::sort(rows.begin(), rows.end(), less);
    else
        std::sort(rows.begin(), rows.end(), [&less](size_t i, size_t j) { return less(j, i); });
    std::vector<FileEntry> sorted;
    std::vector<int> newRow(entries_.size());
    sorted.reserve(entries_.size());
    for (size_t k = 0; k < rows.size(); ++k) {
        newRow[rows[k]] = int(k);
        sorted.push_back(std::move(entries_[rows[k]]));
    }
    entries_ = std::move(sorted);
    // The views' current row and selection follow their files.
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex& i : before) after << index(newRow[size_t(i.row())], i.column());
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

} // namespace ostrivex

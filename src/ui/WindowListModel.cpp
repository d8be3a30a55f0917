#include "ui/WindowListModel.h"

#include "core/AppStore.h"

namespace tilmora {

WindowListModel::WindowListModel(AppStore& store, QObject* parent)
    : QAbstractListModel(parent)
    , store_(store)
    , windows_(store.windows())
    , selectedID_(store.selectedWindowID()) {
    connect(&store_, &AppStore::windowsChanged, this, &WindowListModel::takeWindows);
    connect(&store_, &AppStore::selectedWindowIDChanged, this, &WindowListModel::takeSelection);
}

int WindowListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(windows_.size());
}

QVariant WindowListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    const TilmoraWindow& shown = window(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return oneLine(shown.title);
    case Qt::ToolTipRole:
        return QStringLiteral("Select ") + oneLine(shown.title);
    case SelectedRole:
        return selectedID_ == shown.id;
    default:
        return {};
    }
}

void WindowListModel::takeWindows() {
    const std::vector<TilmoraWindow>& next = store_.windows();
    const int before = rowCount();
    const int after = static_cast<int>(next.size());
    if (after < before) {
        beginRemoveRows({}, after, before - 1);
        windows_.resize(next.size());
        endRemoveRows();
    }
    std::copy_n(next.begin(), std::min(before, after), windows_.begin());
    if (after > before) {
        beginInsertRows({}, before, after - 1);
        windows_.insert(windows_.end(), next.begin() + before, next.end());
        endInsertRows();
    }
    if (std::min(before, after) > 0) {
        Q_EMIT dataChanged(index(0), index(std::min(before, after) - 1));
    }
}

void WindowListModel::takeSelection() {
    selectedID_ = store_.selectedWindowID();
    if (rowCount() > 0) {
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {SelectedRole});
    }
}

QString WindowListModel::oneLine(const QString& text) {
    QString line;
    line.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            line += c;
            line += text.at(++i);
        } else if (c.isSurrogate()) {
            line += QChar::ReplacementCharacter;
        } else if (c == u'\n' || c == u'\r' || c == u'\t' || c == QChar::LineSeparator ||
                   c == QChar::ParagraphSeparator) {
            line += u' ';
        } else if (c.category() == QChar::Other_Control) {
            line += QChar::ReplacementCharacter;
        } else {
            line += c;
        }
    }
    return line;
}

} // namespace tilmora

// The store's window list as a Qt model, so that the Windows section shows a thousand windows
// as one view painting the rows in sight. A refresh updates the rows in place (a list of the
// same length keeps its rows, a longer or shorter one gains or loses rows at its end), so the
// scroll position and the highlighted row survive the refresh every 3 seconds.
#pragma once

#include "windows/TilmoraWindow.h"

#include <QAbstractListModel>

#include <optional>
#include <vector>

namespace tilmora {

class AppStore;

class WindowListModel : public QAbstractListModel {
    Q_OBJECT
public:
    // Whether the row's window is the store's selected window.
    static constexpr int SelectedRole = Qt::UserRole + 1;

    explicit WindowListModel(AppStore& store, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    const TilmoraWindow& window(int row) const {
        return windows_.at(static_cast<std::size_t>(row));
    }

    // A title or name as one line: control characters, line and paragraph separators and
    // unpaired surrogates become visible replacements instead of breaking the row.
    static QString oneLine(const QString& text);

private:
    void takeWindows();
    void takeSelection();

    AppStore& store_;
    std::vector<TilmoraWindow> windows_;
    std::optional<QString> selectedID_;
};

} // namespace tilmora

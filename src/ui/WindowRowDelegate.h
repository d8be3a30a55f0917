// Paints one row of the Windows section: the window symbol (accented when selected), the title,
// the application name with the frame, and an "Active" tag for its application's focused
// window, each text on one line, elided, in its own reading direction.
#pragma once

#include <QStyledItemDelegate>

namespace tilmora {

class WindowListModel;

class WindowRowDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    static constexpr int rowSpacing = 6;

    explicit WindowRowDelegate(const WindowListModel& model, QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    const WindowListModel& model_;
};

} // namespace tilmora

#include "ui/SavedLayoutsView.h"

#include "core/AppStore.h"
#include "ui/AdaptiveRow.h"
#include "ui/EmptyStateView.h"
#include "ui/NativePanel.h"
#include "ui/NativeSectionHeader.h"
#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"
#include "ui/WindowListModel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tilmora {

namespace {

constexpr int panelPadding = 14;

QLabel* text(const QString& content, bool isTitle) {
    return isTitle ? TextStyle::wrappingLabel(content, TextStyle::Style::headline)
                   : TextStyle::wrappingLabel(content, TextStyle::Style::callout, true);
}

// A symbol beside a title and a line below it.
QWidget* labelBlock(const QString& symbolName, QLabel* title, QLabel* detail) {
    auto* block = new QWidget;
    auto* row = new QHBoxLayout(block);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    auto* symbol = new QLabel;
    symbol->setPixmap(SymbolIcon::icon(symbolName).pixmap(22, 22));
    row->addWidget(symbol, 0, Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(title);
    texts->addWidget(detail);
    row->addLayout(texts, 1);
    return block;
}

QString windowsSaved(std::size_t count) {
    return count == 1 ? QStringLiteral("1 window saved")
                      : QString::number(count) + QStringLiteral(" windows saved");
}

} // namespace

SavedLayoutsView::SavedLayoutsView(AppStore& store, QWidget* parent)
    : QWidget(parent)
    , store_(store)
    , layoutName_(new QLineEdit)
    , rows_(new QWidget(this))
    , rowsLayout_(new QVBoxLayout(rows_))
    , empty_(new EmptyStateView(QStringLiteral("tray"), QStringLiteral("No Saved Layouts"),
                                QStringLiteral("Save your current workspace to restore it later."),
                                this)) {
    setObjectName(QStringLiteral("saved"));
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(24);
    page->addWidget(new NativeSectionHeader(
        QStringLiteral("Saved Workspaces"),
        QStringLiteral("Save the current desktop arrangement and restore it later.")));

    auto* savePanel = new NativePanel;
    auto* saveRow = new QHBoxLayout(savePanel);
    saveRow->setContentsMargins(panelPadding, panelPadding, panelPadding, panelPadding);
    auto* adaptive = new AdaptiveRow(nullptr, 12);
    adaptive->addItem(labelBlock(QStringLiteral("plus.rectangle.on.folder"),
                                 text(QStringLiteral("Save current layout"), true),
                                 text(QStringLiteral("Capture the visible app windows on your "
                                                     "screens."),
                                      false)),
                      true);
    layoutName_->setPlaceholderText(QStringLiteral("Layout name"));
    layoutName_->setAccessibleName(QStringLiteral("Layout name"));
    layoutName_->setMinimumWidth(200);
    auto* saveButton = new QPushButton(SymbolIcon::icon(QStringLiteral("plus.rectangle.on.folder")),
                                       QStringLiteral("Save Current"));
    saveButton->setDefault(true);
    connect(saveButton, &QPushButton::clicked, this, &SavedLayoutsView::save);
    connect(layoutName_, &QLineEdit::returnPressed, this, &SavedLayoutsView::save);
    adaptive->addItem(layoutName_);
    adaptive->addItem(saveButton);
    saveRow->addWidget(adaptive);
    page->addWidget(savePanel);

    rowsLayout_->setContentsMargins(0, 0, 0, 0);
    rowsLayout_->setSpacing(8);
    page->addWidget(rows_);
    page->addWidget(empty_);
    connect(&store_, &AppStore::savedLayoutsChanged, this, &SavedLayoutsView::showLayouts);
    showLayouts();
}

void SavedLayoutsView::save() {
    store_.saveCurrentLayout(layoutName_->text());
    layoutName_->clear();
}

void SavedLayoutsView::showLayouts() {
    // Later: the click that changed the list may come from one of these rows.
    while (QLayoutItem* item = rowsLayout_->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    for (const SavedLayout& layout : store_.savedLayouts()) {
        auto* row = new NativePanel;
        row->setAccessibleName(layout.name);
        auto* line = new QHBoxLayout(row);
        line->setContentsMargins(panelPadding, 10, panelPadding, 10);
        line->setSpacing(10);
        auto* name = text(WindowListModel::oneLine(layout.name), true);
        name->setWordWrap(false);
        name->setMinimumWidth(40);
        line->addWidget(labelBlock(QStringLiteral("rectangle.3.group"), name,
                                   text(windowsSaved(layout.windows.size()), false)),
                        1);
        auto* restore = new QPushButton(SymbolIcon::icon(QStringLiteral("arrow.uturn.backward")),
                                        QStringLiteral("Restore"));
        auto* remove = new QPushButton(SymbolIcon::icon(QStringLiteral("trash")), QString());
        remove->setToolTip(QStringLiteral("Delete layout"));
        remove->setAccessibleName(QStringLiteral("Delete"));
        // By id: the row may outlive the layout it was made for by one event.
        const QUuid id = layout.id;
        const auto find = [this, id]() -> const SavedLayout* {
            for (const SavedLayout& candidate : store_.savedLayouts()) {
                if (candidate.id == id) {
                    return &candidate;
                }
            }
            return nullptr;
        };
        connect(restore, &QPushButton::clicked, this, [this, find] {
            if (const SavedLayout* found = find()) {
                store_.restore(*found);
            }
        });
        connect(remove, &QPushButton::clicked, this, [this, find] {
            if (const SavedLayout* found = find()) {
                const SavedLayout copy = *found;
                store_.deleteLayout(copy);
            }
        });
        line->addWidget(restore);
        line->addWidget(remove);
        rowsLayout_->addWidget(row);
    }
    const bool none = store_.savedLayouts().empty();
    rows_->setVisible(!none);
    empty_->setVisible(none);
}

} // namespace tilmora

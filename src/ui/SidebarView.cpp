#include "ui/SidebarView.h"

#include "core/AppStore.h"
#include "ui/SectionInfo.h"
#include "ui/SymbolIcon.h"
#include "ui/TextStyle.h"

#include <QLabel>
#include <QListWidget>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace tilmora {

SidebarView::SidebarView(AppStore& store, QWidget* parent)
    : QWidget(parent)
    , store_(store)
    , list_(new QListWidget(this)) {
    setObjectName(QStringLiteral("sidebar"));
    setMinimumWidth(minimumWidth);
    setMaximumWidth(maximumWidth);
    // A shade apart from the detail, as desktop sidebars are.
    setAutoFillBackground(true);
    QPalette shaded = palette();
    shaded.setColor(QPalette::Window, shaded.color(QPalette::Window).darker(104));
    shaded.setColor(QPalette::Base, shaded.color(QPalette::Window));
    setPalette(shaded);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(10, 14, 10, 10);
    column->setSpacing(8);

    auto* header = new QVBoxLayout;
    header->setContentsMargins(6, 6, 6, 6);
    header->setSpacing(2);
    auto* name = new QLabel(QStringLiteral("Tilmora"), this);
    TextStyle::apply(name, TextStyle::Style::headline);
    auto* tagline = new QLabel(QStringLiteral("Design your desktop canvas."), this);
    TextStyle::apply(tagline, TextStyle::Style::caption, QFont::Normal, true);
    header->addWidget(name);
    header->addWidget(tagline);
    column->addLayout(header);

    list_->setObjectName(QStringLiteral("sections"));
    list_->setAccessibleName(QStringLiteral("Sections"));
    list_->setFrameShape(QFrame::NoFrame);
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    list_->setIconSize(QSize(18, 18));
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setSpacing(1);
    for (const TilmoraSection section : SectionInfo::allSections) {
        auto* row = new QListWidgetItem(SymbolIcon::icon(SectionInfo::symbolName(section)),
                                        SectionInfo::title(section), list_);
        row->setSizeHint(QSize(0, 32));
    }
    column->addWidget(list_, 1);

    showSelection();
    connect(list_, &QListWidget::itemSelectionChanged, this, &SidebarView::select);
    connect(&store_, &AppStore::selectedSectionChanged, this, &SidebarView::showSelection);
}

QSize SidebarView::sizeHint() const {
    return {idealWidth, QWidget::sizeHint().height()};
}

void SidebarView::showSelection() {
    const QSignalBlocker blocker(list_);
    const auto& section = store_.selectedSection();
    if (!section) {
        list_->clearSelection();
        list_->setCurrentRow(-1, QItemSelectionModel::Clear);
        return;
    }
    list_->setCurrentRow(SectionInfo::index(*section), QItemSelectionModel::ClearAndSelect);
}

void SidebarView::select() {
    const QList<QListWidgetItem*> selected = list_->selectedItems();
    if (selected.isEmpty()) {
        store_.setSelectedSection(std::nullopt);
        return;
    }
    store_.setSelectedSection(
        SectionInfo::allSections[static_cast<std::size_t>(list_->row(selected.first()))]);
}

} // namespace tilmora

#include "ui/SettingsWindow.h"

#include "ui/ApplicationIcon.h"
#include "ui/SectionViews.h"

#include <QVBoxLayout>

namespace tilmora {

SettingsWindow::SettingsWindow(AppStore& store, QWidget* parent)
    : QWidget(parent, Qt::Window) {
    setObjectName(QStringLiteral("settings"));
    setWindowTitle(QStringLiteral("Tilmora Settings"));
    setWindowIcon(ApplicationIcon::icon());
    setMinimumSize(minimumSize);
    resize(minimumSize);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(SectionViews::make(TilmoraSection::settings, store, this));
}

} // namespace tilmora

// The about dialog: the application's icon, name, version and build, and the credits.
#pragma once

#include <QDialog>

namespace tilmora {

class AboutPanelPresenter : public QDialog {
    Q_OBJECT

public:
    explicit AboutPanelPresenter(QWidget* parent = nullptr);

    // Five paragraphs separated by blank lines.
    static QString creditsText();
};

} // namespace tilmora

// The About page: who Tilmora is (name, version and build, build date, what it does, its maker),
// the maker's links, and the update check with the link it found.
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace tilmora {

class AppStore;

class AboutView : public QWidget {
    Q_OBJECT
public:
    explicit AboutView(AppStore& store, QWidget* parent = nullptr);

private:
    void showUpdateState();

    AppStore& store_;
    QPushButton* checkButton_;
    QLabel* updateStatus_;
    QPushButton* openButton_;
};

} // namespace tilmora

// The store's status message at the foot of a section, with the info symbol; hidden while there
// is none. Wraps, so a long message is read whole.
#pragma once

#include <QWidget>

class QLabel;

namespace tilmora {

class AppStore;

class StatusLine : public QWidget {
    Q_OBJECT
public:
    explicit StatusLine(AppStore& store, QWidget* parent = nullptr);

private:
    void showMessage();

    AppStore& store_;
    QLabel* text_;
};

} // namespace tilmora

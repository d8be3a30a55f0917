// The Guide: the workflow in four short sections, with shortcuts into the application. The texts
// that name the user's drag modifier and hot keys follow Settings at once.
#pragma once

#include <QWidget>

#include <functional>
#include <vector>

class QLabel;

namespace tilmora {

class AppStore;

class GuideView : public QWidget {
    Q_OBJECT
public:
    explicit GuideView(AppStore& store, QWidget* parent = nullptr);

    // The "If Something Does Not Work" block, which "Open Settings" in the Permissions group
    // brings into view.
    QWidget* troubleshooting() const { return troubleshooting_; }

private:
    // A label whose text is made from the store's settings, remade when they change.
    QLabel* liveLabel(std::function<QString()> text, bool isTitle);
    void refreshTexts();

    AppStore& store_;
    std::vector<std::pair<QLabel*, std::function<QString()>>> liveLabels_;
    // The drag modifier's own symbol beside "Drag Placement".
    QLabel* dragFeatureSymbol_ = nullptr;
    QWidget* troubleshooting_ = nullptr;
};

} // namespace tilmora

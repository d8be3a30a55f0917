// The Settings section, in the main window and in the settings window: the window manager
// permission, the default gap, the Placement Canvas hot key and the drag modifier with their
// recorders, the quick layout modifiers with the fifteen hot keys, and the status line. Every
// control reads the store and every change goes through it.
#pragma once

#include <QWidget>

#include <vector>

class QCheckBox;
class QLabel;
class QSlider;

namespace tilmora {

class AppStore;
class HotKeyRecorderButton;
class PlacementDragModifierRecorderButton;

class SettingsView : public QWidget {
    Q_OBJECT
public:
    explicit SettingsView(AppStore& store, QWidget* parent = nullptr);

private:
    QWidget* permissionsGroup();
    QWidget* defaultLayoutGroup();
    QWidget* placementGroup();
    QWidget* quickLayoutGroup();
    // The Guide's "If Something Does Not Work", in the main window.
    void showTroubleshooting();

    void showPermission();
    void showGap();
    void showQuickModifiers();

    AppStore& store_;
    QLabel* permissionSymbol_ = nullptr;
    QLabel* permissionState_ = nullptr;
    QSlider* gapSlider_ = nullptr;
    QLabel* gapValue_ = nullptr;
    HotKeyRecorderButton* hotKeyRecorder_ = nullptr;
    PlacementDragModifierRecorderButton* dragRecorder_ = nullptr;
    QLabel* quickModifiersText_ = nullptr;
    std::vector<QCheckBox*> modifierBoxes_;
    std::vector<QLabel*> quickHotKeyTexts_;
};

} // namespace tilmora

// The application's one central state object. It owns the controllers, publishes what the views
// show, keeps displays, windows and grid profiles current through a periodic refresh, remembers
// the application the user last worked in, and reports every command as one status line.
//
// Its member functions are spread over files by concern: AppStore.cpp (fields and published
// values), AppStoreSettings.cpp (persistence and migrations), AppStoreRefresh.cpp (start-up and
// the refresh cycle), AppStoreDisplays.cpp (display selection and grid profiles).
#pragma once

#include "core/DisplayIdentifierItem.h"
#include "core/PlacementCanvas.h"
#include "core/TilmoraSection.h"
#include "geometry/DisplayGeometry.h"
#include "geometry/DisplayLayoutProfile.h"
#include "geometry/LayoutAction.h"
#include "layouts/SavedLayout.h"
#include "layouts/SavedLayoutStore.h"
#include "placement/OptionDragCoordinator.h"
#include "platform/Platform.h"
#include "shortcuts/HotKeyCenter.h"
#include "shortcuts/HotKeyShortcut.h"
#include "shortcuts/PlacementDragModifier.h"
#include "shortcuts/QuickHotKeyModifiers.h"
#include "windows/TilmoraWindow.h"
#include "windows/WindowManager.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tilmora {

class AppStore : public QObject {
    Q_OBJECT

    // Each change signal is emitted on every assignment, also when the value is equal.
    Q_PROPERTY(std::optional<TilmoraSection> selectedSection READ selectedSection WRITE
                   setSelectedSection NOTIFY selectedSectionChanged)
    Q_PROPERTY(std::optional<QString> selectedWindowID READ selectedWindowID WRITE
                   setSelectedWindowID NOTIFY selectedWindowIDChanged)
    Q_PROPERTY(std::vector<TilmoraWindow> windows READ windows NOTIFY windowsChanged)
    Q_PROPERTY(std::vector<SavedLayout> savedLayouts READ savedLayouts NOTIFY savedLayoutsChanged)
    Q_PROPERTY(bool permissionGranted READ permissionGranted NOTIFY permissionGrantedChanged)
    Q_PROPERTY(std::optional<QString> statusMessage READ statusMessage WRITE setStatusMessage NOTIFY
                   statusMessageChanged)
    Q_PROPERTY(QString updateStatusMessage READ updateStatusMessage WRITE setUpdateStatusMessage
                   NOTIFY updateStatusMessageChanged)
    Q_PROPERTY(std::optional<QUrl> updateDownloadURL READ updateDownloadURL WRITE
                   setUpdateDownloadURL NOTIFY updateDownloadURLChanged)
    Q_PROPERTY(bool isCheckingForUpdates READ isCheckingForUpdates WRITE setCheckingForUpdates
                   NOTIFY isCheckingForUpdatesChanged)
    Q_PROPERTY(QString lastTargetAppName READ lastTargetAppName NOTIFY lastTargetAppNameChanged)
    Q_PROPERTY(std::vector<DisplayGeometry> connectedDisplays READ connectedDisplays NOTIFY
                   connectedDisplaysChanged)
    Q_PROPERTY(std::optional<std::uint32_t> pointerDisplayID READ pointerDisplayID NOTIFY
                   pointerDisplayIDChanged)
    Q_PROPERTY(std::optional<std::uint32_t> selectedDisplayID READ selectedDisplayID NOTIFY
                   selectedDisplayIDChanged)
    Q_PROPERTY(std::vector<DisplayLayoutProfile> displayProfiles READ displayProfiles NOTIFY
                   displayProfilesChanged)
    Q_PROPERTY(
        std::int64_t gridColumns READ gridColumns WRITE setGridColumns NOTIFY gridColumnsChanged)
    Q_PROPERTY(std::int64_t gridRows READ gridRows WRITE setGridRows NOTIFY gridRowsChanged)
    Q_PROPERTY(HotKeyShortcut placementHotKey READ placementHotKey NOTIFY placementHotKeyChanged)
    Q_PROPERTY(QuickHotKeyModifiers quickHotKeyModifiers READ quickHotKeyModifiers NOTIFY
                   quickHotKeyModifiersChanged)
    Q_PROPERTY(PlacementDragModifier placementDragModifier READ placementDragModifier WRITE
                   setPlacementDragModifier NOTIFY placementDragModifierChanged)
    Q_PROPERTY(double gap READ gap WRITE setGap NOTIFY gapChanged)

public:
    static constexpr std::chrono::milliseconds refreshInterval{3000};
    static constexpr std::chrono::milliseconds refreshSoonDelay{250};

    // Loads and migrates the settings; touches no display or window and starts nothing.
    explicit AppStore(const Platform& platform, QObject* parent = nullptr);
    ~AppStore() override;

    // --- Published values

    const std::optional<TilmoraSection>& selectedSection() const { return selectedSection_; }
    void setSelectedSection(std::optional<TilmoraSection> section);
    const std::optional<QString>& selectedWindowID() const { return selectedWindowID_; }
    void setSelectedWindowID(std::optional<QString> id);
    const std::vector<TilmoraWindow>& windows() const { return windows_; }
    // The windows of the last refresh with their handles, for the command line, which names
    // windows by their X window id as well.
    const std::vector<ManagedWindow>& listedWindows() const { return listedWindows_; }
    const std::vector<SavedLayout>& savedLayouts() const { return savedLayouts_; }
    bool permissionGranted() const { return permissionGranted_; }
    const std::optional<QString>& statusMessage() const { return statusMessage_; }
    // A pending notice is added to the message.
    void setStatusMessage(std::optional<QString> message);
    // What the next status line is to add about the settings (an unreadable value kept in a
    // file of its own); empty when there is nothing.
    const QString& pendingNotice() const { return pendingNotice_; }
    const QString& updateStatusMessage() const { return updateStatusMessage_; }
    void setUpdateStatusMessage(QString message);
    const std::optional<QUrl>& updateDownloadURL() const { return updateDownloadURL_; }
    void setUpdateDownloadURL(std::optional<QUrl> url);
    bool isCheckingForUpdates() const { return isCheckingForUpdates_; }
    void setCheckingForUpdates(bool checking);
    const QString& lastTargetAppName() const { return lastTargetAppName_; }
    const std::vector<DisplayGeometry>& connectedDisplays() const { return connectedDisplays_; }
    const std::optional<std::uint32_t>& pointerDisplayID() const { return pointerDisplayID_; }
    const std::optional<std::uint32_t>& selectedDisplayID() const { return selectedDisplayID_; }
    const std::vector<DisplayLayoutProfile>& displayProfiles() const { return displayProfiles_; }
    std::int64_t gridColumns() const { return gridColumns_; }
    void setGridColumns(std::int64_t columns);
    std::int64_t gridRows() const { return gridRows_; }
    void setGridRows(std::int64_t rows);
    const HotKeyShortcut& placementHotKey() const { return placementHotKey_; }
    const QuickHotKeyModifiers& quickHotKeyModifiers() const { return quickHotKeyModifiers_; }
    const PlacementDragModifier& placementDragModifier() const { return placementDragModifier_; }
    // Saves the modifier set and reports it in the status line.
    void setPlacementDragModifier(PlacementDragModifier modifier);
    double gap() const { return gap_; }
    // Brings the gap into 0 ... 32 (a non-number becomes 0) and saves it.
    void setGap(double gap);

    // --- Owned parts and other state

    const WindowManager& windowManager() const { return windowManager_; }
    std::optional<std::int32_t> lastTargetPID() const { return lastTargetPID_; }
    bool hasStarted() const { return hasStarted_; }

    // --- Start-up and the refresh cycle

    // Runs once: watches application activation, refreshes, starts the global hot keys, and
    // refreshes every 3 seconds.
    void start();
    // Re-reads displays, pointer, permission and windows.
    void refresh();
    // One refresh a quarter second from now, so that lists show a window where it was just
    // placed. Not coalesced: n calls give n refreshes.
    void refreshSoon();
    // Asks for access with the system's prompt where it has one, and reports the answer.
    void requestAccessibilityPermission();

    // --- The shell

    // Starts a new instance and quits this one; the shell provides how. It returns why it could
    // not, or nothing once the new instance is on its way.
    using Relauncher = std::function<std::optional<QString>()>;
    void setRelauncher(Relauncher relauncher) { relauncher_ = std::move(relauncher); }
    // Leaves this instance running and says why when the new one could not be started.
    void relaunch();

    // --- Displays and their grid profiles

    // The stored profile of the display, else its default profile (not stored).
    DisplayLayoutProfile displayProfile(const DisplayGeometry& display) const;
    QHash<std::uint32_t, DisplayLayoutProfile> displayProfileMap() const;
    // The selected display, else the one under the pointer, else the first.
    std::optional<DisplayGeometry> activeDisplay() const;
    DisplayLayoutProfile activeDisplayProfile() const;
    // 1-based position in the display list.
    std::optional<int> displayNumber(std::uint32_t displayID) const;
    void selectDisplay(std::uint32_t displayID);
    void identifyDisplays();
    void updateDisplayProfile(std::uint32_t displayID, std::optional<std::int64_t> columns,
                              std::optional<std::int64_t> rows, std::optional<double> gap);
    // The active display's profile, or the store-wide defaults when there is none.
    void updateActiveDisplayProfile(std::optional<std::int64_t> columns,
                                    std::optional<std::int64_t> rows, std::optional<double> gap);
    void resetDisplayProfile(std::uint32_t displayID);

    // --- Placement commands (AppStorePlacement.cpp). Each reads the displays afresh, ends in
    // exactly one status line and, on success, schedules refreshSoon().

    void apply(LayoutAction action);
    void applyGrid(std::int64_t column, std::int64_t row, std::int64_t columnSpan,
                   std::int64_t rowSpan);
    void moveTargetToNextDisplay();
    // Opens the full-screen canvas on every display, or closes it when it is open.
    void showPlacementCanvas();
    // Places a window that a modifier drag dropped on a grid cell.
    void applyDraggedPlacement(const ManagedWindow& target, const CGRect& frame);
    // The canvas the shell provides; not owned. Without one the canvas command says so, and no
    // modifier drag is watched (there is nothing to show its preview on).
    void setPlacementCanvas(PlacementCanvas* canvas) { placementCanvas_ = canvas; }

    // --- Saved layouts (AppStoreLayouts.cpp)

    // Captures every listed window with its display; a blank name becomes a dated default.
    void saveCurrentLayout(const QString& name);
    // Puts each saved window that still has a live counterpart back on its display.
    void restore(const SavedLayout& layout);
    void deleteLayout(const SavedLayout& layout);

    // --- Update check (AppStoreUpdates.cpp)

    // Asks the brand's update endpoint; the outcome arrives in the three update properties.
    // Nothing stops two checks from overlapping: the control that starts one waits for it.
    void checkForUpdates();

    // --- Global hot keys (AppStoreHotKeys.cpp)

    // A shortcut without a modifier is rejected. Before start() the shortcut is kept whatever
    // its registration says: no hot key is live yet to conflict with.
    void setPlacementHotKey(HotKeyShortcut shortcut);
    // After start() the fifteen layout keys move to the new set, or the change is refused as a
    // whole and the refused shortcuts are reported.
    void setQuickHotKeyModifiers(QuickHotKeyModifiers modifiers);

Q_SIGNALS:
    void selectedSectionChanged();
    void selectedWindowIDChanged();
    void windowsChanged();
    void savedLayoutsChanged();
    void permissionGrantedChanged();
    void statusMessageChanged();
    void updateStatusMessageChanged();
    void updateDownloadURLChanged();
    void isCheckingForUpdatesChanged();
    void lastTargetAppNameChanged();
    void connectedDisplaysChanged();
    void pointerDisplayIDChanged();
    void selectedDisplayIDChanged();
    void displayProfilesChanged();
    void gridColumnsChanged();
    void gridRowsChanged();
    void placementHotKeyChanged();
    void quickHotKeyModifiersChanged();
    void placementDragModifierChanged();
    void gapChanged();

    // The numbered display cards to show, and for how many seconds.
    void displayIdentificationRequested(const std::vector<DisplayIdentifierItem>& items,
                                        double seconds);

private:
    // Assigns and announces, also when the value is unchanged.
    template <typename T, typename U>
    void publish(T& field, U&& value, void (AppStore::*changed)()) {
        field = std::forward<U>(value);
        Q_EMIT(this->*changed)();
    }

    // Settings
    void loadSettings();
    static HotKeyShortcut loadPlacementHotKey(const Preferences& preferences);
    static QuickHotKeyModifiers loadQuickHotKeyModifiers(const Preferences& preferences);
    static PlacementDragModifier loadPlacementDragModifier(const Preferences& preferences);
    static std::vector<DisplayLayoutProfile>
    loadDisplayProfiles(const Preferences& preferences, bool migratingToEdgeToEdge,
                        bool migratingDefaultGridToCurrent);
    // Writing settings. A failed write ends in the status line; each returns false when nothing
    // was written.
    bool written(const Preferences::WriteResult& result);
    // `data` under `key`. What is stored there now and `decodes` cannot read is first kept in a
    // file of its own, which the next status line names; when it cannot be kept, nothing is
    // written. `what` names the value for the user.
    bool saveData(const QString& key, const QByteArray& data, bool (*decodes)(const QByteArray&),
                  const QString& what);
    // The same, for a value that `decode` (returning an optional) reads.
    template <auto decode>
    bool saveData(const QString& key, const QByteArray& data, const QString& what) {
        return saveData(
            key, data, [](const QByteArray& d) { return decode(d).has_value(); }, what);
    }
    bool keepUnreadable(const QString& key, const std::optional<QByteArray>& unreadable,
                        const QString& what);
    bool saveDisplayProfiles();
    bool savePlacementDragModifier(const PlacementDragModifier& modifier);

    // Refresh cycle
    void observeActiveApplications();
    void setPermissionGranted(bool granted);
    std::vector<DisplayGeometry> readDisplays();
    void updatePointerDisplay(const std::vector<DisplayGeometry>& displays);

    // Placement
    std::vector<DisplayGeometry> currentDisplays() const;
    void fail(const WindowManagerError& error);
    // Applies the frame and reports `successText` with the placement's suffix.
    void place(WindowElement window, const CGRect& frame, const QString& successText);
    std::optional<DisplayGeometry> gridDisplay(const ManagedWindow& window,
                                               const std::vector<DisplayGeometry>& displays) const;
    // A canvas or drag result: the window found again, the frame clamped to its display.
    void applyPreparedPlacement(const ManagedWindow& target, const CGRect& frame, bool needsDisplay,
                                const QString& before, const QString& after);

    // Saved layouts
    static QString defaultLayoutName();
    bool saveSavedLayouts();

    // Global hot keys
    void startHotKeys();
    // Created here the first time; a changed drag modifier or grid applies at the next event.
    void startOptionDrag();
    void runHotKeyCommand(const HotKeyCommand& command);
    bool savePlacementHotKey(const HotKeyShortcut& shortcut);
    bool saveQuickHotKeyModifiers(const QuickHotKeyModifiers& modifiers);
    // One status line naming the first four refused shortcuts.
    static QString
    hotKeyFailureMessage(const std::vector<HotKeyCenter::RegistrationFailure>& failures);

    // Displays
    void syncDisplayProfiles(const std::vector<DisplayGeometry>& displays);
    void syncSelectedDisplay(const std::vector<DisplayGeometry>& displays);
    DisplayLayoutProfile defaultProfile(std::uint32_t id, const QString& name) const;
    void setSelectedDisplayID(std::optional<std::uint32_t> id);
    void setDisplayProfiles(std::vector<DisplayLayoutProfile> profiles);

    Platform platform_;

    std::optional<TilmoraSection> selectedSection_ = TilmoraSection::arrange;
    std::optional<QString> selectedWindowID_;
    std::vector<TilmoraWindow> windows_;
    std::vector<ManagedWindow> listedWindows_;
    std::vector<SavedLayout> savedLayouts_;
    bool permissionGranted_ = false;
    std::optional<QString> statusMessage_;
    QString pendingNotice_;
    QString updateStatusMessage_;
    std::optional<QUrl> updateDownloadURL_;
    bool isCheckingForUpdates_ = false;
    QString lastTargetAppName_;
    std::vector<DisplayGeometry> connectedDisplays_;
    std::optional<std::uint32_t> pointerDisplayID_;
    std::optional<std::uint32_t> selectedDisplayID_;
    std::vector<DisplayLayoutProfile> displayProfiles_;
    std::int64_t gridColumns_ = 2;
    std::int64_t gridRows_ = 1;
    HotKeyShortcut placementHotKey_;
    QuickHotKeyModifiers quickHotKeyModifiers_;
    PlacementDragModifier placementDragModifier_;
    double gap_ = 0;

    WindowManager windowManager_;
    SavedLayoutStore savedLayoutStore_;
    HotKeyCenter hotKeyCenter_{platform_.hotKeyService, platform_.scheduler};
    PlacementCanvas* placementCanvas_ = nullptr;
    std::unique_ptr<OptionDragCoordinator> optionDragCoordinator_;
    Relauncher relauncher_;
    std::optional<TaskToken> refreshTimer_;
    std::optional<std::int32_t> lastTargetPID_;
    bool hasStarted_ = false;
};

} // namespace tilmora

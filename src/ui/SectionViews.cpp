#include "ui/SectionViews.h"

#include "ui/AboutView.h"
#include "ui/ArrangeSection.h"
#include "ui/DetailScrollView.h"
#include "ui/GuideView.h"
#include "ui/NativeSectionHeader.h"
#include "ui/PermissionBanner.h"
#include "ui/SavedLayoutsView.h"
#include "ui/SectionInfo.h"
#include "ui/SettingsView.h"
#include "ui/WindowsView.h"

namespace tilmora::SectionViews {

namespace {

struct Page {
    int maxWidth;
    bool showsPermissionBanner;
    const char* title;
    const char* subtitle;
};

// In the order of the sections; the Arrange section is a view of its own.
constexpr Page pages[] = {
    {980, true, "", ""},
    {980, true, "Open Windows", "Select a target window, then apply a quick placement."},
    {980, true, "Saved Workspaces", "Save the current desktop arrangement and restore it later."},
    {780, false, "Settings", "Tune permissions, spacing, and keyboard control from one place."},
    {780, false, "Start with the window you want to move.",
     "Tilmora works best when you think of each display as a canvas. Pick the active app, "
     "preview the space you want, then let Tilmora place it precisely."},
    {780, false, "Tilmora",
     "A native Linux window manager for arranging apps across screens with precise grids, canvas "
     "placement, and reusable layouts."},
};

} // namespace

QWidget* make(TilmoraSection section, AppStore& store, QWidget* parent) {
    if (section == TilmoraSection::arrange) {
        return new ArrangeSection(store, parent);
    }
    const Page& shown = pages[SectionInfo::index(section)];
    auto* view = new DetailScrollView(shown.maxWidth, 24, parent);
    view->setObjectName(QStringLiteral("section-") + SectionInfo::title(section).toLower());
    if (shown.showsPermissionBanner) {
        view->addContent(new PermissionBanner(store));
    }
    // These pages bring their own header: with a button beside it, or the version in it.
    switch (section) {
    case TilmoraSection::about:
        view->addContent(new AboutView(store));
        return view;
    case TilmoraSection::windows:
        view->addContent(new WindowsView(store));
        return view;
    case TilmoraSection::savedLayouts:
        view->addContent(new SavedLayoutsView(store));
        return view;
    default:
        break;
    }
    view->addContent(
        new NativeSectionHeader(QString::fromUtf8(shown.title), QString::fromUtf8(shown.subtitle)));
    if (section == TilmoraSection::guide) {
        view->addContent(new GuideView(store));
    } else if (section == TilmoraSection::settings) {
        view->addContent(new SettingsView(store));
    }
    return view;
}

} // namespace tilmora::SectionViews

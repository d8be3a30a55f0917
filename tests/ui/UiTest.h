// A store over the fakes, with one display, one window of another application and access
// granted, for the widget tests.
#pragma once

#include "core/AppStore.h"
#include "support/FakePlatform.h"

#include <QAction>
#include <QMenu>

#include <gtest/gtest.h>

namespace tilmora {

class UiTest {
protected:
    UiTest() {
        fake.windowSystem.setScreens({builtInScreen});
        fake.windowSystem.addApplication(10, QStringLiteral("org.example.Mail"),
                                         QStringLiteral("Mail"));
        fake.windowSystem.addWindow(10, {0, 25, 720, 875}, QStringLiteral("Inbox"));
        store.refresh();
    }

    void setAccessGranted(bool granted) {
        fake.windowSystem.setTrusted(granted);
        store.refresh();
    }

    static QAction* entry(const QMenu& menu, const QString& title) {
        for (QAction* action : menu.actions()) {
            if (action->text() == title) {
                return action;
            }
        }
        return nullptr;
    }

    FakePlatform fake;
    AppStore store{fake.platform()};
};

} // namespace tilmora

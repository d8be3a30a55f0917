#include "cli/CommandRunner.h"

#include "cli/Listings.h"
#include "core/CommandFailures.h"

#include <algorithm>
#include <cmath>

namespace tilmora {

namespace {

std::optional<std::int64_t> toInteger(const QString& text) {
    bool ok = false;
    const qlonglong value = text.toLongLong(&ok);
    return ok ? std::optional<std::int64_t>(value) : std::nullopt;
}

QString layoutNames() {
    QStringList names;
    for (LayoutAction action : LayoutAction::quickActions()) {
        names << action.rawValue();
    }
    return names.join(QStringLiteral(", "));
}

} // namespace

CommandRunner::CommandRunner(AppStore& store, QTextStream& out, QTextStream& err)
    : store_(store)
    , out_(out)
    , err_(err) {}

int CommandRunner::usage(const QString& problem) {
    err_ << "tilmora: " << problem << "\n\n" << commandLineUsage();
    err_.flush();
    return usageError;
}

int CommandRunner::fail(const QString& problem) {
    err_ << "tilmora: " << problem << '\n';
    err_.flush();
    return failure;
}

QString CommandRunner::windowID(const QString& named) const {
    // An X window id names the window whatever its title is now; the store's ids change with it.
    if (const auto number = Listings::parseWindowNumber(named)) {
        const auto& listed = store_.listedWindows();
        const auto found = std::find_if(listed.begin(), listed.end(), [&](const auto& window) {
            return window.element == *number;
        });
        if (found != listed.end()) {
            return found->id;
        }
    }
    return named;
}

int CommandRunner::reportStatus() {
    const std::optional<QString>& status = store_.statusMessage();
    if (status) {
        out_ << Listings::escaped(*status) << '\n';
        out_.flush();
    }
    return status && CommandFailures::isFailure(*status) ? failure : success;
}

int CommandRunner::run(const CommandLine& line) {
    const QString& command = line.command;
    const QStringList& arguments = line.arguments;
    const auto noArguments = [&] { return arguments.isEmpty(); };
    const bool listing = command == QLatin1String("displays") ||
                         command == QLatin1String("windows") || command == QLatin1String("layouts");
    if (line.json && !listing) {
        return usage(QStringLiteral("--json goes with displays, windows and layouts"));
    }

    if (command == QLatin1String("menu") && noArguments()) {
        if (!popUpMenu_) {
            return fail(QStringLiteral("menu opens the menu of the running Tilmora, and none "
                                       "runs on this display: start it with 'tilmora'"));
        }
        popUpMenu_();
        return success;
    }
    if (command == QLatin1String("identify") && noArguments()) {
        // The cards are windows of the running Tilmora; a process of its own would show
        // nothing before it exits.
        if (!popUpMenu_) {
            return fail(QStringLiteral("identify shows its cards through the running Tilmora, "
                                       "and none runs on this display: start it with 'tilmora'"));
        }
        store_.identifyDisplays();
        return success;
    }

    // What the running application would have seen: displays, profiles, windows.
    store_.refresh();
    if (line.windowID) {
        store_.setSelectedWindowID(windowID(*line.windowID));
    }

    if (command == QLatin1String("displays") && noArguments()) {
        return displays(line.json);
    }
    if (command == QLatin1String("windows") && noArguments()) {
        return windows(line.json);
    }
    if (command == QLatin1String("layouts") && noArguments()) {
        return layouts(line.json);
    }
    if (command == QLatin1String("apply")) {
        return apply(arguments);
    }
    if (command == QLatin1String("grid")) {
        return grid(arguments);
    }
    if (command == QLatin1String("next-display") && noArguments()) {
        store_.moveTargetToNextDisplay();
        return reportStatus();
    }
    if (command == QLatin1String("canvas") && noArguments()) {
        store_.showPlacementCanvas();
        return reportStatus();
    }
    if (command == QLatin1String("select-display")) {
        return selectDisplay(arguments);
    }
    if (command == QLatin1String("profile")) {
        return profile(arguments);
    }
    if (command == QLatin1String("save")) {
        store_.saveCurrentLayout(arguments.join(u' '));
        return reportStatus();
    }
    if (command == QLatin1String("restore") || command == QLatin1String("delete")) {
        return restoreOrDelete(command, arguments);
    }
    if (listing || command == QLatin1String("next-display") || command == QLatin1String("menu") ||
        command == QLatin1String("canvas") || command == QLatin1String("identify")) {
        return usage(QStringLiteral("%1 takes no arguments").arg(command));
    }
    return usage(QStringLiteral("unknown command %1").arg(Listings::escaped(command)));
}

int CommandRunner::displays(bool json) {
    const Listings::DisplayFlags flags{store_.pointerDisplayID(), store_.selectedDisplayID()};
    if (json) {
        out_ << Listings::displaysJson(store_.connectedDisplays(), flags);
    } else {
        for (const QString& text : Listings::displayLines(store_.connectedDisplays(), flags)) {
            out_ << text << '\n';
        }
    }
    out_.flush();
    return success;
}

int CommandRunner::windows(bool json) {
    if (json) {
        out_ << Listings::windowsJson(store_.listedWindows());
    } else {
        for (const QString& text : Listings::windowLines(store_.listedWindows())) {
            out_ << text << '\n';
        }
    }
    out_.flush();
    return success;
}

int CommandRunner::layouts(bool json) {
    if (json) {
        out_ << Listings::layoutsJson(store_.savedLayouts());
    } else {
        for (const QString& text : Listings::layoutLines(store_.savedLayouts())) {
            out_ << text << '\n';
        }
    }
    out_.flush();
    return success;
}

int CommandRunner::apply(const QStringList& arguments) {
    if (arguments.size() != 1) {
        return usage(QStringLiteral("apply takes one layout: %1").arg(layoutNames()));
    }
    const auto action = LayoutAction::fromRawValue(arguments.front());
    if (!action) {
        return usage(QStringLiteral("unknown layout %1; the layouts are: %2")
                         .arg(Listings::escaped(arguments.front()), layoutNames()));
    }
    store_.apply(*action);
    return reportStatus();
}

int CommandRunner::grid(const QStringList& arguments) {
    if (arguments.size() != 2 && arguments.size() != 4) {
        return usage(QStringLiteral("grid takes <column> <row> [<columnSpan> <rowSpan>]"));
    }
    std::vector<std::int64_t> numbers;
    for (const QString& argument : arguments) {
        const auto number = toInteger(argument);
        if (!number) {
            return usage(QStringLiteral("grid takes whole numbers, not %1")
                             .arg(Listings::escaped(argument)));
        }
        numbers.push_back(*number);
    }
    numbers.resize(4, 1);
    store_.applyGrid(numbers[0], numbers[1], numbers[2], numbers[3]);
    return reportStatus();
}

int CommandRunner::selectDisplay(const QStringList& arguments) {
    const auto number = arguments.size() == 1 ? toInteger(arguments.front()) : std::nullopt;
    if (!number) {
        return usage(QStringLiteral("select-display takes one display number (see 'tilmora "
                                    "displays')"));
    }
    const auto& displays = store_.connectedDisplays();
    if (*number < 1 || *number > static_cast<std::int64_t>(displays.size())) {
        return fail(
            QStringLiteral("there is no display %1; 'tilmora displays' lists them").arg(*number));
    }
    store_.selectDisplay(displays[static_cast<std::size_t>(*number - 1)].id);
    if (!store_.statusMessage()) {
        // A single display cannot be chosen: there is nothing to choose between.
        return fail(QStringLiteral("only one display is connected; there is nothing to select"));
    }
    return reportStatus();
}

int CommandRunner::profile(const QStringList& arguments) {
    const auto number = arguments.isEmpty() ? std::nullopt : toInteger(arguments.front());
    if (!number) {
        return usage(QStringLiteral("profile takes a display number first"));
    }
    std::optional<std::int64_t> columns;
    std::optional<std::int64_t> rows;
    std::optional<double> gap;
    bool reset = false;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& option = arguments[i];
        if (option == QLatin1String("--reset")) {
            reset = true;
            continue;
        }
        if (i + 1 >= arguments.size()) {
            return usage(QStringLiteral("%1 needs a value").arg(option));
        }
        const QString& value = arguments[++i];
        bool ok = false;
        if (option == QLatin1String("--columns")) {
            columns = value.toLongLong(&ok);
        } else if (option == QLatin1String("--rows")) {
            rows = value.toLongLong(&ok);
        } else if (option == QLatin1String("--gap")) {
            gap = value.toDouble(&ok);
            // Out of range is clamped as the store clamps it; not a number is no gap at all.
            ok = ok && std::isfinite(*gap);
        } else {
            return usage(
                QStringLiteral("unknown profile option %1").arg(Listings::escaped(option)));
        }
        if (!ok) {
            return usage(
                QStringLiteral("%1 takes a number, not %2").arg(option, Listings::escaped(value)));
        }
    }
    const auto& displays = store_.connectedDisplays();
    if (*number < 1 || *number > static_cast<std::int64_t>(displays.size())) {
        return fail(
            QStringLiteral("there is no display %1; 'tilmora displays' lists them").arg(*number));
    }
    const DisplayGeometry& display = displays[static_cast<std::size_t>(*number - 1)];
    // The profile line says what was asked for; only a change that could not be stored ends in
    // the status line instead.
    store_.setStatusMessage(std::nullopt);
    if (reset) {
        store_.resetDisplayProfile(display.id);
    }
    if (columns || rows || gap) {
        store_.updateDisplayProfile(display.id, columns, rows, gap);
    }
    if (store_.statusMessage()) {
        return reportStatus();
    }
    out_ << Listings::profileLine(static_cast<int>(*number), store_.displayProfile(display))
         << '\n';
    out_.flush();
    return success;
}

int CommandRunner::restoreOrDelete(const QString& command, const QStringList& arguments) {
    const QString name = arguments.join(u' ').trimmed();
    if (name.isEmpty()) {
        return usage(QStringLiteral("%1 takes the name of a saved layout").arg(command));
    }
    // Newest first, so the first of several with one name is the newest.
    const auto& layouts = store_.savedLayouts();
    const auto found = std::find_if(layouts.begin(), layouts.end(),
                                    [&](const SavedLayout& layout) { return layout.name == name; });
    if (found == layouts.end()) {
        return fail(QStringLiteral("no saved layout is named \"%1\"; 'tilmora layouts' lists them")
                        .arg(Listings::escaped(name)));
    }
    const SavedLayout layout = *found;
    if (command == QLatin1String("restore")) {
        store_.restore(layout);
    } else {
        store_.deleteLayout(layout);
    }
    return reportStatus();
}

} // namespace tilmora

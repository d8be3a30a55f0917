#include "cli/CommandLine.h"

namespace tilmora {

CommandLine CommandLine::parse(const QStringList& arguments) {
    CommandLine line;
    qsizetype i = 0;
    // Global options come before the command.
    for (; i < arguments.size() && arguments[i].startsWith(QLatin1String("--")); ++i) {
        const QString& option = arguments[i];
        if (option == QLatin1String("--help")) {
            line.action = Action::showHelp;
            return line;
        }
        if (option == QLatin1String("--version")) {
            line.action = Action::showVersion;
            return line;
        }
        if (option == QLatin1String("--json")) {
            line.json = true;
        } else if (option == QLatin1String("--window")) {
            if (i + 1 >= arguments.size()) {
                line.action = Action::usageError;
                line.error = QStringLiteral("--window needs a window id (see 'tilmora windows')");
                return line;
            }
            line.windowID = arguments[++i];
        } else {
            line.action = Action::usageError;
            line.error = QStringLiteral("unknown option %1").arg(option);
            return line;
        }
    }
    if (i >= arguments.size()) {
        line.action = line.windowID || line.json ? Action::usageError : Action::noCommand;
        line.error = QStringLiteral("no command given");
        return line;
    }
    line.action = Action::runCommand;
    line.command = arguments[i];
    line.arguments = arguments.mid(i + 1);
    return line;
}

QString commandLineUsage() {
    return QStringLiteral(
        "usage: tilmora [--window <id>] [--json] <command> [<arguments>]\n"
        "       tilmora                      start Tilmora, or show its window when it runs\n"
        "\n"
        "commands:\n"
        "  displays                          list the displays (number, id, name, frame,\n"
        "                                    visible frame, flags)\n"
        "  windows                           list the windows that can be arranged\n"
        "  apply <layout>                    place the target window with a quick layout\n"
        "                                    (leftHalf, rightHalf, maximize, center, ...)\n"
        "  grid <column> <row> [<columnSpan> <rowSpan>]\n"
        "                                    place it on cells of its display's grid (0-based)\n"
        "  next-display                      move it to the next display\n"
        "  canvas                            open the Placement Canvas for it on every display\n"
        "                                    (or close it when open; needs the running Tilmora)\n"
        "  identify                          show each display's number on it for a moment\n"
        "                                    (needs the running Tilmora)\n"
        "  select-display <number>           choose the display of the custom grid\n"
        "  profile <number> [--columns N] [--rows N] [--gap P] [--reset]\n"
        "                                    show or change a display's grid\n"
        "  save [<name>]                     save the current arrangement\n"
        "  layouts                           list the saved arrangements\n"
        "  restore <name>                    restore the newest arrangement of that name\n"
        "  delete <name>                     delete the newest arrangement of that name\n"
        "  menu                              pop up Tilmora's menu at the pointer (needs\n"
        "                                    the running Tilmora)\n"
        "\n"
        "options:\n"
        "  --window <id>   act on this window (an id from 'tilmora windows') instead of the\n"
        "                  focused window of the active application\n"
        "  --json          print displays, windows and layouts as JSON\n"
        "  --help          show this text\n"
        "  --version       show the version\n");
}

} // namespace tilmora

#include "x11/support/TilmoraSession.h"

#include <QElapsedTimer>
#include <QProcess>

namespace tilmora::test {

X11TestDesktop::Options commandLineDesktop() {
    return {X11TestDesktop::WindowManager::openbox,
            "3360x1080",
            {{"*L", "1440/381x900/238+0+0", "screen"}, {"R", "1920/508x1080/286+1440+0"}}};
}

TilmoraSession::TilmoraSession(std::string displayName)
    : display(std::move(displayName)) {}

TilmoraSession::Environment TilmoraSession::environment(const Environment& changes) const {
    Environment all{{"DISPLAY", display},
                    {"XDG_CONFIG_HOME", config_.path().toStdString()},
                    {"XDG_RUNTIME_DIR", runtime_.path().toStdString()}};
    for (const auto& [name, value] : changes) {
        all[name] = value;
    }
    return all;
}

TilmoraRun TilmoraSession::run(const QStringList& arguments, const Environment& changes,
                               const QStringList& wrapper) const {
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const auto& [name, value] : environment(changes)) {
        if (value.empty()) {
            variables.remove(QString::fromStdString(name));
        } else {
            variables.insert(QString::fromStdString(name), QString::fromStdString(value));
        }
    }
    QProcess process;
    process.setProcessEnvironment(variables);
    const QStringList command = wrapper + QStringList{executable};
    QElapsedTimer timer;
    timer.start();
    process.start(command.front(), command.mid(1) + arguments);
    if (!process.waitForFinished(20000)) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError()),
            std::chrono::milliseconds(timer.elapsed())};
}

X11TestProcess TilmoraSession::start(const QStringList& arguments, const std::string& outputFile,
                                     const Environment& changes) const {
    X11TestProcess::Options options;
    options.arguments.push_back(executable.toStdString());
    for (const QString& argument : arguments) {
        options.arguments.push_back(argument.toStdString());
    }
    options.environment = environment(changes);
    options.outputFile = outputFile;
    return X11TestProcess(options);
}

} // namespace tilmora::test

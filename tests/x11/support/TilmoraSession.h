// The tilmora executable as a user runs it on a test desktop: with settings and a runtime
// directory of the test's own, so that neither the user's instance nor another test's is seen.
#pragma once

#include "x11/support/X11TestDesktop.h"
#include "x11/support/X11TestProcess.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <chrono>
#include <map>
#include <string>

namespace tilmora::test {

struct TilmoraRun {
    // -1 when it did not end within the time-out.
    int exitCode = -1;
    QString out;
    QString err;
    std::chrono::milliseconds elapsed{};
};

// The desktop the command line is tried on: openbox with two monitors side by side, the left
// one (1440 x 900) primary, the right one 1920 x 1080.
X11TestDesktop::Options commandLineDesktop();

class TilmoraSession {
public:
    using Environment = std::map<std::string, std::string>;

    explicit TilmoraSession(std::string display);

    bool isValid() const { return config_.isValid() && runtime_.isValid(); }
    QString runtimeDirectory() const { return runtime_.path(); }
    // DISPLAY, XDG_CONFIG_HOME and XDG_RUNTIME_DIR of this session, with `changes` applied.
    Environment environment(const Environment& changes = {}) const;

    // Runs tilmora to its end. `changes` override the session's variables (an empty value
    // unsets one); `wrapper` is put in front of the command (to run it as another user).
    TilmoraRun run(const QStringList& arguments, const Environment& changes = {},
                   const QStringList& wrapper = {}) const;
    // Starts tilmora without waiting for it (the instance), its output going to `outputFile`.
    X11TestProcess start(const QStringList& arguments, const std::string& outputFile,
                         const Environment& changes = {}) const;

    std::string display;
    QString executable = QStringLiteral(TILMORA_EXECUTABLE);

private:
    QTemporaryDir config_;
    QTemporaryDir runtime_;
};

} // namespace tilmora::test

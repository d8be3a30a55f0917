#include "app/UnixSignalQuit.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace tilmora {

namespace {

constexpr std::array handledSignals{SIGTERM, SIGINT};
int pipeEnds[2] = {-1, -1};

void onSignal(int) {
    const int savedErrno = errno;
    const char byte = 1;
    // A full pipe already holds a pending quit.
    [[maybe_unused]] const auto written = ::write(pipeEnds[1], &byte, 1);
    errno = savedErrno;
}

} // namespace

UnixSignalQuit::UnixSignalQuit(QObject* parent)
    : QObject(parent) {
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0) {
        qWarning("tilmora: SIGTERM and SIGINT will end Tilmora without a normal quit");
        return;
    }
    notifier_ = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [] {
        char bytes[16];
        while (::read(pipeEnds[0], bytes, sizeof bytes) > 0) {
        }
        QCoreApplication::quit();
    });
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signal : handledSignals) {
        ::sigaction(signal, &action, nullptr);
    }
}

UnixSignalQuit::~UnixSignalQuit() {
    if (!notifier_) {
        return;
    }
    for (int signal : handledSignals) {
        std::signal(signal, SIG_DFL);
    }
    delete notifier_;
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
    pipeEnds[0] = pipeEnds[1] = -1;
}

} // namespace tilmora

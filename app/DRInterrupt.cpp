#include "app/DRInterrupt.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <QByteArray>
#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

namespace {

/// Where the signal handler writes; a handler can reach nothing but statics.
std::atomic<int> signalDescriptor{-1};

void onSignal(int /*signal*/)
{
    const int savedError = errno;
    const char byte = 1;
    // A full pipe loses nothing: it tells of a signal already.
    [[maybe_unused]] const ssize_t written = ::write(signalDescriptor.load(), &byte, 1);
    errno = savedError;
}

bool isIgnored(int signal)
{
    struct sigaction action = {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void handleSignals(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        // Whoever started us so that we outlive the terminal (nohup) means it.
        if (signal != SIGHUP || !isIgnored(signal)) {
            ::sigaction(signal, &action, nullptr);
        }
    }
}

} // namespace

DRInterrupt::DRInterrupt()
{
    if (::pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    signalDescriptor = m_pipe[1];
    m_notifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        if (drain() && m_handler) {
            m_handler();
        }
    });
    handleSignals(onSignal);
}

DRInterrupt::~DRInterrupt()
{
    if (m_notifier) {
        handleSignals(SIG_DFL);
        signalDescriptor = -1;
        m_notifier.reset();
        ::close(m_pipe[0]);
        ::close(m_pipe[1]);
    }
}

bool DRInterrupt::hasCome()
{
    drain();
    return m_hasCome;
}

bool DRInterrupt::readsYes()
{
    QByteArray line;
    while (!line.contains('\n')) {
        std::array<pollfd, 2> waits{{{STDIN_FILENO, POLLIN, 0}, {m_pipe[0], POLLIN, 0}}};
        if (::poll(waits.data(), waits.size(), -1) < 0 && errno != EINTR) {
            return false;
        }
        if (hasCome()) {
            return false;
        }
        std::array<char, 64> bytes{};
        const ssize_t count = waits[0].revents == 0 ? -1 : ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count == 0) {
            return false;
        }
        if (count > 0) {
            line.append(bytes.data(), count);
        }
    }
    const QByteArray answer = line.trimmed().toLower();
    return answer == "y" || answer == "yes";
}

bool DRInterrupt::drain()
{
    std::array<char, 16> bytes{};
    const bool any = ::read(m_pipe[0], bytes.data(), bytes.size()) > 0;
    m_hasCome = any || m_hasCome;
    return any;
}

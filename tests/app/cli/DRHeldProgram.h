#pragma once

#include "tests/app/cli/DRProgramSandbox.h"

#include <fcntl.h>
#include <unistd.h>

#include <QProcess>

#include <array>
#include <csignal>

/// The program with its standard output in a pipe that is full, so that it stands still at its first line of data.
class HeldProgram {
public:
    HeldProgram(const DRProgramSandbox& sandbox, const QStringList& arguments)
    {
        if (::pipe2(m_pipe.data(), O_CLOEXEC) != 0) {
            qFatal("no pipe");
        }
        ::fcntl(m_pipe[1], F_SETFL, O_NONBLOCK);
        const std::array<char, 4096> blanks{};
        while (::write(m_pipe[1], blanks.data(), blanks.size()) > 0) {
        }
        ::fcntl(m_pipe[1], F_SETFL, 0);
        sandbox.prepare(m_process, arguments);
        m_process.setChildProcessModifier([this] { ::dup2(m_pipe[1], STDOUT_FILENO); });
        m_process.setReadChannel(QProcess::StandardError);
        m_process.start();
    }

    ~HeldProgram()
    {
        m_process.kill();
        m_process.waitForFinished();
        ::close(m_pipe[0]);
    }
    HeldProgram(const HeldProgram&) = delete;
    HeldProgram& operator=(const HeldProgram&) = delete;

    /// Waits until the error stream shows the text: false when the program ends without it.
    bool waitFor(const QByteArray& text)
    {
        while (!m_err.contains(text)) {
            if (!m_process.waitForReadyRead(30000)) {
                return false;
            }
            m_err += m_process.readAllStandardError();
        }
        return true;
    }

    void signal(int number) const { ::kill(static_cast<pid_t>(m_process.processId()), number); }

    /// Lets it go on, and answers how it ended.
    DRProgramSandbox::Ended release()
    {
        ::close(m_pipe[1]);
        QByteArray out;
        std::array<char, 4096> bytes{};
        for (ssize_t count = 1; count > 0;) {
            count = ::read(m_pipe[0], bytes.data(), bytes.size());
            out.append(bytes.data(), std::max<ssize_t>(count, 0));
        }
        DRProgramSandbox::Ended ended = DRProgramSandbox::wait(m_process);
        ended.out = out.replace('\0', "");
        ended.err.prepend(m_err);
        return ended;
    }

private:
    std::array<int, 2> m_pipe{};
    QProcess m_process;
    QByteArray m_err;
};

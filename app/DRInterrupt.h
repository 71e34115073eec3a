#pragma once

#include <functional>
#include <memory>

class QSocketNotifier;

/// Turns Ctrl-C and termination requests into calls on the main thread. While one stands, these signals do not end the
/// process; at most one stands at a time.
class DRInterrupt {
public:
    DRInterrupt();
    ~DRInterrupt();
    DRInterrupt(const DRInterrupt&) = delete;
    DRInterrupt& operator=(const DRInterrupt&) = delete;

    /// What to do at each signal from now on; called by the event loop.
    void setHandler(std::function<void()> handler) { m_handler = std::move(handler); }

    /// Whether a signal has come so far.
    [[nodiscard]] bool hasCome();

    /// Reads a line from the standard input. Whether it is "y" or "yes"; false also when a signal came first or there
    /// is no more input.
    [[nodiscard]] bool readsYes();

private:
    bool drain();

    int m_pipe[2] = {-1, -1};
    bool m_hasCome = false;
    std::function<void()> m_handler;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

#pragma once

#include <QString>
#include <QStringList>

/// What a person must decide before a transfer that may put content onto the phone a second time. Plain texts.
struct DRMGRepeatQuestion {
    enum class Answer {
        MoveAnyway,
        LeaveOut, ///< the kinds of the question
        Stop,     ///< back to the data selection
    };

    QStringList keys;         ///< the kinds in question; empty when nothing is known
    bool canLeaveOut = false; ///< whether something is left to move without them
    QString title;
    QString text;
    QString moveAnywayButton;
    QString leaveOutButton;
    QString stopButton;

    bool operator==(const DRMGRepeatQuestion&) const = default;
};

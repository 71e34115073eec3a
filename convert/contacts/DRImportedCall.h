#pragma once

#include <QDateTime>
#include <QString>

/// One telephone call, on its way from the iPhone to the phone.
struct DRImportedCall {
    QString address;         ///< the other party's number or address as stored; written as "-2" when missing or empty
    QDateTime date;          ///< when it began
    qint64 duration = 0;     ///< whole seconds
    bool isIncoming = false; ///< else outgoing
    bool isFaceTimeCall = false; ///< not written: the phone's call log does not tell

    bool operator==(const DRImportedCall&) const = default;
};

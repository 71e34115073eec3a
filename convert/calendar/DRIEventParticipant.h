#pragma once

#include <QString>

/// Somebody who was invited to an event, other than the iPhone's owner.
struct DRIEventParticipant {
    QString name;
    QString email;     ///< without "mailto:"
    qint64 status = 0; ///< the iPhone's code of the answer

    bool operator==(const DRIEventParticipant&) const = default;
};

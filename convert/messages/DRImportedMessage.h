#pragma once

#include "convert/messages/DRIMessageAttachment.h"

#include <QDateTime>
#include <QString>

#include <vector>

/// One text or multimedia message.
struct DRImportedMessage {
    bool isFromMe = false; ///< sent by the iPhone's owner
    QString address;       ///< the other party
    QString text;          ///< null when it has none
    QDateTime date;
    std::vector<DRIMessageAttachment> attachments;

    bool operator==(const DRImportedMessage&) const = default;
};

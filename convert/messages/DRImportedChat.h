#pragma once

#include "convert/messages/DRImportedMessage.h"

#include <QString>
#include <QStringList>

#include <vector>

/// One conversation.
struct DRImportedChat {
    QString serviceName;    ///< as the iPhone stores it, such as "iMessage"; "SMS" for its older layout
    QStringList recipients; ///< the other parties' numbers or addresses
    std::vector<DRImportedMessage> messages; ///< in the order of their dates

    bool operator==(const DRImportedChat&) const = default;
};

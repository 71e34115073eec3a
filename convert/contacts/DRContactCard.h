#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// One contact on its way to the phone. Pictures stay in the backup until the card is written: those of a large address
/// book together would not fit into memory.
struct DRContactCard {
    QByteArray vCard;                 ///< UTF-8, without the picture, ended by a line break
    QString name;                     ///< how the contact is called in messages to a person
    std::optional<qint64> pictureRow; ///< where `DRContactPictures` finds its picture; none when it has none

    bool operator==(const DRContactCard&) const = default;
};

/// One contact that the phone has already: where its card begins in the phone's vCard file. No more than that, so that
/// the list of millions of them stays small.
struct DRPhoneCard {
    qint64 offset = 0;

    bool operator==(const DRPhoneCard&) const = default;
};

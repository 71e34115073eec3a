#pragma once

#include <QString>
#include <QStringList>

#include <vector>

/// A file that goes with a message of the conversation layout.
struct DRSampleAttachment {
    QString kind;     ///< one of those that DRSampleAttachments knows
    QString name;     ///< the file's
    QString root;     ///< how the stored path begins: "~/" or "/var/mobile/"
    QString mimeType; ///< null for that of the kind
};

/// A message of the conversation layout.
struct DRSampleMessage {
    QString text; ///< null when it has none
    bool isFromMe = false;
    int sender = -1;             ///< of whom it came, by place among the chat's handles; -1 when nobody says
    qint64 secondsLater = 60;    ///< than the message before it
    bool isBeforeClocks = false; ///< its date is 0
    std::vector<DRSampleAttachment> attachments = {};
};

/// A person's address under one service.
struct DRSampleHandle {
    QString id;
    QString service; ///< "SMS" or "iMessage"
};

struct DRSampleChat {
    QString identifier;
    QString service;
    std::vector<DRSampleHandle> handles;
    std::vector<DRSampleMessage> messages = {};
};

/// A part of a multimedia message of the group layout.
struct DRSamplePiece {
    int part = 0;
    QString type;
    QString data;            ///< null when there is none
    QString location;        ///< as the sender named it; null when there is none
    QString kind;            ///< of its file, as for attachments; null when it has no file of its own
    QString path;            ///< of the file on the phone; null for a place among the files of pieces
    bool hasPreview = false; ///< a smaller picture lies beside the file
};

/// A message of the group layout.
struct DRSampleGroupMessage {
    QString text;           ///< null when it has none
    qint64 flags = 0;       ///< odd when it was sent
    int sender = 0;         ///< by place among the members
    bool isForEach = false; ///< stands once for each member
    qint64 secondsLater = 60;
    bool isBeforeClocks = false;
    std::vector<DRSamplePiece> pieces = {};
};

struct DRSampleGroup {
    qint64 id = 0;
    QStringList members;
    bool isAssociated = true; ///< rows of one message say so, and others that they stand alone
    std::vector<DRSampleGroupMessage> messages = {};
};

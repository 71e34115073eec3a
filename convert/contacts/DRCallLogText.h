#pragma once

#include "convert/contacts/DRImportedCall.h"

#include <QByteArray>

#include <optional>
#include <vector>

/// The call log of the phone's contacts app: one line of XML, made as text and without escaping. See
/// docs/formats/contacts.md.
namespace DRCallLogText {

/// What new calls are added to.
struct Base {
    QByteArray text;             ///< UTF-8, holds "</CallLogList>" in some letter case
    qint64 firstId = 1;          ///< the number of the first new call
    QString reasonOfReplacement; ///< why the phone's calls are lost, for a person to read; null when none are
};

/// The phone's own log, whose highest number the first new call takes again: kept. An empty log when `existing` is
/// missing, empty, not UTF-8 or without a closing tag, or its highest number is 0 or 1.
[[nodiscard]] Base baseFor(const std::optional<QByteArray>& existing);

/// The base with one element for each call, in order, before its closing tag. Values stand as they are, unescaped.
[[nodiscard]] QByteArray withCalls(const Base& base, const std::vector<DRImportedCall>& calls);

/// Whether the call's number would make the log's XML malformed, so that the phone may refuse to read it.
[[nodiscard]] bool breaksTheLog(const DRImportedCall& call);

} // namespace DRCallLogText

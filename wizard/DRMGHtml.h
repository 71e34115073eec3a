#pragma once

#include <QString>
#include <QStringList>

/// How the pages join their texts into HTML. Texts of the program are HTML already; what comes from a phone or a backup
/// is not and must go through `QString::toHtmlEscaped`.
namespace DRMGHtml {

/// The format with its "%@" replaced by the parts, one after the other. What a part holds is left alone.
[[nodiscard]] QString joined(const QString& format, const QStringList& parts);

/// The text with the words between "<link>" and "</link>" made clickable under the name. The mark-up itself stays, for
/// the view to drop.
[[nodiscard]] QString withLink(QString text, const QString& name);

/// Whether a clicked link has this name, in whatever case.
[[nodiscard]] bool isLink(const QString& link, const QString& name);

} // namespace DRMGHtml

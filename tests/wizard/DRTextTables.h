#pragma once

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStringList>

/// The program's own tables of texts.
namespace DRTextTables {

[[nodiscard]] inline QString folder()
{
    return QStringLiteral(MIGRATE_TEST_DATA "/../../app/resources/texts");
}

/// Empty when the file is missing or no JSON object.
[[nodiscard]] inline QJsonObject read(const QString& name)
{
    QFile file(folder() + u'/' + name);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

/// What the program replaces in the text, in the order of the text.
[[nodiscard]] inline QStringList placeholders(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("%1 %2|%\\d|%ws|%[a-z]|</?link>|<&bull>"));
    QStringList found;
    for (const QRegularExpressionMatch& match : pattern.globalMatch(text)) {
        found.append(match.captured());
    }
    return found;
}

/// A table in which every text is its identifier, with its placeholders behind: "IDS_BACKUP_DATE %1 %2".
[[nodiscard]] inline QString echoing()
{
    QJsonObject table = read(QStringLiteral("en.json"));
    for (auto entry = table.begin(); entry != table.end(); ++entry) {
        entry.value() = (QStringList(entry.key()) + placeholders(entry.value().toString())).join(u' ');
    }
    return QString::fromUtf8(QJsonDocument(table).toJson());
}

} // namespace DRTextTables

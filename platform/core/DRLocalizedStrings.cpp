#include "platform/core/DRLocalizedStrings.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

std::optional<DRLocalizedStrings> DRLocalizedStrings::fromFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isObject()) {
        return std::nullopt;
    }
    const QJsonObject table = document.object();
    DRLocalizedStrings strings;
    for (auto entry = table.begin(); entry != table.end(); ++entry) {
        if (!entry.value().isString()) {
            return std::nullopt;
        }
        strings.m_texts.insert(entry.key(), entry.value().toString());
    }
    return strings;
}

std::optional<DRLocalizedStrings> DRLocalizedStrings::fromFolder(const QString& folder, const QStringList& languages)
{
    auto strings = fromFile(folder + u"/en.json"_s);
    for (const QString& language : languages) {
        const QString path = folder + u'/' + language.section(u'-', 0, 0) + u".json"_s;
        if (!QFileInfo::exists(path)) {
            continue;
        }
        const auto ofLanguage = fromFile(path);
        if (!strings || !ofLanguage) {
            return std::nullopt;
        }
        strings->m_texts.insert(ofLanguage->m_texts);
        break;
    }
    return strings;
}

#include "platform/core/DRLocalizedStrings.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

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

#include "app/sample/DRSampleMessageTexts.h"

#include "app/sample/DRSampleResources.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QVariant>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QStringList strings(const QJsonValue& value)
{
    return value.toVariant().toStringList();
}

/// Null when the object does not have it; an empty text stays an empty one.
QString textOrNull(const QJsonObject& object, QStringView key)
{
    const QJsonValue value = object.value(key);
    return value.isString() ? u""_s + value.toString() : QString();
}

/// One record for each object of a list.
template <typename Record> std::vector<Record> records(const QJsonValue& list, Record (*read)(const QJsonObject&))
{
    std::vector<Record> records;
    const QJsonArray objects = list.toArray();
    records.reserve(static_cast<std::size_t>(objects.size()));
    for (const QJsonValue object : objects) {
        records.push_back(read(object.toObject()));
    }
    return records;
}

DRSampleAttachment attachment(const QJsonObject& object)
{
    return {.kind = object.value(u"kind").toString(),
            .name = object.value(u"name").toString(),
            .root = object.value(u"root").toString(u"~/"_s),
            .mimeType = textOrNull(object, u"mime")};
}

DRSampleMessage message(const QJsonObject& object)
{
    const QString text = textOrNull(object, u"text");
    return {.text = text.isNull() ? text : text.repeated(object.value(u"times").toInt(1)),
            .isFromMe = object.value(u"me").toBool(),
            .sender = object.value(u"from").toInt(-1),
            .secondsLater = object.value(u"after").toInteger(60),
            .isBeforeClocks = object.value(u"zero").toBool(),
            .attachments = records(object.value(u"attachments"), attachment)};
}

/// "SMS:NUMBER", or else the address under iMessage.
DRSampleHandle handle(const QString& text)
{
    const QString prefix = u"SMS:"_s;
    return text.startsWith(prefix) ? DRSampleHandle{.id = text.mid(prefix.size()), .service = u"SMS"_s}
                                   : DRSampleHandle{.id = text, .service = u"iMessage"_s};
}

DRSampleChat chat(const QJsonObject& object)
{
    DRSampleChat chat{.identifier = object.value(u"identifier").toString(),
                      .service = object.value(u"service").toString(),
                      .handles = {},
                      .messages = records(object.value(u"messages"), message)};
    const QStringList handles = strings(object.value(u"handles"));
    std::transform(handles.begin(), handles.end(), std::back_inserter(chat.handles), handle);
    return chat;
}

DRSamplePiece piece(const QJsonObject& object)
{
    return {.part = object.value(u"part").toInt(),
            .type = textOrNull(object, u"type"),
            .data = textOrNull(object, u"data"),
            .location = textOrNull(object, u"location"),
            .kind = textOrNull(object, u"kind"),
            .path = textOrNull(object, u"path"),
            .hasPreview = object.value(u"hasPreview").toBool()};
}

DRSampleGroupMessage groupMessage(const QJsonObject& object)
{
    return {.text = textOrNull(object, u"text"),
            .flags = object.value(u"flags").toInteger(),
            .sender = object.value(u"from").toInt(),
            .isForEach = object.value(u"isForEach").toBool(),
            .secondsLater = object.value(u"after").toInteger(60),
            .isBeforeClocks = object.value(u"zero").toBool(),
            .pieces = records(object.value(u"pieces"), piece)};
}

DRSampleGroup group(const QJsonObject& object)
{
    return {.id = object.value(u"id").toInteger(),
            .members = strings(object.value(u"members")),
            .isAssociated = object.value(u"isAssociated").toBool(true),
            .messages = records(object.value(u"messages"), groupMessage)};
}

} // namespace

DRSampleMessageTexts::DRSampleMessageTexts()
{
    const auto texts = QJsonDocument::fromJson(sampleResource(u"texts/messages.json"_s)).object();
    m_hardChats = texts.value(u"hard chats").toArray();
    m_hardGroups = texts.value(u"hard groups").toArray();
    m_people = strings(texts.value(u"people"));
    m_endings = strings(texts.value(u"endings"));
    const auto languages = texts.value(u"languages").toArray();
    for (const QJsonValue language : languages) {
        m_languages.push_back(strings(language.toObject().value(u"lines")));
    }
}

std::vector<DRSampleChat> DRSampleMessageTexts::hardChats() const
{
    return records(m_hardChats, chat);
}

std::vector<DRSampleGroup> DRSampleMessageTexts::hardGroups() const
{
    return records(m_hardGroups, group);
}

QString DRSampleMessageTexts::compose(std::size_t language, DRSampleRandom& random) const
{
    const QStringList& lines = m_languages[language % m_languages.size()];
    QString text = random.pick(lines);
    if (random.below(4) == 0) {
        text += u". "_s + random.pick(lines);
    }
    if (random.below(3) == 0) {
        text += random.pick(m_endings);
    }
    const QString day = u"%1.%2."_s.arg(1 + random.below(28)).arg(1 + random.below(12));
    return text.replace(u"{n}"_s, QString::number(2 + random.below(8)))
        .replace(u"{day}"_s, day)
        .replace(u"{person}"_s, random.pick(m_people));
}

#include "app/sample/DRSamplePhoneChrome.h"

#include "app/sample/DRSamplePhone.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

/// The moment as Chrome writes it: microseconds since 1601-01-01 UTC, as decimal text.
QString chromeTime(const QDateTime& moment)
{
    constexpr qint64 kMillisecondsFrom1601To1970 = 11644473600000;
    return QString::number((moment.toMSecsSinceEpoch() + kMillisecondsFrom1601To1970) * 1000);
}

QJsonObject folder(int id, const QString& name, const QString& added, const QJsonArray& children = {})
{
    return {
        {u"children"_s, children},      {u"date_added"_s, added}, {u"date_modified"_s, u"0"_s},
        {u"id"_s, QString::number(id)}, {u"name"_s, name},        {u"type"_s, u"folder"_s},
    };
}

QJsonObject bookmark(int id, const QString& name, const QString& url, const QString& added)
{
    return {
        {u"date_added"_s, added}, {u"id"_s, QString::number(id)}, {u"name"_s, name}, {u"type"_s, u"url"_s},
        {u"url"_s, url},
    };
}

QJsonObject roots(const QDateTime& moment)
{
    const QString installed = chromeTime(moment.addDays(-120));
    const QString recently = chromeTime(moment.addDays(-3));
    const QJsonArray own{
        bookmark(4, u"Weather"_s, u"http://weather.example.com/today"_s, recently),
        folder(6, u"Kochen \u2615"_s, recently,
               {bookmark(5, u"Brot backen"_s, u"http://brot.example.org/rezepte?id=7&sort=neu"_s, recently)}),
    };
    return {
        {u"bookmark_bar"_s, folder(1, u"Bookmarks bar"_s, installed)},
        {u"other"_s, folder(2, u"Other bookmarks"_s, installed)},
        {u"synced"_s, folder(3, u"Mobile bookmarks"_s, installed, own)},
    };
}

QString jsonString(const QString& text)
{
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

QString indent(qsizetype depth)
{
    return u"   "_s.repeated(depth);
}

/// The value in Chrome's own layout: three blanks per depth, arrays on the line of their brackets, an empty one with
/// two blanks.
QString chromeJson(const QJsonValue& value, qsizetype depth)
{
    QStringList pieces;
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto entry = object.begin(); entry != object.end(); ++entry) {
            pieces += indent(depth + 1) + jsonString(entry.key()) + u": "_s + chromeJson(entry.value(), depth + 1);
        }
        return u"{\n"_s + pieces.join(u",\n"_s) + u'\n' + indent(depth) + u'}';
    }
    if (value.isArray()) {
        const QJsonArray array = value.toArray();
        for (const auto& element : array) {
            pieces += chromeJson(element, depth);
        }
        return u"[ "_s + pieces.join(u", "_s) + u" ]"_s;
    }
    return value.isString() ? jsonString(value.toString()) : QString::number(value.toInteger());
}

} // namespace

bool addPhoneChrome(DRSamplePhone& phone, const DRSampleSettings& settings)
{
    QJsonObject file{{u"roots"_s, roots(settings.moment)}, {u"version"_s, 1}};
    // Made over other text than Chrome's: it notices, as after an edit from outside, and renumbers.
    const QByteArray text = chromeJson(file, 0).toUtf8();
    file.insert(u"checksum"_s, QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Md5).toHex()));

    const DRSampleApp app{
        .packetId = u"com.android.chrome"_s, .versionCode = 1916141, .installer = u"com.android.vending"_s};
    return phone.addPacket(app, [&file](const QString& appFolder) {
        return writeSampleFile(appFolder + u"/r/app_chrome/Default/Bookmarks"_s, chromeJson(file, 0).toUtf8() + '\n');
    });
}

#include "model/iphone_backup/DRFilePathList.h"

#include "model/iphone_backup/DRFileNameIndex.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRUtf8.h"
#include "platform/data/DRAbstractData.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <utility>

using Extension = DRFileNameIndex::Extension;
using Order = DRAbstractData::ByteOrder;

namespace {

constexpr QByteArrayView kMagic("mbdb");
constexpr qint64 kVersionBytes = 2;
constexpr qint64 kMaximumManifestBytes = qint64{1} << 30; // the largest ones seen have 130 MB
constexpr quint16 kAbsent = 0xFFFF;
/// Link target, data hash and encryption key.
constexpr int kSkippedStrings = 3;
/// The mode's 16 bits, then inode number (two halves), user, group and three times of 32 bits each.
constexpr qint64 kSkippedBytes = 2 + 7 * 4;
constexpr qint64 kProtectionClassBytes = 1;

/// What is kept of a record; the bytes are the reader's.
struct Record {
    QByteArrayView domain;
    QByteArrayView path;
    quint64 sizeBytes = 0;
};

QByteArrayView readStringBytes(DRAbstractData& reader)
{
    const quint16 length = reader.readUInt16(Order::BigEndian).value_or(0);
    return length == kAbsent ? QByteArrayView() : reader.readView(length).value_or(QByteArrayView());
}

void skipStrings(DRAbstractData& reader, int count)
{
    for (int i = 0; i < count; ++i) {
        readStringBytes(reader);
    }
}

Record readRecord(DRAbstractData& reader)
{
    Record record;
    record.domain = readStringBytes(reader);
    record.path = readStringBytes(reader);
    skipStrings(reader, kSkippedStrings);
    reader.skip(kSkippedBytes);
    record.sizeBytes = DRFilePathList::parseInt(reader, sizeof record.sizeBytes);
    reader.skip(kProtectionClassBytes);
    const int propertyCount = reader.readUInt8().value_or(0);
    skipStrings(reader, 2 * propertyCount); // name and value
    return record;
}

QString decoded(QByteArrayView bytes)
{
    return DRUtf8::decodeStrictly(bytes).value_or(QString());
}

/// ASCII, which nearly all paths are, needs no text of its own on the way.
void appendDecoded(QString& text, QByteArrayView bytes)
{
    constexpr unsigned char kNoAscii = 0x80;
    unsigned char allBits = 0;
    for (const char byte : bytes) {
        allBits |= static_cast<unsigned char>(byte);
    }
    if (allBits < kNoAscii) {
        text += QLatin1StringView(bytes);
        return;
    }
    text += decoded(bytes);
}

/// Kept: sizes are judged by their low half alone, so that some files of 2 GiB and more do not appear.
bool isFile(const Record& record)
{
    return static_cast<qint32>(static_cast<quint32>(record.sizeBytes)) > 0;
}

/// Makes texts of records and leaves out those that do not begin with a prefix. Neighbours mostly share their domain, which is
/// therefore decoded and compared once for all of them.
class DomainPaths {
public:
    explicit DomainPaths(const QString& prefix) : m_prefix(prefix) {}

    /// Domain and path joined; none when the text does not begin with the prefix.
    std::optional<QString> textOf(const Record& record)
    {
        if (m_domainBytes != record.domain || m_domain.isEmpty()) {
            enterDomain(record.domain);
        }
        if (!m_hasPrefixOfDomain) {
            return std::nullopt;
        }
        QString text;
        text.reserve(m_domain.size() + record.path.size());
        text += m_domain;
        appendDecoded(text, record.path);
        const QStringView path = QStringView(text).sliced(m_domain.size());
        return path.startsWith(m_prefixOfPath, Qt::CaseInsensitive) ? std::optional(std::move(text)) : std::nullopt;
    }

private:
    void enterDomain(QByteArrayView bytes)
    {
        m_domainBytes = bytes;
        m_domain = decoded(bytes) + u'-';
        const qsizetype common = std::min(m_prefix.size(), m_domain.size());
        m_hasPrefixOfDomain = m_domain.startsWith(m_prefix.first(common), Qt::CaseInsensitive);
        m_prefixOfPath = m_prefix.sliced(common);
    }

    QStringView m_prefix;
    QByteArrayView m_domainBytes;
    QString m_domain; ///< with the "-" behind it; empty before the first record
    bool m_hasPrefixOfDomain = false;
    QStringView m_prefixOfPath; ///< what a path of this domain must begin with
};

QStringList readFiles(DRAbstractData& reader, const QString& prefix)
{
    QStringList files;
    DomainPaths domainPaths(prefix);
    while (!reader.isAtEnd()) {
        const Record record = readRecord(reader);
        if (!isFile(record)) {
            continue;
        }
        if (auto text = domainPaths.textOf(record)) {
            files.append(*std::move(text));
        }
    }
    return files;
}

} // namespace

struct DRFilePathList::Content {
    /// An index that is built when it is first asked for, by whichever thread comes first.
    class LazyIndex {
    public:
        const DRFileNameIndex& of(const QStringList& list, Extension extension)
        {
            std::call_once(m_isBuilt, [&] { m_index.emplace(list, extension); });
            return *m_index;
        }

    private:
        std::once_flag m_isBuilt;
        std::optional<DRFileNameIndex> m_index;
    };

    explicit Content(QStringList filePaths) : paths(std::move(filePaths)) {}

    QStringList paths;
    mutable LazyIndex names;
    mutable LazyIndex stems;
};

DRFilePathList::DRFilePathList(QStringList filePaths) : m_content(std::make_shared<const Content>(std::move(filePaths)))
{
}

DRFilePathList DRFilePathList::fileListFromMBDB(const QString& path, const QString& wherePathBeginsWith)
{
    auto reader = DRAbstractData::abstractDataWithPath(path, kMaximumManifestBytes);
    if (!reader || reader->readView(kMagic.size()) != kMagic) {
        qCWarning(lcMigrate, "The backup's list of files is missing or cannot be read");
        return DRFilePathList();
    }
    reader->skip(kVersionBytes);
    return DRFilePathList(readFiles(*reader, wherePathBeginsWith));
}

QString DRFilePathList::parseString(DRAbstractData& reader)
{
    return decoded(readStringBytes(reader));
}

quint64 DRFilePathList::parseInt(DRAbstractData& reader, int size)
{
    switch (size) {
    case sizeof(quint8):
        return reader.readUInt8().value_or(0);
    case sizeof(quint16):
        return reader.readUInt16(Order::BigEndian).value_or(0);
    case sizeof(quint32):
        return reader.readUInt32(Order::BigEndian).value_or(0);
    case sizeof(quint64): // two halves, the high one first: the same bytes
        return reader.readUInt64(Order::BigEndian).value_or(0);
    default:
        return 0;
    }
}

QString
DRFilePathList::findInPath(const QString& pathPrefix, const QString& withFilename, bool includingExtension) const
{
    const DRFileNameIndex& index = includingExtension ? m_content->names.of(m_content->paths, Extension::Kept)
                                                      : m_content->stems.of(m_content->paths, Extension::Removed);
    return index.firstPath(pathPrefix, withFilename);
}

QStringList DRFilePathList::filePaths() const
{
    return m_content->paths;
}

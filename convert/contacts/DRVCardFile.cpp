#include "convert/contacts/DRVCardFile.h"

#include "platform/contacts/DRVCardPicture.h"
#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRPendingFile.h"

#include <QByteArray>
#include <QByteArrayMatcher>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace {

constexpr qsizetype kChunkBytes = qsizetype{1} << 20;

constexpr QByteArrayView kBegin("BEGIN:VCARD");
constexpr QByteArrayView kEnd("END:VCARD");

/// Takes a file chunk by chunk and notes where its cards are.
class CardFinder {
public:
    /// `bytes` lie at `offset` of the file, where the last call's bytes from `kept` on begin.
    void find(QByteArrayView bytes, qint64 offset)
    {
        qsizetype position = 0;
        while (true) {
            const QByteArrayMatcher& marker = m_isInCard ? m_end : m_begin;
            const qsizetype found = marker.indexIn(bytes, position);
            if (found < 0) {
                break;
            }
            const qsizetype after = found + marker.pattern().size();
            if (m_isInCard) {
                m_contents.cards.push_back({.offset = m_cardOffset});
            } else {
                noteOutside(bytes.sliced(position, found - position));
                m_cardOffset = offset + found;
            }
            m_isInCard = !m_isInCard;
            position = after;
        }
        // The end of the chunk may be the first part of a marker.
        const qsizetype marker = (m_isInCard ? m_end : m_begin).pattern().size();
        m_kept = std::max(position, bytes.size() - (marker - 1));
        if (!m_isInCard) {
            noteOutside(bytes.sliced(position, m_kept - position));
        }
    }

    /// The position in the last call's bytes from which on they must be given again, with what follows them.
    [[nodiscard]] qsizetype kept() const { return m_kept; }

    [[nodiscard]] DRVCardFile::Contents finish(QByteArrayView rest)
    {
        noteOutside(rest);
        m_contents.isDamaged = m_contents.isDamaged || m_isInCard;
        m_contents.isReadable = true;
        return std::move(m_contents);
    }

private:
    void noteOutside(QByteArrayView bytes)
    {
        static constexpr QByteArrayView kByteOrderMark("\xEF\xBB\xBF");
        const QByteArrayView text = bytes.trimmed();
        m_contents.isDamaged = m_contents.isDamaged || !(text.isEmpty() || text == kByteOrderMark);
    }

    const QByteArrayMatcher m_begin{kBegin};
    const QByteArrayMatcher m_end{kEnd};
    DRVCardFile::Contents m_contents;
    qint64 m_cardOffset = 0;
    qsizetype m_kept = 0;
    bool m_isInCard = false;
};

/// The bytes at the end that begin a character of which the rest is still to come.
qsizetype incompleteTail(QByteArrayView bytes)
{
    constexpr qsizetype kLongestBeginning = 3;
    for (qsizetype back = 1; back <= std::min(bytes.size(), kLongestBeginning); ++back) {
        const auto byte = static_cast<uchar>(bytes.at(bytes.size() - back));
        if ((byte & 0xC0U) == 0x80U) {
            continue; // not the first of its character
        }
        const qsizetype length = byte >= 0xF0U ? 4 : byte >= 0xE0U ? 3 : byte >= 0xC0U ? 2 : 1;
        return length > back ? back : 0;
    }
    return 0;
}

/// The version of the card that begins there; empty when it does not tell within its first lines.
QByteArray versionAt(const QString& path, const DRPhoneCard& card)
{
    constexpr qint64 kFirstLines = 256;
    static constexpr QByteArrayView kVersion("VERSION:");
    const DRFileDescriptor descriptor = DRFileDescriptor::openRegularFile(path);
    QFile file;
    if (!descriptor.isOpen() || !file.open(descriptor.number(), QIODevice::ReadOnly) || !file.seek(card.offset)) {
        return {};
    }
    const QByteArray start = file.read(kFirstLines);
    const qsizetype found = start.indexOf(kVersion);
    return found < 0 ? QByteArray() : start.sliced(found + kVersion.size()).split('\n').front().trimmed();
}

bool writeAll(QIODevice& target, const QByteArray& bytes)
{
    return target.write(bytes) == bytes.size();
}

/// The phone's own file, from which its cards are copied.
class PhoneCards {
public:
    explicit PhoneCards(const QString& path) : m_descriptor(DRFileDescriptor::openRegularFile(path))
    {
        m_isOpen = m_descriptor.isOpen() && m_file.open(m_descriptor.number(), QIODevice::ReadOnly);
    }

    [[nodiscard]] bool copy(const DRPhoneCard& card, QIODevice& target)
    {
        if (!m_isOpen || !m_file.seek(card.offset)) {
            return false;
        }
        QByteArray text;
        while (true) {
            const QByteArray block = m_file.read(kBlockBytes);
            text += block;
            if (const qsizetype end = m_end.indexIn(text); end >= 0) {
                return writeAll(target, text.first(end + m_end.pattern().size()) + '\n');
            }
            // What may be the first part of the marker waits for the next block.
            const qsizetype certain = std::max<qsizetype>(text.size() - (m_end.pattern().size() - 1), 0);
            if (block.isEmpty() || !writeAll(target, text.first(certain))) {
                return false;
            }
            text.remove(0, certain);
        }
    }

private:
    static constexpr qsizetype kBlockBytes = 4096; ///< most cards are smaller

    const QByteArrayMatcher m_end{kEnd};
    DRFileDescriptor m_descriptor; ///< owns the open file that m_file reads
    QFile m_file;
    bool m_isOpen = false;
};

bool writeContact(QIODevice& target, const DRContactCard& card, const DRVCardFile::PictureSource& pictureOf)
{
    return writeAll(target, card.pictureRow ? DRVCardPicture::withPicture(card.vCard, pictureOf(card)) : card.vCard);
}

} // namespace

DRVCardFile::Contents DRVCardFile::read(const QString& path)
{
    const DRFileDescriptor file = DRFileDescriptor::openRegularFile(path);
    bool didDiskFail = !file.isOpen() && errno == EIO;
    CardFinder finder;
    QByteArray buffer;
    qint64 offset = 0;        // of the buffer in the file
    qsizetype checkedEnd = 0; // in the buffer
    while (file.isOpen()) {
        const qsizetype filled = buffer.size();
        buffer.resize(filled + kChunkBytes);
        const qint64 count = file.read(buffer.data() + filled, kChunkBytes);
        buffer.resize(filled + std::max<qint64>(count, 0));
        didDiskFail = count < 0;
        const qsizetype completeEnd = buffer.size() - (count > 0 ? incompleteTail(buffer) : 0);
        if (count < 0 || !QByteArrayView(buffer).sliced(checkedEnd, completeEnd - checkedEnd).isValidUtf8()) {
            break;
        }
        if (count == 0) {
            Contents contents = finder.finish(buffer);
            contents.version = contents.cards.empty() ? QByteArray() : versionAt(path, contents.cards.front());
            return contents;
        }
        finder.find(QByteArrayView(buffer).first(completeEnd), offset);
        checkedEnd = completeEnd - finder.kept();
        offset += finder.kept();
        buffer.remove(0, finder.kept());
    }
    return {.didDiskFail = didDiskFail};
}

bool DRVCardFile::write(const QString& path, const DREntryList& cards, const PictureSource& pictureOf)
{
    DRPendingFile pending(path);
    QFile file;
    if (!pending.file().isOpen() || !file.open(pending.file().number(), QIODevice::WriteOnly)) {
        return false;
    }
    PhoneCards phoneCards(path);
    for (const std::any& entry : cards) {
        const auto* own = std::any_cast<DRPhoneCard>(&entry);
        const auto* contact = std::any_cast<DRContactCard>(&entry);
        if ((own != nullptr && !phoneCards.copy(*own, file)) ||
            (contact != nullptr && !writeContact(file, *contact, pictureOf))) {
            return false;
        }
    }
    return file.flush() && pending.file().flush() && pending.publish();
}

#include "model/iphone_backup/DRFileNameIndex.h"

#include <QHash>
#include <QHashSeed>
#include <QVarLengthArray>

#include <algorithm>
#include <bit>
#include <utility>

namespace {

constexpr qsizetype kUsualNameLength = 128;

/// One value for all surrogates: whether a pair folds shows only in the comparison of the names.
char16_t folded(QChar character)
{
    return character.isSurrogate() ? u'\uFFFD' : character.toCaseFolded().unicode();
}

/// Equal names have equal hashes. Seeded, so that no backup can be made whose names all fall into one bucket.
size_t hashOf(QStringView name)
{
    QVarLengthArray<char16_t, kUsualNameLength> text(name.size());
    std::ranges::transform(name, text.begin(), folded);
    return qHash(QStringView(text), QHashSeed::globalSeed());
}

} // namespace

DRFileNameIndex::DRFileNameIndex(QStringList paths, Extension extension)
    : m_paths(std::move(paths)),
      m_extension(extension),
      m_firstOfBucket(std::bit_ceil(static_cast<size_t>(m_paths.size()) + 1), m_paths.size()),
      m_nextInBucket(static_cast<size_t>(m_paths.size()))
{
    for (qsizetype i = m_paths.size() - 1; i >= 0; --i) { // from the end, so that each chain begins with its first path
        qsizetype& first = m_firstOfBucket[bucketOf(nameOf(m_paths.at(i), m_extension))];
        m_nextInBucket[static_cast<size_t>(i)] = std::exchange(first, i);
    }
}

QString DRFileNameIndex::firstPath(const QString& prefix, const QString& name) const
{
    qsizetype i = m_firstOfBucket[bucketOf(name)];
    for (; i < m_paths.size(); i = m_nextInBucket[static_cast<size_t>(i)]) {
        const QString& path = m_paths.at(i);
        if (nameOf(path, m_extension).compare(name, Qt::CaseInsensitive) == 0 &&
            path.startsWith(prefix, Qt::CaseInsensitive)) {
            return path;
        }
    }
    return {};
}

QStringView DRFileNameIndex::nameOf(QStringView path, Extension extension)
{
    const QStringView name = path.sliced(path.lastIndexOf(u'/') + 1);
    const qsizetype dot = extension == Extension::Removed ? name.lastIndexOf(u'.') : -1;
    return dot < 0 ? name : name.first(dot);
}

size_t DRFileNameIndex::bucketOf(QStringView name) const
{
    return hashOf(name) & (m_firstOfBucket.size() - 1); // their number is a power of two
}

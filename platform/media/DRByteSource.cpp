#include "platform/media/DRByteSource.h"

#include "platform/core/DRFileDescriptor.h"
#include "platform/data/DRAbstractData.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace {

/// What of `bytes`, which begin at `start`, is asked for.
QByteArrayView partOf(const QByteArray& bytes, quint64 start, quint64 offset, quint64 count)
{
    const auto size = static_cast<quint64>(bytes.size());
    if (offset < start || offset - start > size) {
        return {};
    }
    const quint64 skipped = offset - start;
    return QByteArrayView(bytes).sliced(static_cast<qsizetype>(skipped),
                                        static_cast<qsizetype>(std::min(count, size - skipped)));
}

} // namespace

quint64 DRMemorySource::length() const
{
    return static_cast<quint64>(m_data.length());
}

QByteArrayView DRMemorySource::view(quint64 offset, quint64 count)
{
    return partOf(m_data.bytes(), 0, offset, std::min(count, kMaximumView));
}

DRFileSource::DRFileSource(const DRFileDescriptor& file) : m_file(file)
{
    const auto status = file.status();
    m_length = status ? static_cast<quint64>(status->st_size) : 0;
    m_hasFailed = !status;
}

QByteArrayView DRFileSource::view(quint64 offset, quint64 count)
{
    if (offset >= m_length) {
        return {};
    }
    const quint64 wanted = std::min({count, kMaximumView, m_length - offset});
    const QByteArrayView known = partOf(m_window, m_windowOffset, offset, wanted);
    if (static_cast<quint64>(known.size()) == wanted) {
        return known;
    }
    readWindow(offset);
    return partOf(m_window, m_windowOffset, offset, wanted);
}

void DRFileSource::readWindow(quint64 offset)
{
    m_windowOffset = offset;
    m_window.resize(static_cast<qsizetype>(kMaximumView));
    qsizetype filled = 0;
    while (filled < m_window.size()) {
        const ssize_t count =
            ::pread(m_file.number(), m_window.data() + filled, static_cast<size_t>(m_window.size() - filled),
                    static_cast<off_t>(offset) + filled);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            m_hasFailed = m_hasFailed || count < 0;
            break;
        }
        filled += count;
    }
    m_window.truncate(filled);
}

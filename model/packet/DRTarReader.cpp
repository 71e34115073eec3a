#include "model/packet/DRTarReader.h"

#include <archive.h>
#include <archive_entry.h>

#include <utility>

namespace {

la_ssize_t nextBytes(archive* /*reader*/, void* source, const void** bytes)
{
    const std::span<const char> next = (*static_cast<DRTarReader::Source*>(source))();
    *bytes = next.data();
    return static_cast<la_ssize_t>(next.size());
}

DRTarReader::Kind kindOf(archive_entry* entry)
{
    if (archive_entry_hardlink(entry) != nullptr) {
        return DRTarReader::Kind::Other;
    }
    switch (archive_entry_filetype(entry)) {
    case AE_IFREG:
        return DRTarReader::Kind::File;
    case AE_IFDIR:
        return DRTarReader::Kind::Folder;
    default:
        return DRTarReader::Kind::Other;
    }
}

} // namespace

void DRTarReader::CloseArchive::operator()(archive* reader) const
{
    archive_read_free(reader);
}

DRTarReader::DRTarReader(Source source)
    : m_source(std::make_unique<Source>(std::move(source))), m_archive(archive_read_new())
{
    const bool isReady = m_archive && archive_read_support_format_tar(m_archive.get()) == ARCHIVE_OK &&
                         archive_read_open(m_archive.get(), m_source.get(), nullptr, nextBytes, nullptr) == ARCHIVE_OK;
    if (!isReady) {
        m_archive.reset();
    }
}

/// A warning (a name that is not in the locale's encoding, a strange attribute) leaves the entry usable.
DRTarReader::Result DRTarReader::resultOf(int result)
{
    if (result == ARCHIVE_OK || result == ARCHIVE_WARN) {
        return Result::Read;
    }
    return result == ARCHIVE_EOF ? Result::Ended : Result::Broken;
}

std::optional<DRTarReader::Entry> DRTarReader::nextEntry()
{
    archive_entry* entry = nullptr;
    int result = ARCHIVE_RETRY;
    while (m_archive && result == ARCHIVE_RETRY) {
        result = archive_read_next_header(m_archive.get(), &entry);
    }
    m_lastResult = resultOf(result);
    if (m_lastResult != Result::Read) {
        return std::nullopt;
    }
    return Entry{.path = archive_entry_pathname(entry),
                 .kind = kindOf(entry),
                 .sizeBytes = static_cast<quint64>(archive_entry_size(entry)),
                 .modificationSeconds = archive_entry_mtime(entry)};
}

std::optional<DRTarReader::Piece> DRTarReader::nextPiece()
{
    const void* bytes = nullptr;
    std::size_t size = 0;
    la_int64_t offset = 0;
    int result = ARCHIVE_RETRY;
    while (m_archive && result == ARCHIVE_RETRY) {
        result = archive_read_data_block(m_archive.get(), &bytes, &size, &offset);
    }
    m_lastResult = offset < 0 ? Result::Broken : resultOf(result);
    if (m_lastResult != Result::Read) {
        return std::nullopt;
    }
    return Piece{.bytes = {static_cast<const char*>(bytes), size}, .offset = static_cast<quint64>(offset)};
}

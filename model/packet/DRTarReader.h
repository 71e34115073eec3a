#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>

#include <QByteArray>

struct archive;

/// Reads a tar archive entry by entry from bytes that come piece by piece. Damage ends the reading; what came before it
/// stays good. An archive without its end blocks, or with one only, is honest content: the phone writes such.
class DRTarReader {
public:
    /// The archive's next bytes, valid until the next call; empty at the end.
    using Source = std::function<std::span<const char>()>;

    enum class Kind { File, Folder, Other };

    struct Entry {
        QByteArray path;         ///< as it stands, so anything at all; empty when the archive has none
        Kind kind = Kind::Other; ///< links of both sorts, devices, pipes are Other
        quint64 sizeBytes = 0;
        qint64 modificationSeconds = 0;
    };

    /// A part of a file's content. Offsets ascend; what lies between is zeros.
    struct Piece {
        std::span<const char> bytes; ///< valid until the next call
        quint64 offset = 0;
    };

    explicit DRTarReader(Source source);

    /// The next entry; none at the end of the archive, or where it cannot be read on.
    [[nodiscard]] std::optional<Entry> nextEntry();

    /// The next part of the current entry's content; none at its end, or where the archive breaks off.
    [[nodiscard]] std::optional<Piece> nextPiece();

    /// Whether `nextPiece` has met the end of the content. A file that is longer than its last piece ends in zeros.
    [[nodiscard]] bool isContentWhole() const { return m_lastResult == Result::Ended; }

    /// Whether reading ended before the end of the archive.
    [[nodiscard]] bool isDamaged() const { return m_lastResult == Result::Broken; }

private:
    enum class Result { Read, Ended, Broken };
    [[nodiscard]] static Result resultOf(int result);

    struct CloseArchive {
        void operator()(archive* reader) const;
    };
    std::unique_ptr<Source> m_source;                 ///< at a fixed address, which the archive knows
    std::unique_ptr<archive, CloseArchive> m_archive; ///< null when it could not be made
    Result m_lastResult = Result::Read;
};

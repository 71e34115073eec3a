#pragma once

#include <QByteArray>
#include <QByteArrayView>

class DRAbstractData;
class DRFileDescriptor;

/// Bytes at positions, so that a video is read alike in memory and from a file that is larger than memory.
class DRByteSource {
public:
    /// The most bytes that one view can be asked to hold.
    static constexpr quint64 kMaximumView = quint64{16} * 1024;

    virtual ~DRByteSource() = default;

    [[nodiscard]] virtual quint64 length() const = 0;

    /// That many bytes; fewer where the bytes end or cannot be read. Valid until the next call or change.
    [[nodiscard]] virtual QByteArrayView view(quint64 offset, quint64 count) = 0;
};

/// Bytes in memory, as they are at each call.
class DRMemorySource final : public DRByteSource {
public:
    /// The data must outlive this object.
    explicit DRMemorySource(const DRAbstractData& data) : m_data(data) {}

    [[nodiscard]] quint64 length() const override;
    [[nodiscard]] QByteArrayView view(quint64 offset, quint64 count) override;

private:
    const DRAbstractData& m_data;
};

/// A file, of which one small window at a time is in memory.
class DRFileSource final : public DRByteSource {
public:
    /// The file must outlive this object. Its reading position is left alone.
    explicit DRFileSource(const DRFileDescriptor& file);

    [[nodiscard]] quint64 length() const override { return m_length; }
    [[nodiscard]] QByteArrayView view(quint64 offset, quint64 count) override;

    /// Whether the disk did not answer so far: the length or bytes are missing then that the file may have.
    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }

private:
    void readWindow(quint64 offset);

    const DRFileDescriptor& m_file;
    quint64 m_length = 0;
    bool m_hasFailed = false;
    quint64 m_windowOffset = 0;
    QByteArray m_window;
};

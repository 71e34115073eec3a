#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QtEndian>

#include <optional>

/// Reads numbers, texts and bytes one after the other from a file's content or from bytes in memory, never past their
/// end.
///
/// Every read moves the position by what it consumed. A read that asks for more than there is answers none and moves to
/// the end, so that a loop over a cut or lying file comes to its end.
class DRAbstractData {
public:
    enum class ByteOrder { LittleEndian, BigEndian };

    /// The whole content of a regular file. None when it cannot be read, is a link, or is larger than `maximumBytes`.
    [[nodiscard]] static std::optional<DRAbstractData> abstractDataWithPath(const QString& path, qint64 maximumBytes);

    /// Shares the bytes; those of QByteArray::fromRawData must outlive this object and all views that it answers.
    explicit DRAbstractData(QByteArray bytes);

    /// All the bytes, wherever the position is.
    [[nodiscard]] const QByteArray& bytes() const { return m_bytes; }

    [[nodiscard]] qint64 length() const { return m_bytes.size(); }
    [[nodiscard]] qint64 offset() const { return m_offset; }
    [[nodiscard]] qint64 bytesLeft() const { return length() - m_offset; }
    [[nodiscard]] bool isAtEnd() const { return bytesLeft() == 0; }

    /// Moves the position, to the nearest end when `offset` lies outside.
    void setOffset(qint64 offset);

    /// Moves over that many bytes. False when there are fewer; the position is at the end then.
    bool skip(qint64 byteCount);

    [[nodiscard]] std::optional<quint8> readUInt8();
    [[nodiscard]] std::optional<quint16> readUInt16(ByteOrder order);
    [[nodiscard]] std::optional<quint32> readUInt32(ByteOrder order);
    [[nodiscard]] std::optional<quint64> readUInt64(ByteOrder order);

    /// The next bytes, without copying them: valid as long as this object or a copy of it lives.
    [[nodiscard]] std::optional<QByteArrayView> readView(qint64 byteCount);

    /// A copy of the next bytes.
    [[nodiscard]] std::optional<QByteArray> readBytes(qint64 byteCount);

    /// The next bytes as UTF-8 text. Also none, with the position behind them, when they are not valid UTF-8.
    [[nodiscard]] std::optional<QString> readString(qint64 byteCount);

protected:
    /// The bytes for a class that changes them; it must move a position that the change leaves outside.
    [[nodiscard]] QByteArray& changeableBytes() { return m_bytes; }

private:
    template <typename T> std::optional<T> readNumber(ByteOrder order);

    QByteArray m_bytes;
    qint64 m_offset = 0;
};

// Defined here because a manifest has tens of millions of numbers and strings.

inline std::optional<QByteArrayView> DRAbstractData::readView(qint64 byteCount)
{
    if (byteCount < 0 || byteCount > bytesLeft()) {
        m_offset = length();
        return std::nullopt;
    }
    const QByteArrayView view(m_bytes.constData() + m_offset, byteCount);
    m_offset += byteCount;
    return view;
}

template <typename T> std::optional<T> DRAbstractData::readNumber(ByteOrder order)
{
    const auto view = readView(sizeof(T));
    if (!view) {
        return std::nullopt;
    }
    return order == ByteOrder::BigEndian ? qFromBigEndian<T>(view->data()) : qFromLittleEndian<T>(view->data());
}

inline bool DRAbstractData::skip(qint64 byteCount)
{
    return readView(byteCount).has_value();
}

inline std::optional<quint8> DRAbstractData::readUInt8()
{
    return readNumber<quint8>(ByteOrder::BigEndian);
}

inline std::optional<quint16> DRAbstractData::readUInt16(ByteOrder order)
{
    return readNumber<quint16>(order);
}

inline std::optional<quint32> DRAbstractData::readUInt32(ByteOrder order)
{
    return readNumber<quint32>(order);
}

inline std::optional<quint64> DRAbstractData::readUInt64(ByteOrder order)
{
    return readNumber<quint64>(order);
}

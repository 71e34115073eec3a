#include "platform/data/DRAbstractData.h"

#include "platform/core/DRFiles.h"
#include "platform/core/DRUtf8.h"

#include <QtEndian>

#include <algorithm>
#include <utility>

std::optional<DRAbstractData> DRAbstractData::abstractDataWithPath(const QString& path, qint64 maximumBytes)
{
    auto bytes = DRFiles::readRegularFile(path, maximumBytes);
    if (!bytes) {
        return std::nullopt;
    }
    return DRAbstractData(*std::move(bytes));
}

DRAbstractData::DRAbstractData(QByteArray bytes) : m_bytes(std::move(bytes)) {}

void DRAbstractData::setOffset(qint64 offset)
{
    m_offset = std::clamp<qint64>(offset, 0, length());
}

bool DRAbstractData::skip(qint64 byteCount)
{
    return readView(byteCount).has_value();
}

std::optional<quint8> DRAbstractData::readUInt8()
{
    return readNumber<quint8>(ByteOrder::BigEndian);
}

std::optional<quint16> DRAbstractData::readUInt16(ByteOrder order)
{
    return readNumber<quint16>(order);
}

std::optional<quint32> DRAbstractData::readUInt32(ByteOrder order)
{
    return readNumber<quint32>(order);
}

std::optional<quint64> DRAbstractData::readUInt64(ByteOrder order)
{
    return readNumber<quint64>(order);
}

std::optional<QByteArrayView> DRAbstractData::readView(qint64 byteCount)
{
    if (byteCount < 0 || byteCount > bytesLeft()) {
        m_offset = length();
        return std::nullopt;
    }
    const QByteArrayView view(m_bytes.constData() + m_offset, byteCount);
    m_offset += byteCount;
    return view;
}

std::optional<QByteArray> DRAbstractData::readBytes(qint64 byteCount)
{
    const auto view = readView(byteCount);
    return view ? std::optional(view->toByteArray()) : std::nullopt;
}

std::optional<QString> DRAbstractData::readString(qint64 byteCount)
{
    const auto view = readView(byteCount);
    return view ? DRUtf8::decodeStrictly(*view) : std::nullopt;
}

template <typename T> std::optional<T> DRAbstractData::readNumber(ByteOrder order)
{
    const auto view = readView(sizeof(T));
    if (!view) {
        return std::nullopt;
    }
    return order == ByteOrder::BigEndian ? qFromBigEndian<T>(view->data()) : qFromLittleEndian<T>(view->data());
}

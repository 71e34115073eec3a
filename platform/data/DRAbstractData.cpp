#include "platform/data/DRAbstractData.h"

#include "platform/core/DRFiles.h"
#include "platform/core/DRUtf8.h"

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

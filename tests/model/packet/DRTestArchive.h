#pragma once

#include <numeric>

#include <QByteArray>
#include <QFile>
#include <QString>

#include "model/packet/DRMigratePacketCodec.h"
#include "tests/support/DRTestFiles.h"

/// Archives and packets as others write them, byte by byte, well or badly.
namespace DRTestArchive {

/// One ustar entry with its content, of any type and with any name of up to 100 bytes.
inline QByteArray entry(const QByteArray& name, char type, const QByteArray& content = {}, const QByteArray& link = {})
{
    QByteArray block(512, '\0');
    const auto put = [&block](qsizetype offset, const QByteArray& text) { block.replace(offset, text.size(), text); };
    put(0, name);
    put(100, "0004755");
    put(124, QByteArray::number(content.size(), 8).rightJustified(11, '0'));
    put(136, "10000000000");
    put(148, "        ");
    block[156] = type;
    put(157, link);
    put(257, QByteArray("ustar\00000", 8));
    const auto add = [](int sum, char byte) { return sum + static_cast<unsigned char>(byte); };
    put(148, QByteArray::number(std::accumulate(block.cbegin(), block.cend(), 0, add), 8).rightJustified(6, '0'));
    return block + content + QByteArray((512 - content.size() % 512) % 512, '\0');
}

inline QByteArray file(const QByteArray& name, const QByteArray& content)
{
    return entry(name, '0', content);
}

inline QByteArray end()
{
    return QByteArray("\0", 1).repeated(1024);
}

inline QByteArray packet(const QByteArray& archive)
{
    return "ANDROID BACKUP\n1\n1\nnone\n" + zlibDeflate(archive).value_or(QByteArray());
}

/// Bytes that do not compress, the same at each call.
inline QByteArray noise(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    for (char& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24U);
    }
    return bytes;
}

} // namespace DRTestArchive

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QtGlobal>

#include <algorithm>
#include <cstring>

/// Takes an input apart into numbers and texts, from its front to its end. What is asked for beyond the end is zero or
/// empty, so that every input has a meaning.
class DRFuzzInput {
public:
    explicit DRFuzzInput(QByteArrayView bytes) : m_rest(bytes) {}

    [[nodiscard]] bool isAtEnd() const { return m_rest.isEmpty(); }

    /// At most `count` bytes; valid as long as the input.
    QByteArrayView take(qsizetype count)
    {
        const QByteArrayView taken = m_rest.first(std::min(count, m_rest.size()));
        m_rest = m_rest.sliced(taken.size());
        return taken;
    }

    QByteArrayView takeRest() { return take(m_rest.size()); }

    /// A number in the machine's byte order.
    template <typename Number> Number takeNumber()
    {
        Number number{};
        const QByteArrayView bytes = take(sizeof number);
        if (!bytes.isEmpty()) {
            std::memcpy(&number, bytes.data(), static_cast<std::size_t>(bytes.size()));
        }
        return number;
    }

    quint8 takeByte() { return takeNumber<quint8>(); }

    /// One of `count` positions; 0 when there are none.
    template <typename Size> Size takePosition(Size count)
    {
        return count > 0 ? static_cast<Size>(takeByte()) % count : 0;
    }

    /// A text with its length, up to 255, in a byte before it.
    QByteArrayView takeText() { return take(takeByte()); }

private:
    QByteArrayView m_rest;
};

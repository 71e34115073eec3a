#pragma once

#include "platform/core/DRFileDescriptor.h"

#include <QString>
#include <QXmlStreamReader>

/// Reads a large XML property list from front to back without keeping it: one pass, memory bounded by the longest
/// single value. For lists whose wanted parts are known beforehand; small lists are read by DRPropertyList.
///
/// The reader stands in a dictionary or an array. `nextKey` or `nextItem` goes on to its next value, which may then be
/// taken, entered, or left alone; what is left alone is passed over. After the last one they answer false, and the
/// reader stands in the container around it. They also answer false on failure: see `problem`.
///
/// Nothing outside the file is ever read: a document type with definitions of its own is refused, external ones are
/// not looked at.
class DRPropertyListStream {
public:
    /// Containers within containers, and bytes of one value, that are still read.
    static constexpr int kMaximumDepth = 64;
    static constexpr qint64 kMaximumValueBytes = qint64{4} * 1024 * 1024;

    /// `file` is read from its current position; one that is not open cannot be read.
    explicit DRPropertyListStream(DRFileDescriptor file);

    /// Enters the outermost dictionary, first. False when there is none.
    [[nodiscard]] bool enterRoot();

    /// Goes on to the next value of the dictionary that the reader stands in.
    [[nodiscard]] bool nextKey();

    /// The key of the value at hand; valid until the next call of `nextKey`.
    [[nodiscard]] const QString& key() const { return m_key; }

    /// Goes on to the next value of the array that the reader stands in.
    [[nodiscard]] bool nextItem();

    /// Enters the value at hand. False when it is something else, which then can still be taken.
    [[nodiscard]] bool enterDictionary();
    [[nodiscard]] bool enterArray();

    /// Takes the value at hand as it is written, also a number or date; empty for a dictionary or array.
    [[nodiscard]] QString text();

    /// Whether the value at hand is the Boolean true.
    [[nodiscard]] bool isTrue() const;

    /// Reads what follows the outermost dictionary. False when the file does not end as it should.
    [[nodiscard]] bool finish();

    /// Why reading ended early, for a person to read; null as long as all is well.
    [[nodiscard]] const QString& problem() const { return m_problem; }

private:
    [[nodiscard]] bool advance();
    [[nodiscard]] bool feed();
    [[nodiscard]] bool checkToken();
    [[nodiscard]] bool nextElement();
    [[nodiscard]] bool passOverValue();
    [[nodiscard]] bool enter(QLatin1StringView element);
    void collectText(QString& text);
    bool fail(const QString& problem);

    DRFileDescriptor m_file;
    QXmlStreamReader m_reader;
    QByteArray m_buffer;
    QString m_key;
    QString m_problem;
    qint64 m_bytesSinceToken = 0;
    int m_depth = 0;
    bool m_isAtValue = false;
    bool m_isAtEnd = false;
};

#include "platform/media_library/DRPropertyListStream.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kChunkBytes = qsizetype{64} * 1024;

const QString kMalformed = u"it is no property list"_s;

} // namespace

DRPropertyListStream::DRPropertyListStream(DRFileDescriptor file)
    : m_file(std::move(file)), m_buffer(kChunkBytes, Qt::Uninitialized)
{
    m_reader.setNamespaceProcessing(false);
}

bool DRPropertyListStream::enterRoot()
{
    if (!nextElement() || m_reader.name() != "plist"_L1 || !nextElement()) {
        return fail(kMalformed);
    }
    m_isAtValue = true;
    return enterDictionary() || fail(kMalformed);
}

bool DRPropertyListStream::nextKey()
{
    if (!passOverValue() || !nextElement() || m_reader.isEndElement()) {
        return false;
    }
    if (m_reader.name() != "key"_L1) {
        return fail(kMalformed);
    }
    collectText(m_key);
    if (!nextElement()) {
        return false;
    }
    if (m_reader.isEndElement()) {
        return fail(kMalformed); // a key without a value
    }
    m_isAtValue = true;
    return true;
}

bool DRPropertyListStream::nextItem()
{
    if (!passOverValue() || !nextElement() || m_reader.isEndElement()) {
        return false;
    }
    m_isAtValue = true;
    return true;
}

bool DRPropertyListStream::enterDictionary()
{
    return enter("dict"_L1);
}

bool DRPropertyListStream::enterArray()
{
    return enter("array"_L1);
}

QString DRPropertyListStream::text()
{
    QString text;
    if (m_isAtValue && m_reader.name() != "dict"_L1 && m_reader.name() != "array"_L1) {
        m_isAtValue = false;
        collectText(text);
    }
    return text;
}

bool DRPropertyListStream::isTrue() const
{
    return m_isAtValue && m_reader.name() == "true"_L1;
}

bool DRPropertyListStream::finish()
{
    while (advance()) {
        if (m_reader.isStartElement()) {
            return fail(kMalformed);
        }
    }
    return m_isAtEnd;
}

/// The next token of any kind. False at the end of the document and on failure.
bool DRPropertyListStream::advance()
{
    if (!m_problem.isNull() || m_isAtEnd) {
        return false;
    }
    m_reader.readNext();
    while (m_reader.error() == QXmlStreamReader::PrematureEndOfDocumentError && feed()) {
        m_reader.readNext();
    }
    m_bytesSinceToken = 0;
    if (m_reader.hasError()) {
        return fail(m_reader.error() == QXmlStreamReader::PrematureEndOfDocumentError
                        ? u"it ends in its middle"_s
                        : u"it is damaged at line %1"_s.arg(m_reader.lineNumber()));
    }
    return checkToken();
}

/// Hands the next bytes of the file to the reader. False at the end of the file and on failure.
bool DRPropertyListStream::feed()
{
    if (!m_file.isOpen()) {
        return fail(u"it cannot be opened"_s);
    }
    const qint64 count = m_file.read(m_buffer.data(), m_buffer.size());
    if (count < 0) {
        return fail(u"it cannot be read"_s);
    }
    m_bytesSinceToken += count;
    if (m_bytesSinceToken > kMaximumValueBytes) {
        return fail(u"it holds a value that is too long"_s);
    }
    m_reader.addData(m_buffer.first(count));
    return count > 0;
}

bool DRPropertyListStream::checkToken()
{
    switch (m_reader.tokenType()) {
    case QXmlStreamReader::StartElement:
        return ++m_depth <= kMaximumDepth || fail(u"it is nested too deeply"_s);
    case QXmlStreamReader::EndElement:
        --m_depth;
        return true;
    case QXmlStreamReader::DTD:
        return m_reader.entityDeclarations().isEmpty() || fail(u"it defines entities of its own"_s);
    case QXmlStreamReader::EntityReference:
        return fail(kMalformed);
    case QXmlStreamReader::EndDocument:
        m_isAtEnd = true;
        return false;
    default:
        return true;
    }
}

/// The next beginning or end of an element; what stands between elements is only white space.
bool DRPropertyListStream::nextElement()
{
    while (advance()) {
        if (m_reader.isStartElement() || m_reader.isEndElement()) {
            return true;
        }
    }
    return false;
}

bool DRPropertyListStream::passOverValue()
{
    if (!std::exchange(m_isAtValue, false)) {
        return m_problem.isNull();
    }
    const int outside = m_depth - 1;
    while (advance()) {
        if (m_depth == outside) {
            return true;
        }
    }
    return false;
}

bool DRPropertyListStream::enter(QLatin1StringView element)
{
    if (!m_isAtValue || m_reader.name() != element) {
        return false;
    }
    m_isAtValue = false;
    return true;
}

/// Everything up to the end of the element at hand.
void DRPropertyListStream::collectText(QString& text)
{
    text.resize(0); // which keeps the memory
    while (advance() && !m_reader.isEndElement()) {
        if (m_reader.isStartElement()) {
            fail(kMalformed);
            return;
        }
        if (m_reader.isCharacters()) {
            text.append(m_reader.text());
        }
    }
}

/// Answers false, so that it can end an operation. The first problem counts.
bool DRPropertyListStream::fail(const QString& problem)
{
    if (m_problem.isNull()) {
        m_problem = problem;
    }
    return false;
}

#include "platform/sqlite/DRStatementHandle.h"

#include "platform/core/DRUtf8.h"

#include <sqlite3.h>

#include <utility>

using namespace Qt::StringLiterals;

DRStatementHandle::DRStatementHandle(std::shared_ptr<DRConnection> connectionToUse, const QString& sql)
    : connection(std::move(connectionToUse))
{
    const QByteArray text = DRUtf8::encode(sql);
    const char* rest = nullptr;
    const int result = sqlite3_prepare_v2(connection->handle(), text.constData(), static_cast<int>(text.size()) + 1,
                                          &statement, &rest);
    if (result != SQLITE_OK) {
        fail();
        return;
    }
    m_isPrepared = statement != nullptr && QByteArrayView(rest).trimmed().isEmpty();
    if (!m_isPrepared) {
        hasFailed = true;
        connection->noteFailure(u"the text is not exactly one statement"_s);
    }
}

DRStatementHandle::~DRStatementHandle()
{
    sqlite3_finalize(statement);
}

bool DRStatementHandle::start(const DRSqlValues& values)
{
    if (!m_isPrepared) {
        return false;
    }
    stop();
    ++runNumber;
    hasFailed = false;
    m_stepPortionsLeft = connection->stepPortionsPerRun();
    m_isRunning = bind(values);
    return m_isRunning;
}

bool DRStatementHandle::step()
{
    if (!m_isRunning) {
        return false;
    }
    connection->setStepPortionsLeft(m_stepPortionsLeft);
    const int result = sqlite3_step(statement);
    m_stepPortionsLeft = connection->stepPortionsLeft();
    if (result == SQLITE_ROW) {
        return true;
    }
    if (result != SQLITE_DONE) {
        fail();
    }
    stop();
    return false;
}

void DRStatementHandle::stop()
{
    if (std::exchange(m_isRunning, false)) {
        sqlite3_reset(statement);
    }
}

bool DRStatementHandle::bind(const DRSqlValues& values)
{
    if (values.size() != static_cast<size_t>(sqlite3_bind_parameter_count(statement))) {
        hasFailed = true;
        connection->noteFailure(u"the statement has another number of parameters"_s);
        return false;
    }
    sqlite3_clear_bindings(statement);
    m_boundBytes.clear();
    int position = 0;
    for (const DRSqlValue& value : values) {
        if (bindValue(++position, value) != SQLITE_OK) {
            return fail();
        }
    }
    return true;
}

int DRStatementHandle::bindValue(int position, const DRSqlValue& value)
{
    if (const auto* integer = std::get_if<qint64>(&value)) {
        return sqlite3_bind_int64(statement, position, *integer);
    }
    if (const auto* text = std::get_if<QString>(&value)) {
        return bindText(position, *text);
    }
    if (const auto* real = std::get_if<double>(&value)) {
        return sqlite3_bind_double(statement, position, *real);
    }
    if (const auto* bytes = std::get_if<QByteArray>(&value)) {
        return bindBytes(position, *bytes);
    }
    return sqlite3_bind_null(statement, position);
}

int DRStatementHandle::bindText(int position, const QString& text)
{
    if (text.isNull()) {
        return sqlite3_bind_null(statement, position);
    }
    const QByteArray& bytes = m_boundBytes.emplace_back(DRUtf8::encode(text));
    return sqlite3_bind_text64(statement, position, bytes.constData(), static_cast<sqlite3_uint64>(bytes.size()),
                               SQLITE_STATIC, SQLITE_UTF8);
}

int DRStatementHandle::bindBytes(int position, const QByteArray& bytes)
{
    if (bytes.isNull()) {
        return sqlite3_bind_null(statement, position);
    }
    const QByteArray& kept = m_boundBytes.emplace_back(bytes);
    return sqlite3_bind_blob64(statement, position, kept.constData(), static_cast<sqlite3_uint64>(kept.size()),
                               SQLITE_STATIC);
}

bool DRStatementHandle::fail()
{
    hasFailed = true;
    connection->noteFailure();
    return false;
}

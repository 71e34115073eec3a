#include "platform/sqlite/DRTransaction.h"

#include "platform/sqlite/DRDatabase.h"

#include <utility>

using namespace Qt::StringLiterals;

DRTransaction::DRTransaction(DRDatabase& database)
    : m_database(database), m_isOpen(database.executeUpdate(u"BEGIN IMMEDIATE"_s))
{
}

DRTransaction::~DRTransaction()
{
    if (isOpen()) {
        // When this fails SQLite has already rolled back, or does when the connection is closed.
        static_cast<void>(m_database.executeUpdate(u"ROLLBACK"_s));
    }
}

bool DRTransaction::isOpen() const
{
    return m_isOpen && m_database.isInTransaction();
}

bool DRTransaction::commit()
{
    if (!isOpen()) {
        return false;
    }
    const bool isCommitted = m_database.executeUpdate(u"COMMIT"_s);
    if (!isCommitted && m_database.isInTransaction()) {
        static_cast<void>(m_database.executeUpdate(u"ROLLBACK"_s));
    }
    m_isOpen = false;
    return isCommitted;
}

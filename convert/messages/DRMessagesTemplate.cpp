#include "convert/messages/DRMessagesTemplate.h"

#include "platform/sqlite/DRNewDatabase.h"

#include <QFile>

using namespace Qt::StringLiterals;

// A static library's resources are linked and entered only when asked for. The macro declares what it calls, so it must
// stand outside any namespace.
static void enterResources()
{
    Q_INIT_RESOURCE(migrate_messages_schema);
}

namespace {

QString script(const QString& name)
{
    QFile file(u":/migrate/messages/"_s + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Android's page size of that time. The phone's own empty database has 68 pages; what the schema does not fill is
/// left free.
const QString kPages = u"PRAGMA page_size = 1024; PRAGMA auto_vacuum = 0; BEGIN;"_s;
const QString kFreePages = u"CREATE TABLE free_pages (bytes BLOB); INSERT INTO free_pages VALUES (zeroblob(%1)); "
                           "DROP TABLE free_pages; COMMIT;"_s;

constexpr int kFreeBytes = 26000;

} // namespace

bool writeEmptyMessagesDatabase(const QString& path)
{
    enterResources();
    return writeNewDatabase(path, kPages + script(u"messages.sql"_s) + script(u"message_triggers.sql"_s) +
                                      kFreePages.arg(kFreeBytes));
}

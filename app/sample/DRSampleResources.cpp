#include "app/sample/DRSampleResources.h"

#include <QFile>

using namespace Qt::StringLiterals;

// A static library's resources are linked and entered only when asked for. The macro declares what it calls, so it must
// stand outside any namespace.
static void enterResources()
{
    Q_INIT_RESOURCE(migrate_sample_texts);
}

QByteArray sampleResource(const QString& name)
{
    enterResources();
    QFile file(u":/migrate/sample/"_s + name);
    const bool isOpen = file.open(QIODevice::ReadOnly);
    Q_ASSERT(isOpen);
    return isOpen ? file.readAll() : QByteArray();
}

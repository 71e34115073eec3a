#include "app/gui/DRArtwork.h"

using namespace Qt::StringLiterals;

QString DRArtwork::folder()
{
    return u":/migrate/images"_s;
}

QString DRArtwork::applicationIconName()
{
    return u"phone-migrate-wizard"_s;
}

#include "wizard/DRMGHtml.h"

using namespace Qt::StringLiterals;

QString DRMGHtml::joined(const QString& format, const QStringList& parts)
{
    const QStringList around = format.split(u"%@"_s);
    QString text = around.front();
    for (qsizetype i = 1; i < around.size(); ++i) {
        text += parts.value(i - 1) + around.at(i);
    }
    return text;
}

QString DRMGHtml::withLink(QString text, const QString& name)
{
    const QString anchor = u"<a href = '"_s + name + u"'><link"_s;
    return text.replace(u"<link"_s, anchor).replace(u"</link>"_s, u"</link></a>"_s);
}

bool DRMGHtml::isLink(const QString& link, const QString& name)
{
    return link.compare(name, Qt::CaseInsensitive) == 0;
}
